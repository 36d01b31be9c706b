// `RemoveInvalid`: which questions go, what the user is told, and the sequences afterwards.
#include <gtest/gtest.h>

#include "tests/test_lines.h"

namespace hedro34::testing {
namespace {

const std::string supported =
    "\r\n\r\nSupported Question Types: Multiple Choice, True/False, Yes/No\r\n\r\n"
    "\tNote: Modified True/False questions are NOT supported.\r\n\r\n";

std::string counts(int total, int removed, int remaining) {
  return "Total Questions: " + std::to_string(total) + "\r\nRemoved Questions: " + std::to_string(removed) +
         "\r\nRemaining Questions: " + std::to_string(remaining) + '\n';
}

std::string some_unsupported(const std::string& numbers, int total, int removed, int remaining) {
  return "box 48 \"Invalid Question Type(s)\": Warning: The file contains one or more question types that are not "
         "supported. The unsupported question types were removed." +
         supported + "Unsupported Question Number(s): " + numbers + "\r\n\r\n" + counts(total, removed, remaining);
}

std::string none_supported(int total) {
  return "box 16 \"No Supported Questions\": An error occurred importing the test. The file does not contain any "
         "supported questions." +
         supported + counts(total, total, 0);
}

std::string too_many(int limit, int total, int removed, int remaining) {
  return "box 48 \"Maximum Number of Questions\": Warning: The file contains more questions than are supported. One or "
         "more questions were removed.\r\n\r\nNumber of Supported Questions: " +
         std::to_string(limit) + "\r\n\r\n" + counts(total, removed, remaining);
}

std::string all_of(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + '\n';
  return text;
}

// A test with a question for each letter, "a" for the type 0 and so on, "`" for -1; letter and position are its ID.
Ref<clsHEDROTest> test_of_types(const std::string& letters) {
  auto test = test_of({}, u"version");
  for (std::size_t i = 0; i < letters.size(); ++i) {
    auto question = make<clsHEDROTestQuestion>();
    question->ID = from_utf8(letters[i] + std::to_string(i + 1));
    question->QuestionType = static_cast<HEDROTestQuestionType>(letters[i] - 'a');
    question->number_in_file = static_cast<std::int32_t>(i + 1);
    test->Questions->Add(question);
  }
  test->Sequences->AddDefault(test->Questions, u"old");
  return test;
}

// The sequences of all tests, each with its label and the IDs, "?" for a question that is gone.
std::string shown(const clsHEDROTests& tests) {
  std::string text;
  for (std::int32_t n = 1; n <= tests.Count(); ++n) {
    const Ref<clsHEDROTest> test = tests.Item(n);
    for (std::int32_t i = 1; i <= test->Sequences->Count(); ++i) {
      text += test_lines::line_of(*test->Sequences->Item(i), *test->Questions).substr(9) + "; ";
    }
  }
  return text;
}

struct Row {
  const char* tests;
  std::int32_t limit;
  bool result;
  std::string boxes;
  const char* shown;
  const char* removed;  // the IDs, in the order of the notes
};

// The IDs of the removed questions of all tests.
std::string removed(const clsHEDROTests& tests) {
  std::string text;
  for (std::int32_t n = 1; n <= tests.Count(); ++n) {
    for (const LeftOut& lost : tests.Item(n)->left_out()) {
      EXPECT_EQ(to_utf8(lost.id), static_cast<char>('a' + lost.type) + std::to_string(lost.number));
      text += to_utf8(lost.id) + ' ';
    }
  }
  return text;
}

const Row rows[] = {
    {"", 0, true, "", "", ""},
    {",k", 0, false, none_supported(1), "old:; old: ?; ", "k1 "},
    {"kdk", 0, true, some_unsupported("1, 3", 3, 2, 1), "version: d2; ", "k1 k3 "},
    {"`abcdefghijklmnop", 0, true, some_unsupported("1, 2, 6, 7, 8, 9, 10, 11, 12, 13, 15, 16, 17", 17, 13, 4),
     "version: b3 c4 d5 m14; ", "`1 a2 e6 f7 g8 h9 i10 j11 k12 l13 n15 o16 p17 "},
    {"ddbb", 4, true, "", "old: d1 d2 b3 b4; ", ""},
    {"mddm", 1, true, too_many(1, 4, 3, 1), "version: m1; ", "d2 d3 m4 "},
    {"mdd", 2, true, too_many(2, 3, 1, 2), "version: m1 d2; ", "d3 "},
    {"dd", -1, true, "", "old: d1 d2; ", ""},
    {"kddkd", 3, true, some_unsupported("1, 4", 5, 2, 3), "version: d2 d3 d5; ", "k1 k4 "},
    {"kddkd", 2, true, some_unsupported("1, 4", 5, 2, 3) + too_many(2, 3, 1, 2), "version: d2 d3; ", "k1 k4 d5 "},
    // Several tests: each has its own report, and the first one without a supported question ends it.
    {"kd,dbk,d", 1, true, some_unsupported("1", 2, 1, 1) + some_unsupported("3", 3, 1, 2) + too_many(1, 2, 1, 1),
     "version: d2; version: d1; old: d1; ", "k1 k3 b2 "},
    {"kd,kk,kd", 0, false, some_unsupported("1", 2, 1, 1) + none_supported(2), "version: d2; old: ? ?; old: k1 d2; ",
     "k1 k1 k2 "},
};

TEST(RemoveInvalid, RemovesTellsAndRebuildsTheSequences) {
  for (const bool verbose : {true, false}) {
    for (const Row& row : rows) {
      SCOPED_TRACE(row.tests + std::string(" with limit ") + std::to_string(row.limit));
      Recorder recorder;
      const auto merge = make<clsHEDRO>();
      if (!verbose) merge->Verbose = false;
      std::istringstream tests(row.tests);
      for (std::string letters; std::getline(tests, letters, ',');) merge->Tests->Add(test_of_types(letters));
      EXPECT_EQ(row.limit == 0 ? merge->RemoveInvalid() : merge->RemoveInvalid(row.limit), row.result);
      EXPECT_EQ(all_of(recorder.take()), verbose ? row.boxes : "");
      EXPECT_EQ(shown(*merge->Tests), row.shown);
      EXPECT_EQ(removed(*merge->Tests), row.removed);
    }
  }
}

// A question that cannot be removed stays, and is counted all the same; a test without questions ends it.
TEST(RemoveInvalid, ReportsFailuresOfTheModel) {
  Recorder recorder;
  const auto merge = make<clsHEDRO>();
  for (const char* letters : {"mkk", "kd"}) merge->Tests->Add(test_of_types(letters));
  merge->Tests->Item(1)->Questions->Item(2)->LearningObjectives = nullptr;
  merge->Tests->Item(2)->Questions = nullptr;
  EXPECT_FALSE(merge->RemoveInvalid());
  EXPECT_EQ(all_of(recorder.lines), reported(91, "clsHEDROTestQuestions.Remove\n") + some_unsupported("2, 3", 3, 2, 2) +
                                        reported(91, "clsHEDRO.RemoveInvalid\n"));
  merge->Tests->Remove(2);
  EXPECT_EQ(shown(*merge->Tests), "version: m1 k2; ");
  EXPECT_EQ(removed(*merge->Tests), "k3 ");
}

// Whoever holds a question that goes, or one of its lists, finds objectives and answers empty.
TEST(RemoveInvalid, EmptiesWhatOthersHoldOfAQuestion) {
  const auto merge = make<clsHEDRO>();
  merge->Verbose = false;
  merge->Tests->Add(test_of_types("kkkd"));
  const Ref<clsHEDROTestQuestions> questions = merge->Tests->Item(1)->Questions;
  for (std::int32_t i = 1; i <= 4; ++i) {
    questions->Item(i)->Answers->Add(u"an answer");
    questions->Item(i)->LearningObjectives->Add(u"an objective");
    questions->Item(i)->CorrectAnswers->Add(1);
  }
  const Ref<clsHEDROTestQuestion> question = questions->Item(1);
  const Ref<clsHEDROTestStrings> answers = questions->Item(2)->Answers;
  const Ref<clsHEDROTestStrings> objectives = questions->Item(3)->LearningObjectives;
  const Ref<clsHEDROTestCorrect> correct = questions->Item(3)->CorrectAnswers;
  EXPECT_TRUE(merge->RemoveInvalid());
  questions->RemoveAll();
  EXPECT_EQ(question->Answers->Count() + question->LearningObjectives->Count() + answers->Count() + objectives->Count(),
            0);
  EXPECT_EQ(question->CorrectAnswers->Count() + correct->Count(), 2);
  EXPECT_TRUE(answers->Add(u"another answer") && objectives->Add(u"another objective"));
}

// The tests are counted once, at the start.
TEST(RemoveInvalid, StopsAtATestThatAMessageBoxTookAway) {
  struct Emptying : Recorder {
    std::int32_t Show(StringView text, std::int32_t flags, StringView title) override {
      tests->RemoveAll();
      return Recorder::Show(text, flags, title);
    }
    Ref<clsHEDROTests> tests;
  } recorder;
  const auto merge = make<clsHEDRO>();
  for (int i = 0; i < 3; ++i) merge->Tests->Add(test_of_types("kd"));
  recorder.tests = merge->Tests;
  EXPECT_TRUE(merge->RemoveInvalid());
  EXPECT_EQ(
      all_of(recorder.lines),
      some_unsupported("1", 2, 1, 1) +
          "box 48 \"Invalid File\": An error occurred while removing invalid question types from the file. The file "
          "is invalid. Operation aborted.\n");
}

}  // namespace
}  // namespace hedro34::testing
