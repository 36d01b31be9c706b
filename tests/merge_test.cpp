// Merges of small tests and forms: what is written, what is refused, and what a refusal or a failure leaves.
#include <gtest/gtest.h>

#include <limits>
#include <utility>

#include "hedro34/platform/files.h"
#include "tests/merge_support.h"

namespace hedro34::testing {
namespace {

const std::string not_set = reported(91, "clsHEDRO.Merge");
const std::string subscript = reported(9, "clsHEDRO.Merge");
const std::string invalid_merge =
    "box 48 \"Invalid Merge\": An error occurred merging the test with the specified template. ";
const std::string too_many_graded =
    invalid_merge + "The test contains more graded questions than the specified template. Operation aborted.";
const Asked q1{u"q1"}, q2{u"q2"}, s{u"s", subjective, 0, {}};

TEST(MergeRefusal, OfPreconditionsTouchesNothing) {
  const auto box = [](const std::string& title, const std::string& text) {
    return "box 48 \"" + title + "\": An error occurred merging the specified template and test. " + text +
           " Operation aborted.";
  };
  const std::string no_fields = box("Invalid Template", "The template does not contain any questions.");
  struct Row {
    const char* form;
    std::vector<Asked> questions;
    bool test, form_in;
    std::string box;
  };
  const Row rows[] = {
      {"Q1:*AB", {}, false, false, box("Invalid test", "The test is invalid.")},
      {"Q1:*AB", {}, true, false, box("Invalid Template", "The template is invalid.")},
      {"", {}, true, true, no_fields},
      {"Q1: Q2:", {q1}, true, true, no_fields},
      {"V:AB", {}, true, true, box("Invalid test", "The test does not contain any questions.")},
      {"V:AB Q1:*ABCD", {q1, s, q2}, true, true, too_many_graded},
      {"Q1#7:*ABCD Q2#7:*ABCD", {q1, q2}, true, true, too_many_graded},  // the second is a continuation
  };
  for (const bool verbose : {true, false}) {
    for (const Row& row : rows) {
      SCOPED_TRACE(row.box);
      Merging m(row.form, {test_of(row.questions)});
      EXPECT_EQ(std::exchange(m.merge->SequenceQuestion, 5), 0);
      m.merge->Verbose = verbose;
      if (!row.test) m.merge->Tests->RemoveAll();
      if (!row.form_in) m.merge->TemplateIn = nullptr;
      EXPECT_FALSE(m.merge->Merge());
      EXPECT_EQ(m.recorder.take(), verbose ? Lines{row.box} : Lines());
      EXPECT_TRUE(m.merge->TemplateOut == m.old_form);
      EXPECT_EQ(lines_of(*m.old_form).size(), 1U);
      EXPECT_EQ(lines_of(m.document()), (Lines{R"({"objectives":["old"]})", "{}"}));
      EXPECT_EQ(m.merge->SequenceQuestion, 5);
    }
  }
}

// A graded continuation counts for the walk from the end but not for the template's count.
TEST(MergeRefusal, OfADifferentNumberKeepsWhatWasUngraded) {
  Merging m("V:AB Q1:*ABCD Q2#7:*ABCD,*ABCD | Q2#7:*AB", {test_of({q1, {u"q2", mc, 4, {1}, {u"Area"}}})});
  m.merge->SequenceQuestion = 3;
  EXPECT_FALSE(m.merge->Merge());
  EXPECT_EQ(m.recorder.lines, Lines{invalid_merge + "The test contains a different number of graded questions than the "
                                                    "specified template. Operation aborted."});
  const std::string choices = R"("choiceLabels":["A","B"],"choiceValues":["1","2"]})";
  EXPECT_EQ(m.changes(), (Lines{R"(-2 {"name":"Q2","groupNumber":7} {"graded":true,)" + choices,
                                R"(+2 {"name":"Q2","groupNumber":7} {)" + choices}));
  EXPECT_EQ(lines_of(m.document()), (Lines{R"({"documentKind":1,"pageCount":2,"objectives":["","Area"]})", "{}"}));
  EXPECT_EQ(m.merge->SequenceQuestion, 2);  // the continuation's field has the number of the group's first one, 3
}

TEST(MergeRefusal, OfTooManyAnswersNamesTheFirstSuchField) {
  const std::string box =
      invalid_merge +
      "One or more questions from the test contains more possible answers than are present in the specified template. "
      "Operation aborted.\r\n\r\n\tTemplate Field: Second\r\n\tTest Question ID: q 2";
  for (const bool choices : {true, false}) {
    Merging m(choices ? "Q1:*ABCD Second:*ABC Q3:*AB" : "Q1:*ABCD Second:*- Q3:*AB", {test_of({q1, {u"q 2"}, q2})});
    region_of(*m.form, 0, 1).questions().all().at(0)->SetName(u"field's own name");
    region_of(*m.form, 0, 1).SetResponseKind(choices ? 1 : 3);
    EXPECT_FALSE(m.merge->Merge());
    EXPECT_EQ(m.recorder.lines, Lines{box});
    EXPECT_EQ(m.of_questions("name"), R"(["Q1"])");
    EXPECT_EQ(m.changes().size(), 2U);
  }
}

TEST(Merge, VisitsOneRegionOfAGroup) {
  struct Row {
    const char *form, *visited;
    std::size_t questions, rewritten;
  };
  for (const Row& row : {Row{"A#7:*AB B#7:*AB C:*AB", R"(["A","C"])", 2, 2}, Row{"A:*AB B:*AB", R"(["A","B"])", 2, 2},
                         Row{"A#7:*AB B#8:*AB C#7:*AB", R"(["A","B","C"])", 3, 3},
                         Row{"A#7:*AB | B#7:*AB C#7:*AB D#-7:*AB", R"(["A","D"])", 2, 2},
                         Row{"A#7:*AB,*AB B#7:*AB,*AB,*AB C:*AB", R"(["A","A","C"])", 3, 2},
                         Row{"A#7: B#7:*AB | C#8:*AB", R"(["C"])", 1, 1}, Row{"A#1:*AB B#1:*AB", R"(["A"])", 1, 1}}) {
    SCOPED_TRACE(row.form);
    Merging m(row.form, {test_of(std::vector<Asked>(row.questions, Asked{u"", mc, 2}))});
    EXPECT_TRUE(m.merge->Merge());
    EXPECT_EQ(m.of_questions("name"), row.visited);
    EXPECT_EQ(m.changes().size(), 2 * row.rewritten);
  }
}

void add_sequences(clsHEDROTest& test, int count) {
  for (int i = 0; i < count; ++i) test.Sequences->Add(make<clsHEDROTestSequence>());
}

TEST(Merge, TakesTheScaleOfTheQuestionOrOfTheTest) {
  const char* const fitted = R"([["A","B","C"],["T","F"],["A","B"],["F","G","H",""],["Y","N"],[]])";
  const char* const whole = R"([["A","B","C","D","E"],["T","F"],["A","B","C","D","E"],["F","G","H"],["Y","N"],[]])";
  for (const int sequences : {0, 1, 2}) {
    const auto test =
        test_of({{u"1", mc, 3}, {u"2", tf, 2}, {u"3", mc, 2}, {u"4", mc, 4}, {u"5", yn, 2}, {u"6", essay, 0}});
    test->MultipleChoiceOddScale = strings_of(u"ABCDE");
    test->MultipleChoiceEvenScale = strings_of(u"FGH");
    add_sequences(*test, sequences);
    Merging m("Q1:*12345 Q2:*12345 Q3:*12345 Q4:*12345 Q5:*12345 Q6:*12345", {test});
    EXPECT_TRUE(m.merge->Merge());
    EXPECT_EQ(m.of_questions("choiceLabels"), sequences > 1 ? whole : fitted);
  }
}

TEST(Merge, FailsAtAScaleLongerThanTheListsOfTheField) {
  const auto test = test_of({{u"q1", tf, 2}, {u"q2", tf, 2}, {u"q3", mc, 2}});
  add_sequences(*test, 2);
  test->MultipleChoiceOddScale = strings_of(u"VWXYZ");
  Merging m("Q1:*AB Q2:*AB Q3:*ABC", {test});
  EXPECT_FALSE(m.merge->Merge());
  EXPECT_EQ(m.recorder.lines, Lines{subscript});
  EXPECT_EQ(lines_of(m.form_out()).back(),
            R"(1 {"name":"Q3"} {"graded":true,"choiceLabels":["V","W","X"],"choiceValues":["1","2","3"]})");
  EXPECT_EQ(m.of_questions("name"), R"(["Q1","Q2"])");
}

TEST(Merge, UngradesTheLastFieldsBeyondTheTest) {
  // Graded: fields 1, 2, 4 on page 1, 5 and 7 on page 2. Two stay graded; 7, 5 and 4 go, in this order.
  using Numbers = std::pair<std::int32_t, std::int32_t>;
  for (const auto& [before, after] :
       {Numbers{-1, -1}, Numbers{3, 3}, Numbers{4, 3}, Numbers{5, 3}, Numbers{6, 4}, Numbers{7, 4}, Numbers{8, 5}}) {
    SCOPED_TRACE(before);
    Merging m("Q1:*AB Q2:*AB N:AB Q3:*AB | Q4:*AB V:AB Q5:*AB", {test_of({{u"1", tf, 2}, {u"2", tf, 2}})});
    m.merge->SequenceQuestion = before;
    EXPECT_TRUE(m.merge->Merge());
    EXPECT_EQ(m.merge->SequenceQuestion, after);
    EXPECT_EQ(m.changes().size(), 10U);  // Q1 to Q5
    EXPECT_EQ(lines_of(m.form_out()).back(), R"(2 {"name":"Q5"} {"choiceLabels":["A","B"],"choiceValues":["1","2"]})");
    EXPECT_EQ(m.of_questions("graded"), "[true,true,false,false,false,false,false]");
  }
}

TEST(Merge, MayHaveSubjectiveQuestionsOnly) {
  Merging m("Q1:*AB | V:AB", {test_of({s, {u"s2", subjective, 3, {2}}, {u"s3", subjective}})});  // more than fields
  EXPECT_TRUE(m.merge->Merge());
  EXPECT_EQ(m.of_questions("name"), R"(["Q1","V","Subjective1","Subjective2","Subjective3"])");
  EXPECT_EQ(m.of_questions("graded"), "[false,false,false,false,false]");
  EXPECT_EQ(lines_of(m.form_out()).size(), 5U);
}

// Questions are paired by position: one that stands before the graded ones takes a field, and the last one a region.
TEST(Merge, DoesNotLookForSubjectiveQuestionsAmongTheGradedOnes) {
  Merging m("Q1:*ABC", {test_of({s, {u"q1", mc, 3}})});
  EXPECT_TRUE(m.merge->Merge());
  EXPECT_EQ(lines_of(m.form_out()),
            (Lines{R"(1 {"name":"Q1"} {"questionText":"? s","graded":true,)"
                   R"("choiceLabels":["","",""],"choiceValues":["1","2","3"]})",
                   R"(1 {"name":"Subjective1","regionKind":2,"responseKind":3,)"
                   R"("subjectiveRegion":true} {"correctPoints":0,"subjectiveQuestion":true})"}));
  EXPECT_EQ(m.of_questions("questionText"), R"(["? s","? q1"])");
  EXPECT_EQ(m.of_questions("answerKey"), R"([[""],[]])");
}

TEST(Merge, StartsAnewWhenItIsCalledAgain) {
  Merging m("Q1:*ABCD V:AB Q2:*ABCD", {test_of({{u"q1", mc, 4, {1}, {u"Area"}}, s})});
  m.merge->SequenceQuestion = 4;
  ASSERT_TRUE(m.merge->Merge());
  const Lines form = lines_of(m.form_out());
  const Lines document = lines_of(m.document());
  const Ref<TIBTemplate> first_out = m.merge->TemplateOut;

  ASSERT_TRUE(m.merge->Merge());
  EXPECT_EQ(m.merge->SequenceQuestion, 2) << "the change of the first merge stays";
  EXPECT_EQ(lines_of(m.form_out()), form);
  EXPECT_EQ(lines_of(m.document()), document);
  EXPECT_EQ(first_out->Pages()->Count(), 0) << "the former TemplateOut was not cleared";
}

// A subjective question with the ID of a graded one, and questions without ID, are in nobody's way.
TEST(Merge, FailsAtAnIdThatStandsTwiceAmongGradedQuestions) {
  const auto test = test_of({{u""}, {u""}, q1, q2, s});
  Merging m("Q1:*ABCD Q2:*ABCD Q3:*ABCD Q4:*ABCD", {test});
  test->Questions->Item(5)->ID = u"q1";
  EXPECT_TRUE(m.merge->Merge());
  test->Questions->Item(4)->ID = u"Q1";
  EXPECT_FALSE(m.merge->Merge());
  EXPECT_EQ(m.recorder.lines, Lines{reported(457, "clsHEDRO.Merge")});
  EXPECT_EQ(m.of_questions("name"), R"(["Q1","Q2","Q3"])");
}

// A host with one answer to every call of a member.
struct Insisting final : CallListener {
  Insisting(std::string_view name, Variant value) : member(name), answer(std::move(value)) {}
  void called(std::string_view, std::string_view name) override { asked = name == member; }
  void answers(Variant& value) override {
    if (asked) value = answer;
  }
  std::string_view member;
  Variant answer;
  bool asked = false;
};

TEST(Merge, SetsNoFlagForAnObjectiveThatTheHostDoesNotHave) {
  Insisting listener("Exists", true);
  ForwardingHost host(listener);
  Merging m("Q1:*ABCD", {test_of({{u"q1", mc, 4, {1}, {u"Area"}}})});
  EXPECT_TRUE(m.merge->Merge());
  EXPECT_EQ(m.of_questions("objectiveFlags"), "[[false]]");
}

TEST(Merge, FailsWhereNoNumberComesBeforeThatOfTheVersionField) {
  constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
  Insisting listener("FieldNumber", lowest);
  ForwardingHost host(listener);
  Merging m("Q1:*ABCD Q2:*ABCD", {test_of({q1})});
  m.merge->TemplateIn = host.wrap(m.merge->TemplateIn);
  m.merge->SequenceQuestion = lowest;
  EXPECT_FALSE(m.merge->Merge());
  EXPECT_EQ(m.recorder.lines, Lines{reported(6, "clsHEDRO.Merge")});
  EXPECT_EQ(m.merge->SequenceQuestion, lowest);
}

TEST(Merge, ReportsEmptyReferences) {
  void (*const rows[])(clsHEDRO&) = {
      [](clsHEDRO& merge) { merge.Tests = nullptr; },
      [](clsHEDRO& merge) { merge.TemplateOut = nullptr; },
      [](clsHEDRO& merge) { merge.WENKTD = nullptr; },
      [](clsHEDRO& merge) { merge.Tests->Item(1)->Questions->Item(1)->Answers = nullptr; },
  };
  for (const auto& empty : rows) {
    SCOPED_TRACE(&empty - rows);
    Merging m("Q1:*AB", {test_of({{u"q1", tf, 2}})});
    empty(*m.merge);
    m.merge->Verbose = false;  // which plays no part
    EXPECT_FALSE(m.merge->Merge());
    EXPECT_EQ(m.recorder.take(), Lines{not_set});
  }
}

// A host's template with names of its own, that counts one graded field, whatever it has.
class OddTemplate final : public ForwardingTemplate {
 public:
  OddTemplate(CallListener& listener, Ref<TIBTemplate> form, Variant names)
      : ForwardingTemplate(listener, std::move(form)), listener_(listener), names_(std::move(names)) {}

  std::int16_t GradedQuestionCount() override { return 1; }
  Variant QuestionNames(std::int16_t first, std::int16_t last, bool option1, const String& delimiter,
                        bool option2) override {
    EXPECT_EQ(std::tuple(first, last, option1, delimiter, option2),
              std::tuple(std::int16_t{1}, QuestionCount(), false, String(u"\t"), false));
    return names_;
  }
  Ref<TIBTemplate> Copy(bool option) override {
    EXPECT_TRUE(option);
    return make<OddTemplate>(listener_, target()->Copy(option), names_);
  }

 private:
  CallListener& listener_;
  Variant names_;
};

TEST(Merge, MeetsOddAnswersOfATemplate) {
  struct : CallListener {
    void called(std::string_view, std::string_view) override {}
  } quiet;
  const auto outcome = [&](const Variant& names) {
    Merging m("Q1:*ABCD Q2:*ABCD", {test_of({q1})});
    m.merge->TemplateIn = make<OddTemplate>(quiet, m.form, names);
    EXPECT_FALSE(m.merge->Merge());
    const bool old = lines_of(m.document()).front() == R"({"objectives":["old"]})";
    return m.recorder.lines.at(0) + ' ' + (old ? "before the document" : m.of_questions("name"));
  };
  EXPECT_EQ(outcome(Array<String>::of({u"a", u"b"}, -7)),
            not_set + R"( ["a"])");  // no question for the second
  EXPECT_EQ(outcome(Array<String>::of({u"a"}, 1)), subscript + R"( ["a"])");
  EXPECT_EQ(outcome(Array<String>()), subscript + " []");
  EXPECT_EQ(outcome(u"a\tb"), reported(13, "clsHEDRO.Merge") + " before the document");
}

// --- the worked case `subjective` of tests/whole, from its description to its files ---

Json read(const Json& name) { return Json::parse(read_file(source_path("tests/whole/" + name.text())).value()); }

String text_of(const Json& value) { return from_utf8(value.text()); }

Ref<clsHEDROTestQuestion> question_of(const Json& described) {
  auto question = make<clsHEDROTestQuestion>();
  question->ID = text_of(described["id"]);
  question->QuestionType = static_cast<HEDROTestQuestionType>(described["questionType"].integer());
  question->QuestionText = text_of(described["questionText"]);
  for (const auto& answer : described["answers"]) question->Answers->Add(text_of(answer));
  for (const auto& number : described["correctAnswers"])
    question->CorrectAnswers->Add(static_cast<std::int16_t>(number.integer()));
  question->CorrectAnd = described["correctAnd"].truth();
  question->CorrectPoints = static_cast<float>(described["correctPoints"].number());
  question->SubjectivePoints = static_cast<float>(described["subjectivePoints"].number());
  question->Difficulty = text_of(described["difficulty"]);
  question->Reference = text_of(described["reference"]);
  question->Topic = text_of(described["topic"]);
  question->Keywords = text_of(described["keywords"]);
  question->Miscellaneous = text_of(described["miscellaneous"]);
  question->Notes = text_of(described["notes"]);
  for (const auto& text : described["learningObjectives"])
    question->LearningObjectives->Add(text_of(text), text_of(text));
  return question;
}

TEST(Merge, OfTheWorkedCaseWithSubjectiveQuestions) {
  const Json described = read("subjective.json");
  const Json& expected = described["expected"];
  const auto test = test_of({}, text_of(described["version"]));
  test->MultipleChoiceOddScale->RemoveAll();
  test->MultipleChoiceEvenScale->RemoveAll();
  for (const auto& label : described["multipleChoiceOddScale"]) test->MultipleChoiceOddScale->Add(text_of(label));
  for (const auto& label : described["multipleChoiceEvenScale"]) test->MultipleChoiceEvenScale->Add(text_of(label));
  for (const auto& question : described["questions"]) test->Questions->Add(question_of(question));
  add_sequences(*test, static_cast<int>(described["sequences"].size()));  // no more than their number counts
  Merging m("", {test});
  ASSERT_TRUE(m.form->read(read(described["form"]).dump()));
  m.merge->SequenceQuestion = static_cast<std::int32_t>(described["sequenceQuestion"].integer());

  EXPECT_TRUE(m.merge->Merge());
  EXPECT_EQ(m.recorder.lines, Lines());
  EXPECT_EQ(m.merge->SequenceQuestion, expected["sequenceQuestion"].integer());
  const auto difference = [&](const Json& name, const std::string& found) {
    return Json::diff(read(name), Json::parse(found)).dump();
  };
  EXPECT_EQ(difference(expected["formOut"], m.form_out().to_json().value()), "[]");
  EXPECT_EQ(difference(expected["document"], m.document().to_json().value()), "[]");
  EXPECT_EQ(difference(described["form"], m.form->to_json().value()), "[]") << "the form that went in was changed";
}

}  // namespace
}  // namespace hedro34::testing
