// A host's template and its companions: every member is a call by name. What a class gives stands above it.
#pragma once

#include "hedro34/component/host_object.h"
#include "hedro34/documents/TIBTemplate.h"

namespace hedro34 {

template <>
struct Adapter<TIBChoiceList> final : TIBChoiceList, HostSide {
  using HostSide::HostSide;
  std::int32_t Count() override { return get<std::int32_t>(u"Count"); }
  void SetItem(const Variant& Index, const String& text) override { write(u"Item", Index, text); }
  Array<String> AsArray(std::int32_t lower_bound) override { return get<Array<String>>(u"AsArray", lower_bound); }
};

template <>
struct Adapter<TIBQuestion> final : TIBQuestion, HostSide {
  using HostSide::HostSide;
  String QuestionText() override { return get<String>(u"QuestionText"); }
  void SetQuestionText(const String& value) override { write(u"QuestionText", value); }
  std::int16_t ItemOption() override { return get<std::int16_t>(u"ItemOption"); }
  bool Graded() override { return get<bool>(u"Graded"); }
  void SetGraded(bool value) override { write(u"Graded", value); }
  double CorrectPoints() override { return get<double>(u"CorrectPoints"); }
  void SetCorrectPoints(double value) override { write(u"CorrectPoints", value); }
  double IncorrectPoints() override { return get<double>(u"IncorrectPoints"); }
  double NoResponsePoints() override { return get<double>(u"NoResponsePoints"); }
  Ref<TIBChoiceList> ChoiceLabels() override { return get<Ref<TIBChoiceList>>(u"ChoiceLabels"); }
  void SetChoiceLabels(const Ref<TIBChoiceList>& value) override { write_reference(u"ChoiceLabels", value); }
  Ref<TIBChoiceList> ChoiceValues() override { return get<Ref<TIBChoiceList>>(u"ChoiceValues"); }
  void SetChoiceValues(const Ref<TIBChoiceList>& value) override { write_reference(u"ChoiceValues", value); }
  std::int16_t ScaleOption() override { return get<std::int16_t>(u"ScaleOption"); }
  void SetSubjectiveQuestion(bool value) override { write(u"SubjectiveQuestion", value); }
  std::int16_t MultiplesAllowed() override { return get<std::int16_t>(u"MultiplesAllowed"); }
  void SetMultiplesAllowed(std::int16_t value) override { write(u"MultiplesAllowed", value); }
  std::int32_t FieldNumber(bool bOption) override { return get<std::int32_t>(u"FieldNumber", bOption); }
};

template <>
struct Adapter<TIBQuestions> final : TIBQuestions, HostSide {
  using HostSide::HostSide;
  std::int32_t Count() override { return get<std::int32_t>(u"Count"); }
  Ref<TIBQuestion> Item(const Variant& Index) override { return get<Ref<TIBQuestion>>(u"Item", Index); }
  void Add() override { call(u"Add"); }
};

template <>
struct Adapter<TIBRegion> final : TIBRegion, HostSide {
  using HostSide::HostSide;
  Ref<TIBQuestions> Questions() override { return get<Ref<TIBQuestions>>(u"Questions"); }
  std::int32_t RegionKind() override { return get<std::int32_t>(u"RegionKind"); }
  void SetRegionKind(std::int32_t value) override { write(u"RegionKind", value); }
  std::int32_t ResponseKind() override { return get<std::int32_t>(u"ResponseKind"); }
  void SetResponseKind(std::int32_t value) override { write(u"ResponseKind", value); }
  std::int32_t ValueKind() override { return get<std::int32_t>(u"ValueKind"); }
  void SetValueKind(std::int32_t value) override { write(u"ValueKind", value); }
  std::int16_t QuestionCount() override { return get<std::int16_t>(u"QuestionCount"); }
  String Name() override { return get<String>(u"Name"); }
  void SetName(const String& value) override { write(u"Name", value); }
  std::int16_t GroupNumber() override { return get<std::int16_t>(u"GroupNumber"); }
  void SetSubjectiveRegion(bool value) override { write(u"SubjectiveRegion", value); }
};

template <>
struct Adapter<TIBRegions> final : TIBRegions, HostSide {
  using HostSide::HostSide;
  std::int32_t Count() override { return get<std::int32_t>(u"Count"); }
  std::int16_t Add(const Ref<TIBRegion>& region, const Variant& option1, const Variant& option2) override {
    call_without_missing(u"Add", region, option1, option2);
    return 0;
  }
  Ref<TIBRegion> Item(const Variant& Index) override { return get<Ref<TIBRegion>>(u"Item", Index); }
};

template <>
struct Adapter<TIBPage> final : TIBPage, HostSide {
  using HostSide::HostSide;
  Ref<TIBRegions> Regions() override { return get<Ref<TIBRegions>>(u"Regions"); }
};

template <>
struct Adapter<TIBPages> final : TIBPages, HostSide {
  using HostSide::HostSide;
  std::int32_t Count() override { return get<std::int32_t>(u"Count"); }
  Ref<TIBPage> Item(const Variant& Index) override { return get<Ref<TIBPage>>(u"Item", Index); }
};

template <>
struct Adapter<TIBTemplate> final : TIBTemplate, HostSide {
  using HostSide::HostSide;
  Ref<TIBPages> Pages() override { return get<Ref<TIBPages>>(u"Pages"); }
  std::int16_t PageCount() override { return get<std::int16_t>(u"PageCount"); }
  std::int16_t QuestionCount() override { return get<std::int16_t>(u"QuestionCount"); }
  std::int16_t GradedQuestionCount() override { return get<std::int16_t>(u"GradedQuestionCount"); }
  void Clear() override { call(u"Clear"); }
  Variant QuestionNames(std::int16_t iFirst, std::int16_t iLast, bool bOption1, const String& sDelimiter,
                        bool bOption2) override {
    return get<Variant>(u"QuestionNames", iFirst, iLast, bOption1, sDelimiter, bOption2);
  }
  Ref<TIBTemplate> Copy(bool bOption) override { return get<Ref<TIBTemplate>>(u"Copy", bOption); }
};

}  // namespace hedro34
