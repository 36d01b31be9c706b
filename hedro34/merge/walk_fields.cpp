// The field walk of a merge: each visited field gives a question of the document, and a graded one takes the next question of
// the test.
#include "hedro34/merge/here.h"
#include "hedro34/merge/merge_run.h"

namespace hedro34 {
namespace {

constexpr std::int32_t choices = 1;  // the region kind whose fields may have their choices rewritten

bool has_choices(TIBRegion& region) {
  if (region.RegionKind() != choices) return false;
  const std::int32_t response = region.ResponseKind();
  return response == 1 || response == 4 || response == 6;
}

}  // namespace

bool MergeRun::walk_fields() {
  question_number_ = 0;
  std::int32_t previous_group = 0;
  const Ref<TIBPages> pages = held(host_.TemplateOut)->Pages();
  const std::int32_t page_count = pages->Count();
  for (std::int32_t p = 1; p <= page_count; ++p) {
    const Ref<TIBRegions> regions = pages->Item(p)->Regions();
    const std::int32_t region_count = regions->Count();
    for (std::int32_t r = 1; r <= region_count; ++r) {
      const Ref<TIBRegion> region = regions->Item(r);
      const std::int16_t group = region->GroupNumber();
      if (group == 0 || group != previous_group) {
        const Ref<TIBQuestions> fields = region->Questions();
        const std::int32_t field_count = region->QuestionCount();
        for (std::int32_t f = 1; f <= field_count; ++f) {
          if (!visit_field(*region, fields->Item(f))) return false;
        }
      }
      previous_group = group;
    }
  }
  return true;
}

bool MergeRun::visit_field(TIBRegion& region, const Ref<TIBQuestion>& field) {
  ++field_number_;
  const Ref<WENKtdQuestion> question = platform().document_objects->question(held(host_.WENKTD));
  question->SetCorrectPoints(field->CorrectPoints());
  question->SetValueKind(region.ValueKind() == 1 ? 1 : 2);
  question->SetScaleOption(field->ScaleOption());
  const bool graded = field->Graded();
  question->SetGraded(graded);
  question->SetItemOption(field->ItemOption());
  question->SetIncorrectPoints(field->IncorrectPoints());
  const std::int16_t multiples = field->MultiplesAllowed();
  question->SetMultiplesAllowed(multiples > 0 ? multiples : std::int16_t{0});
  question->SetNoResponsePoints(field->NoResponsePoints());
  const std::vector<String>& names = to_strings(field_names_).elements();
  if (static_cast<std::size_t>(field_number_) > names.size()) fail(FailureNumber::SubscriptOutOfRange);
  question->SetName(names[static_cast<std::size_t>(field_number_ - 1)]);
  question->SetQuestionText(field->QuestionText());

  const Variant unset = false;
  const Ref<WENKtdObjectiveFlags> flags = question->ObjectiveFlags();
  for (std::int32_t i = objectives_->Count(); i >= 1; --i) flags->Add(unset);

  if (graded) {
    if (!take_question(region, *field, *question)) return false;
  } else if (has_choices(region)) {
    question->ChoiceLabels()->AddArray(field->ChoiceLabels()->AsArray(1));
    question->ChoiceValues()->AddArray(field->ChoiceValues()->AsArray(1));
  }
  questions_->Add(question);
  return true;
}

bool MergeRun::take_question(TIBRegion& region, TIBQuestion& field, WENKtdQuestion& question) {
  ++question_number_;
  const Ref<clsHEDROTestQuestion> asked = test_->Questions->Item(question_number_);
  field_numbers_.add(field_number_, asked->ID.str());
  if (asked->Answers->Count() > field.ChoiceLabels()->Count()) {
    return refuse(
        u"Invalid Merge",
        u"An error occurred merging the test with the specified template. One or more questions from the test "
        u"contains more possible answers than are present in the specified template. Operation aborted."
        u"\r\n\r\n\tTemplate Field: " +
            region.Name() + u"\r\n\tTest Question ID: " + asked->ID.str());
  }
  question.NumericAnswerKey()->Add(test_->CorrectAnswersAsString(question_number_, u",", true, true));
  question.SetCorrectAnswerCount(asked->CorrectAnswers->Count());
  question.AnswerKey()->Add(test_->CorrectAnswersAsString(question_number_, u",", true, false));
  question.SetCorrectAnd(false);
  if (has_choices(region)) rewrite_choices(field, *asked, question);
  question.SetDifficulty(asked->Difficulty);
  question.SetKeywords(asked->Keywords);
  question.SetMiscellaneous(asked->Miscellaneous);
  question.SetNotes(asked->Notes);
  question.SetQuestionText(asked->QuestionText);
  question.SetReference(asked->Reference);
  question.SetTopic(asked->Topic);
  set_objective_flags(*asked, question);
  return true;
}

void MergeRun::rewrite_choices(TIBQuestion& field, const clsHEDROTestQuestion& asked, WENKtdQuestion& question) {
  const std::int16_t multiples = asked.MultiplesPermitted() ? 1 : 0;
  field.SetMultiplesAllowed(multiples);
  question.SetMultiplesAllowed(multiples);
  Ref<clsHEDROTestStrings> scale;
  if (test_->Sequences->Count() > 1 && asked.QuestionType == HEDROTestQuestionTypeMultipleChoice) {
    scale = question_number_ % 2 == 0 ? test_->MultipleChoiceEvenScale : test_->MultipleChoiceOddScale;
  } else {
    scale = test_->QuestionScale(question_number_);
  }
  const Ref<TIBChoiceList> labels = field.ChoiceLabels();
  const Ref<TIBChoiceList> values = field.ChoiceValues();
  const std::int32_t count = scale->Count();
  for (std::int32_t i = labels->Count(); i > count; --i) labels->SetItem(i, {});
  const Ref<WENKtdStrings> question_labels = question.ChoiceLabels();
  const Ref<WENKtdStrings> question_values = question.ChoiceValues();
  for (std::int32_t i = 1; i <= count; ++i) {
    const Variant index = i;
    const String label = scale->Item(index);
    const String value = decimal(i);
    labels->SetItem(index, label);
    values->SetItem(index, value);
    question_labels->Add(label);
    question_values->Add(value);
  }
  field.SetChoiceLabels(labels);
  field.SetChoiceValues(values);
  field.SetQuestionText(asked.QuestionText);
}

void MergeRun::set_objective_flags(const clsHEDROTestQuestion& asked, WENKtdQuestion& question) {
  const Ref<clsHEDROTestStrings> texts = asked.LearningObjectives;
  const std::int32_t count = texts->Count();
  Ref<WENKtdObjectiveFlags> flags;
  for (std::int32_t i = 1; i <= count; ++i) {
    const std::int32_t position = objective_position(texts->view(i));
    if (position == 0) continue;
    if (!flags) flags = question.ObjectiveFlags();
    flags->Item(position)->SetValue(true);
  }
}

std::int32_t MergeRun::objective_position(StringView name) {
  if (const auto known = objective_positions_.find(name); known != objective_positions_.end()) return known->second;
  const String wanted(name);  // the calls below may change what is viewed
  while (objectives_read_ < objectives_->Count()) {
    const String read = objectives_->Item(objectives_read_ + 1)->Name();
    objective_positions_.emplace(read, ++objectives_read_);
    if (equal_ignoring_case(read, wanted)) return objectives_read_;
  }
  return 0;
}

void MergeRun::add_subjective_questions() {
  for (std::int32_t n = 1; n <= subjective_count_; ++n) {
    ++question_number_;
    const Ref<clsHEDROTestQuestion> asked = test_->Questions->Item(question_number_);
    const String name = u"Subjective" + decimal(n);
    Ref<TIBRegion> region = platform().template_objects->region(held(host_.TemplateOut));
    region->SetValueKind(1);
    region->SetResponseKind(3);
    region->SetName(name);
    region->SetSubjectiveRegion(true);
    region->SetRegionKind(2);
    region->Questions()->Add();
    region->Questions()->Item(1)->SetSubjectiveQuestion(true);
    region->Questions()->Item(1)->SetCorrectPoints(static_cast<double>(asked->SubjectivePoints));
    held(host_.TemplateOut)->Pages()->Item(held(host_.TemplateOut)->PageCount())->Regions()->Add(region);
    region = nullptr;
    const Ref<WENKtdQuestion> question = platform().document_objects->question(held(host_.WENKTD));
    question->SetName(name);
    question->SetQuestionText(name);
    question->SetSubjective(true);
    question->SetDifficulty(asked->Difficulty);
    question->SetKeywords(asked->Keywords);
    question->SetMiscellaneous(asked->Miscellaneous);
    question->SetNotes(asked->Notes);
    question->SetQuestionText(asked->QuestionText);
    question->SetReference(asked->Reference);
    question->SetTopic(asked->Topic);
    set_objective_flags(*asked, *question);
    questions_->Add(question);
  }
}

}  // namespace hedro34
