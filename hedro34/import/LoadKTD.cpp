// Loading of a data document as a test.
#include "hedro34/import/BuildTestFromKTD.h"
#include "hedro34/platform/file_error.h"
#include "hedro34/platform/platform.h"

namespace hedro34 {
namespace {

// The file's name without folder and extension; empty for a path without "\".
StringView title_of(StringView path) {
  const std::size_t separator = path.rfind(u'\\');
  if (separator == StringView::npos) return {};
  const std::size_t period = path.rfind(u'.');
  if (period == StringView::npos) return path.substr(separator + 1);
  if (period < separator) fail(FailureNumber::InvalidCall);
  return path.substr(separator + 1, period - separator - 1);
}

}  // namespace

bool clsHEDROTest::LoadKTD(const String& sKTDFile) {
  return trap<bool>({u"clsHEDROTest", u"LoadKTD"}, [&](auto& result) {
    clear_file_error();
    const String path = sKTDFile;  // it may be a text of this test, which `Clear` empties
    const Ref<WENKtdDocument> document = platform().document_objects->document();
    if (!document->Load(path)) {
      if (last_file_error().kind == FileError::Kind::NoMemory) fail(FailureNumber::OutOfMemory);
      return;
    }
    Clear();
    if (!BuildTestFromKTD(this, document.get())) return;
    if (const StringView title = title_of(path); !title.empty()) Title = title;
    if (!TrimScales()) return;
    result = Questions->Count() > 0;
  });
}

}  // namespace hedro34
