// The handles through which a caller walks an `XmlTree`: nodes, lists and attribute maps, made on demand. Each holds
// the tree, so it outlives the document it came from.
#pragma once

#include <optional>

#include "hedro34/xml/xml_document.h"
#include "hedro34/xml/xml_tree.h"

namespace hedro34 {

// The element with that number.
Ref<IXMLDOMElement> element_handle(Ref<const XmlTree> tree, XmlTree::Id node);

struct XmlPlace {
  const XmlTree& tree;  // as long as the handle lives
  XmlTree::Id node;
};

// Where an element or text stands; nothing for an attribute and for a node of a host's own document.
std::optional<XmlPlace> place_of(const IXMLDOMNode& node) noexcept;

// A list of these nodes of the tree.
Ref<IXMLDOMNodeList> list_handle(Ref<const XmlTree> tree, std::vector<XmlTree::Id> nodes);

}  // namespace hedro34
