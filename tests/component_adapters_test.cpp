// A host's template and document: every member of their interfaces reaches the host under its name, with the flags and the
// kinds of arguments that a caller of it would use, and the result comes back.
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
  const auto page = as<TIBPage>(host);
  const auto regions = as<TIBRegions>(host);
  const auto region = as<TIBRegion>(host);
  const auto fields = as<TIBQuestions>(host);
  const auto field = as<TIBQuestion>(host);
  const auto choices = as<TIBChoiceList>(host);
  const auto document = as<WENKtdDocument>(host);
  const auto questions = as<WENKtdQuestions>(host);
  const auto question = as<WENKtdQuestion>(host);
  const auto strings = as<WENKtdStrings>(host);
  const auto objectives = as<WENKtdObjectives>(host);
  const auto objective = as<WENKtdObjective>(host);
  const auto flags = as<WENKtdObjectiveFlags>(host);
  const auto flag = as<WENKtdObjectiveFlag>(host);
  const auto versions = as<WENKtdVersions>(host);
  const auto orders = as<WENKtdOrders>(host);
  const auto order = as<WENKtdOrder>(host);
  const auto check = [&](std::initializer_list<Result> results, const std::string& expected, const std::string& calls) {
    Lines texts;
    for (const Result& result : results) texts.push_back(result.text);
    EXPECT_EQ(joined(texts), expected) << calls;
    EXPECT_EQ(joined(host->take()), calls);
  };
  const auto written = [&](const std::string& calls) { EXPECT_EQ(joined(host->take()), calls); };

  host->answer = as_object(part);
  check({form->Pages(), form->Copy(true), pages->Item(std::int16_t{1}), page->Regions(), regions->Item(2)},
        "part part part part part", "Pages() Copy(BOOL -1) Item(I2 1) Regions() Item(I4 2)");
  check({region->Questions(), fields->Item(3), field->ChoiceLabels(), field->ChoiceValues()}, "part part part part",
        "Questions() Item(I4 3) ChoiceLabels() ChoiceValues()");
  check({document->Questions(), document->Versions(), document->Objectives(), questions->Item(1)},
        "part part part part", "Questions() Versions() Objectives() Item(I4 1)");
  check({question->ChoiceLabels(), question->ChoiceValues(), question->ObjectiveFlags(), question->AnswerKey(),
         question->NumericAnswerKey()},
        "part part part part part", "ChoiceLabels() ChoiceValues() ObjectiveFlags() AnswerKey() NumericAnswerKey()");
  check({objectives->Item(u"k"), flags->Item(4), versions->Orders(), versions->VersionAnswers(), orders->Item(5)},
        "part part part part part", "Item(BSTR k) Item(I4 4) Orders() VersionAnswers() Item(I4 5)");

  host->answer = 7.0;
  check({form->PageCount(), form->QuestionCount(), form->GradedQuestionCount(), pages->Count(), regions->Count()},
        "7 7 7 7 7", "PageCount() QuestionCount() GradedQuestionCount() Count() Count()");
  check({region->RegionKind(), region->ResponseKind(), region->ValueKind(), region->QuestionCount(), region->Name(),
         region->GroupNumber(), fields->Count()},
        "7 7 7 7 7 7 7", "RegionKind() ResponseKind() ValueKind() QuestionCount() Name() GroupNumber() Count()");
  check({field->QuestionText(), field->ItemOption(), field->Graded(), field->CorrectPoints(), field->IncorrectPoints(),
         field->NoResponsePoints(), field->ScaleOption(), field->MultiplesAllowed(), field->FieldNumber(true),
         choices->Count()},
        "7 7 True 7 7 7 7 7 7 7",
        "QuestionText() ItemOption() Graded() CorrectPoints() IncorrectPoints() NoResponsePoints() ScaleOption() "
        "MultiplesAllowed() FieldNumber(BOOL -1) Count()");
  check({document->Load(u"p"), document->Description(), document->Notes(), questions->Count()}, "True 7 7 7",
        "Load(BSTR p) Description() Notes() Count()");
  check({question->QuestionText(), question->Graded(), question->Subjective(), question->CorrectAnd(),
         question->CorrectPoints(), question->IncorrectPoints(), question->NoResponsePoints(),
         question->SubjectivePoints()},
        "7 True True True 7 7 7 7",
        "QuestionText() Graded() Subjective() CorrectAnd() CorrectPoints() IncorrectPoints() NoResponsePoints() "
        "SubjectivePoints()");
  check({question->Difficulty(), question->Reference(), question->Topic(), question->Keywords(),
         question->Miscellaneous(), question->Notes()},
        "7 7 7 7 7 7", "Difficulty() Reference() Topic() Keywords() Miscellaneous() Notes()");
  check({strings->Count(), strings->Item(1), objectives->Count(), objectives->Exists(u"k"), objective->Name(),
         flag->Value()},
        "7 7 7 True 7 7", "Count() Item(I4 1) Count() Exists(BSTR k) Name() ()");
  check({versions->VersionMode(), orders->Count(), order->Count(), order->Item(2)}, "7 7 7 7",
        "VersionMode() Count() Count() Item(I4 2)");

  const auto ab = Array<String>::of({u"a", u"b"}, 5);
  host->answer = ab;
  const Variant names = form->QuestionNames(1, 3, false, u";", false);
  check({to_strings(names), choices->AsArray(1), strings->AsArray()}, "5 to 6: a b 5 to 6: a b 5 to 6: a b",
        "QuestionNames(I2 1, I2 3, BOOL 0, BSTR ;, BOOL 0) AsArray(I4 1) AsArray()");

  form->Clear(), document->Clear(), document->PrepareDefaults(), fields->Add(), regions->Add(as<TIBRegion>(part));
  written("METHOD Clear() METHOD Clear() METHOD PrepareDefaults() METHOD Add() METHOD Add(OBJECT)");
  region->SetRegionKind(1), region->SetResponseKind(2), region->SetValueKind(3), region->SetName(u"n");
  region->SetSubjectiveRegion(true);
  written(
      "PUT RegionKind(I4 1) PUT ResponseKind(I4 2) PUT ValueKind(I4 3) PUT Name(BSTR n) PUT SubjectiveRegion(BOOL -1)");
  field->SetQuestionText(u"q"), field->SetGraded(false), field->SetCorrectPoints(1.5),
      field->SetSubjectiveQuestion(true);
  field->SetMultiplesAllowed(1), field->SetChoiceLabels(as<TIBChoiceList>(part)), field->SetChoiceValues({});
  choices->SetItem(2, u"t");
  written(
      "PUT QuestionText(BSTR q) PUT Graded(BOOL 0) PUT CorrectPoints(R8 1.5) PUT SubjectiveQuestion(BOOL -1) "
      "PUT MultiplesAllowed(I2 1) PUTREF ChoiceLabels(&OBJECT) PUTREF ChoiceValues(&OBJECT none) "
      "PUT Item(I4 2, BSTR t)");
  document->SetDocumentKind(1), document->SetPageCount(2), questions->Add(as<WENKtdQuestion>(part));
  question->SetName(u"n"), question->SetQuestionText(u"q"), question->SetGraded(true), question->SetItemOption(3);
  question->SetValueKind(4), question->SetMultiplesAllowed(5), question->SetScaleOption(6);
  question->SetSubjective(false), question->SetCorrectAnswerCount(7), question->SetCorrectAnd(true);
  written(
      "PUT DocumentKind(I4 1) PUT PageCount(I4 2) METHOD Add(OBJECT) PUT Name(BSTR n) PUT QuestionText(BSTR q) "
      "PUT Graded(BOOL -1) PUT ItemOption(I2 3) PUT ValueKind(I4 4) PUT MultiplesAllowed(I2 5) PUT ScaleOption(I2 6) "
      "PUT Subjective(BOOL 0) PUT CorrectAnswerCount(I4 7) PUT CorrectAnd(BOOL -1)");
  question->SetCorrectPoints(1), question->SetIncorrectPoints(2), question->SetNoResponsePoints(3);
  question->SetDifficulty(u"d"), question->SetReference(u"r"), question->SetTopic(u"t"), question->SetKeywords(u"k");
  question->SetMiscellaneous(u"m"), question->SetNotes(u"n");
  written(
      "PUT CorrectPoints(R8 1) PUT IncorrectPoints(R8 2) PUT NoResponsePoints(R8 3) PUT Difficulty(BSTR d) "
      "PUT Reference(BSTR r) PUT Topic(BSTR t) PUT Keywords(BSTR k) PUT Miscellaneous(BSTR m) PUT Notes(BSTR n)");
  strings->Add(u"a"), strings->Add(u"a", u"k"), strings->AddArray(ab);
  objectives->Add(as<WENKtdObjective>(part), u"k"), objective->SetName(u"n"), flags->Add(true), flag->SetValue(false);
  written(
      "METHOD Add(BSTR a) METHOD Add(BSTR a, BSTR k) METHOD AddArray(&BSTR[5] a b) METHOD Add(OBJECT, BSTR k) "
      "PUT Name(BSTR n) METHOD Add(BOOL -1) PUT (BOOL 0)");
  versions->SetSequenceQuestion(2), orders->Add(as<WENKtdOrder>(part)), orders->AddDefault(3);
  order->FromArray(Array<std::int32_t>::of({2, 1}, 0));
  written("PUT SequenceQuestion(I4 2) METHOD Add(OBJECT) METHOD AddDefault(I4 3) METHOD FromArray(I4[0] 2 1)");

  const auto number = [](const auto& failure) { return failure ? failure->number : 0; };
  host->answer = u"x";
  EXPECT_EQ(number(caught([&] { form->PageCount(); })), 13);
  EXPECT_EQ(number(caught([&] { form->Pages(); })), 13);
  EXPECT_EQ(number(caught([&] { field->Graded(); })), 13);
  EXPECT_EQ(number(caught([&] { field->CorrectPoints(); })), 13);
  EXPECT_EQ(number(caught([&] { choices->AsArray(1); })), 13);
  host->answer = make<clsHEDRO>();
  EXPECT_EQ(number(caught([&] { form->Pages(); })), 13);
  EXPECT_EQ(number(caught([&] { region->Name(); })), 13);
  host->answer = 40000;
  EXPECT_EQ(number(caught([&] { form->PageCount(); })), 6);
  host->answer = none;
  EXPECT_FALSE(form->Pages());
  EXPECT_EQ(number(caught([&] { form->Pages()->Count(); })), 91);
  host->answer = {};
}

}  // namespace
}  // namespace hedro34::testing::component
