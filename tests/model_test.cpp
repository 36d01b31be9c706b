// The six collections of the test model. Its records stand in records_test.cpp.
#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <tuple>

#include "tests/model_support.h"

namespace hedro34 {
namespace {

using testing::Lines;
using testing::Recorder;
using testing::reported;
using namespace testing::model;
using namespace std::string_view_literals;

constexpr std::int32_t int32_max = std::numeric_limits<std::int32_t>::max();

// One collection of each kind, with two elements under keys.
struct Scene {
  Scene() {
    strings->Add(u"a", u"Key 1");
    strings->Add(u"b", u"Key 2");
    tests->Add(titled(u"t1"), u"Key 1");
    tests->Add(titled(u"t2"), u"Key 2");
    sequences->Add(sequence(u"A"));
    sequences->Add(sequence(u"B"));
  }

  std::string text() const {
    return dump(strings) + ", " + dump(questions) + ", " + dump(tests) + ", " + dump(sequences) + ", " + dump(order) +
           ", " + dump(correct);
  }

  Ref<clsHEDROTestStrings> strings = make<clsHEDROTestStrings>();
  Ref<clsHEDROTestQuestions> questions = testing::model::questions({u"q1", u"q2"});
  Ref<clsHEDROTests> tests = make<clsHEDROTests>();
  Ref<clsHEDROTestSequences> sequences = make<clsHEDROTestSequences>();
  Ref<clsHEDROTestSequenceOrder> order = sequence(u"", {u"q1", u"q2"})->Order;
  Ref<clsHEDROTestCorrect> correct = testing::model::correct({1, 3});
};

const std::string scene = "2: a|b, 2: q1|q2, 2: t1|t2, 2: A|B, 2: 1|2, 2: 1|3";

TEST(Collections, AFailureIsReportedOnceAndChangesNothing) {
  using S = Scene&;
  const auto none = Variant();
  const std::tuple<std::function<Variant(S)>, Variant, std::int32_t, const char*> rows[] = {
      {[](S s) { return s.strings->Add(u"x", u"kEY 1"); }, false, 457, "Strings.Add"},
      {[](S s) { return s.strings->Add(u"x", missing, 1, 2); }, false, 5, "Strings.Add"},
      {[](S s) { return s.strings->Add(u"x", u"k", missing, 3); }, false, 5, "Strings.Add"},
      {[](S s) { return s.strings->Add(u"x", 7); }, false, 13, "Strings.Add"},
      {[](S s) { return s.strings->AddArray({}); }, false, 9, "Strings.AddArray"},
      {[](S s) { return s.strings->AsArray(int32_max); }, Array<String>(), 6, "Strings.AsArray"},
      {[](S s) { return s.questions->Add(nullptr); }, false, 91, "Questions.Add"},
      {[](S s) { return s.questions->Add(question(u"Q1")); }, false, 457, "Questions.Add"},
      {[&](S s) { return s.tests->Add(nullptr), none; }, none, 91, "s.Add"},
      {[&](S s) { return s.tests->Add(titled(u"x"), u"KEY 2"), none; }, none, 457, "s.Add"},
      {[&](S s) { return s.tests->Add(titled(u"x"), u"k", 3), none; }, none, 5, "s.Add"},
      {[&](S s) { return s.tests->Remove(3), none; }, none, 9, "s.Remove"},
      {[&](S s) { return s.tests->Remove(Null()), none; }, none, 13, "s.Remove"},
      {[](S s) { return s.sequences->Add(nullptr); }, false, 91, "Sequences.Add"},
      {[](S s) { return s.sequences->Add(sequence(u"b")); }, false, 457, "Sequences.Add"},
      {[&](S s) { return s.order->Add(u"Q2"), none; }, none, 457, "SequenceOrder.Add"},
      {[](S s) { return s.order->AsArray(int32_max); }, Array<std::int32_t>(), 6, "SequenceOrder.AsArray"},
      {[](S s) { return s.correct->Add(3, 9); }, false, 0, ""},  // is there
      {[](S s) { return s.strings->AddDelimitedString(u""); }, false, 0, ""},
      {[](S s) { return s.sequences->AddDefault(nullptr); }, false, 0, ""},  // as there are sequences
  };
  Recorder recorder;
  for (const auto& [act, result, number, location] : rows) {
    Scene s;
    EXPECT_EQ(act(s), result) << number << location;
    EXPECT_EQ(recorder.take(), number == 0 ? Lines() : Lines{reported(number, std::string("clsHEDROTest") + location)});
    EXPECT_EQ(s.text(), scene) << number << location;
  }
}

TEST(Collections, AMissIsSilent) {
  Recorder recorder;
  Scene s;
  for (const Variant& index : {Variant(0), Variant(2.6), Variant(u"2"), Variant(u""), Variant(Null()), missing}) {
    EXPECT_EQ(s.strings->Item(index), u""sv);
    s.strings->SetItem(index, u"x");
    EXPECT_FALSE(s.questions->Item(index) || s.tests->Item(index) || s.sequences->Item(index));
    EXPECT_EQ(s.order->Item(index), 0);
    EXPECT_EQ(s.correct->Item(3), -1);
    EXPECT_FALSE(s.strings->Exists(index) || s.questions->Exists(index) || s.tests->Exists(index));
    EXPECT_FALSE(s.sequences->Exists(index) || s.order->Exists(index) || s.correct->Exists(index));
    s.order->Remove(index);
    EXPECT_FALSE(s.strings->Remove(index) || s.questions->Remove(index) || s.sequences->Remove(index));
    EXPECT_FALSE(s.correct->Remove(index));
  }
  EXPECT_EQ(recorder.take(), Lines());
  EXPECT_FALSE(s.correct->Add(9, 1, 1));
  EXPECT_EQ(recorder.take(), Lines{"5 Invalid procedure call or argument: clsHEDROTestCorrect.Add"});
  EXPECT_EQ(s.text(), scene);
}

TEST(Collections, RemoveByPositionAndByKey) {
  Recorder recorder;
  for (const bool by_key : {false, true}) {
    Scene s;
    EXPECT_TRUE(s.strings->Remove(by_key ? Variant(u"kEY 1") : 1));
    EXPECT_TRUE(s.questions->Remove(by_key ? Variant(u"Q1") : 1));
    s.tests->Remove(by_key ? Variant(u"kEY 1") : 1);
    EXPECT_TRUE(s.sequences->Remove(by_key ? Variant(u"a") : 1));
    s.order->Remove(by_key ? Variant(u"Q1") : 1);
    EXPECT_TRUE(s.correct->Remove(by_key ? Variant(u"1") : 1));
    EXPECT_EQ(s.text(), "1: b, 1: q2, 1: t2, 1: B, 1: 2, 1: 3");
    EXPECT_TRUE(s.strings->RemoveAll() && s.questions->RemoveAll() && s.sequences->RemoveAll());
    s.tests->RemoveAll();
    s.order->RemoveAll();
    EXPECT_TRUE(s.correct->RemoveAll());
    EXPECT_EQ(s.text(), "0:, 0:, 0:, 0:, 0:, 0:");
  }
  EXPECT_EQ(recorder.take(), Lines());
}

TEST(Collections, AddBeforeAndAfterAndKeepTheKeyOfTheFirstDay) {
  for (const auto& [before, after] : {std::pair<Variant, Variant>{2, missing}, {missing, 1}}) {
    Scene s;
    s.questions->Item(1)->ID = u"q";
    EXPECT_TRUE(s.strings->Add(u"x", u"Key 9", before, after));
    EXPECT_TRUE(s.questions->Add(question(u"x"), before, after));
    s.tests->Add(titled(u"x"), u"Key 9", before, after);
    EXPECT_TRUE(s.correct->Add(9, before, after));
    EXPECT_EQ(s.text(), "3: a|x|b, 3: q|x|q2, 3: t1|x|t2, 2: A|B, 2: 1|2, 3: 1|9|3");
    EXPECT_TRUE(s.strings->Exists(u"kEY 9") && s.tests->Exists(u"kEY 9") && s.questions->Exists(u"Q1"));
    EXPECT_FALSE(s.questions->Exists(u"q"));
  }
}

TEST(Strings, CutWhatTheyAreGivenAndLoseTheKeyOfAWrittenElement) {
  const auto strings = make<clsHEDROTestStrings>();
  const String fifty(50, u'x');
  strings->Add(fifty + u"y", u"key");
  EXPECT_EQ(strings->Item(u"KEY"), fifty);
  strings->AddDelimitedString(u"a\t" + fifty + u"y");
  strings->SetItem(u"key", String(255, u'z') + u"y");
  EXPECT_EQ(strings->Item(1), String(255, u'z'));
  EXPECT_FALSE(strings->Exists(u"key"));
  strings->SetItem(1, u"first");
  strings->SetItem(2, u"second");
  EXPECT_EQ(dump(strings), "3: first|second|" + std::string(50, 'x'));
}

TEST(Strings, SplitAndJoinText) {
  const std::tuple<StringView, StringView, const char*> rows[] = {
      {u"\ta\t\tb\t", u"\t", "5: |a||b|"},
      {u"a--b---c", u"--", "3: a|b|-c"},
      {u"aXbxc", u"x", "2: aXb|c"},
      {u"ab", u"", "1: ab"},
  };
  for (const auto& [text, delimiter, split] : rows) {
    const auto strings = make<clsHEDROTestStrings>();
    EXPECT_TRUE(strings->AddDelimitedString(text, delimiter));
    EXPECT_EQ(dump(strings), split);
    EXPECT_EQ(strings->AsString(delimiter), text);
  }
}

TEST(Strings, FromAndToArraysAndThroughText) {
  const auto strings = make<clsHEDROTestStrings>();
  EXPECT_EQ(strings->AsString() + strings->Copy()->AsString(), u""sv);
  EXPECT_EQ(dump(strings->AsArray(0)), "no bounds");
  EXPECT_TRUE(strings->AddArray(Array<String>::of({u""}, int32_max)));
  EXPECT_EQ(strings->AsString(u", "), u""sv);
  EXPECT_EQ(dump(strings->Copy()), "0:");
  EXPECT_TRUE(strings->AddArray(Array<String>::of({u"b", u"", u"a\tc"}, -1)));
  EXPECT_EQ(strings->AsString(), u"\tb\t\ta\tc"sv);
  EXPECT_EQ(dump(strings->AsArray()), "1 to 4:  b  a\tc");
  EXPECT_EQ(dump(strings->AsArray(-7)), "-7 to -4:  b  a\tc");
  EXPECT_EQ(dump(strings->AsArray(int32_max - 3)), "2147483644 to 2147483647:  b  a\tc");
  strings->SetItem(1, String(60, u'x'));
  const auto copy = strings->Copy();
  EXPECT_EQ(dump(copy), "5: " + std::string(50, 'x') + "|b||a|c");
  copy->RemoveAll();
  EXPECT_EQ(strings->Count(), 4);
}

TEST(Questions, ARemovedOneLosesItsListsOnly) {
  Recorder recorder;
  for (const bool all : {false, true}) {
    const auto list = questions({u"q1", u"q2", u"q3"});
    const auto kept = list->Item(1);
    kept->Answers->Add(u"a");
    kept->LearningObjectives->Add(u"o");
    kept->CorrectAnswers->Add(1);
    kept->QuestionType = HEDROTestQuestionTypeEssay;
    EXPECT_EQ(list->TypeCount(HEDROTestQuestionTypeEssay), 1);
    EXPECT_EQ(list->TypeCount(HEDROTestQuestionTypeUnknown), 2);
    list->Item(2)->LearningObjectives->Add(u"o");
    list->Item(2)->Answers = nullptr;  // one that cannot be emptied stays, without objectives
    EXPECT_EQ(all ? list->RemoveAll() : list->Remove(1), !all);
    EXPECT_EQ(dump(list), all ? "1: q2" : "2: q2|q3");
    EXPECT_EQ(list->Item(1)->LearningObjectives->Count(), all ? 0 : 1);
    EXPECT_EQ(recorder.take(), all ? Lines{reported(91, "clsHEDROTestQuestions.Remove")} : Lines());
    EXPECT_EQ(dump(kept->Answers) + dump(kept->LearningObjectives) + dump(kept->CorrectAnswers), "0:0:1: 1");
  }
}

}  // namespace
}  // namespace hedro34
