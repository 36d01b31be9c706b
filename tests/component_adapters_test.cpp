// A host's template and document: their members reach the host under their names, with the flags and the kinds of arguments
// that a caller of it would use, and the results come back.
#include "hedro34/merge/clsHEDRO.h"
#include "tests/component_support.h"

namespace hedro34::testing::component {
namespace {

std::string joined(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += (text.empty() ? "" : " ") + line;
  return text;
}

TEST_F(Component, TemplatesAndDocumentsAreCalledByName) {
  const auto host = Host::create();
  const auto part = Host::create();
  part_of_host = part.get();
  const auto form = as<TIBTemplate>(host);
  const auto pages = as<TIBPages>(host);
  const auto regions = as<TIBRegions>(host);
  const auto region = as<TIBRegion>(host);
  const auto field = as<TIBQuestion>(host);
  const auto choices = as<TIBChoiceList>(host);
  const auto document = as<WENKtdDocument>(host);
  const auto question = as<WENKtdQuestion>(host);
  const auto strings = as<WENKtdStrings>(host);
  const auto objectives = as<WENKtdObjectives>(host);
  const auto objective = as<WENKtdObjective>(host);
  const auto flag = as<WENKtdObjectiveFlag>(host);
  const auto versions = as<WENKtdVersions>(host);
  const auto order = as<WENKtdOrder>(host);
  const auto check = [&](std::initializer_list<Result> results, const std::string& expected, const std::string& calls) {
    Lines texts;
    for (const Result& result : results) texts.push_back(result.text);
    EXPECT_EQ(joined(texts), expected) << calls;
    EXPECT_EQ(joined(host->take()), calls);
  };
  const auto written = [&](const std::string& calls) { EXPECT_EQ(joined(host->take()), calls); };

  host->answer = as_object(part);
  check({form->Pages(), form->Copy(true), pages->Item(std::int16_t{1}), regions->Item(2), document->Questions(),
         question->AnswerKey(), objectives->Item(u"k"), versions->Orders()},
        "part part part part part part part part",
        "Pages() Copy(BOOL -1) Item(I2 1) Item(I4 2) Questions() AnswerKey() Item(BSTR k) Orders()");

  host->answer = 7.0;
  check({form->PageCount(), region->RegionKind(), region->Name(), region->GroupNumber(), field->Graded(),
         field->CorrectPoints(), field->FieldNumber(true)},
        "7 7 7 7 True 7 7",
        "PageCount() RegionKind() Name() GroupNumber() Graded() CorrectPoints() FieldNumber(BOOL -1)");
  check({document->Load(u"p"), question->Subjective(), strings->Item(1), objectives->Exists(u"k"), objective->Name(),
         flag->Value(), order->Item(2)},
        "True True 7 True 7 7 7", "Load(BSTR p) Subjective() Item(I4 1) Exists(BSTR k) Name() () Item(I4 2)");

  const auto ab = Array<String>::of({u"a", u"b"}, 5);
  host->answer = ab;
  const Variant names = form->QuestionNames(1, 3, false, u";", false);
  check({to_strings(names), choices->AsArray(1), strings->AsArray()}, "5 to 6: a b 5 to 6: a b 5 to 6: a b",
        "QuestionNames(I2 1, I2 3, BOOL 0, BSTR ;, BOOL 0) AsArray(I4 1) AsArray()");

  form->Clear(), regions->Add(as<TIBRegion>(part)), region->SetName(u"n"), region->SetSubjectiveRegion(true);
  written("METHOD Clear() METHOD Add(OBJECT) PUT Name(BSTR n) PUT SubjectiveRegion(BOOL -1)");
  field->SetCorrectPoints(1.5), field->SetMultiplesAllowed(1), choices->SetItem(2, u"t");
  field->SetChoiceLabels(as<TIBChoiceList>(part)), field->SetChoiceValues({});
  written(
      "PUT CorrectPoints(R8 1.5) PUT MultiplesAllowed(I2 1) PUT Item(I4 2, BSTR t) PUTREF ChoiceLabels(&OBJECT) "
      "PUTREF ChoiceValues(&OBJECT none)");
  document->SetDocumentKind(1), question->SetItemOption(3), question->SetCorrectAnswerCount(7), flag->SetValue(false);
  written("PUT DocumentKind(I4 1) PUT ItemOption(I2 3) PUT CorrectAnswerCount(I4 7) PUT (BOOL 0)");
  strings->Add(u"a"), strings->Add(u"a", u"k"), strings->AddArray(ab);
  objectives->Add(as<WENKtdObjective>(part), u"k"), order->FromArray(Array<std::int32_t>::of({2, 1}, 0));
  written(
      "METHOD Add(BSTR a) METHOD Add(BSTR a, BSTR k) METHOD AddArray(&BSTR[5] a b) METHOD Add(OBJECT, BSTR k) "
      "METHOD FromArray(I4[0] 2 1)");

  host->answer = u"x";
  EXPECT_EQ(failure_of([&] { form->PageCount(); }), 13);
  EXPECT_EQ(failure_of([&] { form->Pages(); }), 13);
  EXPECT_EQ(failure_of([&] { field->Graded(); }), 13);
  EXPECT_EQ(failure_of([&] { choices->AsArray(1); }), 13);
  host->answer = make<clsHEDRO>();
  EXPECT_EQ(failure_of([&] { form->Pages(); }), 13);
  host->answer = 40000;
  EXPECT_EQ(failure_of([&] { form->PageCount(); }), 6);
  host->answer = none;
  EXPECT_FALSE(form->Pages());
  EXPECT_EQ(failure_of([&] { form->Pages()->Count(); }), 91);
  host->answer = {};
}

}  // namespace
}  // namespace hedro34::testing::component
