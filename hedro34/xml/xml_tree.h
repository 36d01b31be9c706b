// An XML document in flat storage: nodes in document order, text as UTF-8 in one buffer in which the text of each
// element is one slice, each name kept once. A tree does not change once it is built; handles share it by counted
// reference.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hedro34/base/ref.h"
#include "hedro34/base/text.h"

namespace hedro34 {

// A list that only grows, in blocks that stay where they are: growing copies nothing.
template <class T>
class Blocks {
 public:
  Blocks() = default;
  Blocks(const Blocks&) = delete;
  Blocks& operator=(const Blocks&) = delete;

  std::size_t size() const noexcept { return size_; }
  const T& operator[](std::size_t i) const noexcept { return blocks_[i / block_size][i % block_size]; }
  T& operator[](std::size_t i) noexcept { return blocks_[i / block_size][i % block_size]; }
  void push_back(const T& element) {
    if (next_ == end_) add_block();
    *next_++ = element;
    ++size_;
  }

 private:
  static constexpr std::size_t block_size = 4096;
  void add_block() {
    blocks_.push_back(std::make_unique_for_overwrite<T[]>(block_size));
    next_ = blocks_.back().get();
    end_ = next_ + block_size;
  }

  std::vector<std::unique_ptr<T[]>> blocks_;
  T* next_ = nullptr;  // in the last block
  T* end_ = nullptr;   // of it
  std::size_t size_ = 0;
};

class XmlTree final : public Object {
 public:
  // Numbers of nodes (document order, the document element is 0), of attributes (document order) and of names.
  using Id = std::uint32_t;

  bool empty() const noexcept { return size_ == 0; }
  Id size() const noexcept { return size_; }  // nodes: elements and texts

  bool is_text(Id node) const noexcept { return nodes_[node].name == text_name; }
  StringView name(Id node) const noexcept { return names_[nodes_[node].name].full; }        // "#text" for a text
  StringView base_name(Id node) const noexcept { return base(names_[nodes_[node].name]); }  // empty for a text
  std::string_view text(Id node) const noexcept;  // UTF-8; of an element all text inside it

  // The first node behind it and all that is inside it. Its first child is the node behind it, and behind each child stands
  // the next one.
  Id end(Id node) const noexcept { return nodes_[node].end; }

  // The same by position, in constant time: beyond a few from lists of all children, which are made when they are first needed.
  std::uint32_t child_count(Id node) const;
  Id child(Id node, std::uint32_t index) const;  // `index` is below the count

  Id first_attribute(Id node) const noexcept { return nodes_[node].attributes; }
  std::uint32_t attribute_count(Id node) const noexcept {
    return nodes_[node + 1].attributes - nodes_[node].attributes;
  }
  StringView attribute_name(Id attribute) const noexcept { return names_[attributes_[attribute].name].full; }
  StringView attribute_base_name(Id attribute) const noexcept { return base(names_[attributes_[attribute].name]); }
  std::string_view attribute_value(Id attribute) const noexcept;  // UTF-8

  std::vector<Id> elements(StringView name) const;  // all of exactly that name, in document order

  // What the reader of a tree has found out about a node's name may be kept with that name, in one of some places; 0 at first.
  static constexpr std::size_t note_places = 4;
  std::uint8_t& note(Id node, std::size_t place) const noexcept { return names_[nodes_[node].name].notes[place]; }

 private:
  friend class XmlTreeBuilder;

  struct Node {
    Id name;
    std::uint32_t text;  // where its text starts; it ends where that of the node `end` starts
    Id attributes;       // its first attribute; they end where those of the next node start
    Id end;              // the first node that is not inside it
  };
  struct Attribute {
    Id name;
    std::uint32_t value;  // where its value starts; it ends where that of the next attribute starts
  };
  struct Name {
    String full;
    std::size_t base_start;
    Id elements = 0;  // that have it
    mutable std::array<std::uint8_t, note_places> notes{};
  };
  struct Children {
    std::vector<Id> starts;  // of each node's own in `ids`; they end where those of the next node start
    std::vector<Id> ids;
  };
  static constexpr Id text_name = 0;
  static StringView base(const Name& name) noexcept { return StringView(name.full).substr(name.base_start); }
  static constexpr std::uint32_t few = 16;
  const Children& children() const;

  Blocks<Node> nodes_;            // and one behind the last, as the end of its text and attributes
  Blocks<Attribute> attributes_;  // likewise
  mutable Children children_;     // without starts until they are needed
  std::vector<Name> names_;
  std::string text_;
  std::string values_;
  Id size_ = 0;
};

// Builds a tree from the parts of a document in their order. Text of white space only makes no node. The operations
// that answer with a Boolean answer False when the tree is full, which is when 32 bits cannot number what is in it.
class XmlTreeBuilder {
 public:
  // `expected` is about how many bytes of text there may be.
  explicit XmlTreeBuilder(std::uint64_t expected);

  bool start_element(std::string_view name);
  bool add_attribute(std::string_view name, std::string_view value);  // of the element just started
  bool end_element();
  bool add_text(std::string_view text) {
    std::string& all = tree_->text_;
    if (text.size() > most - all.size()) return false;
    all.append(text);
    return true;
  }
  bool start_cdata() { return flush_text(); }
  bool end_cdata() { return add_text_node(); }

  std::size_t depth() const noexcept { return open_.size(); }
  Ref<const XmlTree> finish();  // once, after the last part

 private:
  using Id = XmlTree::Id;
  static constexpr std::size_t most = 0xFFFFFFFF;

  // A name is looked up in a table of the names seen lately, then in an ordered map, which no choice of names makes
  // slow.
  using Names = std::map<std::string, Id, std::less<>>;
  Id name_id(std::string_view name);
  bool flush_text();       // makes a node of the text since the last node, unless it is blank
  bool add_text_node();    // makes a node of it, blank or not
  bool add_node(Id name);  // whose text starts behind that of the last node

  Ref<XmlTree> tree_;
  std::vector<Id> open_;        // the elements not yet ended
  std::size_t text_start_ = 0;  // of the text that has no node yet
  Names names_;
  std::array<const Names::value_type*, 256> recent_{};
};

}  // namespace hedro34
