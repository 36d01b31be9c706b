// A host's data document and its companions: every member is a call by name. What a class gives stands above it.
#pragma once

#include "hedro34/component/host_object.h"
#include "hedro34/documents/WENKtdDocument.h"

namespace hedro34 {

template <>
struct Adapter<WENKtdStrings> final : WENKtdStrings, HostSide {
  using HostSide::HostSide;
  std::int32_t Count() override { return get<std::int32_t>(u"Count"); }
  void Add(const String& text, const Variant& key) override { call_without_missing(u"Add", text, key); }
  void AddArray(const Array<String>& texts) override { call_by_reference(u"AddArray", texts); }
  String Item(const Variant& Index) override { return get<String>(u"Item", Index); }
  Array<String> AsArray() override { return get<Array<String>>(u"AsArray"); }
};

template <>
struct Adapter<WENKtdObjectiveFlag> final : WENKtdObjectiveFlag, HostSide {
  using HostSide::HostSide;
  Variant Value() override { return get<Variant>(u""); }
  void SetValue(const Variant& value) override { write(u"", value); }
};

template <>
struct Adapter<WENKtdObjectiveFlags> final : WENKtdObjectiveFlags, HostSide {
  using HostSide::HostSide;
  void Add(const Variant& value) override { call(u"Add", value); }
  Ref<WENKtdObjectiveFlag> Item(std::int32_t position) override {
    return get<Ref<WENKtdObjectiveFlag>>(u"Item", position);
  }
};

template <>
struct Adapter<WENKtdQuestion> final : WENKtdQuestion, HostSide {
  using HostSide::HostSide;
  Ref<WENKtdStrings> ChoiceLabels() override { return get<Ref<WENKtdStrings>>(u"ChoiceLabels"); }
  Ref<WENKtdStrings> ChoiceValues() override { return get<Ref<WENKtdStrings>>(u"ChoiceValues"); }
  Ref<WENKtdObjectiveFlags> ObjectiveFlags() override { return get<Ref<WENKtdObjectiveFlags>>(u"ObjectiveFlags"); }
  Ref<WENKtdStrings> AnswerKey() override { return get<Ref<WENKtdStrings>>(u"AnswerKey"); }
  Ref<WENKtdStrings> NumericAnswerKey() override { return get<Ref<WENKtdStrings>>(u"NumericAnswerKey"); }
  void SetName(const String& value) override { write(u"Name", value); }
  String QuestionText() override { return get<String>(u"QuestionText"); }
  void SetQuestionText(const String& value) override { write(u"QuestionText", value); }
  bool Graded() override { return get<bool>(u"Graded"); }
  void SetGraded(bool value) override { write(u"Graded", value); }
  void SetItemOption(std::int16_t value) override { write(u"ItemOption", value); }
  void SetValueKind(std::int32_t value) override { write(u"ValueKind", value); }
  String TextValue() override { return get<String>(u"TextValue"); }
  void SetTextValue(const String& value) override { write(u"TextValue", value); }
  double FloatValue() override { return get<double>(u"FloatValue"); }
  void SetFloatValue(double value) override { write(u"FloatValue", value); }
  void SetMultiplesAllowed(std::int16_t value) override { write(u"MultiplesAllowed", value); }
  void SetScaleOption(std::int16_t value) override { write(u"ScaleOption", value); }
  bool Subjective() override { return get<bool>(u"Subjective"); }
  void SetSubjective(bool value) override { write(u"Subjective", value); }
  void SetCorrectAnswerCount(std::int32_t value) override { write(u"CorrectAnswerCount", value); }
  bool CorrectAnd() override { return get<bool>(u"CorrectAnd"); }
  void SetCorrectAnd(bool value) override { write(u"CorrectAnd", value); }
  double CorrectPoints() override { return get<double>(u"CorrectPoints"); }
  void SetCorrectPoints(double value) override { write(u"CorrectPoints", value); }
  double IncorrectPoints() override { return get<double>(u"IncorrectPoints"); }
  void SetIncorrectPoints(double value) override { write(u"IncorrectPoints", value); }
  double NoResponsePoints() override { return get<double>(u"NoResponsePoints"); }
  void SetNoResponsePoints(double value) override { write(u"NoResponsePoints", value); }
  double SubjectivePoints() override { return get<double>(u"SubjectivePoints"); }
  String Difficulty() override { return get<String>(u"Difficulty"); }
  void SetDifficulty(const String& value) override { write(u"Difficulty", value); }
  String Reference() override { return get<String>(u"Reference"); }
  void SetReference(const String& value) override { write(u"Reference", value); }
  String Topic() override { return get<String>(u"Topic"); }
  void SetTopic(const String& value) override { write(u"Topic", value); }
  String Keywords() override { return get<String>(u"Keywords"); }
  void SetKeywords(const String& value) override { write(u"Keywords", value); }
  String Miscellaneous() override { return get<String>(u"Miscellaneous"); }
  void SetMiscellaneous(const String& value) override { write(u"Miscellaneous", value); }
  String Notes() override { return get<String>(u"Notes"); }
  void SetNotes(const String& value) override { write(u"Notes", value); }
};

template <>
struct Adapter<WENKtdQuestions> final : WENKtdQuestions, HostSide {
  using HostSide::HostSide;
  std::int32_t Count() override { return get<std::int32_t>(u"Count"); }
  void Add(const Ref<WENKtdQuestion>& question) override { call(u"Add", question); }
  Ref<WENKtdQuestion> Item(const Variant& Index) override { return get<Ref<WENKtdQuestion>>(u"Item", Index); }
};

template <>
struct Adapter<WENKtdObjective> final : WENKtdObjective, HostSide {
  using HostSide::HostSide;
  String Name() override { return get<String>(u"Name"); }
  void SetName(const String& value) override { write(u"Name", value); }
};

template <>
struct Adapter<WENKtdObjectives> final : WENKtdObjectives, HostSide {
  using HostSide::HostSide;
  std::int32_t Count() override { return get<std::int32_t>(u"Count"); }
  void Add(const Ref<WENKtdObjective>& objective, const Variant& key) override {
    call_without_missing(u"Add", objective, key);
  }
  Ref<WENKtdObjective> Item(const Variant& Index) override { return get<Ref<WENKtdObjective>>(u"Item", Index); }
  bool Exists(const Variant& key) override { return get<bool>(u"Exists", key); }
};

template <>
struct Adapter<WENKtdOrder> final : WENKtdOrder, HostSide {
  using HostSide::HostSide;
  std::int32_t Count() override { return get<std::int32_t>(u"Count"); }
  std::int32_t Item(std::int32_t position) override { return get<std::int32_t>(u"Item", position); }
  void FromArray(const Array<std::int32_t>& entries) override { call(u"FromArray", entries); }
};

template <>
struct Adapter<WENKtdOrders> final : WENKtdOrders, HostSide {
  using HostSide::HostSide;
  std::int32_t Count() override { return get<std::int32_t>(u"Count"); }
  void Add(const Ref<WENKtdOrder>& order) override { call(u"Add", order); }
  void AddDefault(std::int32_t questions) override { call(u"AddDefault", questions); }
  Ref<WENKtdOrder> Item(const Variant& Index) override { return get<Ref<WENKtdOrder>>(u"Item", Index); }
};

template <>
struct Adapter<WENKtdVersions> final : WENKtdVersions, HostSide {
  using HostSide::HostSide;
  Ref<WENKtdOrders> Orders() override { return get<Ref<WENKtdOrders>>(u"Orders"); }
  Ref<WENKtdStrings> VersionAnswers() override { return get<Ref<WENKtdStrings>>(u"VersionAnswers"); }
  void SetSequenceQuestion(std::int32_t value) override { write(u"SequenceQuestion", value); }
  std::int32_t VersionMode() override { return get<std::int32_t>(u"VersionMode"); }
};

template <>
struct Adapter<WENKtdDocument> final : WENKtdDocument, HostSide {
  using HostSide::HostSide;
  Ref<WENKtdQuestions> Questions() override { return get<Ref<WENKtdQuestions>>(u"Questions"); }
  Ref<WENKtdVersions> Versions() override { return get<Ref<WENKtdVersions>>(u"Versions"); }
  Ref<WENKtdObjectives> Objectives() override { return get<Ref<WENKtdObjectives>>(u"Objectives"); }
  void Clear() override { call(u"Clear"); }
  bool Load(const String& path) override { return get<bool>(u"Load", path); }
  String Description() override { return get<String>(u"Description"); }
  String Notes() override { return get<String>(u"Notes"); }
  void SetDocumentKind(std::int32_t value) override { write(u"DocumentKind", value); }
  void SetPageCount(std::int32_t value) override { write(u"PageCount", value); }
  void PrepareDefaults() override { call(u"PrepareDefaults"); }
};

}  // namespace hedro34
