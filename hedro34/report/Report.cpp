#include "hedro34/report/Report.h"

#include "hedro34/platform/abandoned_files.h"
#include "hedro34/report/page.h"

namespace hedro34 {

void Report::AddTest(const Ref<clsHEDROTest>& test) {
  if (!test) fail(FailureNumber::ObjectNotSet);
  tests_.push_back(test);
}

void Report::AddMessage(StringView text) { messages_.emplace_back(text); }

String Report::title() const {
  if (!Title.empty()) return Title;
  if (!tests_.empty() && !tests_.front()->Title.empty()) return tests_.front()->Title;
  const Ref<WENKtdDocument> document = Document;
  const String description = document->Description();
  return description.empty() ? String(u"Test") : description;
}

std::string Report::to_html() const {
  // Objects of a host may put others in these places as they are read.
  const Ref<WENKtdDocument> document = Document;
  const Ref<TIBTemplate> form = Form;
  return page_of(ReportData(*document, form.get(), tests_), title(), messages_);
}

std::optional<PendingFile> Report::prepare(const String& path) const {
  clear_file_error();
  return unless_out_of_memory(FileError::Kind::Unwritable, path, [&] { return PendingFile::write(path, to_html()); });
}

bool Report::Save(const String& path) const {
  remove_abandoned_files_once(path);
  auto file = prepare(path);
  return file && file->commit();
}

}  // namespace hedro34
