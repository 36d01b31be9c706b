#include "hedro34/documents/data_document.h"

#include <limits>

#include "tests/platform_support.h"

namespace hedro34::testing {
namespace {

const std::string full = file_text("full.ktd");

std::string with_members(const std::string& members) {
  return R"({"format":"hedro34-ktd","version":1)" + members + "}";
}

// The names of the objectives, and which of some keys exist.
std::string objectives(DataDocument& document) {
  std::string text;
  for (const auto& objective : document.objectives().all()) text += "'" + to_utf8(objective->name()) + "' ";
  for (const char16_t* key : {u"", u"a", u"A", u"b"}) {
    if (document.Objectives()->Exists(key)) text += "-> '" + to_utf8(key) + "' ";
  }
  return text;
}

TEST(Document, KnowsItsObjectivesByKey) {
  const auto document = make<DataDocument>();
  const auto add = [&](const char16_t* name, const Variant& key) {
    document->Objectives()->Add(make<DataObjective>(name), key);
  };
  document->PrepareDefaults();
  document->PrepareDefaults();
  EXPECT_EQ(objectives(*document), "'' -> '' ");
  add(u"x", u"A");  // the key counts, not the name
  EXPECT_EQ(failure_of([&] { add(u"y", u"a"); }), 457);
  EXPECT_EQ(failure_of([&] { add(u"y", Null{}); }), 13);
  add(u"b", u"");
  add(u"b", missing);
  document->Objectives()->Item(u"a")->SetName(u"b");
  document->Objectives()->Item(1)->SetName(u"default");
  EXPECT_EQ(objectives(*document), "'default' 'b' 'b' 'b' -> '' -> 'a' -> 'A' ");
  document->Clear();
  add(u"a", u"a");  // no default objective
  document->PrepareDefaults();
  EXPECT_EQ(objectives(*document), "'a' -> 'a' -> 'A' ");
  // In a file the first one is the default objective, whatever its name, and empty names repeat.
  EXPECT_TRUE(document->read(with_members(R"(,"objectives":["a","b","","b ",""])")));
  EXPECT_EQ(objectives(*document), "'a' 'b' '' 'b ' '' -> '' -> 'b' ");
  EXPECT_EQ(document->Objectives()->Item(u"B "), document->Objectives()->Item(4));
}

TEST(Document, FlagsAreWrittenThroughAndFilledUp) {
  auto flags = make<DataObjectiveFlags>();
  const auto first = flags->Item(1);
  EXPECT_EQ(first->Value(), Variant(false));
  EXPECT_EQ(flags->Item(2147483647)->Value(), Variant(false));
  EXPECT_TRUE(flags->all().empty());
  flags->Item(3)->SetValue(true);
  first->SetValue(std::int16_t{-1});
  flags->Item(5)->SetValue(false);
  flags->Add(u"true");
  EXPECT_EQ(flags->all(), (std::vector{true, false, true, false, false, true}));
  flags->Item(3)->SetValue(Null{});
  EXPECT_EQ(failure_of([&] { flags->Add(u"yes"); }), 13);
  EXPECT_EQ(failure_of([&] { flags->Item(9)->SetValue(missing); }), 13);
  EXPECT_EQ(failure_of([&] { flags->Item(0); }), 9);
  EXPECT_EQ(flags->all(), (std::vector{true, false, false, false, false, true}));
  flags = nullptr;
  EXPECT_EQ(first->Value(), Variant(true));
}

TEST(Document, ComputesTheVersionMode) {
  const auto mode = [](const std::vector<String>& answers, int orders) {
    const auto versions = make<DataVersions>();
    versions->VersionAnswers()->AddArray(Array<String>::of(answers));
    for (int i = 0; i < orders; ++i) versions->Orders()->AddDefault(3);
    return versions->VersionMode();
  };
  EXPECT_EQ(mode({}, 0) + mode({}, 1) + mode({u"A"}, 0) + mode({u"A"}, 2) + mode({u"A", u"B"}, 1), 0);
  EXPECT_EQ(mode({u"A"}, 1) + mode({u"A", u""}, 2), 2 + 2);
}

TEST(Document, ListsTakeArraysAndKeys) {
  const auto strings = make<DataStrings>();
  strings->Add(u"one", u"K");
  strings->AddArray(Array<String>::of({u"two", u"three"}, -3));
  EXPECT_EQ(failure_of([&] { strings->Add(u"six", u"k"); }), 457);
  EXPECT_EQ(failure_of([&] { strings->Add(u"six", 1); }), 13);
  EXPECT_EQ(strings->AsArray(), Array<String>::of({u"one", u"two", u"three"}, 1));
  EXPECT_EQ(strings->Item(u"k"), u"one");
  DataOrders orders;
  orders.AddDefault(2);
  EXPECT_EQ(orders.all()[0]->all(), (std::vector<std::int32_t>{1, 2}));
  orders.Item(1)->FromArray(Array<std::int32_t>::of({2, -7, 9}, 5));
  EXPECT_EQ(orders.all()[0]->all(), (std::vector<std::int32_t>{2, -7, 9}));
}

TEST(Document, FailuresHaveTheirNumbersAndChangeNothing) {
  const auto document = read_of<DataDocument>(full);
  const auto orders = document->Versions()->Orders();
  const auto questions = document->Questions();
  const FailingHost host;  // whose objects are none of the library's own
  EXPECT_EQ(failure_of([&] { questions->Item(0); }), 9);
  EXPECT_EQ(failure_of([&] { orders->Item(1)->Item(3); }), 9);
  EXPECT_EQ(failure_of([&] { questions->Item(1)->ChoiceLabels()->Item(4); }), 9);
  EXPECT_EQ(failure_of([&] { document->Objectives()->Item(u"none"); }), 5);
  EXPECT_EQ(failure_of([&] { questions->Item(1)->ChoiceLabels()->Item(u"A"); }), 5);
  EXPECT_EQ(failure_of([&] { orders->AddDefault(-1); }), 5);
  EXPECT_EQ(failure_of([&] { orders->AddDefault(10'000'001); }), 6);
  EXPECT_EQ(failure_of([&] { orders->AddDefault(2'147'483'647); }), 6);
  EXPECT_EQ(failure_of([&] { questions->Add(nullptr); }), 91);
  EXPECT_EQ(failure_of([&] { orders->Add(platform().document_objects->order(nullptr)); }), 13);
  EXPECT_EQ(written(*document), full);
}

TEST(Document, FilesHaveAFixedFormAndDefaults) {
  const auto document = read_of<DataDocument>(full);
  EXPECT_EQ(written(*document), full);
  const auto questions = document->Questions();
  const auto first = questions->Item(1);
  document->Clear();
  EXPECT_EQ(questions->Count(), 0);
  EXPECT_EQ(first->ChoiceLabels()->Count(), 3) << "what is held keeps its content";
  document->questions().add();
  EXPECT_EQ(written(*document), file_text("new.ktd"));
  EXPECT_EQ(written(*read_of<DataDocument>(with_members(R"(,"questions":[{}],"versions":{})"))), file_text("new.ktd"));
}

TEST(Document, RejectsWhatTheFormatDoesNotAllow) {
  const ErrorRow rows[] = {
      {R"({"format":"hedro34-form"})", "/format: must be \"hedro34-ktd\"", FileError::Kind::WrongKind},
      {R"({"versions":{"versionMode":2}})", "/versions/versionMode: unknown member"},
      {R"({"questions":[{"objectiveFlags":[true,0]}]})",
       "/questions/0/objectiveFlags/1: must be true or false, not a number"},
      {R"({"questions":[{},{"objectiveFlags":true}]})", "/questions/1/objectiveFlags: must be a list, not true"},
      {R"({"pageCount":-2147483649})", "/pageCount: the integer does not fit in 32 bits"},
      {R"({"versions":{"orders":[1]}})", "/versions/orders/0: must be a list, not a number"},
      {R"({"versions":{"orders":[[1],[1,"2"]]}})", "/versions/orders/1/1: must be an integer, not a string"},
      {R"({"versions":{"orders":[[1,-2147483649]]}})", "/versions/orders/0/1: the integer does not fit in 32 bits"},
      {with_members(R"(,"objectives":["","größe","b","GRÖßE"])"), "/objectives/3: this name stands there twice"},
      {with_members(R"(,"objectives":["a","A"])"), "/objectives/1: this name stands there twice"},
  };
  expect_errors<DataDocument>(full, rows);
}

TEST(Document, FilesAreReplacedWholeOrNotAtAll) {
  const SpoiltRow<DataDocument> rows[] = {
      {[](auto& document) { document.questions().add()->SetFloatValue(std::numeric_limits<double>::infinity()); },
       "/questions/1/floatValue: the number is not finite"},
      {[](auto& document) { document.Objectives()->Item(2)->SetName(u"GRÖßE\xD83D"); },  // as it stands in a file
       "/objectives/3: this name stands there twice"},
  };
  expect_files_whole_or_not_at_all<DataDocument>(full, rows);
}

TEST(Document, FilesWithoutMemory) { expect_no_throw_without_memory<DataDocument>(full); }

}  // namespace
}  // namespace hedro34::testing
