// Deep copies of a test and of a question: what arrives, what does not, and that nothing is shared.
#include <gtest/gtest.h>

#include <functional>

#include "tests/test_lines.h"

namespace hedro34::testing {
namespace {

using namespace test_lines;

TEST(Copy, HoldsAllButTheIdAndTheImportSettingsAndSharesNothing) {
  Recorder recorder;
  const auto source = test_of({{u"q1", mc, 0, {3, 1}}, {u"q2", tf, 2, {2}}, {u"q3", mc, 1, {}}});
  source->Title = u"title";
  source->Version = u"version";
  source->ID = u"id";
  source->Description = u"description";
  source->Notes = u"notes\r\nof the test";
  source->CreatedBy = u"created by";
  source->TeacherID = u"teacher";
  source->Source = HEDROTestSourceTypeNGT;
  source->ImportObjectives = HEDROTestImportObjectivesNational;
  source->StateAbbreviation = u"WI";
  source->MultipleChoiceOddScale = strings_of(u"AB");
  source->MultipleChoiceOddScale->Add(u"C\t");
  source->MultipleChoiceEvenScale = strings_of(u"F\t");
  source->TrueFalseScale = strings_of(u"W\tL");
  source->YesNoScale->RemoveAll();
  source->YesNoScale->Add(u"");
  const auto question = source->Questions->Item(1);
  question->Answers->Add(u"one\t\tthree");
  question->LearningObjectives->Add(u"Area\tVolume");
  question->CorrectAnd = false;
  question->CorrectPoints = 2;
  question->IncorrectPoints = -0.5F;
  question->NoResponsePoints = 0.25F;
  question->SubjectivePoints = 8;
  question->Difficulty = u"hard";
  question->Reference = u"page";
  question->Topic = u"topic";
  question->Keywords = u"words";
  question->Miscellaneous = u"more";
  question->Notes = u"note";
  question->number_in_file = 7;
  source->add_left_out({LeftOut::What::Removed, 8, u"q8", mc, {}});
  add_sequence(*source, u"A", {u"q1", u"q2", u"q3"});
  add_sequence(*source, u"B", {u"q3", u"q1", u"q2"});
  add_sequence(*source, u"C", {u"q3", u"q2"});
  const Lines before = lines_of(*source);
  const auto copy = source->Copy();
  ASSERT_TRUE(copy);
  EXPECT_EQ(copy->Questions->Item(1)->number_in_file, 7);
  EXPECT_EQ(test_lines::left_out_of(*copy), "8 q8 multiple choice removed");
  // Lists pass through text, so tabs part their elements and an empty one alone is lost. Each sequence follows
  // the order of the questions: a shorter one has the first of these.
  EXPECT_EQ(lines_of(*copy),
            (Lines{R"({"title":"title","version":"version","description":"description","notes":"notes\r\nof the test",)"
                   R"("createdBy":"created by","teacherID":"teacher","source":2,"userDefined":true})",
                   R"([["A","B","C",""],["F","",""],["W","","","L"],[]])",
                   R"({"id":"q1","type":3,"text":"? q1","answers":["one","","three"],"correct":[3,1],"and":false,)"
                   R"("points":[2.0,-0.5,0.25],"subjectivePoints":8.0,"difficulty":"hard","reference":"page",)"
                   R"("topic":"topic","keywords":"words","miscellaneous":"more","notes":"note",)"
                   R"("objectives":["Area","Volume"]})",
                   R"({"id":"q2","type":1,"text":"? q2","answers":["answer","answer"],"correct":[2]})",
                   R"({"id":"q3","type":3,"text":"? q3","answers":["answer"]})", "sequence A: q1 q2 q3",
                   "sequence B: q1 q2 q3", "sequence C: q1 q2"}));
  EXPECT_EQ(copy->Questions->Item(u"Q3"), copy->Questions->Item(3));
  EXPECT_EQ(copy->Sequences->Item(u"b"), copy->Sequences->Item(2));

  for (const auto& scale :
       {copy->MultipleChoiceOddScale, copy->MultipleChoiceEvenScale, copy->TrueFalseScale, copy->YesNoScale}) {
    scale->Add(u"more");
  }
  for (std::int32_t i = 1; i <= copy->Questions->Count(); ++i) {
    const auto changed = copy->Questions->Item(i);
    changed->Answers->Add(u"more");
    changed->LearningObjectives->Add(u"more");
    changed->CorrectAnswers->Add(9);
    changed->QuestionText = u"changed";
  }
  for (std::int32_t i = 1; i <= copy->Sequences->Count(); ++i) {
    copy->Sequences->Item(i)->Order->Add(u"more");
    copy->Sequences->Item(i)->Answer = u"changed";
  }
  copy->Clear();
  EXPECT_EQ(lines_of(*source), before);
  EXPECT_EQ(recorder.lines, Lines());
}

TEST(Copy, LeavesOutWhatCannotBeCopied) {
  const std::string q1 = R"({"id":"q1","type":3,"text":"? q1","answers":["answer"],"correct":[1]})";
  const std::string q2 = R"({"id":"q2","type":3,"text":"? q2","answers":["answer"],"correct":[1]})";
  struct Row {
    std::function<void(clsHEDROTest&)> spoil;
    Lines reports;
    Lines copied;  // none: no copy
  };
  const Row rows[] = {
      {[](auto& test) { test.Questions->Item(1)->Answers = nullptr; },
       {reported(91, "clsHEDROTestQuestion.Copy"), reported(91, "clsHEDROTestQuestions.Add")},
       {q2, "sequence A: ? q2"}},  // the order is made of the source's questions
      {[](auto& test) {
         add_sequence(test, u"B", {u"q1", u"q2", u"q3"});
       },
       {reported(91, "clsHEDROTestSequence.Copy"), reported(91, "clsHEDROTestSequences.Add")},
       {q1, q2, "sequence A: q1 q2"}},
      {[](auto& test) { test.Questions->Item(2)->ID = u"Q1"; },
       {reported(457, "clsHEDROTestQuestions.Add"), reported(457, "clsHEDROTestSequenceOrder.Add")},
       {q1, "sequence A: q1"}},
      {[](auto& test) { test.YesNoScale = nullptr; }, {reported(91, "clsHEDROTest.Copy")}, {}},
  };
  for (const Row& row : rows) {
    Recorder recorder;
    const auto source = test_of({{u"q1", mc, 1}, {u"q2", mc, 1}});
    add_sequence(*source, u"A", {u"q1", u"q2"});
    row.spoil(*source);
    const auto copy = source->Copy();
    EXPECT_EQ(recorder.take(), row.reports);
    const Lines lines = copy ? lines_of(*copy) : Lines(2);
    EXPECT_EQ(Lines(lines.begin() + 2, lines.end()), row.copied);
    EXPECT_EQ(copy == nullptr, row.copied.empty());
  }
}

}  // namespace
}  // namespace hedro34::testing
