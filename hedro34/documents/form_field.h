// The fields of the default form template and their lists of choices. A field belongs to the region whose `Questions` made
// it and stays usable when that is gone. What the interfaces do not name can be read and written too, so that a program can
// build a form:
//
//   Ref<FormQuestion> field = region->questions().add();
//   field->SetName(u"Q1");
//   field->SetChoiceLabels(make<FormChoiceList>(std::vector<String>{u"A", u"B"}));
#pragma once

#include <cstdint>
#include <vector>

#include "hedro34/documents/TIBTemplate.h"

namespace hedro34 {

class FormQuestions;
class FormRegion;
struct JsonTable;

class HEDRO34_API FormChoiceList final : public TIBChoiceList {
 public:
  FormChoiceList() = default;
  explicit FormChoiceList(std::vector<String> texts) : texts_(std::move(texts)) {}

  std::int32_t Count() override { return static_cast<std::int32_t>(texts_.size()); }
  String Item(const Variant& Index);
  void SetItem(const Variant& Index, const String& text) override;
  Array<String> AsArray(std::int32_t lower_bound) override { return Array<String>::of(texts_, lower_bound); }

  void Add(const String& text) { texts_.push_back(text); }
  const std::vector<String>& all() const noexcept { return texts_; }

 private:
  std::vector<String> texts_;
};

class HEDRO34_API FormQuestion final : public TIBQuestion {
 public:
  FormQuestion() = default;

  String Name() { return data_.name; }  // empty: the region's name stands for it
  void SetName(const String& value) { data_.name = value; }
  String QuestionText() override { return data_.question_text; }
  void SetQuestionText(const String& value) override { data_.question_text = value; }
  std::int16_t ItemOption() override { return data_.item_option; }
  void SetItemOption(std::int16_t value) { data_.item_option = value; }
  bool Graded() override { return data_.graded; }
  void SetGraded(bool value) override;
  double CorrectPoints() override { return data_.correct_points; }
  void SetCorrectPoints(double value) override { data_.correct_points = value; }
  double IncorrectPoints() override { return data_.incorrect_points; }
  void SetIncorrectPoints(double value) { data_.incorrect_points = value; }
  double NoResponsePoints() override { return data_.no_response_points; }
  void SetNoResponsePoints(double value) { data_.no_response_points = value; }
  std::int16_t ScaleOption() override { return data_.scale_option; }
  void SetScaleOption(std::int16_t value) { data_.scale_option = value; }
  bool SubjectiveQuestion() { return data_.subjective; }
  void SetSubjectiveQuestion(bool value) override { data_.subjective = value; }
  std::int16_t MultiplesAllowed() override { return data_.multiples_allowed; }
  void SetMultiplesAllowed(std::int16_t value) override { data_.multiples_allowed = value; }

  // The live lists. As long as no values were set, they are "1", "2" and so on, one for each label that stands there when
  // they are first asked for.
  Ref<TIBChoiceList> ChoiceLabels() override { return labels(); }
  Ref<TIBChoiceList> ChoiceValues() override { return values(); }

  // Take the list itself, without a copy. Failure 13 for a list that is no `FormChoiceList`, 91 for an empty reference.
  void SetChoiceLabels(const Ref<TIBChoiceList>& value) override;
  void SetChoiceValues(const Ref<TIBChoiceList>& value) override;

  // The number in the forward walk of the template, from 1. In a continuation of a group it is that of the field at the same
  // position of the group's first region, or of that region's last field when it has fewer; when it has none, the number of
  // the last field visited before it, or 0. A field that stands in no template has the number 0. Constant time, but for a
  // walk over the template's regions after its structure has changed elsewhere than at its end.
  std::int32_t FieldNumber(bool bOption) override;

  static const JsonTable json;

 private:
  friend class FormQuestions;
  friend class FormTemplate;
  struct Json;
  struct Data {
    String name;
    String question_text;
    std::int16_t item_option = 0;
    std::int16_t scale_option = 0;
    std::int16_t multiples_allowed = 0;
    bool graded = false;
    bool subjective = false;
    double correct_points = 1;
    double incorrect_points = 0;
    double no_response_points = 0;
  };

  Ref<FormChoiceList> labels();
  Ref<FormChoiceList> values();
  FormRegion* region() const noexcept;
  void copy_to(FormQuestion& copy) const;

  Data data_;
  Ref<FormChoiceList> labels_;          // empty: no labels yet
  Ref<FormChoiceList> values_;          // empty: the default ones
  FormQuestions* questions_ = nullptr;  // empty when that is gone
  std::int32_t position_ = 0;           // in `questions_`, from 1
};

class HEDRO34_API FormQuestions final : public TIBQuestions {
 public:
  FormQuestions() = default;
  ~FormQuestions() override;

  std::int32_t Count() override { return static_cast<std::int32_t>(fields_.size()); }
  Ref<TIBQuestion> Item(const Variant& Index) override;
  void Add() override { add(); }

  Ref<FormQuestion> add();  // as `Add`, and gives the new field
  const std::vector<Ref<FormQuestion>>& all() const noexcept { return fields_; }

 private:
  friend class FormQuestion;
  friend class FormRegion;
  friend class FormTemplate;

  std::vector<Ref<FormQuestion>> fields_;
  FormRegion* region_ = nullptr;  // empty when that is gone
};

}  // namespace hedro34
