#include "hedro34/platform/data_document.h"

#include <gtest/gtest.h>

#include "tests/document_files.h"
#include "tests/refusals.h"
#include "tests/support.h"

namespace hedro34::testing {
namespace {

using namespace document_files;

TEST(Document, GivesWhatWasReadAndTakesWhatIsSet) {
  const Ref<WENKtdDocument> document = document_of(full);
  EXPECT_EQ(document->Description(), u"Größe");
  EXPECT_EQ(document->Notes(), u"\"a\"\r\nb");
  EXPECT_EQ(document->Questions()->Count(), 2);
  const auto question = document->Questions()->Item(1);
  EXPECT_EQ(question->ChoiceLabels()->AsArray(), Array<String>::of({u"A", u"B", u"C"}, 1));
  EXPECT_EQ(question->NumericAnswerKey()->Count(), 2);
  EXPECT_EQ(question->AnswerKey()->Item(std::int16_t{1}), u"(B,C)");
  EXPECT_EQ(question->ObjectiveFlags()->Item(2)->Value(), Variant(true));
  EXPECT_EQ(question->TextValue(), u"text");
  EXPECT_EQ(question->FloatValue(), 0.1);
  EXPECT_EQ(question->SubjectivePoints(), 10);
  EXPECT_EQ(document->Versions()->VersionAnswers()->Item(2), u"b");
  EXPECT_EQ(document->Versions()->Orders()->Item(2)->Count(), 4);
  EXPECT_EQ(document->Versions()->Orders()->Item(2)->Item(3), -7);
  EXPECT_EQ(document->Questions()->Item(2)->ChoiceValues()->Count(), 0);

  // Every setter of a question, with the values of the first one of the file.
  const auto built = make<DataDocument>();
  const auto same = data_objects().question();
  same->SetName(u"Q1");
  same->SetQuestionText(u"1/2 + 1/2 = ?");
  same->SetGraded(true);
  same->SetItemOption(-32768);
  same->SetValueKind(2);
  same->SetTextValue(u"text");
  same->SetFloatValue(0.1);
  same->SetMultiplesAllowed(32767);
  same->SetScaleOption(3);
  same->SetSubjective(true);
  same->SetCorrectAnswerCount(2147483647);
  same->SetCorrectAnd(false);
  same->SetCorrectPoints(2.5);
  same->SetIncorrectPoints(-0.25);
  same->SetNoResponsePoints(1e-07);
  dynamic_cast<DataQuestion&>(*same).SetSubjectivePoints(10);
  same->SetDifficulty(u"d");
  same->SetReference(u"r");
  same->SetTopic(u"t");
  same->SetKeywords(u"k");
  same->SetMiscellaneous(u"m");
  same->SetNotes(u"n");
  same->ChoiceLabels()->AddArray(Array<String>::of({u"A", u"B"}, -3));
  same->ChoiceLabels()->AddArray({});
  same->ChoiceLabels()->Add(u"C");
  same->ChoiceValues()->Add(u"1");
  same->AnswerKey()->Add(u"(B,C)");
  same->NumericAnswerKey()->Add(u"(2,3)");
  same->NumericAnswerKey()->Add(u"");
  same->ObjectiveFlags()->Add(false);
  same->ObjectiveFlags()->Add(Null{});
  same->ObjectiveFlags()->Item(2)->SetValue(true);
  same->ObjectiveFlags()->Item(4)->SetValue(std::int16_t{-1});
  same->ObjectiveFlags()->Add(u"true");
  built->Questions()->Add(same);
  built->Questions()->Add(make<DataQuestion>());
  built->SetDescription(u"Größe");
  built->SetNotes(u"\"a\"\r\nb");
  built->SetDocumentKind(-2147483647 - 1);
  built->SetPageCount(2147483647);
  built->PrepareDefaults();
  for (const char16_t* name : {u"Fractions", u"", u"Größe"}) {
    const auto objective = data_objects().objective();
    objective->SetName(name);
    built->Objectives()->Add(objective, name);
  }
  built->Versions()->SetSequenceQuestion(2);
  built->Versions()->VersionAnswers()->AddArray(Array<String>::of({u"A", u"b"}, 0));
  built->Versions()->Orders()->AddDefault(2);
  const auto order = data_objects().order();
  order->FromArray(Array<std::int32_t>::of({9}, 1));
  order->FromArray(Array<std::int32_t>::of({2, 1, -7, 2147483647}, 5));
  built->Versions()->Orders()->Add(order);
  built->Versions()->Orders()->AddDefault(0);
  EXPECT_EQ(written(*built), full);
}

// The names of the objectives, and which of some keys exist.
std::string objectives(DataDocument& document) {
  std::string text;
  for (std::int32_t i = 1; i <= document.Objectives()->Count(); ++i) {
    text += "'" + to_utf8(document.Objectives()->Item(i)->Name()) + "' ";
  }
  text += ':';
  for (const char16_t* key : {u"", u"a", u"A", u"b"}) {
    if (document.Objectives()->Exists(key)) text += " '" + to_utf8(key) + "'";
  }
  return text;
}

TEST(Document, KnowsItsObjectivesByKey) {
  const auto document = make<DataDocument>();
  const auto add = [&](const char16_t* name, const Variant& key) {
    document->Objectives()->Add(make<DataObjective>(name), key);
  };
  EXPECT_EQ(objectives(*document), ":");
  document->PrepareDefaults();
  EXPECT_EQ(objectives(*document), "'' : ''");
  document->PrepareDefaults();
  EXPECT_EQ(objectives(*document), "'' : ''");
  add(u"x", u"A");  // the key counts, not the name
  EXPECT_EQ(objectives(*document), "'' 'x' : '' 'a' 'A'");
  EXPECT_EQ(failure_of([&] { add(u"y", u"a"); }), 457);
  EXPECT_EQ(failure_of([&] { add(u"y", 1); }), 13);
  EXPECT_EQ(failure_of([&] { add(u"y", Null{}); }), 13);
  EXPECT_EQ(objectives(*document), "'' 'x' : '' 'a' 'A'");
  add(u"b", u"");
  add(u"b", missing);
  EXPECT_EQ(objectives(*document), "'' 'x' 'b' 'b' : '' 'a' 'A'");
  document->Objectives()->Item(u"a")->SetName(u"b");
  EXPECT_EQ(objectives(*document), "'' 'b' 'b' 'b' : '' 'a' 'A'");
  document->Objectives()->Item(1)->SetName(u"default");
  EXPECT_EQ(objectives(*document), "'default' 'b' 'b' 'b' : '' 'a' 'A'");
  document->Clear();
  EXPECT_EQ(objectives(*document), ":");
  add(u"a", u"a");  // no default objective
  document->PrepareDefaults();
  EXPECT_EQ(objectives(*document), "'a' : 'a' 'A'");
  EXPECT_FALSE(document->Objectives()->Exists(1));
  EXPECT_FALSE(document->Objectives()->Exists(missing));

  document->Clear();
  add(u"", u"");
  EXPECT_EQ(objectives(*document), "'' : ''");

  // In a file the first one is the default objective, whatever its name.
  EXPECT_EQ(objectives(*document_of(with_members(R"(,"objectives":["a","b"])"))), "'a' 'b' : '' 'b'");
}

TEST(Document, FlagsAreWrittenThroughAndFilledUp) {
  const auto flags = make<DataObjectiveFlags>();
  const auto all = [&] {
    std::string text;
    for (const bool flag : flags->all()) text += flag ? '1' : '0';
    return text;
  };
  const auto first = flags->Item(1);
  const auto third = flags->Item(3);
  EXPECT_EQ(first->Value(), Variant(false));
  EXPECT_EQ(all(), "");
  third->SetValue(true);
  EXPECT_EQ(all(), "001");
  first->SetValue(true);
  EXPECT_EQ(all(), "101");
  EXPECT_EQ(flags->Item(3)->Value(), Variant(true));
  EXPECT_EQ(flags->Item(2147483647)->Value(), Variant(false));
  EXPECT_EQ(all(), "101");
  flags->Item(5)->SetValue(false);
  EXPECT_EQ(all(), "10100");
  first->SetValue(Null{});
  flags->Add(true);
  EXPECT_EQ(all(), "001001");
  EXPECT_EQ(failure_of([&] { flags->Add(u"yes"); }), 13);
  EXPECT_EQ(failure_of([&] { flags->Item(9)->SetValue(missing); }), 13);
  EXPECT_EQ(failure_of([&] { flags->Item(0); }), 9);
  EXPECT_EQ(failure_of([&] { flags->Item(-1); }), 9);
  EXPECT_EQ(all(), "001001");

  const auto kept = make<DataQuestion>()->ObjectiveFlags()->Item(2);  // outlives list and question
  kept->SetValue(true);
  EXPECT_EQ(kept->Value(), Variant(true));
}

TEST(Document, ComputesTheVersionMode) {
  const struct {
    std::vector<String> answers;
    int orders;
    std::int32_t mode;
  } rows[] = {{{}, 0, 0},     {{}, 1, 0},          {{u"A"}, 0, 0},      {{u"A"}, 1, 2},
              {{u"A"}, 2, 0}, {{u"A", u""}, 2, 2}, {{u"A", u"B"}, 1, 0}};
  for (const auto& row : rows) {
    const auto versions = make<DataVersions>();
    versions->VersionAnswers()->AddArray(Array<String>::of(row.answers));
    for (int i = 0; i < row.orders; ++i) versions->Orders()->AddDefault(3);
    EXPECT_EQ(versions->VersionMode(), row.mode) << row.answers.size() << " answers, " << row.orders << " orders";
  }
}

TEST(Document, StringsHaveKeys) {
  const auto strings = make<DataStrings>();
  strings->Add(u"one", u"K");
  strings->Add(u"two");
  strings->Add(u"three", u"");
  strings->Add(u"four", u"");
  EXPECT_EQ(failure_of([&] { strings->Add(u"five", u"k"); }), 457);
  EXPECT_EQ(failure_of([&] { strings->Add(u"five", 1); }), 13);
  EXPECT_EQ(strings->AsArray(), Array<String>::of({u"one", u"two", u"three", u"four"}, 1));
  EXPECT_EQ(strings->Item(u"k"), u"one");
  EXPECT_FALSE(make<DataStrings>()->AsArray().has_bounds());
}

class ForeignObjective : public WENKtdObjective {
 public:
  String Name() override { return u"foreign"; }
  void SetName(const String&) override {}
};

class ForeignOrder : public WENKtdOrder {
 public:
  std::int32_t Count() override { return 0; }
  std::int32_t Item(std::int32_t) override { return 0; }
  void FromArray(const Array<std::int32_t>&) override {}
};

TEST(Document, FailuresHaveTheirNumbersAndChangeNothing) {
  const auto document = document_of(full);
  const auto orders = document->Versions()->Orders();
  const auto labels = document->Questions()->Item(1)->ChoiceLabels();
  const struct {
    const char* what;
    std::function<void()> statement;
    std::int32_t number;
  } rows[] = {
      {"question 0", [&] { document->Questions()->Item(0); }, 9},
      {"question 3 of 2", [&] { document->Questions()->Item(3); }, 9},
      {"objective 5 of 4", [&] { document->Objectives()->Item(5); }, 9},
      {"order 4 of 3", [&] { orders->Item(4); }, 9},
      {"entry 0", [&] { orders->Item(1)->Item(0); }, 9},
      {"entry 3 of 2", [&] { orders->Item(1)->Item(3); }, 9},
      {"string 4 of 3", [&] { labels->Item(4); }, 9},
      {"question by text", [&] { document->Questions()->Item(u"1"); }, 13},
      {"order by text", [&] { orders->Item(u"1"); }, 13},
      {"question by a Boolean", [&] { document->Questions()->Item(true); }, 13},
      {"objective by nothing", [&] { document->Objectives()->Item(Variant()); }, 13},
      {"an objective that is not there", [&] { document->Objectives()->Item(u"none"); }, 5},
      {"a string that is not there", [&] { labels->Item(u"A"); }, 5},
      {"an order of less than nothing", [&] { orders->AddDefault(-1); }, 5},
      {"no question", [&] { document->Questions()->Add(nullptr); }, 91},
      {"no objective", [&] { document->Objectives()->Add(nullptr, u"k"); }, 91},
      {"no order", [&] { orders->Add(nullptr); }, 91},
      {"a foreign objective", [&] { document->Objectives()->Add(make<ForeignObjective>(), u"k"); }, 13},
      {"a foreign order", [&] { orders->Add(make<ForeignOrder>()); }, 13},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(failure_of(row.statement), row.number) << row.what;
    EXPECT_EQ(written(*document), full) << row.what;
  }
}

TEST(Document, CollectionsStayAndWhatIsHeldKeepsItsContent) {
  const auto document = document_of(full);
  const auto questions = document->Questions();
  const auto first = questions->Item(1);
  const auto order = document->Versions()->Orders()->Item(2);
  const auto answers = document->Versions()->VersionAnswers();
  document->Clear();
  EXPECT_EQ(written(*document), plain());
  EXPECT_EQ(questions->Count(), 0);
  EXPECT_EQ(answers->Count(), 0);
  EXPECT_EQ(first->QuestionText(), u"1/2 + 1/2 = ?");
  EXPECT_EQ(first->ChoiceLabels()->Count(), 3);
  EXPECT_EQ(order->Count(), 4);
  ASSERT_TRUE(document->read(full));
  EXPECT_EQ(questions, document->Questions());
  EXPECT_EQ(questions->Count(), 2);
  EXPECT_EQ(answers->Count(), 2);
  EXPECT_NE(questions->Item(1), first);
}

}  // namespace
}  // namespace hedro34::testing
