// The records of the test model with their sequences and answer keys, and what memory that runs out leaves of them.
#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <random>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "hedro34/model/basPublic.h"
#include "tests/failing_allocation.h"
#include "tests/model_support.h"
#include "tests/test_lines.h"

namespace hedro34 {
namespace {

using testing::Lines;
using testing::Recorder;
using testing::reported;
using namespace testing::model;
using testing::test_lines::lines_of;
using testing::test_lines::new_scales;
using namespace std::string_view_literals;

constexpr std::int32_t int32_max = std::numeric_limits<std::int32_t>::max();

// --- correct answers

TEST(Correct, TheSetAsOneValue) {
  const std::string all = "31: 1|2|3|4|5|6|7|8|9|10|11|12|13|14|15|16|17|18|19|20|21|22|23|24|25|26|27|28|29|30|31";
  const std::pair<std::int32_t, std::string> rows[] = {{0, "0:"},        {5, "2: 1|3"}, {1 << 30, "1: 31"},
                                                       {int32_max, all}, {-1, all},     {-2147483646, "1: 2"}};
  Recorder recorder;
  for (const auto& [value, numbers] : rows) {
    const auto set = correct({7, 2});
    set->ConvertBitWiseRepresentation(value);
    EXPECT_EQ(dump(set), numbers);
    EXPECT_EQ(set->GetBitWiseRepresentation(), value & int32_max);
  }
  EXPECT_EQ(recorder.take(), Lines());
  EXPECT_EQ(correct({3, 1, 32, 2})->GetBitWiseRepresentation(), 5) << "the sum so far";
  EXPECT_EQ(recorder.take(), Lines{reported(6, "clsHEDROTestCorrect.GetBitWiseRepresentation")});
}

TEST(Correct, TellsPositionsFromAnswers) {
  const auto set = correct({3, -2});
  const auto copy = set->Copy();
  EXPECT_FALSE(copy->Remove(3));
  EXPECT_TRUE(copy->Remove(u"3"));
  EXPECT_EQ(dump(copy), "1: -2");
  EXPECT_EQ(dump(set), "2: 3|-2");
}

// --- sequences

TEST(Sequences, TheDefaultFollowsTheQuestions) {
  Recorder recorder;
  const auto list = questions({u"q3", u"q1", u"q2"});
  const auto sequences = make<clsHEDROTestSequences>();
  EXPECT_FALSE(sequences->AddDefault(nullptr));
  EXPECT_EQ(recorder.take(), Lines{reported(91, "clsHEDROTestSequences.AddDefault")});
  EXPECT_TRUE(sequences->AddDefault(list));
  EXPECT_FALSE(sequences->AddDefault(list, u"B"));
  EXPECT_EQ(dump(sequences), "1: A");
  EXPECT_EQ(sequences->Item(u"a")->Order->Item(u"Q2"), 3);
  EXPECT_EQ(recorder.take(), Lines());

  sequences->RemoveAll();
  list->Item(2)->ID = u"Q3";  // what `Add` would not have taken
  EXPECT_TRUE(sequences->AddDefault(list, String(60, u'v')));
  EXPECT_EQ(sequences->Item(String(50, u'v'))->Order->Item(u"q2"), 2);
  EXPECT_EQ(recorder.take().size(), 1U);
}

TEST(Sequences, AnOrderKeepsThePlacesOfTheFirstDayAndACopyTakesNewOnes) {
  Recorder recorder;
  const auto version = sequence(u"B", {u"q3", u"q1", u"q2"});
  EXPECT_EQ(version->Order->AsString(u", "), u"1, 2, 3"sv);
  version->Order->Remove(1);
  EXPECT_EQ(version->Order->Item(1), 2);
  version->Order->Add(u"q4");
  version->Order->Add(u"");  // without ID: by position only
  EXPECT_EQ(dump(version->Order->AsArray(0)), "0 to 3: 2 3 3 4");
  EXPECT_EQ(version->Order->AsString(), u"2\t3\t3\t4"sv);
  const auto copy = version->Copy(questions({u"q1", u"q2", u"q3", u""}));
  EXPECT_EQ(recorder.take(), Lines{reported(457, "clsHEDROTestSequenceOrder.Add")});
  EXPECT_EQ(copy->Answer, u"B"sv);
  EXPECT_EQ(dump(copy->Order), "3: 1|2|3");
  EXPECT_EQ(copy->Order->Item(u"q3"), 2);
  EXPECT_FALSE(version->Copy(questions({u"q1", u"q2"}))) << "a place without a question";
  EXPECT_EQ(recorder.take(), Lines{reported(91, "clsHEDROTestSequence.Copy")});
  version->Order->RemoveAll();
  EXPECT_EQ(dump(version->Order->AsArray()), "no bounds");
  const auto one = make<clsHEDROTestStrings>();
  one->Add(u"a");
  EXPECT_EQ(dump(one->AsArray(-int32_max - 1)), "-2147483648 to -2147483648: a");
}

// --- records

TEST(Question, PermitsMultiplesWhenAllOfSeveralAnswersCount) {
  const auto one = make<clsHEDROTestQuestion>();
  one->CorrectAnswers->Add(4);
  EXPECT_FALSE(one->MultiplesPermitted());
  one->CorrectAnswers->Add(2);
  EXPECT_TRUE(one->MultiplesPermitted());
  one->CorrectAnd = false;
  EXPECT_FALSE(one->MultiplesPermitted());
}

TEST(Records, TextsKeepWhatTheirFieldHoldsOf) {
  const String text(300, u'x');
  clsHEDROTest test;
  clsHEDROTestQuestion question;
  clsHEDROTestSequence sequence;
  const auto kept = [&](auto& field) {
    field = StringView(text);
    return field.str().size();
  };
  EXPECT_EQ((std::vector{kept(test.Title), kept(test.Version), kept(test.Notes), kept(test.CreatedBy),
                         kept(test.TeacherID), kept(test.ID), kept(test.StateAbbreviation), kept(test.Description)}),
            (std::vector<std::size_t>{255, 50, 300, 255, 255, 50, 2, 255}));
  EXPECT_EQ((std::vector{kept(question.QuestionText), kept(question.Difficulty), kept(question.Reference),
                         kept(question.Topic), kept(question.Keywords), kept(question.Miscellaneous),
                         kept(question.Notes), kept(question.ID), kept(sequence.Answer)}),
            (std::vector<std::size_t>{300, 255, 300, 255, 255, 255, 300, 50, 50}));
}

TEST(Test, AFreshOneAndAClearedOne) {
  Recorder recorder;
  clsHEDROTest test;
  EXPECT_EQ(lines_of(test), (Lines{"{}", new_scales}));
  test.Questions = questions({u"1", u"2", u"3"});
  test.Questions->Item(1)->LearningObjectives->AddDelimitedString(u"a\tb");
  test.Questions->Item(3)->LearningObjectives->Add(u"a");
  EXPECT_EQ(test.NumObjectives(), 3);
  test.Sequences->Add(sequence(u"A"));
  test.Title = test.Version = test.Notes = test.CreatedBy = test.TeacherID = test.ID = test.Description = u"x";
  test.UserDefined = true;
  test.ImportObjectives = HEDROTestImportObjectivesNational;
  test.StateAbbreviation = u"CA";
  test.YesNoScale->RemoveAll();
  test.Clear();
  EXPECT_EQ(lines_of(test), (Lines{R"({"source":-1,"importObjectives":8,"state":"CA"})",
                                   R"([["A","B","C","D"],["A","B","C","D"],["T","F"],[]])"}));
  EXPECT_EQ(recorder.take(), Lines());

  test.Title = u"x";
  test.Questions = nullptr;
  test.Clear();
  EXPECT_EQ(test.Title, u"x"sv);
  EXPECT_EQ(test.NumObjectives(), 0);
  EXPECT_EQ(recorder.take(), (Lines{reported(91, "clsHEDROTest.Clear"), reported(91, "clsHEDROTest.NumObjectives")}));
}

TEST(Test, CodesOfQuestionTypes) {
  const std::tuple<std::int32_t, const char16_t*, std::vector<Variant>> rows[] = {
      {1, u"true/false", {u"tf", 0, false, Variant()}},
      {2, u"yes/no", {u"yn", 5}},
      {3, u"multiple choice", {u"mc", 2, u"mr", 3}},
      {4, u"modified true/false", {u"mtf", 1, u"mTf"}},
      {5, u"numeric response", {u"nr", 6}},
      {6, u"completion", {u"co", 7}},
      {7, u"matching", {u"ma", 8}},
      {8, u"short answer", {u"sa", 9}},
      {9, u"problem", {u"pr", 10}},
      {10, u"essay", {u"es", 11}},
      {11, u"case", {u"ca", 12}},
      {12, u"subjective", {}},
      {15, u"unknown type", {}},
      {13, u"other", {u"ot", 13}},
      {14, u"bimodal", {u"bi", 4, 4.0}},
      {-1, u"unknown type", {14, -1, 2.5, true, u"", u"mc ", u"2", u"mcx", std::int64_t{4294967298}}},
  };
  Recorder recorder;
  const clsHEDROTest test;
  for (const auto& [type, name, codes] : rows) {
    EXPECT_EQ(question_type_name(static_cast<HEDROTestQuestionType>(type)), name);
    for (const Variant& code : codes) EXPECT_EQ(test.QuestionType(code), type) << to_utf8(to_text(code));
  }
  EXPECT_EQ(recorder.take(), Lines());
  EXPECT_EQ(test.QuestionType(Null()), 0);
  EXPECT_EQ(recorder.take(), Lines{reported(13, "clsHEDROTest.QuestionType")});
}

// --- scales and answer keys

constexpr auto multiple_choice = HEDROTestQuestionTypeMultipleChoice;

Ref<clsHEDROTestQuestion> with_answers(StringView id, HEDROTestQuestionType type, int answers,
                                       const std::vector<std::int16_t>& correct_answers = {}) {
  auto result = question(id);
  result->QuestionType = type;
  for (int i = 0; i < answers; ++i) result->Answers->Add(u"an answer");
  for (const std::int16_t number : correct_answers) result->CorrectAnswers->Add(number);
  return result;
}

// A test with the scales A to D and W to Z, and six questions.
Ref<clsHEDROTest> six_questions() {
  auto test = make<clsHEDROTest>();
  test->MultipleChoiceEvenScale->RemoveAll();
  test->MultipleChoiceEvenScale->AddDelimitedString(u"W\tX\tY\tZ");
  const auto& list = test->Questions;
  list->Add(with_answers(u"tf", HEDROTestQuestionTypeTrueFalse, 3, {2}));
  list->Add(with_answers(u"even", multiple_choice, 3, {3, 1}));
  list->Add(with_answers(u"odd", multiple_choice, 6, {2}));
  list->Add(with_answers(u"yn", HEDROTestQuestionTypeYesNo, 0, {1, 2}));
  list->Add(with_answers(u"es", HEDROTestQuestionTypeEssay, 2, {1}));
  list->Add(with_answers(u"none", multiple_choice, 0));
  return test;
}

TEST(QuestionScale, ComesFromTypeAndPosition) {
  const std::tuple<Variant, Variant, const char*> rows[] = {
      {u"TF", missing, "2: T|F"},     {4, u"none", "2: Y|N"},       {5, Null(), "0:"},
      {u"Even", missing, "3: W|X|Y"}, {3, missing, "6: A|B|C|D||"}, {6, missing, "0:"},
      {2, u"tRUE", "3: A|B|C"},       {3, u"0", "6: W|X|Y|Z||"},    {2, std::int16_t{-1}, "3: A|B|C"},
  };
  Recorder recorder;
  const auto test = six_questions();
  for (const auto& [index, odd, scale] : rows) {
    EXPECT_EQ(dump(test->QuestionScale(index, odd)), scale) << to_utf8(to_text(index));
  }
  EXPECT_FALSE(test->QuestionScale(7, u"no Boolean"));
  test->QuestionScale(1)->RemoveAll();  // the caller's own
  EXPECT_EQ(dump(test->TrueFalseScale), "2: T|F");
  test->Questions->Item(3)->ID = u"even";  // a question takes the place of the first one with its ID
  EXPECT_EQ(dump(test->QuestionScale(u"odd")), "6: W|X|Y|Z||");
  EXPECT_EQ(recorder.take(), Lines());

  const std::string place = "clsHEDROTest.QuestionScale";
  for (const Variant& no_boolean : {Variant(), Variant(u"maybe"), Variant(Ref<Object>())}) {
    EXPECT_FALSE(test->QuestionScale(2, no_boolean));
    EXPECT_EQ(recorder.take().back(), reported(13, place));
  }
  test->MultipleChoiceEvenScale = nullptr;
  EXPECT_FALSE(test->QuestionScale(2));
  EXPECT_EQ(recorder.take(), Lines{reported(91, place)});
}

TEST(AnswerKey, AsText) {
  const std::tuple<HEDROTestQuestionType, std::vector<std::int16_t>, const char*> rows[] = {
      {multiple_choice, {3, 1}, "(C,A)| C; A| (CA)| (31)"},     {multiple_choice, {}, "| | | "},
      {multiple_choice, {9, 2, 0}, "(,B,)| ; B; | (B)| (920)"}, {multiple_choice, {9, -1}, "(,)| ; | | (9-1)"},
      {HEDROTestQuestionTypeTrueFalse, {2}, "F| F| F| 2"},      {HEDROTestQuestionTypeEssay, {1}, "| | | 1"},
  };
  Recorder recorder;
  for (const auto& [type, correct_answers, keys] : rows) {
    clsHEDROTest test;
    test.Questions->Add(with_answers(u"q", type, 6, correct_answers));
    EXPECT_EQ(to_utf8(test.CorrectAnswersAsString(u"Q") + u"| " + test.CorrectAnswersAsString(1, u"; ", false) + u"| " +
                      test.CorrectAnswersAsString(1, u"") + u"| " + test.CorrectAnswersAsString(1, u"", true, true)),
              keys);
  }
  EXPECT_EQ(recorder.take(), Lines());
}

TEST(AnswerKey, HasLabelsAsACopyOfTheScaleHasThem) {
  const std::string long_label(60, 'x');
  const std::tuple<std::vector<std::string>, std::string, std::string> rows[] = {
      {{"A\tB", "C"}, "3: A|B|C", "(A,B,C,)"},
      {{"\t"}, "3: ||", "(,,,)"},
      {{""}, "3: ||", "(,,,)"},
      {{"", "B"}, "3: |B|", "(,B,,)"},
      {{long_label, "B", "C", "D"},
       "3: " + long_label.substr(0, 50) + "|B|C",
       "(" + long_label.substr(0, 50) + ",B,C,)"},
  };
  Recorder recorder;
  for (const auto& [scale, labels, key] : rows) {
    clsHEDROTest test;
    test.MultipleChoiceOddScale->RemoveAll();
    for (const std::string& label : scale) {
      test.MultipleChoiceOddScale->Add(u"?");
      test.MultipleChoiceOddScale->SetItem(test.MultipleChoiceOddScale->Count(), from_utf8(label));
    }
    test.Questions->Add(with_answers(u"q", multiple_choice, 3, {1, 2, 3, 4}));
    EXPECT_EQ(dump(test.QuestionScale(1)), labels);
    EXPECT_EQ(to_utf8(test.CorrectAnswersAsString(1)), key);
  }
  EXPECT_EQ(recorder.take(), Lines());
}

TEST(AnswerKey, AsArray) {
  const std::string not_set = reported(91, "clsHEDROTest.");
  Recorder recorder;
  const auto test = six_questions();
  EXPECT_EQ(dump(test->CorrectAnswersAsArray(2)), "0 to 1: 3 1");
  EXPECT_EQ(dump(test->CorrectAnswersAsArray(u"even", true)), "0 to 1: Y W");
  EXPECT_EQ(dump(test->CorrectAnswersAsArray(5, true)), "0 to 0: ");
  EXPECT_EQ(dump(test->CorrectAnswersAsArray(7)) + to_utf8(test->CorrectAnswersAsString(7)), "no bounds");
  EXPECT_EQ(recorder.take(), Lines());

  test->MultipleChoiceEvenScale = nullptr;
  EXPECT_EQ(test->CorrectAnswersAsString(2, u",", true, true), u"(3,1)"sv) << "numbers need no scale";
  EXPECT_EQ(recorder.take(), Lines{not_set + "QuestionScale"});
  EXPECT_FALSE(test->CorrectAnswersAsArray(2, true).has_bounds());
  EXPECT_EQ(recorder.take(), (Lines{not_set + "QuestionScale", not_set + "CorrectAnswersAsArray"}));
  EXPECT_EQ(test->CorrectAnswersAsString(2), u""sv);
  EXPECT_EQ(recorder.take(), (Lines{not_set + "QuestionScale", not_set + "CorrectAnswersAsString"}));
}

TEST(CString, IsTheTextOfAVariantThatMayHoldNothing) {
  Recorder recorder;
  for (const Variant& nothing : {Variant(), Variant(Null()), missing}) EXPECT_EQ(CString(nothing), u""sv);
  EXPECT_EQ(CString(-0.5), u"-0.5"sv);
  EXPECT_EQ(recorder.take(), Lines());
  EXPECT_EQ(CString(Array<String>::of({u"a"})), u""sv);
  EXPECT_EQ(recorder.take(), Lines{reported(13, "basPublic.CString")});
}

// --- positions by ID

constexpr StringView ids[] = {u"", u"a", u"A", u"b", u"\u00E9", u"\u00C9", u"c", u"d", u"e", u"f"};

void expect_positions(const Ref<clsHEDROTestQuestions>& list, const std::string& when) {
  for (std::int32_t i = 1; i <= list->Count(); ++i) {
    std::int32_t first = 1;
    while (list->Item(first)->ID.str() != list->Item(i)->ID.str()) ++first;
    ASSERT_EQ(list->first_position(i), first) << i << when;
  }
  for (const StringView key : ids) {
    const Ref<clsHEDROTestQuestion> found = list->Item(key);
    const std::int32_t position = list->first_position(key);
    ASSERT_EQ(found ? found->ID.str() : String(), position == 0 ? String() : list->Item(position)->ID.str()) << when;
  }
  ASSERT_EQ(list->first_position(0) + list->first_position(list->Count() + 1), 0) << when;
}

// Questions that two collections hold, whose IDs change, are repeated and vanish; now and then a collection ends.
TEST(Questions, AreFoundByTheirPresentId) {
  std::mt19937 random(20);
  const auto below = [&](std::size_t n) { return static_cast<std::size_t>(random() % n); };
  for (int round = 0; round < 40; ++round) {
    Recorder recorder;  // keys that clash
    std::vector<Ref<clsHEDROTestQuestion>> pool(8);
    for (auto& one : pool) one = question(ids[below(std::size(ids))]);
    std::vector lists = {questions({}), questions({})};
    for (int step = 0; step < 120; ++step) {
      auto& list = lists[below(2)];
      auto& one = pool[below(pool.size())];
      switch (below(8)) {
        case 0: list->Remove(static_cast<std::int32_t>(below(9))); break;
        case 1: one->ID = one->ID; break;
        case 2: list->Add(one, 1); break;
        case 3:
        case 4: list->Add(one); break;
        default: one->ID = ids[below(std::size(ids))]; break;
      }
      if (below(50) == 0) list = make<clsHEDROTestQuestions>();
      if (below(50) == 0) one = question(ids[below(std::size(ids))]);  // the lists may hold the former one
      const std::string when = ", round " + std::to_string(round) + ", step " + std::to_string(step) + ": ";
      for (const auto& each : lists) ASSERT_NO_FATAL_FAILURE(expect_positions(each, when + dump(each)));
    }
    lists[below(2)] = nullptr;
    for (auto& one : pool) one->ID = u"late";
  }
}

// --- memory that runs out

TEST(Memory, EachOperationReportsAtItsOwnPlace) {
  struct State {
    Ref<clsHEDROTestStrings> strings = make<clsHEDROTestStrings>();
    Ref<clsHEDROTestCorrect> numbers = correct({1, 2, 3, 4, 5, 6, 7, 8, 9});
    Ref<clsHEDROTestSequenceOrder> order = sequence(u"A", {u"q1", u"q2"})->Order;
  };
  const auto prepare = [] {
    State state;
    for (const StringView text : {u"one text that needs memory"sv, u"two"sv}) state.strings->Add(text, text);
    return state;
  };
  const String long_text(60, u'x');
  const std::pair<const char*, std::function<void(State&)>> rows[] = {
      {"Strings.Item", [](State& s) { s.strings->Item(1); }},
      {"Strings.Item", [&](State& s) { s.strings->SetItem(2, long_text); }},
      {"Strings.AsString", [](State& s) { s.strings->AsString(); }},
      {"Strings.Copy", [](State& s) { s.strings->Copy(); }},
      {"Correct.ConvertBitWiseRepresentation", [](State& s) { s.numbers->ConvertBitWiseRepresentation(int32_max); }},
      {"SequenceOrder.AsArray", [](State& s) { s.order->AsArray(); }},
  };
  for (const auto& [place, act] : rows) {
    EXPECT_EQ(testing::fail_each_allocation(prepare, act, [](const State&) {}),
              std::set<std::string>{reported(7, std::string("clsHEDROTest") + place)});
  }
  // Inside of these others report, too.
  const std::pair<const char*, std::function<void(State&)>> outer[] = {
      {"Correct.Copy", [](State& s) { s.numbers->Copy(); }},
      {".Class_Initialize", [](State&) { quietly([] { make<clsHEDROTest>(); }); }},
      {"Sequence.Class_Initialize", [](State&) { quietly([] { make<clsHEDROTestSequence>(); }); }},
  };
  for (const auto& [place, act] : outer) {
    EXPECT_TRUE(testing::fail_each_allocation(prepare, act, [](const State&) {
                }).contains(reported(7, std::string("clsHEDROTest") + place)));
  }
}

TEST(Memory, QuestionsAreStillFoundByTheirId) {
  struct State {
    Ref<clsHEDROTestQuestions> list = make<clsHEDROTestQuestions>();
    std::vector<Ref<clsHEDROTestQuestion>> pool;
    std::vector<std::int32_t> found = std::vector<std::int32_t>(10);
  };
  const auto prepare = [] {
    State state;
    for (const StringView id : ids) state.pool.push_back(question(id));
    return state;
  };
  const auto act = [](State& s) {
    for (std::size_t i = 0; i < 10; ++i) s.list->Add(s.pool[i], i > 5 ? Variant(1) : missing);
    for (std::size_t i = 0; i < 10; i += 3) s.pool[i]->ID = u"e";
    for (const int gone : {7, 2}) s.list->Remove(gone);
    for (std::int32_t i = s.list->Count(); i >= 1; --i) {
      s.found[static_cast<std::size_t>(i - 1)] = s.list->first_position(i);
    }
    s.pool[0]->ID = s.pool[0]->ID;  // so that all are looked at again
    s.found[0] = s.list->first_position(1);
  };
  const auto check = [](const State& s) {
    expect_positions(s.list, ": " + dump(s.list));
    for (std::int32_t i = 1; i <= s.list->Count(); ++i) {
      ASSERT_EQ(s.found[static_cast<std::size_t>(i - 1)], s.list->first_position(i)) << i << ": " << dump(s.list);
    }
  };
  const auto reports = testing::fail_each_allocation(prepare, act, check);
  EXPECT_TRUE(reports.contains(reported(7, "clsHEDROTestQuestions.Add")));
  EXPECT_FALSE(reports.contains(reported(7, "clsHEDROTestQuestions.Remove")));
}

}  // namespace
}  // namespace hedro34
