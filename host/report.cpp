#include "host/report.h"

#include "hedro34/documents/data_document.h"
#include "hedro34/documents/form_template.h"
#include "hedro34/report/Report.h"
#include "hedro34/report/report_form.h"
#include "host/input.h"
#include "host/outputs.h"
#include "host/stop.h"

namespace host {

using namespace hedro34;

namespace {

// A file's name without folder and extension, the title of a document that has no description.
StringView title_of(StringView path) {
  path.remove_prefix(path.find_last_of(u"/\\") + 1);
  return path.substr(0, path.rfind(u'.'));
}

}  // namespace

void report(const ReportCommand& command) {
  const auto page = make<Report>();
  const auto document = make<DataDocument>();
  const Input input("document", command.document);
  if (!document->Load(input.path())) input.cannot_read();
  page->Document = document;
  if (document->Description().empty() && !input.is_standard_input()) page->Title = title_of(input.given());
  if (command.form) {
    const auto form = make<FormTemplate>();
    const Input form_input("form", *command.form);
    if (!form->Load(form_input.path())) form_input.cannot_read();
    if (const String difference = form_difference(*document, document->questions().Count(), form_pages(*form));
        !difference.empty()) {
      throw Stop(ExitCode::BadInput, "the form does not belong to the document: " + to_utf8(input_name(*command.form)) +
                                         ": " + to_utf8(difference) + "; give the form that was written with it");
    }
    page->Form = form;
  }
  Outputs outputs;
  outputs.add("report", page->to_html(), command.out);
  outputs.commit();
}

}  // namespace host
