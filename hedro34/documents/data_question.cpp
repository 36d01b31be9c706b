#include "hedro34/documents/data_question.h"

#include <algorithm>

#include "hedro34/documents/position.h"
#include "hedro34/json/json_table.h"

namespace hedro34 {
namespace {

bool as_flag(const Variant& value) {
  if (const bool* flag = value.get_if<bool>()) return *flag;
  return !value.is<Null>() && to_boolean(value);
}

}  // namespace

void DataStrings::Add(const String& text, const Variant& key) {
  String added = text;
  reserve_one_more(texts_);
  if (!key.is<Missing>()) {
    const String* name = key.text();
    if (name == nullptr) fail(FailureNumber::TypeMismatch);
    if (!name->empty()) {
      if (!keys_) keys_ = std::make_unique<DataKeys>();
      if (!keys_->try_emplace(*name, Count() + 1).second) fail(FailureNumber::DuplicateKey);
    }
  }
  texts_.push_back(std::move(added));
}

void DataStrings::AddArray(const Array<String>& texts) {
  texts_.insert(texts_.end(), texts.elements().begin(), texts.elements().end());
}

String DataStrings::Item(const Variant& Index) {
  if (const String* key = Index.text()) {
    if (!keys_) fail(FailureNumber::InvalidCall);
    const auto found = keys_->find(*key);
    if (found == keys_->end()) fail(FailureNumber::InvalidCall);
    return texts_[static_cast<std::size_t>(found->second - 1)];
  }
  return texts_[offset_of(Index, texts_.size())];
}

void DataStrings::Clear() noexcept {
  texts_.clear();
  keys_.reset();
}

void DataStrings::swap(DataStrings& other) noexcept {
  texts_.swap(other.texts_);
  keys_.swap(other.keys_);
}

Variant DataObjectiveFlag::Value() { return flags_->at(offset_); }

void DataObjectiveFlag::SetValue(const Variant& value) { flags_->set(offset_, as_flag(value)); }

void DataObjectiveFlags::Add(const Variant& value) {
  if (as_flag(value)) {
    set(count_, true);
  } else {
    ++count_;
  }
}

void DataObjectiveFlags::set(std::size_t offset, bool flag) {
  if (offset < flags_.size()) {
    flags_[offset] = flag;
  } else if (flag) {
    flags_.resize(offset + 1);
    flags_[offset] = true;
  }
  count_ = std::max(count_, offset + 1);
}

Ref<WENKtdObjectiveFlag> DataObjectiveFlags::Item(std::int32_t position) {
  if (position < 1) fail(FailureNumber::SubscriptOutOfRange);
  return make<DataObjectiveFlag>(Ref<DataObjectiveFlags>(this), static_cast<std::size_t>(position) - 1);
}

const Ref<DataStrings>& DataQuestion::made(Ref<DataStrings>& list, std::size_t expected) {
  if (!list) {
    list = make<DataStrings>();
    list->reserve(expected);
  }
  return list;
}

Ref<WENKtdObjectiveFlags> DataQuestion::ObjectiveFlags() {
  if (!objective_flags_) objective_flags_ = make<DataObjectiveFlags>();
  return objective_flags_;
}

struct DataQuestion::Json {
  static constexpr JsonFlags flags{[](Object& object, std::vector<bool> all) {
                                     if (!all.empty())
                                       static_cast<DataQuestion&>(object).objective_flags_ =
                                           make<DataObjectiveFlags>(std::move(all));
                                   },
                                   [](Object& object) {
                                     const auto& held = static_cast<DataQuestion&>(object).objective_flags_;
                                     return held ? &held->all() : nullptr;
                                   }};

  static const JsonRow rows[27];
};

constexpr JsonRow DataQuestion::Json::rows[27] = {
    json_row<&DataQuestion::name_>("name"),
    json_row<&DataQuestion::question_text_>("questionText"),
    json_row<&DataQuestion::graded_>("graded"),
    json_row<&DataQuestion::item_option_>("itemOption"),
    json_row<&DataQuestion::value_kind_>("valueKind"),
    json_row<&DataQuestion::text_value_>("textValue"),
    json_row<&DataQuestion::float_value_>("floatValue"),
    json_row<&DataQuestion::multiples_allowed_>("multiplesAllowed"),
    json_row<&DataQuestion::scale_option_>("scaleOption"),
    json_row<&DataQuestion::subjective_>("subjective"),
    json_row<&DataQuestion::correct_answer_count_>("correctAnswerCount"),
    json_row<&DataQuestion::correct_and_>("correctAnd"),
    json_row<&DataQuestion::correct_points_>("correctPoints"),
    json_row<&DataQuestion::incorrect_points_>("incorrectPoints"),
    json_row<&DataQuestion::no_response_points_>("noResponsePoints"),
    json_row<&DataQuestion::subjective_points_>("subjectivePoints"),
    json_row<&DataQuestion::difficulty_>("difficulty"),
    json_row<&DataQuestion::reference_>("reference"),
    json_row<&DataQuestion::topic_>("topic"),
    json_row<&DataQuestion::keywords_>("keywords"),
    json_row<&DataQuestion::miscellaneous_>("miscellaneous"),
    json_row<&DataQuestion::notes_>("notes"),
    json_texts<&DataQuestion::choice_labels_>("choiceLabels"),
    json_texts<&DataQuestion::choice_values_>("choiceValues"),
    json_texts<&DataQuestion::answer_key_>("answerKey"),
    json_texts<&DataQuestion::numeric_answer_key_>("numericAnswerKey"),
    {"objectiveFlags", flags},
};

constinit const JsonTable DataQuestion::json{Json::rows};

}  // namespace hedro34
