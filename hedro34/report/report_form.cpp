#include "hedro34/report/report_form.h"

#include <algorithm>
#include <limits>

#include "hedro34/documents/form_template.h"

namespace hedro34 {
namespace {

constexpr std::int32_t most_counted = std::numeric_limits<std::int16_t>::max();

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
      const std::int32_t all = fields->Count();
      const std::int32_t field_count = all > most_counted ? all : held->QuestionCount();
      for (std::int32_t f = 1; f <= field_count; ++f) {
        const Ref<TIBQuestion> field = fields->Item(f);
        region.fields.push_back({region.continues ? 0 : ++number, field->ChoiceLabels()->AsArray(1).elements(),
                                 field->CorrectPoints(), field->Graded()});
      }
    }
  }
  return result;
}

std::vector<String> field_names(TIBTemplate& form, const std::vector<ReportPage>& pages) {
  std::int64_t visited = 0;
  for (const ReportPage& page : pages) {
    for (const ReportRegion& region : page.regions) {
      if (!region.continues) visited += static_cast<std::int64_t>(region.fields.size());
    }
  }
  std::vector<String> names;
  if (visited <= most_counted) {
    const std::int16_t count = form.QuestionCount();
    if (count > 0) names = to_strings(form.QuestionNames(1, count, false, u"\t", false)).elements();
    return names;
  }
  std::int32_t page_number = 0;
  for (const ReportPage& page : pages) {
    const Ref<TIBRegions> regions = form.Pages()->Item(++page_number)->Regions();
    std::int32_t region_number = 0;
    for (const ReportRegion& region : page.regions) {
      const Ref<TIBQuestions> fields = regions->Item(++region_number)->Questions();
      if (region.continues) continue;
      for (std::size_t f = 1; f <= region.fields.size(); ++f) {
        const Ref<TIBQuestion> field = fields->Item(static_cast<std::int32_t>(f));
        auto* own = dynamic_cast<FormQuestion*>(field.get());
        names.push_back(own == nullptr || own->Name().empty() ? region.name : own->Name());
      }
    }
  }
  return names;
}

String form_difference(WENKtdDocument& document, std::int32_t count, const std::vector<ReportPage>& pages) {
  const Ref<WENKtdQuestions> questions = document.Questions();
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
  return u"the form has " + decimal(fields) + (fields == 1 ? u" field" : u" fields") + u" and the document " +
         decimal(count);
}

}  // namespace hedro34
