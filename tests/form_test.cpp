#include "hedro34/documents/form_template.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <ctime>
#include <limits>

#include "tests/platform_support.h"

namespace hedro34::testing {
namespace {

const std::string full = file_text("full.form.json");

std::string with_members(const std::string& members) {
  return R"({"format":"hedro34-form","version":1)" + members + "}";
}
std::string with_field(const std::string& members) {
  return with_members(R"(,"pages":[{"regions":[{"questions":[{)" + members + "}]}]}]");
}

// Pages of regions, each a group and a number of fields; every field is graded.
using Pages = std::vector<std::vector<std::pair<std::int16_t, int>>>;

FormRegions& regions(FormTemplate& form, std::size_t page = 0) { return form.pages().all()[page]->regions(); }
FormQuestions& fields(FormTemplate& form, std::size_t page = 0, std::size_t region = 0) {
  return regions(form, page).all()[region]->questions();
}

void add_region(FormRegions& page, std::int16_t group, int fields) {
  const auto region = page.add();
  region->SetGroupNumber(group);
  for (int i = 0; i < fields; ++i) region->questions().add()->SetGraded(true);
}

Ref<FormTemplate> built_of(const Pages& pages) {
  auto form = make<FormTemplate>();
  for (const auto& page : pages) {
    auto& added = form->pages().add()->regions();
    for (const auto& [group, count] : page) add_region(added, group, count);
  }
  return form;
}

// The number of each field, regions in brackets; behind them the two counts of the template.
std::string numbers(FormTemplate& form) {
  std::string text;
  for (const auto& page : form.pages().all()) {
    for (const auto& region : page->regions().all()) {
      text += '[';
      for (const auto& field : region->questions().all()) text += std::to_string(field->FieldNumber(true));
      text += ']';
    }
    text += '/';
  }
  return text + " " + std::to_string(form.QuestionCount()) + " " + std::to_string(form.GradedQuestionCount());
}

Array<String> names(FormTemplate& form, std::int16_t first, std::int16_t last) {
  return to_strings(form.QuestionNames(first, last, false, u"\t", false));
}

TEST(Form, NumbersFieldsInTheOrderOfTheWalk) {
  const std::pair<Pages, const char*> rows[] = {
      {{{{0, 2}, {0, 1}}, {{0, 0}, {0, 2}}, {}, {{0, 1}}}, "[12][3]/[][45]//[6]/ 6 6"},
      {{{{7, 1}, {8, 1}, {7, 1}, {0, 1}, {7, 1}}}, "[1][2][3][4][5]/ 5 5"},  // other regions between
      {{{{0, 1}, {7, 2}}, {{7, 2}, {7, 1}, {7, 0}, {0, 1}}}, "[1][23]/[23][2][][4]/ 4 4"},
      {{{{0, 1}, {7, 2}, {7, 4}, {0, 1}}}, "[1][23][2333][4]/ 4 4"},  // a continuation with more fields
      {{{{0, 2}, {7, 0}, {7, 2}, {0, 1}}}, "[12][][22][3]/ 3 3"},     // a first region without fields
  };
  for (const auto& [pages, expected] : rows) EXPECT_EQ(numbers(*built_of(pages)), expected);
}

TEST(Form, NumbersFollowEveryChange) {
  const auto form = built_of({{{0, 1}, {7, 1}}, {{7, 1}}});
  const auto outside = form_objects().region(nullptr);
  outside->Questions()->Add();
  const std::pair<std::function<void()>, const char*> rows[] = {
      {[] {}, "[1][2]/[2]/ 2 2"},
      {[&] { fields(*form, 1).add(); }, "[1][2]/[22]/ 2 2"},                      // in a continuation
      {[&] { add_region(regions(*form, 1), 7, 1); }, "[1][2]/[22][2]/ 2 2"},      // one more
      {[&] { add_region(regions(*form, 1), 0, 2); }, "[1][2]/[22][2][34]/ 4 4"},  // at the end
      {[&] { fields(*form, 1, 2).add(); }, "[1][2]/[22][2][345]/ 5 4"},           // at the end
      {[&] { fields(*form).add(); }, "[12][3]/[33][3][456]/ 6 4"},                // in front
      {[&] { fields(*form, 0, 1).add(); }, "[12][34]/[34][3][567]/ 7 4"},         // in a first region
      {[&] { regions(*form).Add(outside); }, "[12][34][5]/[67][6][8910]/ 10 5"},  // between a group's regions
      {[&] { regions(*form).all()[2]->SetGroupNumber(7); }, "[12][34][3]/[34][3][567]/ 7 4"},
      {[&] { fields(*form, 1).all()[0]->SetGraded(false); }, "[12][34][3]/[34][3][567]/ 7 4"},  // not visited
      {[&] { fields(*form).all()[0]->SetGraded(false); }, "[12][34][3]/[34][3][567]/ 7 3"},
      {[&] { fields(*form).all()[0]->SetGraded(false); }, "[12][34][3]/[34][3][567]/ 7 3"},
      {[&] { form->pages().add(); }, "[12][34][3]/[34][3][567]// 7 3"},
      {[&] { add_region(regions(*form, 1), 0, 1); }, "[12][34][3]/[34][3][567][8]// 8 4"},  // not on the last page
  };
  for (const auto& [change, expected] : rows) {
    change();
    EXPECT_EQ(numbers(*form), expected);
  }
}

TEST(Form, NumbersWithoutAWalkForEach) {
  const auto once = [](std::int16_t count) {
    const std::clock_t start = std::clock();
    const auto form = make<FormTemplate>();
    auto& page = form->pages().add()->regions();
    for (std::int16_t i = 1; i <= count; ++i) {
      page.add()->questions().add()->SetGraded(true);
      EXPECT_EQ(page.all().back()->questions().all()[0]->FieldNumber(true), form->GradedQuestionCount());
      EXPECT_EQ(names(*form, i, i).UBound(), 1);
    }
    return std::clock() - start;
  };
  // The least of three: where clock() counts what other programs take, a busy machine would decide.
  const auto cost = [&](std::int16_t count) { return std::min({once(count), once(count), once(count)}); };
  EXPECT_LT(cost(32'000), 24 * cost(4'000));
}

TEST(Form, TakesAsManyFieldsAndPagesAsACountCanSay) {
  const auto form = read_of<FormTemplate>(with_field(R"("graded":true)" + repeat(R"(},{"graded":true)", 32766)));
  EXPECT_EQ(names(*form, 1, 32767).UBound(), 32767);
  add_region(form->pages().add()->regions(), 0, 0);
  fields(*form, 1).add();
  EXPECT_EQ(failure_of([&] { form->QuestionCount(); }), 6);
  EXPECT_EQ(failure_of([&] { names(*form, 1, 1); }), 6);
  EXPECT_EQ(form->GradedQuestionCount(), 32767);
  EXPECT_EQ(written(*form), ": /pages/1/regions/0/questions/0: a form has no more than 32767 fields");
  fields(*form).add()->SetGraded(true);
  EXPECT_EQ(failure_of([&] { form->GradedQuestionCount(); }), 6);
  EXPECT_EQ(failure_of([&] { regions(*form).all()[0]->QuestionCount(); }), 6);
  const auto pages = read_of<FormTemplate>(with_members(",\"pages\":[" + repeat("{},", 32766) + "{}]"));
  EXPECT_EQ(pages->PageCount(), 32767);
  pages->pages().add();
  EXPECT_EQ(failure_of([&] { pages->PageCount(); }), 6);
  EXPECT_EQ(written(*pages), ": /pages/32767: a form has no more than 32767 pages");
}

TEST(Form, NamesFieldsOrTheirRegions) {
  const auto form = read_of<FormTemplate>(with_members(R"(,"pages":[
    {"regions":[{"name":"R1","questions":[{"name":"a"},{}]},{"name":"empty"},
                {"name":"R2","groupNumber":7,"questions":[{"name":"c"}]}]},
    {"regions":[{"name":"more","groupNumber":7,"questions":[{"name":"x"}]},{"questions":[{},{"name":"e"}]},{}]}])"));
  EXPECT_EQ(names(*form, 1, form->QuestionCount()), Array<String>::of({u"a", u"R1", u"c", u"", u"e"}, 1));
  EXPECT_EQ(names(*form, 2, 4), Array<String>::of({u"R1", u"c", u""}, 1));
  EXPECT_FALSE(names(*form, 6, 5).has_bounds());
  EXPECT_EQ(failure_of([&] { names(*form, 0, 1); }), 9);
  EXPECT_EQ(failure_of([&] { names(*form, 1, 6); }), 9);
}

TEST(Form, CopiesShareNothing) {
  const auto form = read_of<FormTemplate>(full);
  const Ref<TIBTemplate> held = form->Copy(true);
  auto& copy = dynamic_cast<FormTemplate&>(*held);
  EXPECT_EQ(written(copy), full);
  const auto field = copy.Pages()->Item(std::int16_t{1})->Regions()->Item(1.0)->Questions()->Item(1);
  field->SetGraded(false);
  field->ChoiceLabels()->SetItem(1, u"changed");
  field->SetChoiceLabels(field->ChoiceLabels());
  EXPECT_EQ(field->ChoiceLabels()->AsArray(5), Array<String>::of({u"changed", u"", u"C"}, 5));
  field->ChoiceValues()->SetItem(1, u"changed");
  regions(copy, 1).add()->questions().add();
  copy.pages().add();
  EXPECT_EQ(written(*form), full);
  form->Clear();
  EXPECT_EQ(numbers(copy), "[1]/[2]// 2 0");
}

TEST(Form, FailuresHaveTheirNumbersAndChangeNothing) {
  const auto form = read_of<FormTemplate>(full);
  const auto page = form->Pages()->Item(1)->Regions();
  const auto region = page->Item(1);
  const auto field = region->Questions()->Item(1);
  const FailingHost host;  // whose objects are none of the library's own
  const auto foreign = platform().template_objects->region(nullptr);
  foreign->Questions()->Add();
  EXPECT_EQ(failure_of([&] { region->Questions()->Item(std::int16_t{0}); }), 9);
  EXPECT_EQ(failure_of([&] { region->Questions()->Item(std::numeric_limits<double>::quiet_NaN()); }), 9);
  EXPECT_EQ(failure_of([&] { form->Pages()->Item(u"1"); }), 13);
  EXPECT_EQ(failure_of([&] { page->Add(foreign); }), 13);
  EXPECT_EQ(failure_of([&] { field->SetChoiceValues(foreign->Questions()->Item(1)->ChoiceValues()); }), 13);
  EXPECT_EQ(failure_of([&] { page->Add(nullptr); }), 91);
  EXPECT_EQ(failure_of([&] { field->SetChoiceLabels(nullptr); }), 91);
  EXPECT_EQ(failure_of([&] { form->Pages()->Item(2)->Regions()->Add(region); }), 5);  // which has its place
  EXPECT_EQ(written(*form), full);
}

TEST(Form, WhatIsHeldOutlivesWhatHeldIt) {
  auto form = built_of({{{0, 1}}});
  Ref<FormPages> pages(&form->pages());
  Ref<FormRegions> dropped(&regions(*form));
  Ref<FormRegion> region = dropped->all()[0];
  Ref<FormQuestions> questions(&region->questions());
  const auto field = questions->all()[0];
  EXPECT_EQ(field->FieldNumber(true), 1);
  form->Clear();
  add_region(*dropped, 7, 1);
  EXPECT_EQ(std::to_string(field->FieldNumber(true)) + numbers(*form), "0 0 0");
  const auto late = pages->add()->regions().add();
  form = nullptr;
  late->SetGroupNumber(1);
  add_region(pages->add()->regions(), 0, 1);
  pages = nullptr;
  dropped = nullptr;
  EXPECT_EQ(make<FormTemplate>()->pages().add()->regions().Add(region), 1) << "it stands on no page any more";
  region = nullptr;
  questions->add()->SetGraded(true);
  questions = nullptr;
  EXPECT_EQ(field->FieldNumber(true), 0);
}

TEST(Form, FilesHaveAFixedFormAndDefaults) {
  EXPECT_EQ(written(*read_of<FormTemplate>(full)), full);
  EXPECT_EQ(written(*read_of<FormTemplate>(with_field(""))), file_text("new.form.json"));
  const std::pair<const char*, const char*> rows[] = {
      {R"("choiceLabels":["A","B","C"])", R"("choiceValues": ["1", "2", "3"],)"},
      {R"("name":"\u0041\ud83d\ude00\/\n\u0000")", R"("name": "A😀/\n\u0000",)"},
      {R"("correctPoints":1.0)", R"("correctPoints": 1,)"},
      {R"("correctPoints":-0)", R"("correctPoints": -0,)"},
      {R"("correctPoints":0.30000000000000004)", R"("correctPoints": 0.30000000000000004,)"},
      {R"("correctPoints":9223372036854775808)", R"("correctPoints": 9223372036854775808,)"},
      {R"("correctPoints":18446744073709551616)", R"("correctPoints": 18446744073709551616,)"},
  };
  for (const auto& [members, part] : rows) {
    for (const std::string mark : {"", "\xEF\xBB\xBF"}) {  // the quick way to read refuses a mark
      const auto form = read_of<FormTemplate>(mark + " \r\n\t" + with_field(members) + "\n\n");
      EXPECT_THAT(written(*form), ::testing::HasSubstr(part));
    }
  }
  const auto lone = read_of<FormTemplate>(R"({"pages":[{"regions":[{}]}],"version":1,"format":"hedro34-form"})");
  regions(*lone).all()[0]->SetName(u"a\xD83D\xD83D\xDE00\xDE00");
  EXPECT_THAT(written(*lone), ::testing::HasSubstr("\"a\xEF\xBF\xBD😀\xEF\xBF\xBD\""));
}

TEST(Form, RejectsWhatIsNoJson) {
  ErrorRow rows[] = {
      {"", "1, column 1: not JSON: unexpected end of input; expected '[', '{', or a literal"},
      {"\xEF\xBB{}", "1, column 2: not JSON: invalid BOM; must be 0xEF 0xBB 0xBF if given"},
      {"{\n  \"version\": 1\n  \"x\"}", "3, column 3: not JSON: unexpected string literal; expected '}'"},
      {"{\"version\": 1,\r\n}", "2, column 1: not JSON: unexpected '}'; expected string literal"},
      {"{\"version\": 1, true}", "1, column 16: not JSON: unexpected true literal; expected string literal"},
      {"\xEF\xBB\xBF{\"pages\":[{\"regions\":[{\"name\":\"äöü\" x", "1, column 37: not JSON: invalid literal"},
      {with_members("") + "\n{}", "2, column 1: not JSON: unexpected '{'; expected end of input"},
      {"{\"\xFF\"", "1, column 3: not JSON: invalid string: ill-formed UTF-8 byte"},
      {R"({"\ude00")", "1, column 8: not JSON: invalid string: surrogate U+DC00..U+DFFF must follow U+D800..U+DBFF"},
  };
  for (ErrorRow& row : rows) row.line.insert(0, "line ");
  expect_errors<FormTemplate>(full, rows);
}

TEST(Form, RejectsWhatTheFormatDoesNotAllow) {
  const ErrorRow rows[] = {
      {"1e999", "must be an object, not a fraction"},
      {with_members(",\"pages\":" + std::string(1000000, '[')), "/pages/0: must be an object, not a list"},
      {R"({"version":1,"pages":[]})", "/format: this member is missing", FileError::Kind::WrongKind},
      {R"({"format":"HEDRO34-form","version":1})", "/format: must be \"hedro34-form\"", FileError::Kind::WrongKind},
      {R"({"format":1})", "/format: must be a string, not a number"},
      {R"({"version":2})", "/version: must be 1", FileError::Kind::WrongKind},
      {R"({"version":"1"})", "/version: must be an integer, not a string"},
      {R"({"a/b~c\n":[]})", "/a~1b~0c\\u000a: unknown member"},
      {R"({"pages":{}})", "/pages: must be a list, not an object"},
      {R"({"pages":[{},{"regions":[{},""]}]})", "/pages/1/regions/1: must be an object, not a string"},
  };
  expect_errors<FormTemplate>(full, rows);
  ErrorRow field_rows[] = {
      {R"("graded":true,"name":"","graded":true)", "graded: this member stands twice"},
      {R"("name":null)", "name: must be a string, not null"},
      {R"("itemOption":1e0)", "itemOption: must be an integer, not a fraction"},
      {R"("itemOption":32768)", "itemOption: the integer does not fit in 16 bits"},
      {"\"itemOption\":1" + std::string(400, '0'), "itemOption: the integer does not fit in 16 bits"},
      {R"("graded":1)", "graded: must be true or false, not a number"},
      {R"("correctPoints":{})", "correctPoints: must be a number, not an object"},
      {R"("correctPoints":1e999)", "correctPoints: the number is too large for a 64-bit float"},
      {R"("choiceLabels":["A",[]])", "choiceLabels/1: must be a string, not a list"},
      {R"("choiceLabels":["A"],"choiceValues":[])",
       "choiceValues: must have as many entries as choiceLabels, 1, not 0"},
      {R"("choiceValues":["1"])", "choiceValues: must have as many entries as choiceLabels, 0, not 1"},
  };
  for (ErrorRow& row : field_rows) row = {with_field(row.file), "/pages/0/regions/0/questions/0/" + row.line};
  expect_errors<FormTemplate>(full, field_rows);
}

TEST(Form, FilesAreReplacedWholeOrNotAtAll) {
  const SpoiltRow<FormTemplate> rows[] = {
      {[](auto& form) {
         add_region(regions(form), 0, 300);  // of which much is written
         fields(form, 0, 1).add()->SetCorrectPoints(std::numeric_limits<double>::quiet_NaN());
       },
       "/pages/0/regions/1/questions/300/correctPoints: the number is not finite"},
      {[](auto& form) { fields(form).all()[0]->SetChoiceValues(make<FormChoiceList>()); },
       "/pages/0/regions/0/questions/0/choiceValues: must have as many entries as choiceLabels, 3, not 0"},
  };
  expect_files_whole_or_not_at_all<FormTemplate>(full, rows);
}

TEST(Form, FilesWithoutMemory) { expect_no_throw_without_memory<FormTemplate>(full); }

}  // namespace
}  // namespace hedro34::testing
