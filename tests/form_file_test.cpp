#include "hedro34/platform/form_template.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/form_files.h"
#include "tests/refusals.h"
#include "tests/support.h"

namespace hedro34::testing {
namespace {

using namespace form_files;
using Kind = Refusal::Kind;

// A form with one field that holds the defaults, written out, and its choices.
std::string plain(const char* labels = "[]", const char* values = "[]") {
  return std::string(R"({
  "format": "hedro34-form",
  "version": 1,
  "pages": [
    {
      "regions": [
        {
          "name": "",
          "regionKind": 1,
          "responseKind": 1,
          "valueKind": 1,
          "groupNumber": 0,
          "subjectiveRegion": false,
          "questions": [
            {
              "name": "",
              "questionText": "",
              "itemOption": 0,
              "graded": false,
              "correctPoints": 1,
              "incorrectPoints": 0,
              "noResponsePoints": 0,
              "choiceLabels": )") +
         labels + R"(,
              "choiceValues": )" +
         values + R"(,
              "scaleOption": 0,
              "subjectiveQuestion": false,
              "multiplesAllowed": 0
            }
          ]
        }
      ]
    }
  ]
}
)";
}

TEST(FormFile, IsWrittenAsItWasRead) { EXPECT_EQ(written(*form_of(full)), full); }

TEST(FormFile, MissingMembersAndNewObjectsHaveTheDefaults) {
  const struct {
    const char* what;
    std::string file;
    std::string written;
  } rows[] = {
      {"no member at all", with_field(""), plain()},
      {"labels alone", with_field(R"("choiceLabels":["A","B","C"])"),
       plain(R"(["A", "B", "C"])", R"(["1", "2", "3"])")},
      {"labels and no values", with_field(R"("choiceLabels":[])"), plain()},
      {"no labels and no values", with_field(R"("choiceValues":[])"), plain()},
      {"no pages", with_members(""), "{\n  \"format\": \"hedro34-form\",\n  \"version\": 1,\n  \"pages\": []\n}\n"},
      {"no regions", with_members(R"(,"pages":[{}])"),
       "{\n  \"format\": \"hedro34-form\",\n  \"version\": 1,\n  \"pages\": [\n    {\n      \"regions\": []\n    }\n  ]\n}\n"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(written(*form_of(row.file)), row.written);
  }
  const auto built = make<FormTemplate>();
  built->pages().add()->regions().add()->questions().add();
  EXPECT_EQ(written(*built), plain());
}

TEST(FormFile, ReadsWhatJsonAllows) {
  const struct {
    const char* what;
    std::string file;
    std::string written;
  } rows[] = {
      {"a byte-order mark", "\xEF\xBB\xBF" + with_field(""), plain()},
      {"white space around", " \r\n\t" + with_field("") + "\n\n", plain()},
      {"members in another order", R"({"pages":[],"version":1,"format":"hedro34-form"})",
       "{\n  \"format\": \"hedro34-form\",\n  \"version\": 1,\n  \"pages\": []\n}\n"},
      {"escapes", with_field(R"("choiceLabels":["\u0041\ud83d\ude00\/\n"])"), plain("[\"A😀/\\n\"]", R"(["1"])")},
      {"a zero character", with_field(R"("choiceLabels":["a\u0000b"])"), plain(R"(["a\u0000b"])", R"(["1"])")},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(written(*form_of(row.file)), row.written);
  }
}

TEST(FormFile, FloatsKeepTheir64Bits) {
  const struct {
    const char* file;
    double value;
    const char* written;
  } rows[] = {
      {"1", 1, "1"},
      {"1.0", 1, "1"},
      {"-0", -0.0, "-0"},
      {"-0.0", -0.0, "-0"},
      {"0.1", 0.1, "0.1"},
      {"0.30000000000000004", 0.1 + 0.2, "0.30000000000000004"},
      {"5e-324", std::numeric_limits<double>::denorm_min(), "5e-324"},
      {"1.7976931348623157e308", std::numeric_limits<double>::max(), "1.7976931348623157e+308"},
      {"9007199254740993", 9007199254740992.0, "9007199254740992"},
      {"9223372036854775808", 9223372036854775808.0, "9223372036854775808"},     // one beyond 64 bits with a sign
      {"18446744073709551616", 18446744073709551616.0, "18446744073709551616"},  // one beyond 64 bits
      {"-100000000000000000000000", -1e23, "-1e+23"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.file);
    const auto form = form_of(with_field(std::string(R"("correctPoints":)") + row.file));
    const double held = form->pages().all()[0]->regions().all()[0]->questions().all()[0]->CorrectPoints();
    EXPECT_EQ(held, row.value);
    EXPECT_EQ(std::signbit(held), std::signbit(row.value));
    const std::string text = written(*form);
    EXPECT_NE(text.find(std::string(R"("correctPoints": )") + row.written + ","), std::string::npos) << text;
    EXPECT_EQ(written(*form_of(text)), text);
  }
}

TEST(FormFile, LoneSurrogatesAreWrittenAsReplacements) {
  const auto form = form_of(with_field(""));
  auto& region = *form->pages().all()[0]->regions().all()[0];
  region.SetName(u"a\xD83D");
  region.questions().all()[0]->SetName(u"\xDE00\xD83D\xDE00");
  const std::string text = written(*form);
  EXPECT_NE(text.find("\"name\": \"a\xEF\xBF\xBD\""), std::string::npos) << text;
  EXPECT_NE(text.find("\"name\": \"\xEF\xBF\xBD😀\""), std::string::npos) << text;
}

TEST(FormFile, RefusesWhatIsNoJson) {
  const auto form = form_of(full);
  const RefusalRow rows[] = {
      {"nothing", "", Kind::Malformed,
       "f: line 1, column 1: not JSON: unexpected end of input; expected '[', '{', or a literal"},
      {"only a mark", "\xEF\xBB\xBF", Kind::Malformed,
       "f: line 1, column 1: not JSON: unexpected end of input; expected '[', '{', or a literal"},
      {"half a mark", "\xEF\xBB{}", Kind::Malformed,
       "f: line 1, column 2: not JSON: invalid BOM; must be 0xEF 0xBB 0xBF if given"},
      {"XML", "<form/>", Kind::Malformed, "f: line 1, column 1: not JSON: invalid literal"},
      {"cut off", "{\n  \"format\": \"hedro34-form\",\n", Kind::Malformed,
       "f: line 3, column 1: not JSON: unexpected end of input; expected string literal"},
      {"no comma", "{\n  \"format\": \"hedro34-form\"\n  \"version\": 1}", Kind::Malformed,
       "f: line 3, column 3: not JSON: unexpected string literal; expected '}'"},
      {"a comma too many", "{\"format\": \"hedro34-form\",\r\n}", Kind::Malformed,
       "f: line 2, column 1: not JSON: unexpected '}'; expected string literal"},
      {"a name without quotes", "{\"format\": \"hedro34-form\", 12: 1}", Kind::Malformed,
       "f: line 1, column 28: not JSON: unexpected number literal; expected string literal"},
      {"a value that was cut", "{\"version\": 1, \"format\": nul}", Kind::Malformed,
       "f: line 1, column 29: not JSON: invalid literal"},
      {"columns count characters behind the mark", "\xEF\xBB\xBF" + with_field("\"name\":\"äöü\" true"),
       Kind::Malformed, "f: line 1, column 87: not JSON: unexpected true literal; expected '}'"},
      {"a comment", "// a form\n{}", Kind::Malformed, "f: line 1, column 1: not JSON: invalid literal"},
      {"something behind the end", with_members("") + "\n{}", Kind::Malformed,
       "f: line 2, column 1: not JSON: unexpected '{'; expected end of input"},
      {"a NUL behind the end", with_members("") + "\n " + std::string(1, '\0') + "}", Kind::Malformed,
       "f: line 2, column 2: not JSON: unexpected NUL"},
      {"a line break in a string", "{\"format\":\"\n\"}", Kind::Malformed,
       "f: line 1, column 12: not JSON: invalid string: control character U+000A (LF) must be escaped to \\u000A or \\n"},
      {"bytes that are not UTF-8", with_field("\"name\":\"\xFF\""), Kind::Malformed,
       "f: line 1, column 82: not JSON: invalid string: ill-formed UTF-8 byte"},
      {"a surrogate as UTF-8", with_field("\"name\":\"\xED\xA0\x80\""), Kind::Malformed,
       "f: line 1, column 83: not JSON: invalid string: ill-formed UTF-8 byte"},
      {"the first half of a pair", with_field(R"("name":"\ud83d")"), Kind::Malformed,
       "f: line 1, column 88: not JSON: invalid string: surrogate U+D800..U+DBFF must be followed by U+DC00..U+DFFF"},
      {"the second half of a pair", with_field(R"("name":"\ude00")"), Kind::Malformed,
       "f: line 1, column 87: not JSON: invalid string: surrogate U+DC00..U+DFFF must follow U+D800..U+DBFF"},
      {"a leading zero", with_field(R"("correctPoints":01)"), Kind::Malformed,
       "f: line 1, column 91: not JSON: unexpected number literal; expected '}'"},
  };
  expect_refusals(*form, rows, std::string(full));
}

TEST(FormFile, RefusesWhatTheFormatDoesNotAllow) {
  const auto form = form_of(full);
  const std::string field = "/pages/0/regions/0/questions/0";
  const RefusalRow rows[] = {
      {"a list", "[]", Kind::Malformed, "f: must be an object, not a list"},
      {"a string", "\"hedro34-form\"", Kind::Malformed, "f: must be an object, not a string"},
      {"a number", "1", Kind::Malformed, "f: must be an object, not a number"},
      {"an infinite number", "1e999", Kind::Malformed, "f: must be an object, not a fraction"},
      {"deep nesting", std::string(1000000, '['), Kind::Malformed, "f: must be an object, not a list"},
      {"deep nesting in a member", with_members(",\"pages\":" + std::string(1000000, '[')), Kind::Malformed,
       "f: /pages/0: must be an object, not a list"},
      {"no format", R"({"version":1,"pages":[]})", Kind::WrongKind, "f: /format: this member is missing"},
      {"no version", R"({"format":"hedro34-form"})", Kind::WrongKind, "f: /version: this member is missing"},
      {"neither", "{}", Kind::WrongKind, "f: /format: this member is missing"},
      {"another format", R"({"format":"hedro34-ktd","version":1})", Kind::WrongKind,
       "f: /format: must be \"hedro34-form\""},
      {"another case", R"({"format":"HEDRO34-form","version":1})", Kind::WrongKind,
       "f: /format: must be \"hedro34-form\""},
      {"a format of the wrong type", R"({"format":1})", Kind::Malformed, "f: /format: must be a string, not a number"},
      {"another version", R"({"format":"hedro34-form","version":2})", Kind::WrongKind, "f: /version: must be 1"},
      {"a huge version", R"({"version":99999999999999999999})", Kind::WrongKind, "f: /version: must be 1"},
      {"a version with a fraction", R"({"version":1.0})", Kind::Malformed,
       "f: /version: must be an integer, not a fraction"},
      {"a version as text", R"({"version":"1"})", Kind::Malformed, "f: /version: must be an integer, not a string"},
      {"an unknown member", with_members(R"(,"page":[])"), Kind::Malformed, "f: /page: unknown member"},
      {"a member in capitals", with_field(R"("Name":"")"), Kind::Malformed,
       "f: /pages/0/regions/0/questions/0/Name: unknown member"},
      {"a member of another object", with_members(R"(,"pages":[{"questions":[]}])"), Kind::Malformed,
       "f: /pages/0/questions: unknown member"},
      {"an unknown member with signs", with_members(R"(,"a/b~c\n":[])"), Kind::Malformed,
       "f: /a~1b~0c\\u000a: unknown member"},
      {"an unknown member without a name", with_members(R"(,"":[])"), Kind::Malformed, "f: /: unknown member"},
      {"a member twice", with_members(R"(,"version":1)"), Kind::Malformed, "f: /version: this member stands twice"},
      {"a list twice", with_members(R"(,"pages":[],"pages":[])"), Kind::Malformed,
       "f: /pages: this member stands twice"},
      {"a member of a field twice", with_field(R"("graded":true,"name":"","graded":true)"), Kind::Malformed,
       "f: /pages/0/regions/0/questions/0/graded: this member stands twice"},
      {"null", with_field(R"("name":null)"), Kind::Malformed,
       "f: /pages/0/regions/0/questions/0/name: must be a string, not null"},
      {"a number for a string", with_field(R"("name":1)"), Kind::Malformed,
       "f: /pages/0/regions/0/questions/0/name: must be a string, not a number"},
      {"a string for a Boolean", with_field(R"("graded":"true")"), Kind::Malformed,
       "f: /pages/0/regions/0/questions/0/graded: must be true or false, not a string"},
      {"a number for a Boolean", with_field(R"("graded":1)"), Kind::Malformed,
       "f: /pages/0/regions/0/questions/0/graded: must be true or false, not a number"},
      {"a Boolean for an integer", with_field(R"("itemOption":true)"), Kind::Malformed,
       "f: /pages/0/regions/0/questions/0/itemOption: must be an integer, not true"},
      {"a float for an integer", with_field(R"("itemOption":1e0)"), Kind::Malformed,
       "f: /pages/0/regions/0/questions/0/itemOption: must be an integer, not a fraction"},
      {"an infinite float for an integer", with_field(R"("itemOption":1e999)"), Kind::Malformed,
       "f: /pages/0/regions/0/questions/0/itemOption: must be an integer, not a fraction"},
      {"a string for a float", with_field(R"("correctPoints":"1")"), Kind::Malformed,
       "f: /pages/0/regions/0/questions/0/correctPoints: must be a number, not a string"},
      {"an infinite float", with_field(R"("correctPoints":1e999)"), Kind::Malformed,
       "f: /pages/0/regions/0/questions/0/correctPoints: the number is too large for a 64-bit float"},
      {"an object for a list", with_members(R"(,"pages":{})"), Kind::Malformed,
       "f: /pages: must be a list, not an object"},
      {"a string for a list", with_field(R"("choiceLabels":"AB")"), Kind::Malformed,
       "f: /pages/0/regions/0/questions/0/choiceLabels: must be a list, not a string"},
      {"a string for an object", with_members(R"(,"pages":[{},"x"])"), Kind::Malformed,
       "f: /pages/1: must be an object, not a string"},
      {"a number in a list of strings", with_field(R"("choiceLabels":["A",2])"), Kind::Malformed,
       "f: /pages/0/regions/0/questions/0/choiceLabels/1: must be a string, not a number"},
      {"a list in a list of strings", with_field(R"("choiceLabels":[[]])"), Kind::Malformed,
       "f: /pages/0/regions/0/questions/0/choiceLabels/0: must be a string, not a list"},
      {"the second region of the third page", with_members(R"(,"pages":[{},{},{"regions":[{},{"name":true}]}])"),
       Kind::Malformed, "f: /pages/2/regions/1/name: must be a string, not true"},
      {"16 bits", with_field(R"("itemOption":32768)"), Kind::Malformed,
       "f: /pages/0/regions/0/questions/0/itemOption: the integer does not fit in 16 bits"},
      {"16 bits below", with_members(R"(,"pages":[{"regions":[{"groupNumber":-32769}]}])"), Kind::Malformed,
       "f: /pages/0/regions/0/groupNumber: the integer does not fit in 16 bits"},
      {"32 bits", with_members(R"(,"pages":[{"regions":[{"valueKind":2147483648}]}])"), Kind::Malformed,
       "f: /pages/0/regions/0/valueKind: the integer does not fit in 32 bits"},
      {"beyond 63 bits", with_field(R"("itemOption":18446744073709551615)"), Kind::Malformed,
       "f: /pages/0/regions/0/questions/0/itemOption: the integer does not fit in 16 bits"},
      {"beyond 64 bits", with_field(R"("itemOption":-100000000000000000000)"), Kind::Malformed,
       "f: /pages/0/regions/0/questions/0/itemOption: the integer does not fit in 16 bits"},
      {"beyond a float", with_field("\"itemOption\":1" + std::string(400, '0')), Kind::Malformed,
       "f: /pages/0/regions/0/questions/0/itemOption: the integer does not fit in 16 bits"},
      {"fewer values than labels", with_field(R"("choiceLabels":["A","B"],"choiceValues":["1"])"), Kind::Malformed,
       "f: /pages/0/regions/0/questions/0/choiceValues: must have as many entries as choiceLabels, 2, not 1"},
      {"values in front of labels", with_field(R"("choiceValues":["1","2"],"choiceLabels":["A"])"), Kind::Malformed,
       "f: /pages/0/regions/0/questions/0/choiceValues: must have as many entries as choiceLabels, 1, not 2"},
      {"labels and an empty list", with_field(R"("choiceLabels":["A"],"choiceValues":[])"), Kind::Malformed,
       "f: /pages/0/regions/0/questions/0/choiceValues: must have as many entries as choiceLabels, 1, not 0"},
      {"values alone", with_field(R"("choiceValues":["1"])"), Kind::Malformed,
       "f: /pages/0/regions/0/questions/0/choiceValues: must have as many entries as choiceLabels, 0, not 1"},
      {"one page too many", with_members(",\"pages\":[" + repeated("{}", 32768) + "]"), Kind::Malformed,
       "f: /pages/32767: a form has no more than 32767 pages"},
      {"one field too many, on the second page",
       with_members(R"(,"pages":[{"regions":[{"questions":[)" + repeated("{}", 32766) +
                    R"(]}]},{"regions":[{},{"questions":[{},{}]}]}])"),
       Kind::Malformed, "f: /pages/1/regions/1/questions/1: a form has no more than 32767 fields"},
  };
  expect_refusals(*form, rows, std::string(full));
}

TEST(FormFile, FilesAreReplacedWholeOrNotAtAll) {
  const Folder folder;
  const String path = folder.write("a.form.json", full);
  const auto form = make<FormTemplate>();
  ASSERT_TRUE(form->Load(path)) << to_line(last_refusal());
  EXPECT_EQ(written(*form), full);
  EXPECT_FALSE(form->Load(folder.path("none.form.json")));
  EXPECT_EQ(last_refusal().kind, Kind::Unreadable);
  EXPECT_FALSE(form->Load(folder.write("bad.form.json", with_field(R"("x":1)"))));
  EXPECT_EQ(to_line(last_refusal()),
            to_utf8(folder.path("bad.form.json")) + ": /pages/0/regions/0/questions/0/x: unknown member");
  EXPECT_EQ(written(*form), full);

  auto& field = *form->pages().all()[0]->regions().all()[0]->questions().all()[1];
  const struct {
    const char* what;
    std::function<void()> spoil;
    std::function<void()> mend;
    const char* refusal;
  } rows[] = {
      {"infinite", [&] { field.SetNoResponsePoints(-std::numeric_limits<double>::infinity()); },
       [&] { field.SetNoResponsePoints(0); }, "/noResponsePoints: the number is not finite"},
      {"no number", [&] { field.SetCorrectPoints(std::numeric_limits<double>::quiet_NaN()); },
       [&] { field.SetCorrectPoints(1); }, "/correctPoints: the number is not finite"},
      {"lists that differ", [&] { field.SetChoiceValues(make<FormChoiceList>(std::vector<String>{u"1"})); },
       [&] { field.SetChoiceValues(make<FormChoiceList>()); },
       "/choiceValues: must have as many entries as choiceLabels, 0, not 1"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    row.spoil();
    EXPECT_FALSE(form->Save(path));
    EXPECT_EQ(last_refusal().kind, Kind::Unwritable);
    EXPECT_EQ(to_line(last_refusal()), to_utf8(path) + ": /pages/0/regions/0/questions/1" + row.refusal);
    row.mend();
    const auto kept = make<FormTemplate>();
    EXPECT_TRUE(kept->Load(path));
    EXPECT_EQ(written(*kept), full);
  }
  EXPECT_FALSE(form->Save(folder.path("none/a.form.json")));
  EXPECT_EQ(last_refusal().kind, Kind::Unwritable);

  field.SetName(u"saved");
  ASSERT_TRUE(form->Save(path)) << to_line(last_refusal());
  EXPECT_EQ(last_refusal().kind, Kind::None);
  const auto again = make<FormTemplate>();
  ASSERT_TRUE(again->Load(path));
  EXPECT_EQ(again->pages().all()[0]->regions().all()[0]->questions().all()[1]->Name(), u"saved");
  EXPECT_EQ(written(*again), written(*form));
}

}  // namespace
}  // namespace hedro34::testing
