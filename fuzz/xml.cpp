// Any bytes make an XML document or a file error, and each node of a document answers everything it can be asked.
#include "hedro34/platform/file_error.h"
#include "hedro34/xml/expat_document.h"
#include "fuzz/support/support.h"

namespace hedro34::fuzz {
namespace {

// The nesting of a document is bounded, and so is this. Gives the length of the text inside the node.
std::size_t visit(IXMLDOMNode& node) {
  const std::size_t length = to_text(node.nodeTypedValue()).size();
  const auto list = node.childNodes();
  std::size_t inside = list->length() == 0 ? length : 0;
  for (std::int32_t i = 0; i < list->length(); ++i) inside += visit(*list->item(i));
  EXPECT_EQ(inside, length);
  EXPECT_FALSE(node.nodeName().empty());
  EXPECT_FALSE(list->item(list->length()));
  const auto attributes = node.attributes();
  for (std::int32_t i = 0; attributes && i < attributes->length(); ++i) {
    EXPECT_TRUE(attributes->getNamedItem(attributes->item(i)->nodeName()));
  }
  return length;
}

}  // namespace

void run(std::string_view input) {
  const auto document = make<ExpatDocument>();
  if (!document->parse(input)) {
    EXPECT_EQ(last_file_error().kind, FileError::Kind::Malformed);
    EXPECT_NE(last_file_error().reason, "");
  } else if (const auto root = document->getElementsByTagName(u"a")->nextNode()) {
    visit(*root);
  }
}

}  // namespace hedro34::fuzz
