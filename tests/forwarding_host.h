// A host's own objects, as the merge meets them: each of these stands before an object of another implementation, by
// default the library's, tells a listener the name of every call and passes the call on. Objects that come back are
// wrapped in turn; one that goes in is unwrapped, so that what stands behind meets only its own kind.
//
//   MyListener listener;                  // its called("TIBQuestion", "SetGraded") runs before each call and may throw
//   ForwardingHost host(listener);        // what the library creates is wrapped from here on
//   merge.TemplateIn = host.wrap(form);
//
// The listener outlives all of these objects.
#pragma once

#include <algorithm>
#include <string_view>
#include <utility>

#include "hedro34/documents/TIBTemplate.h"
#include "hedro34/documents/WENKtdDocument.h"
#include "hedro34/platform/platform.h"

namespace hedro34::testing {

// Hears each call before it is passed on; the writing side of a property is its name behind "Set", and creations are calls
// of "create". What it throws becomes the failure of the call.
class CallListener {
 public:
  virtual ~CallListener() = default;
  virtual void called(std::string_view interface, std::string_view member) = 0;

  // An object of the interface has no holder any more.
  virtual void released(std::string_view) noexcept {}

  // May change what the call that was told last answers with. A C++ host has no objects and lists of a wrong type: they become
  // an empty reference and an empty list. A listener that leaves it to this one is asked once: a benchmark's calls cost less.
  virtual void answers(Variant&) { answers_stay = true; }
  bool answers_stay = false;
};

template <class Value>
bool answers_otherwise(CallListener& listener, const Value& value) {
  Variant answer = value;
  listener.answers(answer);
  return answer != Variant(value);
}

// The object behind a forwarding one of its own; an empty reference stays empty.
template <class Wrapper, class Held>
Ref<Held> forwarding(CallListener& listener, Ref<Held> object) {
  if (!listener.answers_stay && answers_otherwise(listener, object)) object = nullptr;
  if (!object) return {};
  return make<Wrapper>(listener, std::move(object));
}

template <class Interface>
class Forwarding : public Interface {
 public:
  Forwarding(CallListener& listener, Ref<Interface> target) : listener_(listener), target_(std::move(target)) {}

  const Ref<Interface>& target() const noexcept { return target_; }

 protected:
  CallListener& listener() const noexcept { return listener_; }
  template <class Wrapper, class Held>
  Ref<Held> as(Ref<Held> object) {
    return forwarding<Wrapper>(listener_, std::move(object));
  }
  template <class Value>
  Value say(Value value) {
    if (listener_.answers_stay) return value;
    Variant answer = std::move(value);
    listener_.answers(answer);
    if constexpr (std::is_same_v<Value, bool>) return to_boolean(answer);
    if constexpr (std::is_same_v<Value, std::int16_t>) return to_int16(answer);
    if constexpr (std::is_same_v<Value, std::int32_t>) return to_int32(answer);
    if constexpr (std::is_same_v<Value, double>) return to_double(answer);
    if constexpr (std::is_same_v<Value, String>) return to_text(answer);
    if constexpr (std::is_same_v<Value, Array<String>>) return answer.is<Value>() ? to_strings(answer) : Value();
    if constexpr (std::is_same_v<Value, Variant>) return answer;
  }

 private:
  CallListener& listener_;
  Ref<Interface> target_;
};

template <std::size_t size>
struct Name {
  constexpr Name(const char (&its_letters)[size]) { std::copy_n(its_letters, size, letters); }
  char letters[size];
};

// One of an interface whose calls are told under this name.
template <Name name, class Interface>
struct Named : Forwarding<Interface> {
  using Forwarding<Interface>::Forwarding;
  ~Named() override { this->listener().released(name.letters); }
  Interface& to(std::string_view member) {
    this->listener().called(name.letters, member);
    return *this->target();
  }
};

// What stands behind a forwarding object; any other object as it is.
template <class Interface>
Ref<Interface> unwrapped(const Ref<Interface>& object) {
  const auto* forwarding = dynamic_cast<const Forwarding<Interface>*>(object.get());
  return forwarding == nullptr ? object : forwarding->target();
}

// --- form template ---

struct ForwardingChoiceList final : Named<"TIBChoiceList", TIBChoiceList> {
  using Named::Named;
  std::int32_t Count() override { return say(to("Count").Count()); }
  void SetItem(const Variant& Index, const String& text) override { to("SetItem").SetItem(Index, text); }
  Array<String> AsArray(std::int32_t lower) override {
    return say(to(lower == 1 ? "AsArray" : "AsArray from elsewhere").AsArray(lower));
  }
};

struct ForwardingField final : Named<"TIBQuestion", TIBQuestion> {
  using Named::Named;
  String QuestionText() override { return say(to("QuestionText").QuestionText()); }
  void SetQuestionText(const String& value) override { to("SetQuestionText").SetQuestionText(value); }
  std::int16_t ItemOption() override { return say(to("ItemOption").ItemOption()); }
  bool Graded() override { return say(to("Graded").Graded()); }
  void SetGraded(bool value) override { to("SetGraded").SetGraded(value); }
  double CorrectPoints() override { return say(to("CorrectPoints").CorrectPoints()); }
  void SetCorrectPoints(double value) override { to("SetCorrectPoints").SetCorrectPoints(value); }
  double IncorrectPoints() override { return say(to("IncorrectPoints").IncorrectPoints()); }
  double NoResponsePoints() override { return say(to("NoResponsePoints").NoResponsePoints()); }
  Ref<TIBChoiceList> ChoiceLabels() override { return as<ForwardingChoiceList>(to("ChoiceLabels").ChoiceLabels()); }
  void SetChoiceLabels(const Ref<TIBChoiceList>& value) override {
    to("SetChoiceLabels").SetChoiceLabels(unwrapped(value));
  }
  Ref<TIBChoiceList> ChoiceValues() override { return as<ForwardingChoiceList>(to("ChoiceValues").ChoiceValues()); }
  void SetChoiceValues(const Ref<TIBChoiceList>& value) override {
    to("SetChoiceValues").SetChoiceValues(unwrapped(value));
  }
  std::int16_t ScaleOption() override { return say(to("ScaleOption").ScaleOption()); }
  void SetSubjectiveQuestion(bool value) override { to("SetSubjectiveQuestion").SetSubjectiveQuestion(value); }
  std::int16_t MultiplesAllowed() override { return say(to("MultiplesAllowed").MultiplesAllowed()); }
  void SetMultiplesAllowed(std::int16_t value) override { to("SetMultiplesAllowed").SetMultiplesAllowed(value); }
  std::int32_t FieldNumber(bool option) override {
    return say(to(option ? "FieldNumber" : "FieldNumber of the other kind").FieldNumber(option));
  }
};

struct ForwardingFields final : Named<"TIBQuestions", TIBQuestions> {
  using Named::Named;
  std::int32_t Count() override { return say(to("Count").Count()); }
  Ref<TIBQuestion> Item(const Variant& Index) override { return as<ForwardingField>(to("Item").Item(Index)); }
  void Add() override { to("Add").Add(); }
};

struct ForwardingRegion final : Named<"TIBRegion", TIBRegion> {
  using Named::Named;
  Ref<TIBQuestions> Questions() override { return as<ForwardingFields>(to("Questions").Questions()); }
  std::int32_t RegionKind() override { return say(to("RegionKind").RegionKind()); }
  void SetRegionKind(std::int32_t value) override { to("SetRegionKind").SetRegionKind(value); }
  std::int32_t ResponseKind() override { return say(to("ResponseKind").ResponseKind()); }
  void SetResponseKind(std::int32_t value) override { to("SetResponseKind").SetResponseKind(value); }
  std::int32_t ValueKind() override { return say(to("ValueKind").ValueKind()); }
  void SetValueKind(std::int32_t value) override { to("SetValueKind").SetValueKind(value); }
  std::int16_t QuestionCount() override { return say(to("QuestionCount").QuestionCount()); }
  String Name() override { return say(to("Name").Name()); }
  void SetName(const String& value) override { to("SetName").SetName(value); }
  std::int16_t GroupNumber() override { return say(to("GroupNumber").GroupNumber()); }
  void SetSubjectiveRegion(bool value) override { to("SetSubjectiveRegion").SetSubjectiveRegion(value); }
};

struct ForwardingRegions final : Named<"TIBRegions", TIBRegions> {
  using Named::Named;
  std::int32_t Count() override { return say(to("Count").Count()); }
  std::int16_t Add(const Ref<TIBRegion>& region, const Variant& option1, const Variant& option2) override {
    return say(to("Add").Add(unwrapped(region), option1, option2));
  }
  Ref<TIBRegion> Item(const Variant& Index) override { return as<ForwardingRegion>(to("Item").Item(Index)); }
};

struct ForwardingPage final : Named<"TIBPage", TIBPage> {
  using Named::Named;
  Ref<TIBRegions> Regions() override { return as<ForwardingRegions>(to("Regions").Regions()); }
};

struct ForwardingPages final : Named<"TIBPages", TIBPages> {
  using Named::Named;
  std::int32_t Count() override { return say(to("Count").Count()); }
  Ref<TIBPage> Item(const Variant& Index) override { return as<ForwardingPage>(to("Item").Item(Index)); }
};

struct ForwardingTemplate : Named<"TIBTemplate", TIBTemplate> {
  using Named::Named;
  Ref<TIBPages> Pages() override { return as<ForwardingPages>(to("Pages").Pages()); }
  std::int16_t PageCount() override { return say(to("PageCount").PageCount()); }
  std::int16_t QuestionCount() override { return say(to("QuestionCount").QuestionCount()); }
  std::int16_t GradedQuestionCount() override { return say(to("GradedQuestionCount").GradedQuestionCount()); }
  void Clear() override { to("Clear").Clear(); }
  Variant QuestionNames(std::int16_t first, std::int16_t last, bool option1, const String& delimiter,
                        bool option2) override {
    return say(to("QuestionNames").QuestionNames(first, last, option1, delimiter, option2));
  }
  Ref<TIBTemplate> Copy(bool option) override { return as<ForwardingTemplate>(to("Copy").Copy(option)); }
};

// --- data document ---

struct ForwardingStrings final : Named<"WENKtdStrings", WENKtdStrings> {
  using Named::Named;
  std::int32_t Count() override { return say(to("Count").Count()); }
  void Add(const String& text, const Variant& key) override { to("Add").Add(text, key); }
  void AddArray(const Array<String>& texts) override { to("AddArray").AddArray(texts); }
  String Item(const Variant& Index) override { return say(to("Item").Item(Index)); }
  Array<String> AsArray() override { return say(to("AsArray").AsArray()); }
};

struct ForwardingFlag final : Named<"WENKtdObjectiveFlag", WENKtdObjectiveFlag> {
  using Named::Named;
  Variant Value() override { return say(to("Value").Value()); }
  void SetValue(const Variant& value) override { to("SetValue").SetValue(value); }
};

struct ForwardingFlags final : Named<"WENKtdObjectiveFlags", WENKtdObjectiveFlags> {
  using Named::Named;
  void Add(const Variant& value) override { to("Add").Add(value); }
  Ref<WENKtdObjectiveFlag> Item(std::int32_t position) override {
    return as<ForwardingFlag>(to("Item").Item(position));
  }
};

struct ForwardingQuestion final : Named<"WENKtdQuestion", WENKtdQuestion> {
  using Named::Named;
  Ref<WENKtdStrings> ChoiceLabels() override { return strings(to("ChoiceLabels").ChoiceLabels()); }
  Ref<WENKtdStrings> ChoiceValues() override { return strings(to("ChoiceValues").ChoiceValues()); }
  Ref<WENKtdObjectiveFlags> ObjectiveFlags() override {
    return as<ForwardingFlags>(to("ObjectiveFlags").ObjectiveFlags());
  }
  Ref<WENKtdStrings> AnswerKey() override { return strings(to("AnswerKey").AnswerKey()); }
  Ref<WENKtdStrings> NumericAnswerKey() override { return strings(to("NumericAnswerKey").NumericAnswerKey()); }
  void SetName(const String& value) override { to("SetName").SetName(value); }
  String QuestionText() override { return say(to("QuestionText").QuestionText()); }
  void SetQuestionText(const String& value) override { to("SetQuestionText").SetQuestionText(value); }
  bool Graded() override { return say(to("Graded").Graded()); }
  void SetGraded(bool value) override { to("SetGraded").SetGraded(value); }
  void SetItemOption(std::int16_t value) override { to("SetItemOption").SetItemOption(value); }
  void SetValueKind(std::int32_t value) override { to("SetValueKind").SetValueKind(value); }
  String TextValue() override { return say(to("TextValue").TextValue()); }
  void SetTextValue(const String& value) override { to("SetTextValue").SetTextValue(value); }
  double FloatValue() override { return say(to("FloatValue").FloatValue()); }
  void SetFloatValue(double value) override { to("SetFloatValue").SetFloatValue(value); }
  void SetMultiplesAllowed(std::int16_t value) override { to("SetMultiplesAllowed").SetMultiplesAllowed(value); }
  void SetScaleOption(std::int16_t value) override { to("SetScaleOption").SetScaleOption(value); }
  bool Subjective() override { return say(to("Subjective").Subjective()); }
  void SetSubjective(bool value) override { to("SetSubjective").SetSubjective(value); }
  void SetCorrectAnswerCount(std::int32_t value) override { to("SetCorrectAnswerCount").SetCorrectAnswerCount(value); }
  bool CorrectAnd() override { return say(to("CorrectAnd").CorrectAnd()); }
  void SetCorrectAnd(bool value) override { to("SetCorrectAnd").SetCorrectAnd(value); }
  double CorrectPoints() override { return say(to("CorrectPoints").CorrectPoints()); }
  void SetCorrectPoints(double value) override { to("SetCorrectPoints").SetCorrectPoints(value); }
  double IncorrectPoints() override { return say(to("IncorrectPoints").IncorrectPoints()); }
  void SetIncorrectPoints(double value) override { to("SetIncorrectPoints").SetIncorrectPoints(value); }
  double NoResponsePoints() override { return say(to("NoResponsePoints").NoResponsePoints()); }
  void SetNoResponsePoints(double value) override { to("SetNoResponsePoints").SetNoResponsePoints(value); }
  double SubjectivePoints() override { return say(to("SubjectivePoints").SubjectivePoints()); }
  String Difficulty() override { return say(to("Difficulty").Difficulty()); }
  void SetDifficulty(const String& value) override { to("SetDifficulty").SetDifficulty(value); }
  String Reference() override { return say(to("Reference").Reference()); }
  void SetReference(const String& value) override { to("SetReference").SetReference(value); }
  String Topic() override { return say(to("Topic").Topic()); }
  void SetTopic(const String& value) override { to("SetTopic").SetTopic(value); }
  String Keywords() override { return say(to("Keywords").Keywords()); }
  void SetKeywords(const String& value) override { to("SetKeywords").SetKeywords(value); }
  String Miscellaneous() override { return say(to("Miscellaneous").Miscellaneous()); }
  void SetMiscellaneous(const String& value) override { to("SetMiscellaneous").SetMiscellaneous(value); }
  String Notes() override { return say(to("Notes").Notes()); }
  void SetNotes(const String& value) override { to("SetNotes").SetNotes(value); }

 private:
  Ref<WENKtdStrings> strings(Ref<WENKtdStrings> list) { return as<ForwardingStrings>(std::move(list)); }
};

struct ForwardingQuestions final : Named<"WENKtdQuestions", WENKtdQuestions> {
  using Named::Named;
  std::int32_t Count() override { return say(to("Count").Count()); }
  void Add(const Ref<WENKtdQuestion>& question) override { to("Add").Add(unwrapped(question)); }
  Ref<WENKtdQuestion> Item(const Variant& Index) override { return as<ForwardingQuestion>(to("Item").Item(Index)); }
};

struct ForwardingObjective final : Named<"WENKtdObjective", WENKtdObjective> {
  using Named::Named;
  String Name() override { return say(to("Name").Name()); }
  void SetName(const String& value) override { to("SetName").SetName(value); }
};

struct ForwardingObjectives final : Named<"WENKtdObjectives", WENKtdObjectives> {
  using Named::Named;
  std::int32_t Count() override { return say(to("Count").Count()); }
  void Add(const Ref<WENKtdObjective>& objective, const Variant& key) override {
    to("Add").Add(unwrapped(objective), key);
  }
  Ref<WENKtdObjective> Item(const Variant& Index) override { return as<ForwardingObjective>(to("Item").Item(Index)); }
  bool Exists(const Variant& key) override { return say(to("Exists").Exists(key)); }
};

struct ForwardingOrder final : Named<"WENKtdOrder", WENKtdOrder> {
  using Named::Named;
  std::int32_t Count() override { return say(to("Count").Count()); }
  std::int32_t Item(std::int32_t position) override { return say(to("Item").Item(position)); }
  void FromArray(const Array<std::int32_t>& entries) override { to("FromArray").FromArray(entries); }
};

struct ForwardingOrders final : Named<"WENKtdOrders", WENKtdOrders> {
  using Named::Named;
  std::int32_t Count() override { return say(to("Count").Count()); }
  void Add(const Ref<WENKtdOrder>& order) override { to("Add").Add(unwrapped(order)); }
  void AddDefault(std::int32_t questions) override { to("AddDefault").AddDefault(questions); }
  Ref<WENKtdOrder> Item(const Variant& Index) override { return as<ForwardingOrder>(to("Item").Item(Index)); }
};

struct ForwardingVersions final : Named<"WENKtdVersions", WENKtdVersions> {
  using Named::Named;
  Ref<WENKtdOrders> Orders() override { return as<ForwardingOrders>(to("Orders").Orders()); }
  Ref<WENKtdStrings> VersionAnswers() override { return as<ForwardingStrings>(to("VersionAnswers").VersionAnswers()); }
  void SetSequenceQuestion(std::int32_t value) override { to("SetSequenceQuestion").SetSequenceQuestion(value); }
  std::int32_t VersionMode() override { return say(to("VersionMode").VersionMode()); }
};

struct ForwardingDocument final : Named<"WENKtdDocument", WENKtdDocument> {
  using Named::Named;
  Ref<WENKtdQuestions> Questions() override { return as<ForwardingQuestions>(to("Questions").Questions()); }
  Ref<WENKtdVersions> Versions() override { return as<ForwardingVersions>(to("Versions").Versions()); }
  Ref<WENKtdObjectives> Objectives() override { return as<ForwardingObjectives>(to("Objectives").Objectives()); }
  void Clear() override { to("Clear").Clear(); }
  bool Load(const String& path) override { return say(to("Load").Load(path)); }
  String Description() override { return say(to("Description").Description()); }
  String Notes() override { return say(to("Notes").Notes()); }
  void SetDocumentKind(std::int32_t value) override { to("SetDocumentKind").SetDocumentKind(value); }
  void SetPageCount(std::int32_t value) override { to("SetPageCount").SetPageCount(value); }
  void PrepareDefaults() override { to("PrepareDefaults").PrepareDefaults(); }
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
  auto created(std::string_view interface, Create create) {
    listener_.called(interface, "create");
    return forwarding<Wrapper>(listener_, create());
  }

  Ref<TIBRegion> region(const Ref<TIBTemplate>& of) override {
    return created<ForwardingRegion>("TIBRegion", [&] { return templates_->region(of); });
  }
  Ref<WENKtdDocument> document() override {
    return created<ForwardingDocument>("WENKtdDocument", [&] { return documents_->document(); });
  }
  Ref<WENKtdQuestion> question(const Ref<WENKtdDocument>& of) override {
    return created<ForwardingQuestion>("WENKtdQuestion", [&] { return documents_->question(of); });
  }
  Ref<WENKtdObjective> objective(const Ref<WENKtdDocument>& of) override {
    return created<ForwardingObjective>("WENKtdObjective", [&] { return documents_->objective(of); });
  }
  Ref<WENKtdOrder> order(const Ref<WENKtdDocument>& of) override {
    return created<ForwardingOrder>("WENKtdOrder", [&] { return documents_->order(of); });
  }

  CallListener& listener_;
  TemplateFactory* templates_;
  DocumentFactory* documents_;
};

}  // namespace hedro34::testing
