#include "hedro34/documents/form_field.h"

#include <algorithm>

#include "hedro34/documents/form_template.h"
#include "hedro34/documents/position.h"
#include "hedro34/json/json_table.h"

namespace hedro34 {
namespace {

Ref<FormChoiceList> own_list(const Ref<TIBChoiceList>& list) {
  auto* own = dynamic_cast<FormChoiceList*>(&*list);
  if (own == nullptr) fail(FailureNumber::TypeMismatch);
  return Ref<FormChoiceList>(own);
}

}  // namespace

String FormChoiceList::Item(const Variant& Index) { return texts_[offset_of(Index, texts_.size())]; }

void FormChoiceList::SetItem(const Variant& Index, const String& text) {
  texts_[offset_of(Index, texts_.size())] = text;
}

Ref<FormChoiceList> FormQuestion::labels() {
  if (!labels_) labels_ = make<FormChoiceList>();
  return labels_;
}

Ref<FormChoiceList> FormQuestion::values() {
  if (!values_) {
    const std::size_t count = labels_ ? labels_->all().size() : 0;
    std::vector<String> numbers;
    numbers.reserve(count);
    for (std::size_t i = 1; i <= count; ++i) numbers.push_back(decimal(static_cast<std::int64_t>(i)));
    values_ = make<FormChoiceList>(std::move(numbers));
  }
  return values_;
}

void FormQuestion::SetChoiceLabels(const Ref<TIBChoiceList>& value) {
  if (!value || value.get() != labels_.get()) labels_ = own_list(value);
}

void FormQuestion::SetChoiceValues(const Ref<TIBChoiceList>& value) {
  if (!value || value.get() != values_.get()) values_ = own_list(value);
}

FormRegion* FormQuestion::region() const noexcept { return questions_ == nullptr ? nullptr : questions_->region_; }

void FormQuestion::SetGraded(bool value) {
  if (data_.graded == value) return;
  data_.graded = value;
  const FormRegion* held_by = region();
  if (held_by == nullptr) return;
  if (FormTemplate* form = held_by->form()) form->graded_changed(*held_by, value);
}

std::int32_t FormQuestion::FieldNumber(bool) {
  const FormRegion* held_by = region();
  FormTemplate* form = held_by == nullptr ? nullptr : held_by->form();
  if (form == nullptr) return 0;
  form->number();
  const FormRegion& first = *held_by->first_;
  return first.start_ + std::min(position_, first.questions_->Count()) - 1;
}

void FormQuestion::copy_to(FormQuestion& copy) const {
  copy.data_ = data_;
  if (labels_) copy.labels_ = make<FormChoiceList>(labels_->all());
  if (values_) copy.values_ = make<FormChoiceList>(values_->all());
}

struct FormQuestion::Json {
  template <auto member>
  static constexpr JsonRow row(std::string_view name) {
    return json_row<&FormQuestion::data_, member>(name);
  }

  static FormQuestion& self(Object& object) { return static_cast<FormQuestion&>(object); }

  // An empty list is not a missing one here: missing values follow the labels.
  static constexpr JsonTexts values{
      [](Object& object, std::vector<String> texts) { self(object).values_ = make<FormChoiceList>(std::move(texts)); },
      [](Object& object) { return self(object).values()->all().size(); },
      [](Object& object, std::size_t i) { return StringView(self(object).values_->all()[i]); }};

  static std::optional<JsonError> check(Object& object) {
    const FormQuestion& field = self(object);
    if (!field.values_) return std::nullopt;
    const std::size_t labels = field.labels_ ? field.labels_->all().size() : 0;
    const std::size_t count = field.values_->all().size();
    if (labels == count) return std::nullopt;
    return JsonError{"/choiceValues", "must have as many entries as choiceLabels, " + std::to_string(labels) +
                                          ", not " + std::to_string(count)};
  }

  static const JsonRow rows[12];
};

constexpr JsonRow FormQuestion::Json::rows[12] = {
    row<&Data::name>("name"),
    row<&Data::question_text>("questionText"),
    row<&Data::item_option>("itemOption"),
    row<&Data::graded>("graded"),
    row<&Data::correct_points>("correctPoints"),
    row<&Data::incorrect_points>("incorrectPoints"),
    row<&Data::no_response_points>("noResponsePoints"),
    json_texts<&FormQuestion::labels_>("choiceLabels"),
    {"choiceValues", values},
    row<&Data::scale_option>("scaleOption"),
    row<&Data::subjective>("subjectiveQuestion"),
    row<&Data::multiples_allowed>("multiplesAllowed"),
};

constinit const JsonTable FormQuestion::json{Json::rows, &Json::check};

FormQuestions::~FormQuestions() {
  for (const auto& field : fields_) field->questions_ = nullptr;
}

Ref<TIBQuestion> FormQuestions::Item(const Variant& Index) { return fields_[offset_of(Index, fields_.size())]; }

Ref<FormQuestion> FormQuestions::add() {
  auto field = make<FormQuestion>();
  fields_.push_back(field);
  field->questions_ = this;
  field->position_ = Count();
  if (region_ != nullptr) {
    if (FormTemplate* form = region_->form()) form->field_added(*region_);
  }
  return field;
}

}  // namespace hedro34
