#include "hedro34/xml/xml_tree.h"

#include <algorithm>

namespace hedro34 {
namespace {

bool is_white_space(char c) noexcept { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

}  // namespace

std::string_view XmlTree::text(Id node) const noexcept {
  const Node& first = nodes_[node];
  return std::string_view(text_).substr(first.text, nodes_[first.end].text - first.text);
}

std::string_view XmlTree::attribute_value(Id attribute) const noexcept {
  const std::uint32_t start = attributes_[attribute].value;
  return std::string_view(values_).substr(start, attributes_[attribute + 1].value - start);
}

std::uint32_t XmlTree::child_count(Id node) const {
  std::uint32_t count = 0;
  for (Id child = node + 1; child != end(node) && count <= few; child = end(child)) ++count;
  if (count <= few) return count;
  const std::vector<Id>& starts = children().starts;
  return starts[node + 1] - starts[node];
}

XmlTree::Id XmlTree::child(Id node, std::uint32_t index) const {
  if (index >= few) return children().ids[children().starts[node] + index];
  Id child = node + 1;
  for (; index > 0; --index) child = end(child);
  return child;
}

const XmlTree::Children& XmlTree::children() const {
  if (!children_.starts.empty()) return children_;
  Children made;
  made.starts.reserve(std::size_t{size_} + 1);
  made.ids.reserve(size_);
  for (Id node = 0; node < size_; ++node) {
    made.starts.push_back(static_cast<Id>(made.ids.size()));
    for (Id child = node + 1; child != end(node); child = end(child)) made.ids.push_back(child);
  }
  made.starts.push_back(static_cast<Id>(made.ids.size()));
  return children_ = std::move(made);
}

std::vector<XmlTree::Id> XmlTree::elements(StringView name) const {
  std::vector<Id> found;
  const auto entry =
      std::find_if(names_.begin() + 1, names_.end(), [&](const Name& each) { return each.full == name; });
  if (entry == names_.end()) return found;
  const Id id = static_cast<Id>(entry - names_.begin());
  found.reserve(entry->elements);
  for (Id node = 0; found.size() < entry->elements; ++node) {
    if (nodes_[node].name == id) found.push_back(node);
  }
  return found;
}

XmlTreeBuilder::XmlTreeBuilder(std::uint64_t expected) : tree_(make<XmlTree>()) {
  tree_->names_.push_back({u"#text", 5});
  tree_->text_.reserve(static_cast<std::size_t>(std::min<std::uint64_t>(expected, most)));
}

bool XmlTreeBuilder::start_element(std::string_view name) {
  if (!flush_text()) return false;
  const Id id = name_id(name);
  if (!add_node(id)) return false;
  ++tree_->names_[id].elements;
  open_.push_back(static_cast<Id>(tree_->nodes_.size() - 1));
  return true;
}

bool XmlTreeBuilder::add_attribute(std::string_view name, std::string_view value) {
  XmlTree& tree = *tree_;
  if (tree.attributes_.size() >= most || value.size() > most - tree.values_.size()) return false;
  tree.attributes_.push_back({name_id(name), static_cast<std::uint32_t>(tree.values_.size())});
  tree.values_.append(value);
  return true;
}

bool XmlTreeBuilder::end_element() {
  if (!flush_text()) return false;
  XmlTree& tree = *tree_;
  tree.nodes_[open_.back()].end = static_cast<Id>(tree.nodes_.size());
  open_.pop_back();
  return true;
}

Ref<const XmlTree> XmlTreeBuilder::finish() {
  XmlTree& tree = *tree_;
  tree.size_ = static_cast<Id>(tree.nodes_.size());
  const auto attributes = static_cast<Id>(tree.attributes_.size());
  tree.nodes_.push_back({XmlTree::text_name, static_cast<std::uint32_t>(tree.text_.size()), attributes, tree.size_});
  tree.attributes_.push_back({XmlTree::text_name, static_cast<std::uint32_t>(tree.values_.size())});
  return std::move(tree_);
}

XmlTree::Id XmlTreeBuilder::name_id(std::string_view name) {
  const auto unit = [&](std::size_t i) { return static_cast<unsigned char>(name[i]); };
  const std::size_t slot =
      (name.size() * 3 + unit(0) * 5U + unit(name.size() / 2) * 7U + unit(name.size() - 1) * 11U) % recent_.size();
  if (recent_[slot] != nullptr && recent_[slot]->first == name) return recent_[slot]->second;

  auto entry = names_.find(name);
  if (entry == names_.end()) {
    const String full = from_utf8(name);
    // A colon at either end leaves no name behind or no prefix before it.
    const std::size_t colon = full.find(u':');
    const bool prefixed = colon != String::npos && colon > 0 && colon + 1 < full.size();
    entry = names_.emplace(name, static_cast<Id>(tree_->names_.size())).first;
    tree_->names_.push_back({full, prefixed ? colon + 1 : 0});
  }
  recent_[slot] = &*entry;
  return entry->second;
}

bool XmlTreeBuilder::flush_text() {
  std::string& text = tree_->text_;
  for (std::size_t i = text_start_; i < text.size(); ++i) {
    if (!is_white_space(text[i])) return add_text_node();
  }
  text.resize(text_start_);
  return true;
}

bool XmlTreeBuilder::add_text_node() {
  if (!add_node(XmlTree::text_name)) return false;
  text_start_ = tree_->text_.size();
  return true;
}

bool XmlTreeBuilder::add_node(Id name) {
  XmlTree& tree = *tree_;
  const std::size_t id = tree.nodes_.size();
  if (id >= most / 2) return false;
  tree.nodes_.push_back({name, static_cast<std::uint32_t>(text_start_), static_cast<Id>(tree.attributes_.size()),
                         static_cast<Id>(id + 1)});
  return true;
}

}  // namespace hedro34
