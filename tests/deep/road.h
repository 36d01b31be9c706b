// One test on its whole road, from files to files.
#pragma once

#include <string>

#include "hedro34/documents/data_document.h"
#include "hedro34/documents/form_template.h"
#include "hedro34/merge/clsHEDRO.h"
#include "hedro34/platform/file_error.h"
#include "hedro34/report/Report.h"
#include "hedro34/runtime/basError.h"

namespace hedro34::testing {

// An error object that writes down what it is told.
struct Reports : Object {
  std::string lines;
  Variant Call(StringView, std::span<Variant> report) override {
    lines += to_utf8(to_text(report[0]) + u" " + to_text(report[3]) + u"\n");
    return std::int16_t{0};
  }
};

// Loads the four versions of the sample test, cleans and checks them, merges them, writes form, document and page into the folder,
// reads them back, and lets a load, a test and a merge fail. All that came of it, whatever the folder is.
inline std::string whole_road(const String& samples, const String& folder) {
  std::string result;
  const auto tell = [&](const char* step, bool went_well) {
    result += std::string(step) + (went_well ? "\n" : " FAILED\n");
  };
  const auto reports = make<Reports>();
  set_error_object(reports);
  const auto merge = make<clsHEDRO>();
  for (const char16_t version : StringView(u"abcd")) {
    const auto test = make<clsHEDROTest>();
    tell("load", test->LoadXML(samples + u"/unit-" + version + u".xml", false, nullptr, false));
    merge->Tests->Add(test);
  }
  const auto first = merge->Tests->Item(1);
  merge->Verbose = false;
  tell("clean", merge->RemoveInvalid(12));
  tell("check", merge->ValidTestVersions());
  first->Sequences->AddDefault(first->Questions, first->Version);
  for (std::int32_t i = 2; i <= 4; ++i) tell("add", first->AddSequence(merge->Tests->Item(i)));
  const auto form = make<FormTemplate>();
  tell("form", form->Load(samples + u"/unit.form.json"));
  merge->TemplateIn = form;
  merge->TemplateOut = make<FormTemplate>();
  merge->SequenceQuestion = 1;
  tell("merge", merge->Merge());

  const auto merged = ref_cast<FormTemplate>(merge->TemplateOut);
  const auto document = ref_cast<DataDocument>(merge->WENKTD);
  Report page;
  page.Document = document;
  page.Form = merged;
  for (std::int32_t i = 1; i <= 4; ++i) page.AddTest(merge->Tests->Item(i));
  result += page.to_html() + merged->to_json().value() + document->to_json().value();
  tell("save",
       page.Save(folder + u"/page") && merged->Save(folder + u"/form") && document->Save(folder + u"/document"));
  const auto form_again = make<FormTemplate>();
  const auto document_again = make<DataDocument>();
  tell("load again", form_again->Load(folder + u"/form") && document_again->Load(folder + u"/document"));
  tell("equal", form_again->to_json() == merged->to_json() && document_again->to_json() == document->to_json());
  const auto test_again = make<clsHEDROTest>();
  tell("as a test", test_again->LoadKTD(folder + u"/document"));
  for (std::int32_t i = 1; i <= test_again->Questions->Count(); ++i) {
    result += to_utf8(test_again->CorrectAnswersAsString(i)) + "\n";
  }

  tell("no file", !test_again->LoadXML(u"no file.xml"));
  result += to_line(last_file_error()) + "\n";
  tell("twice", !first->Questions->Add(first->Questions->Item(1)));
  merge->TemplateOut = nullptr;
  tell("no template", !merge->Merge());
  set_error_object(nullptr);
  return result + reports->lines;
}

}  // namespace hedro34::testing
