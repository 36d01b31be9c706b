// The default XML document object: parses with expat into an `XmlTree`. Comments and processing instructions leave no
// trace, text of white space only makes no node, a CDATA section is a text node of its own. Nothing outside the file is
// fetched. An older expat takes about 355 bytes of the thread's stack for each entity inside another, at most 355 KB.
//
//   auto document = make<ExpatDocument>();
//   if (!document->load(u"unit.xml")) std::cerr << to_line(last_file_error());
#pragma once

#include <cstddef>
#include <string_view>

#include "hedro34/xml/xml_document.h"

namespace hedro34 {

class XmlTree;

class HEDRO34_API ExpatDocument final : public IXMLDOMDocument2 {
 public:
  static constexpr std::size_t most_nested = 1000;  // elements inside each other, the document element included

  ExpatDocument();
  ~ExpatDocument() override;

  void set_async(bool) override {}  // `load` has always parsed all when it returns
  bool load(const Variant& path) override;
  // As `load`, from memory; a file error has no path.
  bool parse(std::string_view bytes);

  Ref<IXMLDOMElement> selectSingleNode(StringView name) override;
  Ref<IXMLDOMNodeList> getElementsByTagName(StringView name) override;

 private:
  Ref<const XmlTree> tree_;  // empty reference while nothing is loaded
};

// Hands out `ExpatDocument`s.
HEDRO34_API XmlDocumentFactory& expat_documents() noexcept;

}  // namespace hedro34
