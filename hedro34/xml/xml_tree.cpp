#include "hedro34/xml/xml_tree.h"

#include <algorithm>

namespace hedro34 {
namespace {

constexpr std::string_view white_space = " \t\n\r";

}  // namespace

std::string_view XmlTree::text(Id node) const noexcept {
  const Node& first = nodes_[node];
  return std::string_view(text_).substr(first.text, nodes_[first.end].text - first.text);
}

std::string_view XmlTree::attribute_value(Id attribute) const noexcept {
  const std::uint32_t start = attributes_[attribute].value;
  return std::string_view(values_).substr(start, attributes_[attribute + 1].value - start);
}

std::uint32_t XmlTree::child_count(Id node) const noexcept {
  const Id end = nodes_[node].end;
  if (end == node + 1) return 0;
  return nodes_[node + 1].end == end ? 1 : child_lists_[nodes_[node].children];
}

XmlTree::Id XmlTree::child(Id node, std::uint32_t index) const noexcept {
  return index == 0 ? node + 1 : child_lists_[std::size_t{nodes_[node].children} + 1 + index];
}

std::vector<XmlTree::Id> XmlTree::elements(StringView name) const {
  std::vector<Id> found;
  const auto entry =
      std::find_if(names_.begin() + 1, names_.end(), [&](const Name& each) { return each.full == name; });
  if (entry == names_.end()) return found;
  const Id id = static_cast<Id>(entry - names_.begin());
  for (Id node = 0; node < size_; ++node) {
    if (nodes_[node].name == id) found.push_back(node);
  }
  return found;
}

XmlTreeBuilder::XmlTreeBuilder(std::uint64_t expected) : tree_(make<XmlTree>()) {
  tree_->names_.push_back({u"#text", 5});
  tree_->text_.reserve(static_cast<std::size_t>(std::min<std::uint64_t>(expected, most)));
}

bool XmlTreeBuilder::start_element(std::string_view name) {
  if (!flush_text() || !add_node(name_id(name), text_start_)) return false;
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
  const Id id = open_.back();
  open_.pop_back();
  XmlTree::Node& node = tree.nodes_[id];
  const Id first = id + 1;
  const Id end = static_cast<Id>(tree.nodes_.size());
  node.end = end;
  if (first == end || tree.nodes_[first].end == end) return true;

  const std::size_t start = tree.child_lists_.size();
  if (start >= most) return false;
  node.children = static_cast<std::uint32_t>(start);
  tree.child_lists_.push_back(0);
  for (Id child = first; child != end; child = tree.nodes_[child].end) tree.child_lists_.push_back(child);
  tree.child_lists_[start] = static_cast<Id>(tree.child_lists_.size() - start - 1);
  return true;
}

Ref<const XmlTree> XmlTreeBuilder::finish() {
  XmlTree& tree = *tree_;
  tree.size_ = static_cast<Id>(tree.nodes_.size());
  const auto attributes = static_cast<Id>(tree.attributes_.size());
  tree.nodes_.push_back({XmlTree::text_name, static_cast<std::uint32_t>(tree.text_.size()), attributes, tree.size_, 0});
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
  if (text.find_first_not_of(white_space, text_start_) != std::string::npos) return add_text_node();
  text.resize(text_start_);
  return true;
}

bool XmlTreeBuilder::add_text_node() {
  if (!add_node(XmlTree::text_name, text_start_)) return false;
  text_start_ = tree_->text_.size();
  return true;
}

bool XmlTreeBuilder::add_node(Id name, std::size_t text_start) {
  XmlTree& tree = *tree_;
  const std::size_t id = tree.nodes_.size();
  if (id >= most / 2) return false;
  tree.nodes_.push_back({name, static_cast<std::uint32_t>(text_start), static_cast<Id>(tree.attributes_.size()),
                         static_cast<Id>(id + 1), 0});
  return true;
}

}  // namespace hedro34
