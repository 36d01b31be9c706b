#include "hedro34/report/report_form.h"

#include <algorithm>

namespace hedro34 {
namespace {

// Whether a field shows these labels and no others; one that is empty is not on the sheet.
bool shows(const std::vector<String>& field, const std::vector<String>& labels) {
  for (std::size_t i = 0; i < std::max(field.size(), labels.size()); ++i) {
    const StringView shown = i < field.size() ? StringView(field[i]) : StringView();
    if (shown != (i < labels.size() ? StringView(labels[i]) : StringView())) return false;
  }
  return true;
}

String difference(const ReportField& field, WENKtdQuestion& question) {
  const String name = u"field " + decimal(field.number);
  if (field.graded != question.Graded()) {
    return name + (field.graded ? u" is graded in the form only" : u" is graded in the document only");
  }
  const std::vector<String> labels = question.ChoiceLabels()->AsArray().elements();
  // Of a field that takes no choices the document has no labels.
  return labels.empty() || shows(field.labels, labels) ? String() : name + u" has other labels in the document";
}

}  // namespace

std::vector<ReportPage> form_pages(TIBTemplate& form) {
  std::vector<ReportPage> result;
  const Ref<TIBPages> pages = form.Pages();
  const std::int32_t page_count = pages->Count();
  std::int32_t number = 0;
  std::int32_t previous_group = 0;
  for (std::int32_t p = 1; p <= page_count; ++p) {
    ReportPage& page = result.emplace_back();
    const Ref<TIBRegions> regions = pages->Item(p)->Regions();
    const std::int32_t region_count = regions->Count();
    for (std::int32_t r = 1; r <= region_count; ++r) {
      const Ref<TIBRegion> held = regions->Item(r);
      ReportRegion& region = page.regions.emplace_back();
      region.name = held->Name();
      const std::int32_t group = held->GroupNumber();
      region.continues = group != 0 && group == previous_group;
      previous_group = group;
      const Ref<TIBQuestions> fields = held->Questions();
      const std::int32_t field_count = held->QuestionCount();
      for (std::int32_t f = 1; f <= field_count; ++f) {
        const Ref<TIBQuestion> field = fields->Item(f);
        region.fields.push_back({region.continues ? 0 : ++number, field->ChoiceLabels()->AsArray(1).elements(),
                                 field->CorrectPoints(), field->Graded()});
      }
    }
  }
  return result;
}

String form_difference(WENKtdDocument& document, const std::vector<ReportPage>& pages) {
  const Ref<WENKtdQuestions> questions = document.Questions();
  const std::int32_t count = questions->Count();
  std::int32_t fields = 0;
  String first;
  for (const ReportPage& page : pages) {
    for (const ReportRegion& region : page.regions) {
      for (const ReportField& field : region.fields) {
        if (field.number == 0) continue;
        ++fields;
        if (first.empty() && field.number <= count) first = difference(field, *questions->Item(field.number));
      }
    }
  }
  if (fields == count) return first;
  return u"the form has " + decimal(fields) + u" fields and the document " + decimal(count);
}

}  // namespace hedro34
