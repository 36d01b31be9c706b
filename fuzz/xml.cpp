// Any bytes make an XML document or a file error, and each node of a document answers everything it can be asked.

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "hedro34/platform/file_error.h"
#include "hedro34/xml/expat_document.h"

using namespace hedro34;

namespace {

// The nesting of a document is bounded, and so is this. Gives the length of the text inside the node.
std::size_t visit(IXMLDOMNode& node) {
  const std::size_t length = to_text(node.nodeTypedValue()).size();
  const auto list = node.childNodes();
  std::size_t inside = list->length() == 0 ? length : 0;
  for (std::int32_t i = 0; i < list->length(); ++i) inside += visit(*list->item(i));
  if (inside != length || node.nodeName().empty() || list->item(list->length())) std::abort();
  const auto attributes = node.attributes();
  if (!attributes) return length;
  for (std::int32_t i = 0; i < attributes->length(); ++i) {
    if (!attributes->getNamedItem(attributes->item(i)->nodeName())) std::abort();
  }
  return length;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto document = make<ExpatDocument>();
  if (document->parse({reinterpret_cast<const char*>(data), size})) {
    const auto root = document->getElementsByTagName(u"a")->nextNode();
    if (root) visit(*root);
  } else if (last_file_error().kind != FileError::Kind::Malformed || last_file_error().reason.empty()) {
    std::abort();
  }
  return 0;
}
