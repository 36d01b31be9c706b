#include "hedro34/component/class_table.h"
#include "hedro34/component/classes.h"
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

constexpr ClassTable merge_class = class_table<clsHEDRO>(
    {0x1A11377D, 0x4B0A, 0x4D1C, {0x95, 0x8B, 0x62, 0x5F, 0xA5, 0xF4, 0x27, 0xD6}},
    {0x86CE3263, 0x8E8A, 0x49DA, {0x89, 0x21, 0xE6, 0x4E, 0x3F, 0x12, 0x1F, 0x2A}}, merge, {}, create<clsHEDRO>,
    u"The merge object: what a merge works on, and the operations that prepare and run it.");
constexpr ClassTable test_class = class_table<clsHEDROTest>(
    {0xBEA4DEBF, 0xAA66, 0x429D, {0xA5, 0xE2, 0x9D, 0xB9, 0x13, 0x52, 0xEF, 0xB9}},
    {0xB2E5BA12, 0x8BED, 0x493F, {0xAC, 0x1D, 0x92, 0x00, 0x66, 0xBB, 0xB0, 0x17}}, test, {}, create<clsHEDROTest>,
    u"One test: its identity, its questions, its scales and its sequences.");
constexpr ClassTable question_class =
    class_table<clsHEDROTestQuestion>({0x204ED3FE, 0x972F, 0x493D, {0xA9, 0xA3, 0x32, 0x30, 0x93, 0x56, 0x86, 0xBA}},
                                      {0x307C4A67, 0x53FE, 0x44FA, {0xA6, 0xAF, 0xF9, 0xC2, 0xC9, 0x3E, 0xBD, 0x07}},
                                      question, {}, create<clsHEDROTestQuestion>, u"One question of a test.");
constexpr ClassTable strings_class = class_table<clsHEDROTestStrings>(
    {0x1862B1D1, 0x8D70, 0x446F, {0xAA, 0xFC, 0x1C, 0x97, 0xD0, 0xC6, 0x45, 0xFF}},
    {0x829401B7, 0xA81C, 0x4665, {0xA5, 0xF4, 0x27, 0x18, 0xBB, 0xE6, 0xAB, 0xFC}}, strings, u"Item",
    create<clsHEDROTestStrings>, u"An ordered list of texts: answers, objectives and scales.");
constexpr ClassTable correct_class = class_table<clsHEDROTestCorrect>(
    {0x5A65F595, 0xF582, 0x4A49, {0x93, 0xD4, 0x3B, 0x55, 0xC7, 0xDA, 0x83, 0xD4}},
    {0x0B85C954, 0x7DCA, 0x47B9, {0x8C, 0x08, 0x11, 0x26, 0x07, 0xA2, 0xDC, 0x69}}, correct, u"Item",
    create<clsHEDROTestCorrect>, u"The correct answers of a question: a set of answer numbers.");
constexpr ClassTable sequence_class = class_table<clsHEDROTestSequence>(
    {0xDCC2C761, 0xDC96, 0x4A81, {0xB0, 0x0B, 0x7B, 0xA1, 0x7B, 0x0D, 0xA2, 0x4A}},
    {0x6E802B54, 0x5A17, 0x4F0D, {0x91, 0x8D, 0xFD, 0x38, 0x71, 0xED, 0xFB, 0xAA}}, sequence, u"Order",
    create<clsHEDROTestSequence>, u"One version of a test: its label and the order of its questions.");
constexpr ClassTable tests_class = class_table<clsHEDROTests>(
    {0xEB6F2AAE, 0xDD97, 0x44AB, {0x97, 0x58, 0xB2, 0x5B, 0x36, 0x37, 0xD7, 0xAB}},
    {0x22060BB1, 0x1887, 0x4A7B, {0x97, 0x2F, 0x14, 0x3F, 0xF9, 0xFE, 0x3D, 0xFE}}, tests, u"Item", nullptr,
    u"The tests of a merge: the one that is merged first, its further versions behind it.");
constexpr ClassTable questions_class = class_table<clsHEDROTestQuestions>(
    {0xCA99BBCE, 0xCD9D, 0x4332, {0x96, 0x3E, 0xD2, 0xE9, 0xFC, 0x1A, 0x2F, 0x19}},
    {0xCEFABE03, 0x52EF, 0x48D1, {0xAD, 0x18, 0x1B, 0xC2, 0x2C, 0xF5, 0x4C, 0xFB}}, questions, u"Item", nullptr,
    u"The questions of a test in test order, each under its ID.");
constexpr ClassTable sequences_class =
    class_table<clsHEDROTestSequences>({0x2018E22B, 0xD0BB, 0x49C1, {0xBE, 0x83, 0xD0, 0xF8, 0xB3, 0xE6, 0x50, 0x7F}},
                                       {0x0537532A, 0x3AC5, 0x4974, {0x83, 0x9A, 0x80, 0x08, 0x44, 0x8B, 0x99, 0x76}},
                                       sequences, u"Item", nullptr, u"The versions of a test, each under its label.");
constexpr ClassTable order_class = class_table<clsHEDROTestSequenceOrder>(
    {0xF8B238F0, 0x2536, 0x4305, {0x9A, 0x0A, 0x22, 0xAD, 0x17, 0x93, 0x7B, 0xC7}},
    {0x1F8EB3C2, 0x81E5, 0x4265, {0xA1, 0x88, 0x36, 0x5E, 0xAD, 0x9F, 0xD1, 0xB7}}, order, u"Item", nullptr,
    u"The places of a version's questions, each under its ID.");

constexpr const ClassTable* classes[] = {&merge_class,     &test_class,     &question_class, &strings_class,
                                         &correct_class,   &sequence_class, &tests_class,    &questions_class,
                                         &sequences_class, &order_class};

constexpr Enumerator source_types[] = {
    {u"HEDROTestSourceTypeUnknown", HEDROTestSourceTypeUnknown},
    {u"HEDROTestSourceTypeExamView", HEDROTestSourceTypeExamView},
    {u"HEDROTestSourceTypeKTD", HEDROTestSourceTypeKTD},
    {u"HEDROTestSourceTypeNGT", HEDROTestSourceTypeNGT},
};
constexpr Enumerator import_objectives[] = {
    {u"HEDROTestImportObjectivesNone", HEDROTestImportObjectivesNone},
    {u"HEDROTestImportObjectivesLearning", HEDROTestImportObjectivesLearning},
    {u"HEDROTestImportObjectivesLocal", HEDROTestImportObjectivesLocal},
    {u"HEDROTestImportObjectivesState", HEDROTestImportObjectivesState},
    {u"HEDROTestImportObjectivesNational", HEDROTestImportObjectivesNational},
};
constexpr Enumerator question_types[] = {
    {u"HEDROTestQuestionTypeUnknown", HEDROTestQuestionTypeUnknown},
    {u"HEDROTestQuestionTypeTrueFalse", HEDROTestQuestionTypeTrueFalse},
    {u"HEDROTestQuestionTypeYesNo", HEDROTestQuestionTypeYesNo},
    {u"HEDROTestQuestionTypeMultipleChoice", HEDROTestQuestionTypeMultipleChoice},
    {u"HEDROTestQuestionTypeModifiedTrueFalse", HEDROTestQuestionTypeModifiedTrueFalse},
    {u"HEDROTestQuestionTypeNumericResponse", HEDROTestQuestionTypeNumericResponse},
    {u"HEDROTestQuestionTypeCompletion", HEDROTestQuestionTypeCompletion},
    {u"HEDROTestQuestionTypeMatching", HEDROTestQuestionTypeMatching},
    {u"HEDROTestQuestionTypeShortAnswer", HEDROTestQuestionTypeShortAnswer},
    {u"HEDROTestQuestionTypeProblem", HEDROTestQuestionTypeProblem},
    {u"HEDROTestQuestionTypeEssay", HEDROTestQuestionTypeEssay},
    {u"HEDROTestQuestionTypeCase", HEDROTestQuestionTypeCase},
    {u"HEDROTestQuestionTypeSubjective", HEDROTestQuestionTypeSubjective},
    {u"HEDROTestQuestionTypeOther", HEDROTestQuestionTypeOther},
    {u"HEDROTestQuestionTypeBimodal", HEDROTestQuestionTypeBimodal},
};

constexpr EnumerationTable enumerations[] = {
    {type_name<HEDROTestSourceType>, source_types},
    {type_name<HEDROTestImportObjectives>, import_objectives, true},
    {type_name<HEDROTestQuestionType>, question_types},
};

}  // namespace

std::span<const ClassTable* const> library_classes() noexcept { return classes; }
std::span<const EnumerationTable> library_enumerations() noexcept { return enumerations; }

}  // namespace hedro34
