// What the ExamView import needs of an XML document object, as interfaces with the names of the field. `ExpatDocument`
// is the default; a host replaces it through `platform().xml_documents`. A node without the thing asked for answers
// with an empty reference, an empty text or an empty variant.
#pragma once

#include <cstdint>

#include "hedro34/base/variant.h"

namespace hedro34 {

class IXMLDOMNamedNodeMap;
class IXMLDOMNodeList;

// A node: an element, a text or an attribute.
class HEDRO34_API IXMLDOMNode : public Object {
 public:
  virtual Ref<IXMLDOMNodeList> childNodes() = 0;  // direct children in document order
  virtual StringView nodeName() = 0;              // full name; valid while this node is held
  virtual StringView baseName() = 0;              // name without prefix, empty for a text node; valid as nodeName
  virtual Variant nodeTypedValue() = 0;           // the text inside an element, the value of a text node or attribute
  virtual Variant nodeValue() = 0;                // the value of an attribute, as a string
  virtual Ref<IXMLDOMNamedNodeMap> attributes() = 0;  // empty reference for a node that cannot have any
};

// A node that is an element.
class HEDRO34_API IXMLDOMElement : public IXMLDOMNode {};

// Nodes in order, by position or one after the other.
class HEDRO34_API IXMLDOMNodeList : public Object {
 public:
  virtual std::int32_t length() = 0;
  virtual Ref<IXMLDOMNode> item(std::int32_t index) = 0;  // from 0, constant time; empty reference outside
  virtual Ref<IXMLDOMNode> nextNode() = 0;                // the first call gives the first node
};

// The attributes of an element.
class HEDRO34_API IXMLDOMNamedNodeMap : public Object {
 public:
  virtual Ref<IXMLDOMNode> getNamedItem(StringView name) = 0;  // exactly that name, or an empty reference
  virtual std::int32_t length() = 0;
  virtual Ref<IXMLDOMNode> item(std::int32_t index) = 0;  // from 0, in the document's order; empty reference outside
};

// A document: empty, or what `load` has read.
class HEDRO34_API IXMLDOMDocument2 : public Object {
 public:
  virtual void set_async(bool value) = 0;  // False: `load` returns when parsing has ended

  // Reads the file at the path that the variant holds. True when it was read and parsed. False when it could not be
  // read or is malformed: the document is then empty, and `last_file_error()` says why. An earlier content is dropped
  // either way.
  virtual bool load(const Variant& path) = 0;

  virtual Ref<IXMLDOMElement> selectSingleNode(StringView name) = 0;  // the document element of that name, or empty
  virtual Ref<IXMLDOMNodeList> getElementsByTagName(StringView name) = 0;  // exact case, any depth, document order
};

// Makes the documents into which the import reads files.
class HEDRO34_API XmlDocumentFactory {
 public:
  virtual ~XmlDocumentFactory() = default;
  // A new, empty document; throws failure 429 when there is none to be had.
  virtual Ref<IXMLDOMDocument2> document() = 0;
};

}  // namespace hedro34
