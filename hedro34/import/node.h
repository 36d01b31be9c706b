// A node of an XML document as the import reads it: one of a host's own document through its interface, call by call, and one
// of ours straight from its tree. The two answer alike, so that each rule of the import is written once, for either.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

#include "hedro34/xml/xml_nodes.h"

namespace hedro34 {

// Where in a file names mean something, and so which of the notes of a tree's name is theirs.
enum class Place : std::size_t { RichText, Question, Info };

// What names mean at one place: rows with `name`, in small letters, and a last row for all other names.
template <class Row, std::size_t Count>
struct Vocabulary {
  Place place;
  std::array<Row, Count> rows;

  std::size_t find(StringView name) const noexcept {
    std::size_t row = 0;
    while (row + 1 < Count && !lower_equals(name, rows[row].name)) ++row;
    return row;
  }
};

template <class Row, std::size_t Count>
Vocabulary(Place, std::array<Row, Count>) -> Vocabulary<Row, Count>;

class HostAttribute {
 public:
  explicit HostAttribute(Ref<IXMLDOMNode> attribute) : attribute_(std::move(attribute)) {}
  StringView name() const { return attribute_->nodeName(); }
  String value() const { return to_text(attribute_->nodeValue()); }

 private:
  Ref<IXMLDOMNode> attribute_;
};

class HostAttributes {
 public:
  explicit HostAttributes(Ref<IXMLDOMNamedNodeMap> map) : map_(std::move(map)) {}
  std::optional<HostAttribute> named(StringView name) const {
    Ref<IXMLDOMNode> found = map_ ? map_->getNamedItem(name) : nullptr;
    return found ? std::optional<HostAttribute>(std::move(found)) : std::nullopt;
  }
  std::int32_t count() const { return map_ ? map_->length() : 0; }
  HostAttribute item(std::int32_t index) const { return HostAttribute(map_->item(index)); }  // from 0

 private:
  Ref<IXMLDOMNamedNodeMap> map_;  // an empty reference for a node that cannot have any
};

class HostNode {
 public:
  explicit HostNode(Ref<IXMLDOMNode> node) : node_(std::move(node)) {}
  StringView name() const { return node_->nodeName(); }
  StringView base_name() const { return node_->baseName(); }
  String text() const { return to_text(node_->nodeTypedValue()); }
  HostAttributes attributes() const { return HostAttributes(node_->attributes()); }
  std::optional<XmlPlace> place() const noexcept { return place_of(*node_); }  // such a document may have nodes of ours

  // Of this one of the node's two names.
  template <class Row, std::size_t Count>
  const Row& meaning(const Vocabulary<Row, Count>& vocabulary, StringView name) const noexcept {
    return vocabulary.rows[vocabulary.find(name)];
  }

  class Children {
   public:
    explicit Children(Ref<IXMLDOMNodeList> list) : list_(std::move(list)), count_(list_ ? list_->length() : 0) {}
    bool empty() const noexcept { return count_ == 0; }  // a list that counts below 0 is not
    template <class Visit>
    void each(Visit visit) const {
      for (std::int32_t i = 0; i < count_; ++i) visit(HostNode(list_->item(i)));
    }

   private:
    Ref<IXMLDOMNodeList> list_;
    std::int32_t count_;
  };
  Children children() const { return Children(node_->childNodes()); }

 private:
  Ref<IXMLDOMNode> node_;
};

class TreeAttribute {
 public:
  TreeAttribute(const XmlTree& tree, XmlTree::Id attribute) noexcept : tree_(tree), id_(attribute) {}
  StringView name() const noexcept { return tree_.attribute_name(id_); }
  String value() const { return from_utf8(tree_.attribute_value(id_)); }

 private:
  const XmlTree& tree_;
  XmlTree::Id id_;
};

class TreeAttributes {
 public:
  explicit TreeAttributes(XmlPlace element) noexcept : tree_(element.tree), element_(element.node) {}
  std::optional<TreeAttribute> named(StringView name) const noexcept {
    const XmlTree::Id end = tree_.first_attribute(element_ + 1);
    for (XmlTree::Id each = tree_.first_attribute(element_); each != end; ++each) {
      if (tree_.attribute_name(each) == name) return TreeAttribute(tree_, each);
    }
    return std::nullopt;
  }
  std::int32_t count() const noexcept { return static_cast<std::int32_t>(tree_.attribute_count(element_)); }
  TreeAttribute item(std::int32_t index) const noexcept {
    return {tree_, tree_.first_attribute(element_) + static_cast<XmlTree::Id>(index)};
  }

 private:
  const XmlTree& tree_;
  XmlTree::Id element_;
};

class TreeNode {
 public:
  explicit TreeNode(XmlPlace place) noexcept : place_(place) {}
  StringView name() const noexcept { return place_.tree.name(place_.node); }
  StringView base_name() const noexcept { return place_.tree.base_name(place_.node); }
  String text() const { return from_utf8(place_.tree.text(place_.node)); }
  TreeAttributes attributes() const noexcept { return TreeAttributes(place_); }
  std::optional<XmlPlace> place() const noexcept { return place_; }

  // Looked up once for each name of a document.
  template <class Row, std::size_t Count>
  const Row& meaning(const Vocabulary<Row, Count>& vocabulary, StringView name) const noexcept {
    std::uint8_t& row_from_1 = place_.tree.note(place_.node, static_cast<std::size_t>(vocabulary.place));
    if (row_from_1 == 0) row_from_1 = static_cast<std::uint8_t>(vocabulary.find(name) + 1);
    return vocabulary.rows[row_from_1 - std::size_t{1}];
  }

  class Children {
   public:
    explicit Children(XmlPlace parent) noexcept
        : tree_(parent.tree), begin_(parent.node + 1), end_(tree_.end(parent.node)) {}
    bool empty() const noexcept { return begin_ == end_; }
    template <class Visit>
    void each(Visit visit) const {
      for (XmlTree::Id child = begin_; child != end_; child = tree_.end(child)) visit(TreeNode({tree_, child}));
    }

   private:
    const XmlTree& tree_;
    XmlTree::Id begin_;
    XmlTree::Id end_;
  };
  Children children() const noexcept { return Children(place_); }

 private:
  XmlPlace place_;
};

// Calls `visit` with the node as one or the other.
template <class Visit>
auto read_node(const Ref<IXMLDOMNode>& node, Visit visit) {
  if (const auto own = place_of(*node)) return visit(TreeNode(*own));
  return visit(HostNode(node));
}

}  // namespace hedro34
