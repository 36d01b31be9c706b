#include "hedro34/component/classes.h"
#include "hedro34/component/host_document.h"
#include "hedro34/component/host_template.h"
#include "hedro34/merge/clsHEDRO.h"

namespace hedro34 {
namespace {

using Strings = clsHEDROTestStrings;
constexpr Member strings[] = {
    property<&Strings::Count>(u"Count"),
    method<&Strings::Add>(u"Add", required(u"Item"), optional(u"Key"), optional(u"Before"), optional(u"After")),
    method<&Strings::AddArray>(u"AddArray", by_reference(u"Value")),
    method<&Strings::AddDelimitedString>(u"AddDelimitedString", required(u"Items"), optional(u"sDelimiter", tab)),
    method<&Strings::Remove>(u"Remove", required(u"Index")),
    method<&Strings::RemoveAll>(u"RemoveAll"),
    with_value(u"sValue", property<&Strings::Item, &Strings::SetItem>(u"Item", required(u"Index"))),
    method<&Strings::Exists>(u"Exists", required(u"Index")),
    method<&Strings::AsString>(u"AsString", optional(u"sDelimiter", tab)),
    method<&Strings::AsArray>(u"AsArray", optional(u"lLowerBound", 1)),
    method<&Strings::Copy>(u"Copy"),
};

using Correct = clsHEDROTestCorrect;
constexpr Member correct[] = {
    property<&Correct::Count>(u"Count"),
    method<&Correct::Add>(u"Add", required(u"Item"), optional(u"Before"), optional(u"After")),
    method<&Correct::Remove>(u"Remove", required(u"Index")),
    method<&Correct::RemoveAll>(u"RemoveAll"),
    property<&Correct::Item>(u"Item", required(u"Index")),
    method<&Correct::Exists>(u"Exists", required(u"Index")),
    method<&Correct::Copy>(u"Copy"),
    method<&Correct::GetBitWiseRepresentation>(u"GetBitWiseRepresentation"),
    method<&Correct::ConvertBitWiseRepresentation>(u"ConvertBitWiseRepresentation", required(u"BitWiseValue")),
};

using Question = clsHEDROTestQuestion;
constexpr Member question[] = {
    property<&Question::LearningObjectives>(u"LearningObjectives"),
    property<&Question::Answers>(u"Answers"),
    property<&Question::CorrectAnswers>(u"CorrectAnswers"),
    property<&Question::CorrectPoints>(u"CorrectPoints"),
    property<&Question::IncorrectPoints>(u"IncorrectPoints"),
    property<&Question::NoResponsePoints>(u"NoResponsePoints"),
    property<&Question::SubjectivePoints>(u"SubjectivePoints"),
    property<&Question::CorrectAnd>(u"CorrectAnd"),
    property<&Question::MultiplesPermitted>(u"MultiplesPermitted"),
    property<&Question::QuestionText>(u"QuestionText"),
    property<&Question::Difficulty>(u"Difficulty"),
    property<&Question::Reference>(u"Reference"),
    property<&Question::Topic>(u"Topic"),
    property<&Question::Keywords>(u"Keywords"),
    property<&Question::Miscellaneous>(u"Miscellaneous"),
    property<&Question::Notes>(u"Notes"),
    property<&Question::ID>(u"ID"),
    property<&Question::QuestionType>(u"QuestionType"),
    method<&Question::Copy>(u"Copy"),
};

using Questions = clsHEDROTestQuestions;
constexpr Member questions[] = {
    property<&Questions::Count>(u"Count"),
    method<&Questions::Add>(u"Add", required(u"oQuestion"), optional(u"Before"), optional(u"After")),
    method<&Questions::Remove>(u"Remove", required(u"Index")),
    method<&Questions::RemoveAll>(u"RemoveAll"),
    property<&Questions::Item>(u"Item", required(u"Index")),
    method<&Questions::Exists>(u"Exists", required(u"Index")),
    method<&Questions::TypeCount>(u"TypeCount", required(u"eQuestionType")),
};

using Order = clsHEDROTestSequenceOrder;
constexpr Member order[] = {
    property<&Order::Count>(u"Count"),
    method<&Order::Add>(u"Add", required(u"sQuestionID")),
    method<&Order::Remove>(u"Remove", required(u"vKey")),
    method<&Order::RemoveAll>(u"RemoveAll"),
    property<&Order::Item>(u"Item", required(u"vKey")),
    method<&Order::Exists>(u"Exists", required(u"vKey")),
    method<&Order::AsArray>(u"AsArray", optional(u"lLowerBound", 1)),
    method<&Order::AsString>(u"AsString", optional(u"sDelimiter", tab)),
};

using Sequence = clsHEDROTestSequence;
constexpr Member sequence[] = {
    property<&Sequence::Order>(u"Order"),
    property<&Sequence::Answer>(u"Answer"),
    method<&Sequence::Copy>(u"Copy", by_reference(u"oQuestions")),
};

using Sequences = clsHEDROTestSequences;
constexpr Member sequences[] = {
    property<&Sequences::Count>(u"Count"),
    method<&Sequences::Add>(u"Add", required(u"oSequence")),
    method<&Sequences::AddDefault>(u"AddDefault", by_reference(u"oQuestions"), optional(u"sAnswer", u"A")),
    method<&Sequences::Remove>(u"Remove", required(u"vKey")),
    method<&Sequences::RemoveAll>(u"RemoveAll"),
    property<&Sequences::Item>(u"Item", required(u"vKey")),
    method<&Sequences::Exists>(u"Exists", required(u"vKey")),
};

using Test = clsHEDROTest;
constexpr Member test[] = {
    property<&Test::Questions>(u"Questions"),
    property<&Test::Sequences>(u"Sequences"),
    property<&Test::MultipleChoiceOddScale>(u"MultipleChoiceOddScale"),
    property<&Test::MultipleChoiceEvenScale>(u"MultipleChoiceEvenScale"),
    property<&Test::TrueFalseScale>(u"TrueFalseScale"),
    property<&Test::YesNoScale>(u"YesNoScale"),
    property<&Test::Title>(u"Title"),
    property<&Test::Version>(u"Version"),
    property<&Test::Notes>(u"Notes"),
    property<&Test::CreatedBy>(u"CreatedBy"),
    property<&Test::TeacherID>(u"TeacherID"),
    property<&Test::Source>(u"Source"),
    method<&Test::QuestionType>(u"QuestionType", required(u"vType")),
    method<&Test::Clear>(u"Clear"),
    method<&Test::SetError>(u"SetError", by_reference(u"oErr")),
    method<&Test::LoadKTD>(u"LoadKTD", required(u"sKTDFile")),
    method<&Test::LoadXML>(u"LoadXML", required(u"sExamViewXMLFile"), optional(u"bOddDistractorsOnly", false),
                           optional_by_reference(u"bUserCancelled"), optional(u"bVerbose", true)),
    property<&Test::NumObjectives>(u"NumObjectives"),
    property<&Test::ID>(u"ID"),
    property<&Test::ImportObjectives>(u"ImportObjectives"),
    property<&Test::StateAbbreviation>(u"StateAbbreviation"),
    property<&Test::UserDefined>(u"UserDefined"),
    property<&Test::Description>(u"Description"),
    method<&Test::Copy>(u"Copy"),
    method<&Test::QuestionScale>(u"QuestionScale", required(u"vQuestionIndex"), optional(u"vIsOddOverride")),
    method<&Test::AddSequence>(u"AddSequence", by_reference(u"oTestVersion")),
    method<&Test::CorrectAnswersAsString>(u"CorrectAnswersAsString", required(u"vQuestionIndex"),
                                          optional(u"sDelimiter", u","), optional(u"bEnclosedByParens", true),
                                          optional(u"bNumeric", false)),
    method<&Test::CorrectAnswersAsArray>(u"CorrectAnswersAsArray", required(u"vQuestionIndex"),
                                         optional(u"bAsString", false)),
};

using Tests = clsHEDROTests;
constexpr Member tests[] = {
    property<&Tests::Count>(u"Count"),
    method<&Tests::Add>(u"Add", required(u"Item"), optional(u"Key"), optional(u"Before"), optional(u"After")),
    method<&Tests::Remove>(u"Remove", required(u"Index")),
    method<&Tests::RemoveAll>(u"RemoveAll"),
    property<&Tests::Item>(u"Item", required(u"Index")),
    method<&Tests::Exists>(u"Exists", required(u"Index")),
};

using Merge = clsHEDRO;
constexpr Member merge[] = {
    property<&Merge::TemplateIn>(u"TemplateIn"),
    property<&Merge::TemplateOut>(u"TemplateOut"),
    property<&Merge::Tests>(u"Tests"),
    property<&Merge::WENKTD>(u"WENKTD"),
    method<&Merge::RemoveInvalid>(u"RemoveInvalid", optional(u"lMaxQuestions", 0)),
    method<&Merge::Merge>(u"Merge"),
    property<&Merge::Verbose>(u"Verbose"),
    method<&Merge::ValidTestVersions>(u"ValidTestVersions"),
    property<&Merge::SequenceQuestion>(u"SequenceQuestion"),
    method<&Merge::SetError>(u"SetError", by_reference(u"oErr")),
};

constexpr ClassTable classes[] = {
    creatable<Merge>(u"{1A11377D-4B0A-4D1C-958B-625FA5F427D6}", u"{86CE3263-8E8A-49DA-8921-E64E3F121F2A}", merge,
                     u"The merge object: what a merge works on, and the operations that prepare and run it."),
    creatable<Test>(u"{BEA4DEBF-AA66-429D-A5E2-9DB91352EFB9}", u"{B2E5BA12-8BED-493F-AC1D-920066BBB017}", test,
                    u"One test: its identity, its questions, its scales and its sequences."),
    creatable<Question>(u"{204ED3FE-972F-493D-A9A3-3230935686BA}", u"{307C4A67-53FE-44FA-A6AF-F9C2C93EBD07}", question,
                        u"One question of a test."),
    creatable<Strings>(u"{1862B1D1-8D70-446F-AAFC-1C97D0C645FF}", u"{829401B7-A81C-4665-A5F4-2718BBE6ABFC}", strings,
                       u"An ordered list of texts: answers, objectives and scales.", u"Item"),
    creatable<Correct>(u"{5A65F595-F582-4A49-93D4-3B55C7DA83D4}", u"{0B85C954-7DCA-47B9-8C08-112607A2DC69}", correct,
                       u"The correct answers of a question: a set of answer numbers.", u"Item"),
    creatable<Sequence>(u"{DCC2C761-DC96-4A81-B00B-7BA17B0DA24A}", u"{6E802B54-5A17-4F0D-918D-FD3871EDFBAA}", sequence,
                        u"One version of a test: its label and the order of its questions.", u"Order"),
    inner<Tests>(u"{EB6F2AAE-DD97-44AB-9758-B25B3637D7AB}", u"{22060BB1-1887-4A7B-972F-143FF9FE3DFE}", tests,
                 u"The tests of a merge: the one that is merged first, its further versions behind it.", u"Item"),
    inner<Questions>(u"{CA99BBCE-CD9D-4332-963E-D2E9FC1A2F19}", u"{CEFABE03-52EF-48D1-AD18-1BC22CF54CFB}", questions,
                     u"The questions of a test in test order, each under its ID.", u"Item"),
    inner<Sequences>(u"{2018E22B-D0BB-49C1-BE83-D0F8B3E6507F}", u"{0537532A-3AC5-4974-839A-8008448B9976}", sequences,
                     u"The versions of a test, each under its label.", u"Item"),
    inner<Order>(u"{F8B238F0-2536-4305-9A0A-22AD17937BC7}", u"{1F8EB3C2-81E5-4265-A188-365EAD9FD1B7}", order,
                 u"The places of a version's questions, each under its ID.", u"Item"),
};

template <auto value>
constexpr Enumerator enumerator = {value_name<value>, value};

constexpr Enumerator source_types[] = {
    enumerator<HEDROTestSourceTypeUnknown>,
    enumerator<HEDROTestSourceTypeExamView>,
    enumerator<HEDROTestSourceTypeKTD>,
    enumerator<HEDROTestSourceTypeNGT>,
};
constexpr Enumerator import_objectives[] = {
    enumerator<HEDROTestImportObjectivesNone>,     enumerator<HEDROTestImportObjectivesLearning>,
    enumerator<HEDROTestImportObjectivesLocal>,    enumerator<HEDROTestImportObjectivesState>,
    enumerator<HEDROTestImportObjectivesNational>,
};
constexpr Enumerator question_types[] = {
    enumerator<HEDROTestQuestionTypeUnknown>,
    enumerator<HEDROTestQuestionTypeTrueFalse>,
    enumerator<HEDROTestQuestionTypeYesNo>,
    enumerator<HEDROTestQuestionTypeMultipleChoice>,
    enumerator<HEDROTestQuestionTypeModifiedTrueFalse>,
    enumerator<HEDROTestQuestionTypeNumericResponse>,
    enumerator<HEDROTestQuestionTypeCompletion>,
    enumerator<HEDROTestQuestionTypeMatching>,
    enumerator<HEDROTestQuestionTypeShortAnswer>,
    enumerator<HEDROTestQuestionTypeProblem>,
    enumerator<HEDROTestQuestionTypeEssay>,
    enumerator<HEDROTestQuestionTypeCase>,
    enumerator<HEDROTestQuestionTypeSubjective>,
    enumerator<HEDROTestQuestionTypeOther>,
    enumerator<HEDROTestQuestionTypeBimodal>,
};

constexpr EnumerationTable enumerations[] = {
    {type_name<HEDROTestSourceType>, source_types},
    {type_name<HEDROTestImportObjectives>, import_objectives, true},
    {type_name<HEDROTestQuestionType>, question_types},
};

}  // namespace

std::span<const ClassTable> library_classes() noexcept { return classes; }
std::span<const EnumerationTable> library_enumerations() noexcept { return enumerations; }

}  // namespace hedro34
