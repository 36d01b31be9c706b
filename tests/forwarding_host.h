// A host's own objects, as the merge meets them: each of these stands before an object of another implementation, by
// default the library's, tells a listener the name of every call and passes the call on. Objects that come back are
// wrapped in turn; one that goes in is unwrapped, so that what stands behind meets only its own kind.
//
//   MyListener listener;                  // its called("TIBQuestion.SetGraded") runs before each call and may throw
//   ForwardingHost host(listener);        // what the library creates is wrapped from here on
//   merge.TemplateIn = host.wrap(form);
//
// The listener outlives all of these objects.
#pragma once

#include <string_view>
#include <utility>

#include "hedro34/documents/TIBTemplate.h"
#include "hedro34/documents/WENKtdDocument.h"
#include "hedro34/platform/platform.h"

namespace hedro34::testing {

// Hears each call before it is passed on, as interface, ".", member; the writing side of a property is its name behind
// "Set". Creations are "TIBRegion.create" and so on. What it throws becomes the failure of the call.
class CallListener {
 public:
  virtual ~CallListener() = default;
  virtual void called(std::string_view name) = 0;

  // What a list of strings, a flag and the versions answer in place of what stands behind them.
  virtual std::int32_t strings_count(std::int32_t count) { return count; }
  virtual Variant flag_value(const Variant& value) { return value; }
  virtual std::int32_t version_mode(std::int32_t mode) { return mode; }
};

template <class Interface>
class Forwarding : public Interface {
 public:
  Forwarding(CallListener& listener, Ref<Interface> target) : listener_(listener), target_(std::move(target)) {}

  const Ref<Interface>& target() const noexcept { return target_; }

 protected:
  CallListener& listener() const noexcept { return listener_; }
  Interface& to(std::string_view name) {
    listener_.called(name);
    return *target_;
  }
  // The object behind a forwarding one of its own; an empty reference stays empty.
  template <class Wrapper, class Held>
  Ref<Held> as(Ref<Held> object) {
    if (!object) return {};
    return make<Wrapper>(listener_, std::move(object));
  }

 private:
  CallListener& listener_;
  Ref<Interface> target_;
};

// What stands behind a forwarding object; any other object as it is.
template <class Interface>
Ref<Interface> unwrapped(const Ref<Interface>& object) {
  const auto* forwarding = dynamic_cast<const Forwarding<Interface>*>(object.get());
  return forwarding == nullptr ? object : forwarding->target();
}

// --- form template ---

class ForwardingChoiceList final : public Forwarding<TIBChoiceList> {
 public:
  using Forwarding::Forwarding;
  std::int32_t Count() override { return to("TIBChoiceList.Count").Count(); }
  void SetItem(const Variant& Index, const String& text) override { to("TIBChoiceList.SetItem").SetItem(Index, text); }
  Array<String> AsArray(std::int32_t lower) override { return to("TIBChoiceList.AsArray").AsArray(lower); }
};

class ForwardingField final : public Forwarding<TIBQuestion> {
 public:
  using Forwarding::Forwarding;
  String QuestionText() override { return to("TIBQuestion.QuestionText").QuestionText(); }
  void SetQuestionText(const String& value) override { to("TIBQuestion.SetQuestionText").SetQuestionText(value); }
  std::int16_t ItemOption() override { return to("TIBQuestion.ItemOption").ItemOption(); }
  bool Graded() override { return to("TIBQuestion.Graded").Graded(); }
  void SetGraded(bool value) override { to("TIBQuestion.SetGraded").SetGraded(value); }
  double CorrectPoints() override { return to("TIBQuestion.CorrectPoints").CorrectPoints(); }
  void SetCorrectPoints(double value) override { to("TIBQuestion.SetCorrectPoints").SetCorrectPoints(value); }
  double IncorrectPoints() override { return to("TIBQuestion.IncorrectPoints").IncorrectPoints(); }
  double NoResponsePoints() override { return to("TIBQuestion.NoResponsePoints").NoResponsePoints(); }
  Ref<TIBChoiceList> ChoiceLabels() override {
    return as<ForwardingChoiceList>(to("TIBQuestion.ChoiceLabels").ChoiceLabels());
  }
  void SetChoiceLabels(const Ref<TIBChoiceList>& value) override {
    to("TIBQuestion.SetChoiceLabels").SetChoiceLabels(unwrapped(value));
  }
  Ref<TIBChoiceList> ChoiceValues() override {
    return as<ForwardingChoiceList>(to("TIBQuestion.ChoiceValues").ChoiceValues());
  }
  void SetChoiceValues(const Ref<TIBChoiceList>& value) override {
    to("TIBQuestion.SetChoiceValues").SetChoiceValues(unwrapped(value));
  }
  std::int16_t ScaleOption() override { return to("TIBQuestion.ScaleOption").ScaleOption(); }
  void SetSubjectiveQuestion(bool value) override {
    to("TIBQuestion.SetSubjectiveQuestion").SetSubjectiveQuestion(value);
  }
  std::int16_t MultiplesAllowed() override { return to("TIBQuestion.MultiplesAllowed").MultiplesAllowed(); }
  void SetMultiplesAllowed(std::int16_t value) override {
    to("TIBQuestion.SetMultiplesAllowed").SetMultiplesAllowed(value);
  }
  std::int32_t FieldNumber(bool option) override { return to("TIBQuestion.FieldNumber").FieldNumber(option); }
};

class ForwardingFields final : public Forwarding<TIBQuestions> {
 public:
  using Forwarding::Forwarding;
  std::int32_t Count() override { return to("TIBQuestions.Count").Count(); }
  Ref<TIBQuestion> Item(const Variant& Index) override {
    return as<ForwardingField>(to("TIBQuestions.Item").Item(Index));
  }
  void Add() override { to("TIBQuestions.Add").Add(); }
};

class ForwardingRegion final : public Forwarding<TIBRegion> {
 public:
  using Forwarding::Forwarding;
  Ref<TIBQuestions> Questions() override { return as<ForwardingFields>(to("TIBRegion.Questions").Questions()); }
  std::int32_t RegionKind() override { return to("TIBRegion.RegionKind").RegionKind(); }
  void SetRegionKind(std::int32_t value) override { to("TIBRegion.SetRegionKind").SetRegionKind(value); }
  std::int32_t ResponseKind() override { return to("TIBRegion.ResponseKind").ResponseKind(); }
  void SetResponseKind(std::int32_t value) override { to("TIBRegion.SetResponseKind").SetResponseKind(value); }
  std::int32_t ValueKind() override { return to("TIBRegion.ValueKind").ValueKind(); }
  void SetValueKind(std::int32_t value) override { to("TIBRegion.SetValueKind").SetValueKind(value); }
  std::int16_t QuestionCount() override { return to("TIBRegion.QuestionCount").QuestionCount(); }
  String Name() override { return to("TIBRegion.Name").Name(); }
  void SetName(const String& value) override { to("TIBRegion.SetName").SetName(value); }
  std::int16_t GroupNumber() override { return to("TIBRegion.GroupNumber").GroupNumber(); }
  void SetSubjectiveRegion(bool value) override { to("TIBRegion.SetSubjectiveRegion").SetSubjectiveRegion(value); }
};

class ForwardingRegions final : public Forwarding<TIBRegions> {
 public:
  using Forwarding::Forwarding;
  std::int32_t Count() override { return to("TIBRegions.Count").Count(); }
  std::int16_t Add(const Ref<TIBRegion>& region, const Variant& option1, const Variant& option2) override {
    return to("TIBRegions.Add").Add(unwrapped(region), option1, option2);
  }
  Ref<TIBRegion> Item(const Variant& Index) override { return as<ForwardingRegion>(to("TIBRegions.Item").Item(Index)); }
};

class ForwardingPage final : public Forwarding<TIBPage> {
 public:
  using Forwarding::Forwarding;
  Ref<TIBRegions> Regions() override { return as<ForwardingRegions>(to("TIBPage.Regions").Regions()); }
};

class ForwardingPages final : public Forwarding<TIBPages> {
 public:
  using Forwarding::Forwarding;
  std::int32_t Count() override { return to("TIBPages.Count").Count(); }
  Ref<TIBPage> Item(const Variant& Index) override { return as<ForwardingPage>(to("TIBPages.Item").Item(Index)); }
};

class ForwardingTemplate : public Forwarding<TIBTemplate> {
 public:
  using Forwarding::Forwarding;
  Ref<TIBPages> Pages() override { return as<ForwardingPages>(to("TIBTemplate.Pages").Pages()); }
  std::int16_t PageCount() override { return to("TIBTemplate.PageCount").PageCount(); }
  std::int16_t QuestionCount() override { return to("TIBTemplate.QuestionCount").QuestionCount(); }
  std::int16_t GradedQuestionCount() override { return to("TIBTemplate.GradedQuestionCount").GradedQuestionCount(); }
  void Clear() override { to("TIBTemplate.Clear").Clear(); }
  Variant QuestionNames(std::int16_t first, std::int16_t last, bool option1, const String& delimiter,
                        bool option2) override {
    return to("TIBTemplate.QuestionNames").QuestionNames(first, last, option1, delimiter, option2);
  }
  Ref<TIBTemplate> Copy(bool option) override { return as<ForwardingTemplate>(to("TIBTemplate.Copy").Copy(option)); }
};

// --- data document ---

class ForwardingStrings final : public Forwarding<WENKtdStrings> {
 public:
  using Forwarding::Forwarding;
  std::int32_t Count() override { return listener().strings_count(to("WENKtdStrings.Count").Count()); }
  void Add(const String& text, const Variant& key) override { to("WENKtdStrings.Add").Add(text, key); }
  void AddArray(const Array<String>& texts) override { to("WENKtdStrings.AddArray").AddArray(texts); }
  String Item(const Variant& Index) override { return to("WENKtdStrings.Item").Item(Index); }
  Array<String> AsArray() override { return to("WENKtdStrings.AsArray").AsArray(); }
};

class ForwardingFlag final : public Forwarding<WENKtdObjectiveFlag> {
 public:
  using Forwarding::Forwarding;
  Variant Value() override { return listener().flag_value(to("WENKtdObjectiveFlag.Value").Value()); }
  void SetValue(const Variant& value) override { to("WENKtdObjectiveFlag.SetValue").SetValue(value); }
};

class ForwardingFlags final : public Forwarding<WENKtdObjectiveFlags> {
 public:
  using Forwarding::Forwarding;
  void Add(const Variant& value) override { to("WENKtdObjectiveFlags.Add").Add(value); }
  Ref<WENKtdObjectiveFlag> Item(std::int32_t position) override {
    return as<ForwardingFlag>(to("WENKtdObjectiveFlags.Item").Item(position));
  }
};

class ForwardingQuestion final : public Forwarding<WENKtdQuestion> {
 public:
  using Forwarding::Forwarding;
  Ref<WENKtdStrings> ChoiceLabels() override { return strings(to("WENKtdQuestion.ChoiceLabels").ChoiceLabels()); }
  Ref<WENKtdStrings> ChoiceValues() override { return strings(to("WENKtdQuestion.ChoiceValues").ChoiceValues()); }
  Ref<WENKtdObjectiveFlags> ObjectiveFlags() override {
    return as<ForwardingFlags>(to("WENKtdQuestion.ObjectiveFlags").ObjectiveFlags());
  }
  Ref<WENKtdStrings> AnswerKey() override { return strings(to("WENKtdQuestion.AnswerKey").AnswerKey()); }
  Ref<WENKtdStrings> NumericAnswerKey() override {
    return strings(to("WENKtdQuestion.NumericAnswerKey").NumericAnswerKey());
  }
  void SetName(const String& value) override { to("WENKtdQuestion.SetName").SetName(value); }
  String QuestionText() override { return to("WENKtdQuestion.QuestionText").QuestionText(); }
  void SetQuestionText(const String& value) override { to("WENKtdQuestion.SetQuestionText").SetQuestionText(value); }
  bool Graded() override { return to("WENKtdQuestion.Graded").Graded(); }
  void SetGraded(bool value) override { to("WENKtdQuestion.SetGraded").SetGraded(value); }
  void SetItemOption(std::int16_t value) override { to("WENKtdQuestion.SetItemOption").SetItemOption(value); }
  void SetValueKind(std::int32_t value) override { to("WENKtdQuestion.SetValueKind").SetValueKind(value); }
  String TextValue() override { return to("WENKtdQuestion.TextValue").TextValue(); }
  void SetTextValue(const String& value) override { to("WENKtdQuestion.SetTextValue").SetTextValue(value); }
  double FloatValue() override { return to("WENKtdQuestion.FloatValue").FloatValue(); }
  void SetFloatValue(double value) override { to("WENKtdQuestion.SetFloatValue").SetFloatValue(value); }
  void SetMultiplesAllowed(std::int16_t value) override {
    to("WENKtdQuestion.SetMultiplesAllowed").SetMultiplesAllowed(value);
  }
  void SetScaleOption(std::int16_t value) override { to("WENKtdQuestion.SetScaleOption").SetScaleOption(value); }
  bool Subjective() override { return to("WENKtdQuestion.Subjective").Subjective(); }
  void SetSubjective(bool value) override { to("WENKtdQuestion.SetSubjective").SetSubjective(value); }
  void SetCorrectAnswerCount(std::int32_t value) override {
    to("WENKtdQuestion.SetCorrectAnswerCount").SetCorrectAnswerCount(value);
  }
  bool CorrectAnd() override { return to("WENKtdQuestion.CorrectAnd").CorrectAnd(); }
  void SetCorrectAnd(bool value) override { to("WENKtdQuestion.SetCorrectAnd").SetCorrectAnd(value); }
  double CorrectPoints() override { return to("WENKtdQuestion.CorrectPoints").CorrectPoints(); }
  void SetCorrectPoints(double value) override { to("WENKtdQuestion.SetCorrectPoints").SetCorrectPoints(value); }
  double IncorrectPoints() override { return to("WENKtdQuestion.IncorrectPoints").IncorrectPoints(); }
  void SetIncorrectPoints(double value) override { to("WENKtdQuestion.SetIncorrectPoints").SetIncorrectPoints(value); }
  double NoResponsePoints() override { return to("WENKtdQuestion.NoResponsePoints").NoResponsePoints(); }
  void SetNoResponsePoints(double value) override {
    to("WENKtdQuestion.SetNoResponsePoints").SetNoResponsePoints(value);
  }
  double SubjectivePoints() override { return to("WENKtdQuestion.SubjectivePoints").SubjectivePoints(); }
  String Difficulty() override { return to("WENKtdQuestion.Difficulty").Difficulty(); }
  void SetDifficulty(const String& value) override { to("WENKtdQuestion.SetDifficulty").SetDifficulty(value); }
  String Reference() override { return to("WENKtdQuestion.Reference").Reference(); }
  void SetReference(const String& value) override { to("WENKtdQuestion.SetReference").SetReference(value); }
  String Topic() override { return to("WENKtdQuestion.Topic").Topic(); }
  void SetTopic(const String& value) override { to("WENKtdQuestion.SetTopic").SetTopic(value); }
  String Keywords() override { return to("WENKtdQuestion.Keywords").Keywords(); }
  void SetKeywords(const String& value) override { to("WENKtdQuestion.SetKeywords").SetKeywords(value); }
  String Miscellaneous() override { return to("WENKtdQuestion.Miscellaneous").Miscellaneous(); }
  void SetMiscellaneous(const String& value) override { to("WENKtdQuestion.SetMiscellaneous").SetMiscellaneous(value); }
  String Notes() override { return to("WENKtdQuestion.Notes").Notes(); }
  void SetNotes(const String& value) override { to("WENKtdQuestion.SetNotes").SetNotes(value); }

 private:
  Ref<WENKtdStrings> strings(Ref<WENKtdStrings> list) { return as<ForwardingStrings>(std::move(list)); }
};

class ForwardingQuestions final : public Forwarding<WENKtdQuestions> {
 public:
  using Forwarding::Forwarding;
  std::int32_t Count() override { return to("WENKtdQuestions.Count").Count(); }
  void Add(const Ref<WENKtdQuestion>& question) override { to("WENKtdQuestions.Add").Add(unwrapped(question)); }
  Ref<WENKtdQuestion> Item(const Variant& Index) override {
    return as<ForwardingQuestion>(to("WENKtdQuestions.Item").Item(Index));
  }
};

class ForwardingObjective final : public Forwarding<WENKtdObjective> {
 public:
  using Forwarding::Forwarding;
  String Name() override { return to("WENKtdObjective.Name").Name(); }
  void SetName(const String& value) override { to("WENKtdObjective.SetName").SetName(value); }
};

class ForwardingObjectives final : public Forwarding<WENKtdObjectives> {
 public:
  using Forwarding::Forwarding;
  std::int32_t Count() override { return to("WENKtdObjectives.Count").Count(); }
  void Add(const Ref<WENKtdObjective>& objective, const Variant& key) override {
    to("WENKtdObjectives.Add").Add(unwrapped(objective), key);
  }
  Ref<WENKtdObjective> Item(const Variant& Index) override {
    return as<ForwardingObjective>(to("WENKtdObjectives.Item").Item(Index));
  }
  bool Exists(const Variant& key) override { return to("WENKtdObjectives.Exists").Exists(key); }
};

class ForwardingOrder final : public Forwarding<WENKtdOrder> {
 public:
  using Forwarding::Forwarding;
  std::int32_t Count() override { return to("WENKtdOrder.Count").Count(); }
  std::int32_t Item(std::int32_t position) override { return to("WENKtdOrder.Item").Item(position); }
  void FromArray(const Array<std::int32_t>& entries) override { to("WENKtdOrder.FromArray").FromArray(entries); }
};

class ForwardingOrders final : public Forwarding<WENKtdOrders> {
 public:
  using Forwarding::Forwarding;
  std::int32_t Count() override { return to("WENKtdOrders.Count").Count(); }
  void Add(const Ref<WENKtdOrder>& order) override { to("WENKtdOrders.Add").Add(unwrapped(order)); }
  void AddDefault(std::int32_t questions) override { to("WENKtdOrders.AddDefault").AddDefault(questions); }
  Ref<WENKtdOrder> Item(const Variant& Index) override {
    return as<ForwardingOrder>(to("WENKtdOrders.Item").Item(Index));
  }
};

class ForwardingVersions final : public Forwarding<WENKtdVersions> {
 public:
  using Forwarding::Forwarding;
  Ref<WENKtdOrders> Orders() override { return as<ForwardingOrders>(to("WENKtdVersions.Orders").Orders()); }
  Ref<WENKtdStrings> VersionAnswers() override {
    return as<ForwardingStrings>(to("WENKtdVersions.VersionAnswers").VersionAnswers());
  }
  void SetSequenceQuestion(std::int32_t value) override {
    to("WENKtdVersions.SetSequenceQuestion").SetSequenceQuestion(value);
  }
  std::int32_t VersionMode() override {
    return listener().version_mode(to("WENKtdVersions.VersionMode").VersionMode());
  }
};

class ForwardingDocument final : public Forwarding<WENKtdDocument> {
 public:
  using Forwarding::Forwarding;
  Ref<WENKtdQuestions> Questions() override {
    return as<ForwardingQuestions>(to("WENKtdDocument.Questions").Questions());
  }
  Ref<WENKtdVersions> Versions() override { return as<ForwardingVersions>(to("WENKtdDocument.Versions").Versions()); }
  Ref<WENKtdObjectives> Objectives() override {
    return as<ForwardingObjectives>(to("WENKtdDocument.Objectives").Objectives());
  }
  void Clear() override { to("WENKtdDocument.Clear").Clear(); }
  bool Load(const String& path) override { return to("WENKtdDocument.Load").Load(path); }
  String Description() override { return to("WENKtdDocument.Description").Description(); }
  String Notes() override { return to("WENKtdDocument.Notes").Notes(); }
  void SetDocumentKind(std::int32_t value) override { to("WENKtdDocument.SetDocumentKind").SetDocumentKind(value); }
  void SetPageCount(std::int32_t value) override { to("WENKtdDocument.SetPageCount").SetPageCount(value); }
  void PrepareDefaults() override { to("WENKtdDocument.PrepareDefaults").PrepareDefaults(); }
};

// While it lives, the objects that the library creates are forwarding ones around those of the factories before it.
class ForwardingHost : private TemplateFactory, private DocumentFactory {
 public:
  explicit ForwardingHost(CallListener& listener)
      : listener_(listener), templates_(platform().template_objects), documents_(platform().document_objects) {
    platform().template_objects = this;
    platform().document_objects = this;
  }
  ~ForwardingHost() override {
    platform().template_objects = templates_;
    platform().document_objects = documents_;
  }
  ForwardingHost(const ForwardingHost&) = delete;
  ForwardingHost& operator=(const ForwardingHost&) = delete;

  Ref<TIBTemplate> wrap(Ref<TIBTemplate> form) { return make<ForwardingTemplate>(listener_, std::move(form)); }
  Ref<WENKtdDocument> wrap(Ref<WENKtdDocument> document) {
    return make<ForwardingDocument>(listener_, std::move(document));
  }

 private:
  template <class Wrapper, class Create>
  auto created(std::string_view name, Create create) {
    listener_.called(name);
    return make<Wrapper>(listener_, create());
  }

  Ref<TIBRegion> region(const Ref<TIBTemplate>& of) override {
    return created<ForwardingRegion>("TIBRegion.create", [&] { return templates_->region(of); });
  }
  Ref<WENKtdDocument> document() override {
    return created<ForwardingDocument>("WENKtdDocument.create", [&] { return documents_->document(); });
  }
  Ref<WENKtdQuestion> question(const Ref<WENKtdDocument>& of) override {
    return created<ForwardingQuestion>("WENKtdQuestion.create", [&] { return documents_->question(of); });
  }
  Ref<WENKtdObjective> objective(const Ref<WENKtdDocument>& of) override {
    return created<ForwardingObjective>("WENKtdObjective.create", [&] { return documents_->objective(of); });
  }
  Ref<WENKtdOrder> order(const Ref<WENKtdDocument>& of) override {
    return created<ForwardingOrder>("WENKtdOrder.create", [&] { return documents_->order(of); });
  }

  CallListener& listener_;
  TemplateFactory* templates_;
  DocumentFactory* documents_;
};

}  // namespace hedro34::testing
