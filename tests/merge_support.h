// What the tests of a merge share: short descriptions of forms and tests, forms and documents as lines of text, and one
// merge with a recorder around it.
#pragma once

#include <string>
#include <vector>

#include "hedro34/documents/data_document.h"
#include "hedro34/documents/form_template.h"
#include "hedro34/merge/clsHEDRO.h"
#include "tests/forwarding_host.h"
#include "tests/json.h"
#include "tests/support.h"

namespace hedro34::testing {

inline constexpr HEDROTestQuestionType tf = HEDROTestQuestionTypeTrueFalse;
inline constexpr HEDROTestQuestionType yn = HEDROTestQuestionTypeYesNo;
inline constexpr HEDROTestQuestionType mc = HEDROTestQuestionTypeMultipleChoice;
inline constexpr HEDROTestQuestionType essay = HEDROTestQuestionTypeEssay;
inline constexpr HEDROTestQuestionType subjective = HEDROTestQuestionTypeSubjective;

inline constexpr const char* invalid_version =
    "box 48 \"Invalid Version Identifier\": An error occured creating multiple versions of the test. The selected "
    "field that contains the version identifier does not match the specified XML files. Operation aborted.";

// A form from a line such as "V:AB Q1#7:*ABC,*- | Q2:*AB". Words are regions, "#" precedes a group number, ":" the
// fields, "*" for a graded one and one letter for each label, "-" for none. "|" starts a page.
Ref<FormTemplate> form_of(const std::string& description);

// Page and region from 0.
FormRegion& region_of(FormTemplate& form, std::size_t page, std::size_t region);

// A question with the text "? " and its ID, and answers that nobody looks at.
struct Asked {
  const char16_t* id;
  HEDROTestQuestionType type = mc;
  int answers = 4;
  std::vector<std::int16_t> correct = {1};
  std::vector<const char16_t*> objectives = {};
};

Ref<clsHEDROTest> test_of(const std::vector<Asked>& questions, StringView version = u"A");
Ref<clsHEDROTestStrings> strings_of(StringView letters);

// The members of a JSON object that differ from those of a new one.
std::string changed(const Json& object, const Json& of_a_new_one);

// A line for each region: the page's number from 1, the region, then its fields.
Lines lines_of(FormTemplate& form);

// A line for the document itself, one for each question, one for the versions.
Lines lines_of(DataDocument& document);

// One merge object, ready to merge the tests with the form, and all that it shows and reports. `TemplateOut` holds a
// form of one region "old", the document the objective "old", so that it shows whether they were touched.
struct Merging {
  explicit Merging(const std::string& description, const std::vector<Ref<clsHEDROTest>>& tests = {});

  DataDocument& document() { return dynamic_cast<DataDocument&>(*unwrapped(merge->WENKTD)); }
  FormTemplate& form_out() { return dynamic_cast<FormTemplate&>(*unwrapped(merge->TemplateOut)); }

  // How `TemplateOut` differs from the form that went in: "-" before a line of the form, "+" before a line of its own.
  Lines changes();

  // One member of all questions of the document, as a JSON array.
  std::string of_questions(const char* member);

  Recorder recorder;
  Ref<FormTemplate> form;
  Ref<FormTemplate> old_form;
  Ref<clsHEDRO> merge = make<clsHEDRO>();
};

}  // namespace hedro34::testing
