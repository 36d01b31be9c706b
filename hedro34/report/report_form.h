// A form as the page shows it, read once, and whether it belongs to a document.
#pragma once

#include <cstdint>
#include <vector>

#include "hedro34/documents/TIBTemplate.h"
#include "hedro34/documents/WENKtdDocument.h"

namespace hedro34 {

struct ReportField {
  std::int32_t number = 0;  // in the forward walk, which is that of its question in the document; 0 in a continuation
  std::vector<String> labels;
  double correct_points = 0;
  bool graded = false;
};

struct ReportRegion {
  String name;
  bool continues = false;  // the group of the region before it: the walk does not visit its fields
  std::vector<ReportField> fields;
};

struct ReportPage {
  std::vector<ReportRegion> regions;
};

std::vector<ReportPage> form_pages(TIBTemplate& form);

// The names of a form's fields in the order of the walk, which came to these pages. A form with more fields than `QuestionCount`
// tells gives those that its own objects have; fields of a host's objects bear the names of their regions then.
std::vector<String> field_names(TIBTemplate& form, const std::vector<ReportPage>& pages);

// Why the form cannot be the one that was merged with the document, which has so many questions: another number of fields, or
// one that is graded in one of them only or has other labels. One line for a person; empty when nothing speaks against it.
String form_difference(WENKtdDocument& document, std::int32_t count, const std::vector<ReportPage>& pages);

}  // namespace hedro34
