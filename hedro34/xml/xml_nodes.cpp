#include "hedro34/xml/xml_nodes.h"

namespace hedro34 {
namespace {

using Tree = Ref<const XmlTree>;
using Id = XmlTree::Id;

// Where a handle comes from: the last one that was given out is pointed at the next node when nobody else holds it any
// more, so that a walk through the tree makes a handle for each level and not for each node.
template <class Handle>
class Recycled {
 public:
  Ref<Handle> at(const Tree& tree, Id id) {
    if (!last_ || last_->shared()) {
      last_ = make<Handle>(tree, id);
    } else {
      last_->point_to(id);
    }
    return last_;
  }

 private:
  Ref<Handle> last_;
};

class Attribute final : public IXMLDOMNode {
 public:
  Attribute(Tree tree, Id attribute) : id_(attribute), tree_(std::move(tree)) {}
  void point_to(Id attribute) noexcept { id_ = attribute; }

  Ref<IXMLDOMNodeList> childNodes() override { return list_handle(tree_, {}); }
  StringView nodeName() override { return tree_->attribute_name(id_); }
  StringView baseName() override { return tree_->attribute_base_name(id_); }
  Variant nodeTypedValue() override { return from_utf8(tree_->attribute_value(id_)); }
  Variant nodeValue() override { return nodeTypedValue(); }
  Ref<IXMLDOMNamedNodeMap> attributes() override { return {}; }

 private:
  Id id_;
  Tree tree_;
};

class Attributes final : public IXMLDOMNamedNodeMap {
 public:
  Attributes(Tree tree, Id element) : element_(element), tree_(std::move(tree)) {}
  void point_to(Id element) noexcept { element_ = element; }

  Ref<IXMLDOMNode> getNamedItem(StringView name) override {
    const Id first = tree_->first_attribute(element_);
    const Id end = first + tree_->attribute_count(element_);
    for (Id each = first; each != end; ++each) {
      if (tree_->attribute_name(each) == name) return attribute_.at(tree_, each);
    }
    return {};
  }
  std::int32_t length() override { return static_cast<std::int32_t>(tree_->attribute_count(element_)); }
  Ref<IXMLDOMNode> item(std::int32_t index) override {
    if (index < 0 || index >= length()) return {};
    return attribute_.at(tree_, tree_->first_attribute(element_) + static_cast<Id>(index));
  }

 private:
  Id element_;
  Tree tree_;
  Recycled<Attribute> attribute_;
};

class Node;

// The children of a node, or any nodes of the tree.
class List final : public IXMLDOMNodeList {
 public:
  List(Tree tree, Id parent) : tree_(std::move(tree)) { point_to(parent); }
  List(Tree tree, std::vector<Id> nodes)
      : tree_(std::move(tree)), count_(static_cast<std::uint32_t>(nodes.size())), nodes_(std::move(nodes)) {}
  void point_to(Id parent) {  // which fails, and changes nothing, where many children find no memory for their list
    count_ = tree_->child_count(parent);
    parent_ = parent;
    next_ = 0;
  }

  std::int32_t length() override { return static_cast<std::int32_t>(count_); }
  Ref<IXMLDOMNode> item(std::int32_t index) override;
  Ref<IXMLDOMNode> nextNode() override { return next_ < length() ? item(next_++) : nullptr; }

 private:
  Tree tree_;
  Id parent_ = 0;
  std::uint32_t count_ = 0;
  std::int32_t next_ = 0;
  std::vector<Id> nodes_;  // empty for the children of a node
  Recycled<Node> node_;
};

// An element or a text.
class Node final : public IXMLDOMElement {
 public:
  Node(Tree tree, Id node) : id_(node), tree_(std::move(tree)) {}
  void point_to(Id node) noexcept { id_ = node; }

  Ref<IXMLDOMNodeList> childNodes() override { return children_.at(tree_, id_); }
  StringView nodeName() override { return tree_->name(id_); }
  StringView baseName() override { return tree_->base_name(id_); }
  Variant nodeTypedValue() override { return from_utf8(tree_->text(id_)); }
  Variant nodeValue() override { return tree_->is_text(id_) ? nodeTypedValue() : Variant(); }
  Ref<IXMLDOMNamedNodeMap> attributes() override {
    if (tree_->is_text(id_)) return {};
    return attributes_.at(tree_, id_);
  }
  XmlPlace place() const noexcept { return {*tree_.get(), id_}; }

 private:
  Id id_;
  Tree tree_;
  Recycled<List> children_;
  Recycled<Attributes> attributes_;
};

Ref<IXMLDOMNode> List::item(std::int32_t index) {
  if (index < 0 || static_cast<std::uint32_t>(index) >= count_) return {};
  const auto i = static_cast<std::uint32_t>(index);
  return node_.at(tree_, nodes_.empty() ? tree_->child(parent_, i) : nodes_[i]);
}

}  // namespace

Ref<IXMLDOMElement> element_handle(Ref<const XmlTree> tree, XmlTree::Id node) {
  return make<Node>(std::move(tree), node);
}

std::optional<XmlPlace> place_of(const IXMLDOMNode& node) noexcept {
  const auto* own = dynamic_cast<const Node*>(&node);
  return own == nullptr ? std::nullopt : std::optional(own->place());
}

Ref<IXMLDOMNodeList> list_handle(Ref<const XmlTree> tree, std::vector<XmlTree::Id> nodes) {
  return make<List>(std::move(tree), std::move(nodes));
}

}  // namespace hedro34
