#include "hedro34/component/classes.h"
#include "hedro34/component/host_document.h"
#include "hedro34/component/host_template.h"
#include "hedro34/merge/clsHEDRO.h"

namespace hedro34 {
namespace {

constexpr Argument before = optional(u"Before").is(u"position or key of the element that will stand behind");
constexpr Argument after = optional(u"After").is(u"position or key of the element that will stand in front");

using Strings = clsHEDROTestStrings;
constexpr Member strings[] = {
    property<&Strings::Count>(u"Count", u"The number of elements."),
    method<&Strings::Add>(
        u"Add",
        u"Adds the first 50 characters of a text, at the end or where `Before` or `After` says; True when added.",
        required(u"Item"), optional(u"Key").is(u"the key of the element, compared in any case"), before, after),
    method<&Strings::AddArray>(
        u"AddArray", u"Adds every text of an array in order, without keys; an array without bounds is a failure.",
        by_reference(u"Value")),
    method<&Strings::AddDelimitedString>(
        u"AddDelimitedString",
        u"Adds the parts between the delimiters, the empty ones too; False, and nothing added, for an empty text.",
        required(u"Items"), optional(u"sDelimiter", tab).is(u"an empty one splits nothing")),
    method<&Strings::Remove>(u"Remove", u"Removes the element at a position or under a key; False when there is none.",
                             required(u"Index")),
    method<&Strings::RemoveAll>(u"RemoveAll", u"Removes all elements, the last one first; True when none is left."),
    with_value(
        u"sValue",
        property<&Strings::Item, &Strings::SetItem>(
            u"Item",
            u"The text at a position or under a key, else an empty one; writing keeps 255 characters and drops the key.",
            required(u"Index"))),
    method<&Strings::Exists>(u"Exists", u"Whether there is an element at a position or under a key.",
                             required(u"Index")),
    method<&Strings::AsString>(u"AsString", u"The elements as one text, with the delimiter between them.",
                               optional(u"sDelimiter", tab)),
    method<&Strings::AsArray>(u"AsArray",
                              u"The elements as an array from `lLowerBound` up; without bounds when there are none.",
                              optional(u"lLowerBound", 1)),
    method<&Strings::Copy>(
        u"Copy",
        u"A new list without keys, made through tab-joined text: 50 characters each, split where there is a tab."),
};

using Correct = clsHEDROTestCorrect;
constexpr Member correct[] = {
    property<&Correct::Count>(u"Count", u"The number of correct answers."),
    method<&Correct::Add>(
        u"Add", u"Adds an answer number, at the end or where `Before` or `After` says; False when it is there already.",
        required(u"Item"), before, after),
    method<&Correct::Remove>(
        u"Remove",
        u"Removes the element at a position or, for a text, the answer of that number; False when there is none.",
        required(u"Index")),
    method<&Correct::RemoveAll>(u"RemoveAll",
                                u"Removes all answer numbers, the last one first; True when none is left."),
    property<&Correct::Item>(u"Item", u"The answer number at a position; -1 when there is none.", required(u"Index")),
    method<&Correct::Exists>(
        u"Exists",
        u"Whether there is an element at a position or, for a text such as \"3\", the answer of that number.",
        required(u"Index")),
    method<&Correct::Copy>(u"Copy", u"A new set with the same numbers in the same order."),
    method<&Correct::GetBitWiseRepresentation>(
        u"GetBitWiseRepresentation",
        u"The set as one number: bit k stands for answer k + 1; an answer above 31 is a failure."),
    method<&Correct::ConvertBitWiseRepresentation>(
        u"ConvertBitWiseRepresentation",
        u"Replaces the set by the answers of the bits 0 to 30, in ascending order; bit 31 plays no part.",
        required(u"BitWiseValue")),
};

using Question = clsHEDROTestQuestion;
constexpr Member question[] = {
    property<&Question::LearningObjectives>(u"LearningObjectives",
                                            u"The texts of the objectives that the import took over."),
    property<&Question::Answers>(u"Answers", u"The choices; the one at position n is answer number n."),
    property<&Question::CorrectAnswers>(u"CorrectAnswers", u"The numbers of the correct answers."),
    property<&Question::CorrectPoints>(u"CorrectPoints", u"Points for a correct response; 1 in a new question."),
    property<&Question::IncorrectPoints>(u"IncorrectPoints", u"Points for an incorrect response; 0 in a new question."),
    property<&Question::NoResponsePoints>(u"NoResponsePoints", u"Points for no response; 0 in a new question."),
    property<&Question::SubjectivePoints>(u"SubjectivePoints",
                                          u"Points of a subjective question; 0 in a new question."),
    property<&Question::CorrectAnd>(u"CorrectAnd",
                                    u"Whether all correct answers must be selected; True in a new question."),
    property<&Question::MultiplesPermitted>(u"MultiplesPermitted",
                                            u"Whether there is more than one correct answer and `CorrectAnd` is True."),
    property<&Question::QuestionText>(u"QuestionText", u"The text of the question, of any length."),
    property<&Question::Difficulty>(u"Difficulty",
                                    u"The difficulty in words, not interpreted; the first 255 characters are kept."),
    property<&Question::Reference>(u"Reference", u"A reference in words, of any length, not interpreted."),
    property<&Question::Topic>(u"Topic", u"The topic, not interpreted; the first 255 characters are kept."),
    property<&Question::Keywords>(u"Keywords",
                                  u"The keywords as one text, not interpreted; the first 255 characters are kept."),
    property<&Question::Miscellaneous>(u"Miscellaneous",
                                       u"Anything else in words, not interpreted; the first 255 characters are kept."),
    property<&Question::Notes>(u"Notes", u"Notes on the question, of any length, not interpreted."),
    property<&Question::ID>(u"ID",
                            u"Names the question in its test and in every order; the first 50 characters are kept."),
    property<&Question::QuestionType>(u"QuestionType", u"The type of the question; unknown (-1) in a new one."),
    method<&Question::Copy>(
        u"Copy",
        u"A new question that shares no object with this one; its answers and objectives keep 50 characters each."),
};

using Questions = clsHEDROTestQuestions;
constexpr Member questions[] = {
    property<&Questions::Count>(u"Count", u"The number of questions."),
    method<&Questions::Add>(
        u"Add",
        u"Adds a question under its present `ID`, which must be new, at the end or where `Before` or `After` says.",
        required(u"oQuestion"), before, after),
    method<&Questions::Remove>(
        u"Remove", u"Empties the answers and objectives of a question and removes it; False when there is none.",
        required(u"Index")),
    method<&Questions::RemoveAll>(u"RemoveAll",
                                  u"Empties and removes all questions, the last one first; True when none is left."),
    property<&Questions::Item>(u"Item",
                               u"The question at a position or under an ID; an empty reference when there is none.",
                               required(u"Index")),
    method<&Questions::Exists>(u"Exists", u"Whether there is a question at a position or under an ID.",
                               required(u"Index")),
    method<&Questions::TypeCount>(u"TypeCount", u"How many questions have exactly this type.",
                                  required(u"eQuestionType")),
};

using Order = clsHEDROTestSequenceOrder;
constexpr Member order[] = {
    property<&Order::Count>(u"Count", u"The number of entries."),
    method<&Order::Add>(
        u"Add", u"Adds the place `Count` + 1 under the ID of a question; an ID that is there already is a failure.",
        required(u"sQuestionID")),
    method<&Order::Remove>(
        u"Remove",
        u"Removes the entry at a position or under an ID, if there is one; the other places stay as they are.",
        required(u"vKey")),
    method<&Order::RemoveAll>(u"RemoveAll", u"Removes all entries."),
    property<&Order::Item>(
        u"Item", u"The place, from 1, of the question with an ID or of the entry at a position; 0 when there is none.",
        required(u"vKey")),
    method<&Order::Exists>(u"Exists", u"Whether there is an entry at a position or under an ID.", required(u"vKey")),
    method<&Order::AsArray>(u"AsArray",
                            u"The places as an array from `lLowerBound` up; without bounds when there are none.",
                            optional(u"lLowerBound", 1)),
    method<&Order::AsString>(u"AsString", u"The places in decimal as one text, with the delimiter between them.",
                             optional(u"sDelimiter", tab)),
};

using Sequence = clsHEDROTestSequence;
constexpr Member sequence[] = {
    property<&Sequence::Order>(u"Order",
                               u"The places of the questions in this version, each under the ID of its question."),
    property<&Sequence::Answer>(u"Answer", u"The label of the version; the first 50 characters are kept."),
    method<&Sequence::Copy>(
        u"Copy", u"A new sequence with the same label, whose order is that of `oQuestions` and not of this sequence.",
        by_reference(u"oQuestions")),
};

using Sequences = clsHEDROTestSequences;
constexpr Member sequences[] = {
    property<&Sequences::Count>(u"Count", u"The number of versions."),
    method<&Sequences::Add>(u"Add",
                            u"Adds a sequence under its present label `Answer`, which must be new; True when added.",
                            required(u"oSequence")),
    method<&Sequences::AddDefault>(
        u"AddDefault",
        u"Adds one sequence in the order of `oQuestions`; False, and nothing added, when there is a sequence.",
        by_reference(u"oQuestions"), optional(u"sAnswer", u"A").is(u"the label of the version")),
    method<&Sequences::Remove>(u"Remove",
                               u"Removes the sequence at a position or under a label; False when there is none.",
                               required(u"vKey")),
    method<&Sequences::RemoveAll>(u"RemoveAll", u"Removes all sequences, the last one first; True when none is left."),
    property<&Sequences::Item>(u"Item",
                               u"The sequence at a position or under a label; an empty reference when there is none.",
                               required(u"vKey")),
    method<&Sequences::Exists>(u"Exists", u"Whether there is a sequence at a position or under a label.",
                               required(u"vKey")),
};

using Test = clsHEDROTest;
constexpr Member test[] = {
    property<&Test::Questions>(u"Questions",
                               u"The questions in test order; the position of a question is its number in the test."),
    property<&Test::Sequences>(u"Sequences", u"One sequence for each version of the test."),
    property<&Test::MultipleChoiceOddScale>(
        u"MultipleChoiceOddScale",
        u"Labels for the answers of multiple-choice questions at odd positions; A, B, C, D in a new test."),
    property<&Test::MultipleChoiceEvenScale>(
        u"MultipleChoiceEvenScale",
        u"Labels for the answers of multiple-choice questions at even positions; A, B, C, D in a new test."),
    property<&Test::TrueFalseScale>(u"TrueFalseScale",
                                    u"Labels for the answers of true/false questions; T, F in a new test."),
    property<&Test::YesNoScale>(u"YesNoScale", u"Labels for the answers of yes/no questions; Y, N in a new test."),
    property<&Test::Title>(u"Title", u"The title; the first 255 characters are kept."),
    property<&Test::Version>(u"Version", u"The label of this version of the test; the first 50 characters are kept."),
    property<&Test::Notes>(u"Notes", u"Notes on the test, of any length."),
    property<&Test::CreatedBy>(u"CreatedBy", u"Who made the test; the first 255 characters are kept."),
    property<&Test::TeacherID>(u"TeacherID", u"Names the teacher; the first 255 characters are kept."),
    property<&Test::Source>(u"Source", u"Where the test came from; ExamView in a new test, unknown after `Clear`."),
    method<&Test::QuestionType>(
        u"QuestionType",
        u"The type that a code names: a text such as \"mc\" in any case, or a number; -1 for an unknown code.",
        required(u"vType")),
    method<&Test::Clear>(
        u"Clear", u"Empties questions, sequences and texts; scales, `ImportObjectives` and `StateAbbreviation` stay."),
    method<&Test::SetError>(
        u"SetError",
        u"Stores the object that receives all failures on this thread, or none; gives whether there is one.",
        by_reference(u"oErr").is(u"its method `RaiseError` is called; an empty reference for none")),
    method<&Test::LoadKTD>(u"LoadKTD", u"Fills the test from a data document; True when there is a question in it.",
                           required(u"sKTDFile")),
    method<&Test::LoadXML>(
        u"LoadXML", u"Fills the test from an ExamView XML file; True when there is a question in it.",
        required(u"sExamViewXMLFile"),
        optional(u"bOddDistractorsOnly", false).is(u"even questions take the letters of odd ones"),
        optional_by_reference(u"bUserCancelled").is(u"becomes True when the user cancels, else it stays as it is"),
        optional(u"bVerbose", true).is(u"asks the user when questions allow partial credit")),
    property<&Test::NumObjectives>(u"NumObjectives", u"The number of learning objectives of all questions together."),
    property<&Test::ID>(u"ID", u"Names the test; the first 50 characters are kept."),
    property<&Test::ImportObjectives>(u"ImportObjectives",
                                      u"Which objectives `LoadXML` takes over, flags added up; none in a new test."),
    property<&Test::StateAbbreviation>(
        u"StateAbbreviation", u"The state whose objectives `LoadXML` takes over; the first 2 characters are kept."),
    property<&Test::UserDefined>(
        u"UserDefined", u"False for a test from an ExamView file, True for one from a data document and for a copy."),
    property<&Test::Description>(u"Description", u"A description of the test; the first 255 characters are kept."),
    method<&Test::Copy>(
        u"Copy",
        u"A new test that shares no object with this one, without `ID`, `ImportObjectives` and `StateAbbreviation`."),
    method<&Test::QuestionScale>(
        u"QuestionScale",
        u"The labels of the answers of a question, as a new list; an empty reference when there is no such question.",
        required(u"vQuestionIndex").is(u"a position or an ID"),
        optional(u"vIsOddOverride")
            .is(u"True takes the odd scale, False the even one; left out, the position decides")),
    method<&Test::AddSequence>(
        u"AddSequence",
        u"Records a further version of this test as a sequence; False, and a box that says why, when it is refused.",
        by_reference(u"oTestVersion")),
    method<&Test::CorrectAnswersAsString>(
        u"CorrectAnswersAsString",
        u"The correct answers of a question as one text, such as \"B\" or \"(A,C)\"; empty when there are none.",
        required(u"vQuestionIndex").is(u"a position or an ID"), optional(u"sDelimiter", u","),
        optional(u"bEnclosedByParens", true).is(u"two or more stand in parentheses"),
        optional(u"bNumeric", false).is(u"numbers in place of labels")),
    method<&Test::CorrectAnswersAsArray>(
        u"CorrectAnswersAsArray",
        u"The correct answers of a question as an array from 0; without bounds when there are none.",
        required(u"vQuestionIndex").is(u"a position or an ID"),
        optional(u"bAsString", false).is(u"labels in place of numbers")),
};

using Tests = clsHEDROTests;
constexpr Member tests[] = {
    property<&Tests::Count>(u"Count", u"The number of tests."),
    method<&Tests::Add>(
        u"Add", u"Adds a test, at the end or where `Before` or `After` says; a `Key` in use is a failure.",
        required(u"Item"), optional(u"Key").is(u"the key of the test, compared in any case"), before, after),
    method<&Tests::Remove>(u"Remove",
                           u"Removes the test at a position or under a key; that there is none is a failure.",
                           required(u"Index")),
    method<&Tests::RemoveAll>(u"RemoveAll", u"Removes all tests, the last one first."),
    property<&Tests::Item>(u"Item", u"The test at a position or under a key; an empty reference when there is none.",
                           required(u"Index")),
    method<&Tests::Exists>(u"Exists", u"Whether there is a test at a position or under a key.", required(u"Index")),
};

using Merge = clsHEDRO;
constexpr Member merge[] = {
    property<&Merge::TemplateIn>(u"TemplateIn", u"The form template that a merge reads; it stays as it is."),
    property<&Merge::TemplateOut>(
        u"TemplateOut", u"Another template, which `Merge` clears and replaces by the changed copy of `TemplateIn`."),
    property<&Merge::Tests>(u"Tests", u"The test that is merged at position 1, its further versions behind it."),
    property<&Merge::WENKTD>(u"WENKTD", u"The data document that `Merge` empties and fills."),
    method<&Merge::RemoveInvalid>(
        u"RemoveInvalid",
        u"Leaves true/false, yes/no, multiple-choice and subjective questions; False when a test has others only.",
        optional(u"lMaxQuestions", 0).is(u"how many questions a test may keep; 0 or less for no limit")),
    method<&Merge::Merge>(
        u"Merge",
        u"Merges the first test with `TemplateIn` into `TemplateOut` and `WENKTD`; True when it ran to its end."),
    property<&Merge::Verbose>(
        u"Verbose", u"Whether warnings and refusals are shown, but for those of `ValidTestVersions`; True at first."),
    method<&Merge::ValidTestVersions>(
        u"ValidTestVersions",
        u"Whether all tests hold the questions of the first one, with as many answers and the same correct ones."),
    property<&Merge::SequenceQuestion>(
        u"SequenceQuestion",
        u"The field with the version identifier, from 1; `Merge` lowers it by each field before that it stops grading."),
    method<&Merge::SetError>(
        u"SetError",
        u"Stores the object that receives all failures on this thread, or none; gives whether there is one.",
        by_reference(u"oErr").is(u"its method `RaiseError` is called; an empty reference for none")),
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
constexpr Enumerator enumerator(StringView line) {
  if (!is_sentence(line)) throw "an enumerator that does not say what it stands for";
  return {value_name<value>, value, line};
}

constexpr Enumerator source_types[] = {
    enumerator<HEDROTestSourceTypeUnknown>(u"Not known, as after `Clear`."),
    enumerator<HEDROTestSourceTypeExamView>(u"An ExamView file, and a new test."),
    enumerator<HEDROTestSourceTypeKTD>(u"A data document."),
    enumerator<HEDROTestSourceTypeNGT>(u"For a host to write; the library never does."),
};
constexpr Enumerator import_objectives[] = {
    enumerator<HEDROTestImportObjectivesNone>(u"No objectives."),
    enumerator<HEDROTestImportObjectivesLearning>(u"The learning objectives."),
    enumerator<HEDROTestImportObjectivesLocal>(u"The local standards."),
    enumerator<HEDROTestImportObjectivesState>(u"The objectives of the state that `StateAbbreviation` names."),
    enumerator<HEDROTestImportObjectivesNational>(u"The national standards."),
};
constexpr Enumerator question_types[] = {
    enumerator<HEDROTestQuestionTypeUnknown>(u"Not known, and every other code."),
    enumerator<HEDROTestQuestionTypeTrueFalse>(u"True/false; code tf or 0."),
    enumerator<HEDROTestQuestionTypeYesNo>(u"Yes/no; code yn or 5."),
    enumerator<HEDROTestQuestionTypeMultipleChoice>(u"Multiple choice; code mc, mr, 2 or 3."),
    enumerator<HEDROTestQuestionTypeModifiedTrueFalse>(u"Modified true/false; code mtf or 1."),
    enumerator<HEDROTestQuestionTypeNumericResponse>(u"Numeric response; code nr or 6."),
    enumerator<HEDROTestQuestionTypeCompletion>(u"Completion; code co or 7."),
    enumerator<HEDROTestQuestionTypeMatching>(u"Matching; code ma or 8."),
    enumerator<HEDROTestQuestionTypeShortAnswer>(u"Short answer; code sa or 9."),
    enumerator<HEDROTestQuestionTypeProblem>(u"Problem; code pr or 10."),
    enumerator<HEDROTestQuestionTypeEssay>(u"Essay; code es or 11."),
    enumerator<HEDROTestQuestionTypeCase>(u"Case; code ca or 12."),
    enumerator<HEDROTestQuestionTypeSubjective>(u"Subjective; no code."),
    enumerator<HEDROTestQuestionTypeOther>(u"Other; code ot or 13."),
    enumerator<HEDROTestQuestionTypeBimodal>(u"Bimodal; code bi or 4."),
};

constexpr EnumerationTable enumerations[] = {
    {type_name<HEDROTestSourceType>, source_types, u"Where a test came from."},
    {type_name<HEDROTestImportObjectives>, import_objectives,
     u"Which objectives an import of an ExamView file takes over; they may be added up.", true},
    {type_name<HEDROTestQuestionType>, question_types,
     u"The type of a question, with the codes that `clsHEDROTest.QuestionType` takes."},
};

}  // namespace

std::span<const ClassTable> library_classes() noexcept { return classes; }
std::span<const EnumerationTable> library_enumerations() noexcept { return enumerations; }

}  // namespace hedro34
