#include "hedro34/platform/data_document.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/document_files.h"
#include "tests/refusals.h"
#include "tests/support.h"

namespace hedro34::testing {
namespace {

using namespace document_files;
using Kind = Refusal::Kind;

// The second question of `full`, which has all defaults, as the only one of a list.
std::string plain_question() {
  const std::size_t start = full.find("    {\n      \"name\": \"\"");
  return "[\n" + std::string(full.substr(start, full.find("\n  ],", start) - start)) + "\n  ]";
}

TEST(DocumentFile, IsWrittenAsItWasRead) { EXPECT_EQ(written(*document_of(full)), full); }

TEST(DocumentFile, MissingMembersAndNewObjectsHaveTheDefaults) {
  EXPECT_EQ(written(*document_of(with_members(""))), plain());
  EXPECT_EQ(written(*document_of(with_members(R"(,"versions":{},"objectives":[],"questions":[])"))), plain());
  EXPECT_EQ(written(*document_of(with_question(""))), plain("[]", plain_question()));
  EXPECT_EQ(written(*make<DataDocument>()), plain());
  const auto document = data_objects().document();
  document->Questions()->Add(data_objects().question());
  EXPECT_EQ(written(dynamic_cast<DataDocument&>(*document)), plain("[]", plain_question()));
}

TEST(DocumentFile, RefusesWhatTheFormatDoesNotAllow) {
  const auto document = document_of(full);
  const RefusalRow rows[] = {
      {"no JSON", with_question("") + "]", Kind::Malformed,
       "f: line 1, column 54: not JSON: unexpected ']'; expected end of input"},
      {"cut off", with_members(",\n\"questions\":[{},\n{").substr(0, 55), Kind::Malformed,
       "f: line 3, column 2: not JSON: unexpected end of input; expected string literal"},
      {"a form", R"({"format":"hedro34-form","version":1,"pages":[]})", Kind::WrongKind,
       "f: /format: must be \"hedro34-ktd\""},
      {"no format", R"({"version":1})", Kind::WrongKind, "f: /format: this member is missing"},
      {"another version", R"({"format":"hedro34-ktd","version":0})", Kind::WrongKind, "f: /version: must be 1"},
      {"an unknown member", with_question(R"("points":1)"), Kind::Malformed, "f: /questions/0/points: unknown member"},
      {"a computed member", with_members(R"(,"versions":{"versionMode":2})"), Kind::Malformed,
       "f: /versions/versionMode: unknown member"},
      {"a member twice", with_members(R"(,"versions":{},"notes":"","versions":{})"), Kind::Malformed,
       "f: /versions: this member stands twice"},
      {"the last member twice", with_question(R"("objectiveFlags":[],"objectiveFlags":[])"), Kind::Malformed,
       "f: /questions/0/objectiveFlags: this member stands twice"},
      {"a list for an object", with_members(R"(,"versions":[])"), Kind::Malformed,
       "f: /versions: must be an object, not a list"},
      {"a question that is none", with_members(R"(,"questions":[{},{},3])"), Kind::Malformed,
       "f: /questions/2: must be an object, not a number"},
      {"null for an objective", with_members(R"(,"objectives":[null])"), Kind::Malformed,
       "f: /objectives/0: must be a string, not null"},
      {"null for a flag", with_question(R"("objectiveFlags":[true,null])"), Kind::Malformed,
       "f: /questions/0/objectiveFlags/1: must be true or false, not null"},
      {"a list of numbers for flags", with_question(R"("objectiveFlags":[0])"), Kind::Malformed,
       "f: /questions/0/objectiveFlags/0: must be true or false, not a number"},
      {"no list for flags", with_question(R"("objectiveFlags":true)"), Kind::Malformed,
       "f: /questions/0/objectiveFlags: must be a list, not true"},
      {"a Boolean for a key", with_question(R"("answerKey":[false])"), Kind::Malformed,
       "f: /questions/0/answerKey/0: must be a string, not false"},
      {"a fraction for an integer", with_question(R"("correctAnswerCount":2.0)"), Kind::Malformed,
       "f: /questions/0/correctAnswerCount: must be an integer, not a fraction"},
      {"16 bits", with_question(R"("multiplesAllowed":-32769)"), Kind::Malformed,
       "f: /questions/0/multiplesAllowed: the integer does not fit in 16 bits"},
      {"32 bits", with_members(R"(,"pageCount":2147483648)"), Kind::Malformed,
       "f: /pageCount: the integer does not fit in 32 bits"},
      {"a number for an order", with_members(R"(,"versions":{"orders":[1]})"), Kind::Malformed,
       "f: /versions/orders/0: must be a list, not a number"},
      {"a string in an order", with_members(R"(,"versions":{"orders":[[1],[1,"2"]]})"), Kind::Malformed,
       "f: /versions/orders/1/1: must be an integer, not a string"},
      {"a fraction in an order", with_members(R"(,"versions":{"orders":[[1.0]]})"), Kind::Malformed,
       "f: /versions/orders/0/0: must be an integer, not a fraction"},
      {"an order too deep", with_members(R"(,"versions":{"orders":[[],[],[[]]]})"), Kind::Malformed,
       "f: /versions/orders/2/0: must be an integer, not a list"},
      {"an entry of more than 32 bits", with_members(R"(,"versions":{"orders":[[],[1,-2147483649]]})"), Kind::Malformed,
       "f: /versions/orders/1/1: the integer does not fit in 32 bits"},
      {"an objective twice", with_members(R"(,"objectives":["","a","b","a"])"), Kind::Malformed,
       "f: /objectives/3: this name stands there twice"},
      {"an objective twice in another case", with_members(R"(,"objectives":["","größe","GRÖßE"])"), Kind::Malformed,
       "f: /objectives/2: this name stands there twice"},
      {"the name of the first objective twice", with_members(R"(,"objectives":["a","A"])"), Kind::Malformed,
       "f: /objectives/1: this name stands there twice"},
  };
  expect_refusals(*document, rows, std::string(full));
}

TEST(DocumentFile, EmptyNamesOfObjectivesRepeat) {
  const auto document = document_of(with_members(R"(,"objectives":["","","a","","b "])"));
  EXPECT_EQ(written(*document), plain(R"(["", "", "a", "", "b "])"));
  EXPECT_EQ(document->Objectives()->Item(u"A"), document->Objectives()->Item(3));
  EXPECT_EQ(document->Objectives()->Item(u"b "), document->Objectives()->Item(5));
  EXPECT_EQ(failure_of([&] { document->Objectives()->Item(u""); }), 5);
}

TEST(DocumentFile, FilesAreReplacedWholeOrNotAtAll) {
  const Folder folder;
  const String path = folder.write("a.ktd", full);
  const auto document = make<DataDocument>();
  ASSERT_TRUE(document->Load(path)) << to_line(last_refusal());
  EXPECT_FALSE(document->Load(folder.path("none.ktd")));
  EXPECT_EQ(last_refusal().kind, Kind::Unreadable);
  EXPECT_FALSE(document->Load(folder.write("bad.ktd", with_members(R"(,"notes":1)"))));
  EXPECT_EQ(to_line(last_refusal()), to_utf8(folder.path("bad.ktd")) + ": /notes: must be a string, not a number");
  EXPECT_EQ(written(*document), full);

  const Ref<DataQuestion> question = document->questions().all()[1];
  const struct {
    const char* what;
    std::function<void()> spoil;
    std::function<void()> mend;
    const char* refusal;
  } rows[] = {
      {"infinite", [&] { question->SetFloatValue(std::numeric_limits<double>::infinity()); },
       [&] { question->SetFloatValue(0); }, ": /questions/1/floatValue: the number is not finite"},
      {"no number", [&] { question->SetCorrectPoints(std::numeric_limits<double>::quiet_NaN()); },
       [&] { question->SetCorrectPoints(1); }, ": /questions/1/correctPoints: the number is not finite"},
      {"an objective twice", [&] { document->Objectives()->Item(4)->SetName(u"FRACTIONS"); },
       [&] { document->Objectives()->Item(4)->SetName(u"Größe"); }, ": /objectives/3: this name stands there twice"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    row.spoil();
    EXPECT_FALSE(document->Save(path));
    EXPECT_EQ(last_refusal().kind, Kind::Unwritable);
    EXPECT_EQ(to_line(last_refusal()), to_utf8(path) + row.refusal);
    row.mend();
    const auto kept = make<DataDocument>();
    EXPECT_TRUE(kept->Load(path));
    EXPECT_EQ(written(*kept), full);
  }
  // Names that differ by lone surrogates only are one name in a file.
  const auto cut = make<DataDocument>();
  cut->Objectives()->Add(make<DataObjective>(u"a\xD83D"), missing);
  cut->Objectives()->Add(make<DataObjective>(u"A\xD83E"), missing);
  EXPECT_EQ(cut->to_json(), std::nullopt);

  EXPECT_FALSE(document->Save(folder.path("none/a.ktd")));
  EXPECT_EQ(last_refusal().kind, Kind::Unwritable);
  question->SetName(u"saved");
  ASSERT_TRUE(document->Save(path)) << to_line(last_refusal());
  const auto again = make<DataDocument>();
  ASSERT_TRUE(again->Load(path));
  EXPECT_EQ(again->questions().all()[1]->Name(), u"saved");
  EXPECT_EQ(written(*again), written(*document));
}

}  // namespace
}  // namespace hedro34::testing
