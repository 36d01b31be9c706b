// Loading of a data document as a test.
#include "hedro34/documents/data_document.h"
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

// The document's questions when it is our own and nobody else holds it or them.
DataQuestions* unshared_questions(const Ref<WENKtdDocument>& document) {
  auto* const own = document->shared() ? nullptr : dynamic_cast<DataDocument*>(document.get());
  return own == nullptr || own->questions().shared() ? nullptr : &own->questions();
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
    if (!BuildTestFromKTD(this, document.get(), unshared_questions(document))) return;
    if (const StringView title = title_of(path); !title.empty()) Title = title;
    if (!TrimScales()) return;
    result = Questions->Count() > 0;
  });
}

}  // namespace hedro34
