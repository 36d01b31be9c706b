#include "hedro34/merge/merge_run.h"

#include <limits>

#include "hedro34/merge/here.h"

namespace hedro34 {

bool clsHEDRO::Merge() {
  return trap<bool>(here(u"Merge"), [&](auto& result) { result = MergeRun(*this).run(); });
}

MergeRun::MergeRun(clsHEDRO& host) : host_(host) {
  if (host.merging_) {
    throw Failure(static_cast<std::int32_t>(FailureNumber::InvalidCall), u"This object is in the middle of a merge");
  }
  host.merging_ = true;
}

bool MergeRun::run() {
  if (!check_preconditions()) return false;
  copy_template();
  read_field_names();
  start_document();
  if (!fit_graded_fields()) return false;
  if (!walk_fields()) return false;
  add_subjective_questions();
  return host_.BuildSequences(field_numbers_);
}

bool MergeRun::refuse(StringView title, StringView text) const {
  if (host_.Verbose) show_warning(title, text);
  return false;
}

bool MergeRun::check_preconditions() {
  if (host_.Tests->Count() == 0) {
    return refuse(
        u"Invalid test",
        u"An error occurred merging the specified template and test. The test is invalid. Operation aborted.");
  }
  test_ = host_.Tests->Item(1);
  if (!host_.TemplateIn) {
    return refuse(
        u"Invalid Template",
        u"An error occurred merging the specified template and test. The template is invalid. Operation aborted.");
  }
  if (held(host_.TemplateIn)->QuestionCount() == 0) {
    return refuse(u"Invalid Template",
                  u"An error occurred merging the specified template and test. The template does not contain any "
                  u"questions. Operation aborted.");
  }
  if (test_->Questions->Count() == 0) {
    return refuse(
        u"Invalid test",
        u"An error occurred merging the specified template and test. The test does not contain any questions. "
        u"Operation aborted.");
  }
  subjective_count_ = test_->Questions->TypeCount(HEDROTestQuestionTypeSubjective);
  graded_count_ = test_->Questions->Count() - subjective_count_;
  if (graded_count_ > held(host_.TemplateIn)->GradedQuestionCount()) {
    return refuse(u"Invalid Merge",
                  u"An error occurred merging the test with the specified template. The test contains more graded "
                  u"questions than the specified template. Operation aborted.");
  }
  return true;
}

void MergeRun::copy_template() {
  held(host_.TemplateOut)->Clear();
  host_.TemplateOut = held(host_.TemplateIn)->Copy(true);
}

void MergeRun::read_field_names() {
  field_names_ =
      held(host_.TemplateOut)->QuestionNames(1, held(host_.TemplateOut)->QuestionCount(), false, u"\t", false);
  to_strings(field_names_);  // anything else fails here, not at the first field
}

void MergeRun::start_document() {
  held(host_.WENKTD)->Clear();
  held(host_.WENKTD)->SetPageCount(held(host_.TemplateIn)->PageCount());
  held(host_.WENKTD)->SetDocumentKind(1);
  held(host_.WENKTD)->PrepareDefaults();
  objectives_ = held(host_.WENKTD)->Objectives();
  questions_ = held(host_.WENKTD)->Questions();
  const std::int32_t questions = test_->Questions->Count();
  for (std::int32_t i = 1; i <= questions; ++i) {
    const Ref<clsHEDROTestStrings> texts = test_->Questions->Item(i)->LearningObjectives;
    const std::int32_t count = texts->Count();
    for (std::int32_t j = 1; j <= count; ++j) {
      const Variant text = texts->Item(j);
      if (objectives_->Exists(text)) continue;
      const Ref<WENKtdObjective> objective = platform().document_objects->objective(held(host_.WENKTD));
      objective->SetName(*text.text());
      objectives_->Add(objective, objective->Name());
    }
  }
}

bool MergeRun::fit_graded_fields() {
  const std::int32_t surplus = held(host_.TemplateOut)->GradedQuestionCount() - graded_count_;
  if (surplus > 0) ungrade_last_fields(surplus);
  if (graded_count_ == held(host_.TemplateOut)->GradedQuestionCount()) return true;
  return refuse(
      u"Invalid Merge",
      u"An error occurred merging the test with the specified template. The test contains a different number of "
      u"graded questions than the specified template. Operation aborted.");
}

void MergeRun::ungrade_last_fields(std::int32_t surplus) {
  const Ref<TIBPages> pages = held(host_.TemplateOut)->Pages();
  for (std::int32_t p = pages->Count(); p >= 1; --p) {
    const Ref<TIBRegions> regions = pages->Item(p)->Regions();
    for (std::int32_t r = regions->Count(); r >= 1; --r) {
      const Ref<TIBQuestions> fields = regions->Item(r)->Questions();
      for (std::int32_t f = fields->Count(); f >= 1; --f) {
        const Ref<TIBQuestion> field = fields->Item(f);
        if (!field->Graded()) continue;
        field->SetGraded(false);
        --surplus;
        if (field->FieldNumber(true) <= host_.SequenceQuestion) {
          if (host_.SequenceQuestion == std::numeric_limits<std::int32_t>::min()) fail(FailureNumber::Overflow);
          --host_.SequenceQuestion;
        }
        if (surplus == 0) return;
      }
    }
  }
}

}  // namespace hedro34
