#include "hedro34/platform/form_template.h"

#include <gtest/gtest.h>

#include <chrono>
#include <limits>

#include "tests/form_files.h"
#include "tests/refusals.h"
#include "tests/support.h"

namespace hedro34::testing {
namespace {

using namespace form_files;

// A form of pages with regions, each given as a group and a number of fields; every field is graded.
struct RegionRow {
  std::int16_t group;
  int fields;
};
using Pages = std::vector<std::vector<RegionRow>>;

void add_region(FormRegions& regions, const RegionRow& row) {
  const auto region = regions.add();
  if (row.group != 0) region->SetGroupNumber(row.group);
  for (int i = 0; i < row.fields; ++i) region->questions().add()->SetGraded(true);
}

Ref<FormTemplate> built_of(const Pages& pages) {
  auto form = make<FormTemplate>();
  for (const auto& regions : pages) {
    const auto page = form->pages().add();
    for (const RegionRow& region : regions) add_region(page->regions(), region);
  }
  return form;
}

// The number of each field, regions in brackets; behind them the two counts of the template.
std::string numbers(FormTemplate& form) {
  std::string text;
  for (const auto& page : form.pages().all()) {
    for (const auto& region : page->regions().all()) {
      text += '[';
      for (const auto& field : region->questions().all()) {
        text += (text.back() == '[' ? "" : " ") + std::to_string(field->FieldNumber(true));
      }
      text += ']';
    }
    text += '/';
  }
  return text + " " + std::to_string(form.QuestionCount()) + " " + std::to_string(form.GradedQuestionCount());
}

TEST(Form, NumbersFieldsInTheOrderOfTheWalk) {
  const struct {
    const char* what;
    Pages pages;
    const char* numbers;
  } rows[] = {
      {"no page", {}, " 0 0"},
      {"one field", {{{0, 1}}}, "[1]/ 1 1"},
      {"pages and regions", {{{0, 2}, {0, 1}}, {{0, 0}, {0, 2}}, {}, {{0, 1}}}, "[1 2][3]/[][4 5]//[6]/ 6 6"},
      {"a group of two", {{{7, 2}, {7, 2}, {0, 1}}}, "[1 2][1 2][3]/ 3 3"},
      {"group 0 is none", {{{0, 1}, {0, 1}}}, "[1][2]/ 2 2"},
      {"another region between", {{{7, 1}, {8, 1}, {7, 1}}}, "[1][2][3]/ 3 3"},
      {"a region of no group between", {{{7, 1}, {0, 1}, {7, 1}}}, "[1][2][3]/ 3 3"},
      {"across a page border", {{{0, 1}, {7, 2}}, {{7, 2}, {7, 1}, {7, 0}, {0, 1}}}, "[1][2 3]/[2 3][2][][4]/ 4 4"},
      {"across an empty page", {{{7, 1}}, {}, {{7, 1}}}, "[1]//[1]/ 1 1"},
      {"a continuation with more fields", {{{0, 1}, {7, 2}, {7, 4}}}, "[1][2 3][2 3 3 3]/ 3 3"},
      {"a continuation with fewer fields", {{{7, 3}, {7, 1}, {0, 1}}}, "[1 2 3][1][4]/ 4 4"},
      {"a first region without fields", {{{0, 2}, {7, 0}, {7, 2}, {0, 1}}}, "[1 2][][2 2][3]/ 3 3"},
      {"a negative group", {{{-1, 1}, {-1, 1}, {1, 1}}}, "[1][1][2]/ 2 2"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(numbers(*built_of(row.pages)), row.numbers);
  }
}

TEST(Form, NumbersFollowEveryChange) {
  const auto form = built_of(Pages{{{0, 1}, {7, 1}}, {{7, 1}}});
  const auto region = [&](std::size_t p, std::size_t r) { return form->pages().all()[p]->regions().all()[r]; };
  const auto field = [&](std::size_t p, std::size_t r) { return region(p, r)->questions().all()[0]; };
  EXPECT_EQ(numbers(*form), "[1][2]/[2]/ 2 2");
  region(1, 0)->questions().add();  // at the end, in a continuation
  EXPECT_EQ(numbers(*form), "[1][2]/[2 2]/ 2 2");
  add_region(form->pages().all()[1]->regions(), {7, 1});  // 0 when it is added, then of the group
  EXPECT_EQ(numbers(*form), "[1][2]/[2 2][2]/ 2 2");
  add_region(form->pages().all()[1]->regions(), {0, 2});
  EXPECT_EQ(numbers(*form), "[1][2]/[2 2][2][3 4]/ 4 4");
  region(1, 2)->questions().add();  // at the end
  EXPECT_EQ(numbers(*form), "[1][2]/[2 2][2][3 4 5]/ 5 4");
  region(0, 0)->questions().add();  // in front
  EXPECT_EQ(numbers(*form), "[1 2][3]/[3 3][3][4 5 6]/ 6 4");
  region(0, 1)->questions().add();  // in the first of a group
  EXPECT_EQ(numbers(*form), "[1 2][3 4]/[3 4][3][5 6 7]/ 7 4");
  add_region(form->pages().all()[0]->regions(), {0, 1});  // between the group's regions
  EXPECT_EQ(numbers(*form), "[1 2][3 4][5]/[6 7][6][8 9 10]/ 10 6");
  region(0, 1)->SetGroupNumber(0);
  region(0, 2)->SetGroupNumber(7);
  EXPECT_EQ(numbers(*form), "[1 2][3 4][5]/[5 5][5][6 7 8]/ 8 5");
  field(1, 0)->SetGraded(false);  // not visited
  field(1, 1)->SetGraded(true);
  EXPECT_EQ(form->GradedQuestionCount(), 5);
  field(0, 0)->SetGraded(false);
  field(0, 0)->SetGraded(false);
  EXPECT_EQ(form->GradedQuestionCount(), 4);
  field(0, 0)->SetGraded(true);
  EXPECT_EQ(form->GradedQuestionCount(), 5);
  region(1, 0)->SetGroupNumber(0);  // now its second field counts, which is not graded
  EXPECT_EQ(numbers(*form), "[1 2][3 4][5]/[6 7][8][9 10 11]/ 11 6");
  form->pages().add();
  EXPECT_EQ(numbers(*form), "[1 2][3 4][5]/[6 7][8][9 10 11]// 11 6");
  add_region(form->pages().all()[1]->regions(), {0, 1});  // not on the last page
  add_region(form->pages().all()[2]->regions(), {0, 1});
  EXPECT_EQ(numbers(*form), "[1 2][3 4][5]/[6 7][8][9 10 11][12]/[13]/ 13 8");
  form->pages().all()[0]->regions().add()->questions().add();
  EXPECT_EQ(numbers(*form), "[1 2][3 4][5][6]/[7 8][9][10 11 12][13]/[14]/ 14 8");
  form->Clear();
  EXPECT_EQ(numbers(*form), " 0 0");
}

// A walk for each of these numbers would take minutes.
TEST(Form, NumbersWithoutAWalkForEach) {
  const auto form = make<FormTemplate>();
  const auto start = std::chrono::steady_clock::now();
  Ref<FormPage> page;
  while (form->QuestionCount() < 32767) {
    if (form->QuestionCount() % 50 == 0) page = form->pages().add();
    const auto field = page->regions().add()->questions().add();
    field->SetGraded(true);
    EXPECT_EQ(field->FieldNumber(true), form->GradedQuestionCount());
  }
  std::int32_t last = 0;
  for (const auto& each : form->pages().all()) {
    for (const auto& region : each->regions().all()) {
      const auto field = region->questions().all()[0];
      field->SetGraded(false);
      EXPECT_EQ(field->FieldNumber(true), ++last);
      EXPECT_EQ(form->GradedQuestionCount(), 32767 - last);
      EXPECT_EQ(to_strings(form->QuestionNames(std::int16_t(last), std::int16_t(last), false, u"\t", false)).UBound(),
                1);
    }
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

TEST(Form, TakesAsManyFieldsAndPagesAsACountCanSay) {
  const auto pages = form_of(with_members(",\"pages\":[" + repeated("{}", 32767) + "]"));
  EXPECT_EQ(pages->PageCount(), 32767);
  const auto fields = form_of(
      with_members(R"(,"pages":[{"regions":[{"questions":[)" + repeated(R"({"graded":true})", 32767) + "]}]}]"));
  EXPECT_EQ(fields->QuestionCount(), 32767);
  EXPECT_EQ(fields->GradedQuestionCount(), 32767);
  EXPECT_EQ(to_strings(fields->QuestionNames(1, 32767, false, u"\t", false)).UBound(), 32767);

  fields->pages().add()->regions().add()->questions().add();
  EXPECT_EQ(failure_of([&] { fields->QuestionCount(); }), 6);
  EXPECT_EQ(failure_of([&] { fields->QuestionNames(1, 1, false, u"\t", false); }), 6);
  EXPECT_EQ(fields->GradedQuestionCount(), 32767);
  auto& region = *fields->pages().all()[0]->regions().all()[0];
  EXPECT_EQ(region.QuestionCount(), 32767);
  region.questions().add()->SetGraded(true);
  EXPECT_EQ(failure_of([&] { fields->GradedQuestionCount(); }), 6);
  EXPECT_EQ(failure_of([&] { region.QuestionCount(); }), 6);
  EXPECT_EQ(region.questions().Count(), 32768);
  EXPECT_EQ(fields->to_json(u"f"), std::nullopt);
  EXPECT_EQ(to_line(last_refusal()), "f: /pages/0/regions/0/questions/32767: a form has no more than 32767 fields");
  pages->pages().add();
  EXPECT_EQ(failure_of([&] { pages->PageCount(); }), 6);
  EXPECT_EQ(pages->Pages()->Count(), 32768);
}

TEST(Form, NamesFieldsOrTheirRegions) {
  const auto form = form_of(with_members(R"(,"pages":[
    {"regions":[{"name":"R1","questions":[{"name":"a"},{}]},{"name":"empty"},
                {"name":"R2","groupNumber":7,"questions":[{"name":"c"}]}]},
    {"regions":[{"name":"more","groupNumber":7,"questions":[{"name":"x"}]},{"questions":[{},{"name":"e"}]},{}]}])"));
  const auto names = [&](std::int16_t first, std::int16_t last) {
    return to_strings(form->QuestionNames(first, last, false, u"\t", false));
  };
  EXPECT_EQ(names(1, form->QuestionCount()), Array<String>::of({u"a", u"R1", u"c", u"", u"e"}, 1));
  EXPECT_EQ(names(2, 4), Array<String>::of({u"R1", u"c", u""}, 1));
  EXPECT_EQ(names(5, 5), Array<String>::of({u"e"}, 1));
  EXPECT_FALSE(names(1, 0).has_bounds());
  EXPECT_FALSE(names(6, 5).has_bounds());
  EXPECT_EQ(failure_of([&] { names(0, 1); }), 9);
  EXPECT_EQ(failure_of([&] { names(1, 6); }), 9);
  EXPECT_FALSE(to_strings(make<FormTemplate>()->QuestionNames(1, 0, false, u"\t", false)).has_bounds());
}

TEST(Form, CopiesShareNothing) {
  const auto form = form_of(full);
  const auto copy = form->Copy(true);
  auto& own_copy = dynamic_cast<FormTemplate&>(*copy);
  EXPECT_EQ(written(own_copy), full);
  auto& region = *own_copy.pages().all()[0]->regions().all()[0];
  auto& field = *region.questions().all()[0];
  field.SetName(u"changed");
  field.SetGraded(false);
  field.ChoiceLabels()->SetItem(1, u"changed");
  field.ChoiceValues()->SetItem(1, u"changed");
  region.SetName(u"changed");
  region.questions().add();
  own_copy.pages().all()[1]->regions().add();
  own_copy.pages().add();
  EXPECT_EQ(written(*form), full);
  EXPECT_EQ(form->GradedQuestionCount(), 1);
  EXPECT_EQ(own_copy.GradedQuestionCount(), 0);

  const std::string changed = written(own_copy);
  form->Clear();
  EXPECT_EQ(written(own_copy), changed);
  EXPECT_EQ(written(dynamic_cast<FormTemplate&>(*make<FormTemplate>()->Copy(true))), written(*form));
}

TEST(Form, ElementsAreLive) {
  const auto form = form_of(with_field(R"("choiceLabels":["A","B"])"));
  const Ref<TIBRegion> region = form->Pages()->Item(1)->Regions()->Item(std::int16_t{1});
  const Ref<TIBQuestion> field = region->Questions()->Item(1.0);
  field->SetQuestionText(u"text");
  field->ChoiceLabels()->SetItem(2, u"");
  EXPECT_EQ(region->Questions()->Item(1)->QuestionText(), u"text");
  EXPECT_EQ(field->ChoiceLabels()->AsArray(5), Array<String>::of({u"A", u""}, 5));
  EXPECT_FALSE(make<FormChoiceList>()->AsArray(1).has_bounds());

  const auto labels = field->ChoiceLabels();
  field->SetChoiceLabels(labels);
  EXPECT_EQ(field->ChoiceLabels(), labels);
  const auto values = make<FormChoiceList>(std::vector<String>{u"x", u"y"});
  field->SetChoiceValues(values);
  values->SetItem(1, u"z");
  EXPECT_EQ(field->ChoiceValues()->AsArray(1), Array<String>::of({u"z", u"y"}, 1));

  const auto added = form_objects().region();
  added->SetName(u"new");
  added->Questions()->Add();
  EXPECT_EQ(form->Pages()->Item(1)->Regions()->Add(added), 2);
  added->Questions()->Item(1)->SetGraded(true);
  EXPECT_EQ(form->Pages()->Item(1)->Regions()->Item(2), added);
  EXPECT_EQ(added->Questions()->Item(1)->FieldNumber(true), 2);
  EXPECT_EQ(form->GradedQuestionCount(), 1);
}

class ForeignRegion : public TIBRegion {
 public:
  Ref<TIBQuestions> Questions() override { return nullptr; }
  std::int32_t RegionKind() override { return 1; }
  void SetRegionKind(std::int32_t) override {}
  std::int32_t ResponseKind() override { return 1; }
  void SetResponseKind(std::int32_t) override {}
  std::int32_t ValueKind() override { return 1; }
  void SetValueKind(std::int32_t) override {}
  std::int16_t QuestionCount() override { return 0; }
  String Name() override { return {}; }
  void SetName(const String&) override {}
  std::int16_t GroupNumber() override { return 0; }
  void SetSubjectiveRegion(bool) override {}
};

class ForeignList : public TIBChoiceList {
 public:
  std::int32_t Count() override { return 0; }
  void SetItem(const Variant&, const String&) override {}
  Array<String> AsArray(std::int32_t) override { return {}; }
};

TEST(Form, FailuresHaveTheirNumbersAndChangeNothing) {
  const auto form = form_of(full);
  const auto page = form->Pages()->Item(1);
  const auto region = page->Regions()->Item(1);
  const auto field = region->Questions()->Item(1);
  const struct {
    const char* what;
    std::function<void()> statement;
    std::int32_t number;
  } rows[] = {
      {"page 0", [&] { form->Pages()->Item(0); }, 9},
      {"page 3 of 2", [&] { form->Pages()->Item(3); }, 9},
      {"region -1", [&] { page->Regions()->Item(-1); }, 9},
      {"field 3 of 2", [&] { region->Questions()->Item(std::int16_t{3}); }, 9},
      {"field not a number", [&] { region->Questions()->Item(std::numeric_limits<double>::quiet_NaN()); }, 9},
      {"field 1e300", [&] { region->Questions()->Item(1e300); }, 9},
      {"label 4 of 3", [&] { field->ChoiceLabels()->SetItem(4, u""); }, 9},
      {"a text as index", [&] { form->Pages()->Item(u"1"); }, 13},
      {"a Boolean as index", [&] { page->Regions()->Item(true); }, 13},
      {"nothing as index", [&] { region->Questions()->Item(Variant()); }, 13},
      {"a missing index", [&] { field->ChoiceLabels()->SetItem(missing, u""); }, 13},
      {"a foreign region", [&] { page->Regions()->Add(make<ForeignRegion>()); }, 13},
      {"foreign labels", [&] { field->SetChoiceLabels(make<ForeignList>()); }, 13},
      {"foreign values", [&] { field->SetChoiceValues(make<ForeignList>()); }, 13},
      {"no region", [&] { page->Regions()->Add(nullptr); }, 91},
      {"no labels", [&] { field->SetChoiceLabels(nullptr); }, 91},
      {"a region that has its place", [&] { form->Pages()->Item(2)->Regions()->Add(region); }, 5},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(failure_of(row.statement), row.number) << row.what;
    EXPECT_EQ(written(*form), full) << row.what;
  }
}

TEST(Form, WhatIsHeldOutlivesWhatHeldIt) {
  Ref<FormPages> pages;
  Ref<FormPage> page;
  Ref<FormRegions> regions;
  Ref<FormRegion> region;
  Ref<FormQuestions> questions;
  Ref<FormQuestion> field;
  {
    const auto form = built_of(Pages{{{7, 2}, {7, 1}}});
    pages = Ref<FormPages>(&form->pages());
    page = form->pages().all()[0];
    regions = Ref<FormRegions>(&page->regions());
    region = regions->all()[1];
    questions = Ref<FormQuestions>(&region->questions());
    field = questions->all()[0];
    EXPECT_EQ(field->FieldNumber(true), 1);
  }
  EXPECT_EQ(field->FieldNumber(true), 0);
  field->SetGraded(false);
  region->SetGroupNumber(1);
  EXPECT_EQ(pages->Count(), 1);
  pages->add()->regions().add();
  pages = nullptr;
  regions->add();
  page = nullptr;
  EXPECT_EQ(regions->Count(), 3);
  regions = nullptr;
  EXPECT_EQ(make<FormTemplate>()->pages().add()->regions().Add(region), 1);  // it stands on no page any more
  region = nullptr;
  EXPECT_EQ(questions->Count(), 1);
  questions->Add();
  questions = nullptr;
  field->SetGraded(true);
  EXPECT_EQ(field->FieldNumber(true), 0);

  const auto form = built_of(Pages{{{0, 1}}, {{0, 1}}});
  const auto dropped = form->pages().all()[1];
  EXPECT_EQ(form->QuestionCount(), 2);
  form->Clear();
  dropped->regions().add()->questions().add()->SetGraded(true);
  EXPECT_EQ(dropped->regions().all()[0]->questions().all()[0]->FieldNumber(true), 0);
  EXPECT_EQ(form->QuestionCount(), 0);
  EXPECT_EQ(form->pages().Count(), 0);
}

}  // namespace
}  // namespace hedro34::testing
