// A question of the default data document, with its lists. The lists are made when they are first asked for; each is live
// and stays usable when the question is gone.
#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "hedro34/documents/WENKtdDocument.h"

namespace hedro34 {

class DataObjectiveFlags;
struct JsonTable;

// Positions under keys, without regard to case.
using DataKeys = std::unordered_map<String, std::int32_t, IgnoringCase, IgnoringCase>;

class HEDRO34_API DataStrings final : public WENKtdStrings {
 public:
  DataStrings() = default;
  explicit DataStrings(std::vector<String> texts) : texts_(std::move(texts)) {}

  std::int32_t Count() override { return static_cast<std::int32_t>(texts_.size()); }

  // A key is text; an empty one is none. Failure 457 for a key in use, 13 for a key of another kind.
  void Add(const String& text, const Variant& key = missing) override;
  void AddArray(const Array<String>& texts) override;

  // By position or by key. Failure 9 for a position and 5 for a key that is not there, 13 for an index of another kind.
  String Item(const Variant& Index) override;
  Array<String> AsArray() override { return Array<String>::of(texts_); }

  const std::vector<String>& all() const noexcept { return texts_; }
  void reserve(std::size_t count) { texts_.reserve(count); }
  void Clear() noexcept;
  void swap(DataStrings& other) noexcept;

 private:
  std::vector<String> texts_;
  std::unique_ptr<DataKeys> keys_;  // empty as long as there is none
};

// One flag of a list, by its position. It reads and writes the list itself, also an entry that is not there yet.
class HEDRO34_API DataObjectiveFlag final : public WENKtdObjectiveFlag {
 public:
  DataObjectiveFlag(Ref<DataObjectiveFlags> flags, std::size_t offset) : flags_(std::move(flags)), offset_(offset) {}

  Variant Value() override;

  // Null counts as False; failure 13 for a value that is no Boolean and cannot become one.
  void SetValue(const Variant& value) override;

 private:
  Ref<DataObjectiveFlags> flags_;
  std::size_t offset_;
};

class HEDRO34_API DataObjectiveFlags final : public WENKtdObjectiveFlags {
 public:
  DataObjectiveFlags() = default;
  explicit DataObjectiveFlags(std::vector<bool> flags) : count_(flags.size()), flags_(std::move(flags)) {}

  // Appends; the value is taken as `SetValue` of a flag takes it.
  void Add(const Variant& value) override;

  // The flag at a position from 1. Behind the last one it reads as False and stores nothing; writing it first fills the list
  // up to it with False. Failure 9 for a position below 1.
  Ref<WENKtdObjectiveFlag> Item(std::int32_t position) override;

  // All flags; False ones at the end get their places here.
  const std::vector<bool>& all() const {
    flags_.resize(count_);
    return flags_;
  }

 private:
  friend class DataObjectiveFlag;
  bool at(std::size_t offset) const noexcept { return offset < flags_.size() && flags_[offset]; }
  void set(std::size_t offset, bool flag);

  std::size_t count_ = 0;
  mutable std::vector<bool> flags_;  // without False ones at the end, as most questions have no objective
};

class HEDRO34_API DataQuestion final : public WENKtdQuestion {
 public:
  DataQuestion() = default;

  Ref<WENKtdStrings> ChoiceLabels() override { return made(choice_labels_); }
  Ref<WENKtdStrings> ChoiceValues() override { return made(choice_values_); }
  Ref<WENKtdObjectiveFlags> ObjectiveFlags() override;
  Ref<WENKtdStrings> AnswerKey() override { return made(answer_key_, 1); }
  Ref<WENKtdStrings> NumericAnswerKey() override { return made(numeric_answer_key_, 1); }
  String Name() { return name_; }
  void SetName(const String& value) override { name_ = value; }
  String QuestionText() override { return question_text_; }
  void SetQuestionText(const String& value) override { question_text_ = value; }
  bool Graded() override { return graded_; }
  void SetGraded(bool value) override { graded_ = value; }
  std::int16_t ItemOption() { return item_option_; }
  void SetItemOption(std::int16_t value) override { item_option_ = value; }
  std::int32_t ValueKind() { return value_kind_; }
  void SetValueKind(std::int32_t value) override { value_kind_ = value; }
  String TextValue() override { return text_value_; }
  void SetTextValue(const String& value) override { text_value_ = value; }
  double FloatValue() override { return float_value_; }
  void SetFloatValue(double value) override { float_value_ = value; }
  std::int16_t MultiplesAllowed() { return multiples_allowed_; }
  void SetMultiplesAllowed(std::int16_t value) override { multiples_allowed_ = value; }
  std::int16_t ScaleOption() { return scale_option_; }
  void SetScaleOption(std::int16_t value) override { scale_option_ = value; }
  bool Subjective() override { return subjective_; }
  void SetSubjective(bool value) override { subjective_ = value; }
  std::int32_t CorrectAnswerCount() { return correct_answer_count_; }
  void SetCorrectAnswerCount(std::int32_t value) override { correct_answer_count_ = value; }
  bool CorrectAnd() override { return correct_and_; }
  void SetCorrectAnd(bool value) override { correct_and_ = value; }
  double CorrectPoints() override { return correct_points_; }
  void SetCorrectPoints(double value) override { correct_points_ = value; }
  double IncorrectPoints() override { return incorrect_points_; }
  void SetIncorrectPoints(double value) override { incorrect_points_ = value; }
  double NoResponsePoints() override { return no_response_points_; }
  void SetNoResponsePoints(double value) override { no_response_points_ = value; }
  double SubjectivePoints() override { return subjective_points_; }
  void SetSubjectivePoints(double value) { subjective_points_ = value; }
  String Difficulty() override { return difficulty_; }
  void SetDifficulty(const String& value) override { difficulty_ = value; }
  String Reference() override { return reference_; }
  void SetReference(const String& value) override { reference_ = value; }
  String Topic() override { return topic_; }
  void SetTopic(const String& value) override { topic_ = value; }
  String Keywords() override { return keywords_; }
  void SetKeywords(const String& value) override { keywords_ = value; }
  String Miscellaneous() override { return miscellaneous_; }
  void SetMiscellaneous(const String& value) override { miscellaneous_ = value; }
  String Notes() override { return notes_; }
  void SetNotes(const String& value) override { notes_ = value; }

  static const JsonTable json;

 private:
  struct Json;

  static const Ref<DataStrings>& made(Ref<DataStrings>& list, std::size_t expected = 0);

  Ref<DataStrings> choice_labels_;
  Ref<DataStrings> choice_values_;
  Ref<DataObjectiveFlags> objective_flags_;
  Ref<DataStrings> answer_key_;
  Ref<DataStrings> numeric_answer_key_;
  String name_;
  String question_text_;
  String text_value_;
  String difficulty_;
  String reference_;
  String topic_;
  String keywords_;
  String miscellaneous_;
  String notes_;
  double float_value_ = 0;
  double correct_points_ = 1;
  double incorrect_points_ = 0;
  double no_response_points_ = 0;
  double subjective_points_ = 0;
  std::int32_t value_kind_ = 1;
  std::int32_t correct_answer_count_ = 0;
  std::int16_t item_option_ = 0;
  std::int16_t multiples_allowed_ = 0;
  std::int16_t scale_option_ = 0;
  bool graded_ = false;
  bool subjective_ = false;
  bool correct_and_ = true;
};

}  // namespace hedro34
