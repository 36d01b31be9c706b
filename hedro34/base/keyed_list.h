// The ordered list under all collections: positions from 1 without gaps, and for an element, where it was added with one, a
// key that is fixed from then on, unique in the list and compared without regard to case. An index is a variant: a number
// selects by position, text selects by key, also when the text holds digits. An empty text is no key.
//
// Access by position and by key takes constant time. It is a gap buffer, kept as two stacks: insertion and removal move the
// gap, and so cost the distance from the last one; a walk that removes from either end, or appends, is linear.
//
// Failures: 9 for a position that is not there, 5 for a key that is not there, for a `Before` or `After` that names nothing
// and for both of them given, 457 for a key in use, 13 for an index or key of another kind. A failure changes nothing.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <unordered_set>
#include <utility>
#include <vector>

#include "hedro34/base/variant.h"

namespace hedro34 {

template <class T>
class KeyedList {
 public:
  std::int32_t count() const noexcept { return static_cast<std::int32_t>(front_.size() + back_.size()); }

  // Adds behind the last element, or before or behind the one that `before` or `after` names. Neither is needed; `key` may
  // be missing.
  void add(T value, const Variant& key = missing, const Variant& before = missing, const Variant& after = missing) {
    const StringView text = key_of(key);
    if (find_key(text) != nullptr) fail(FailureNumber::DuplicateKey);
    insert(insertion_point(before, after), std::move(value), text);
  }

  // As `add` without key, behind the last element.
  void append(T value) { insert(count() + 1, std::move(value), {}); }

  // The element at a position or under a key.
  const T& at(const Variant& index) const { return entry(position(index)).value; }
  const T& at(std::int32_t index) const { return entry(checked(index)).value; }

  // The element, or null when the index names none.
  const T* find(const Variant& index) const noexcept {
    const std::int32_t found = find_position(index);
    return found == 0 ? nullptr : &entry(found).value;
  }

  // The position that the index names, 0 for none.
  std::int32_t find_position(const Variant& index) const noexcept {
    if (const auto* number = index.get_if<std::int32_t>()) return *number < 1 || *number > count() ? 0 : *number;
    if (const String* text = index.text()) {
      const Key* key = find_key(*text);
      return key == nullptr ? 0 : position(*key);
    }
    if (!index.is_number()) return 0;
    const double number = std::nearbyint(to_double(index));
    return number >= 1 && number <= static_cast<double>(count()) ? static_cast<std::int32_t>(number) : 0;
  }

  // Removes the element; every later element moves down one position. Returns the value.
  T remove(const Variant& index) { return remove_at(position(index)); }
  T remove(std::int32_t index) { return remove_at(checked(index)); }

 private:
  // The key of an element and where the element is. Its address does not change while the element is in the list.
  struct Key {
    String text;
    std::int64_t slot = 0;  // from 0 for the first element, before the gap; from -1 for the last one, behind it
  };
  struct Entry {
    T value;
    std::unique_ptr<Key> key;  // null for an element without one
  };
  struct ByText : IgnoringCase {
    using IgnoringCase::operator();
    // Not noexcept, which makes the container keep the hashes that it has computed.
    std::size_t operator()(const Key* key) const { return (*this)(text(key)); }
    bool operator()(const auto& a, const auto& b) const noexcept { return equal_ignoring_case(text(a), text(b)); }
    static StringView text(const Key* key) noexcept { return key->text; }
    static StringView text(StringView text) noexcept { return text; }
  };
  using Index = std::unordered_set<const Key*, ByText, ByText>;
  static constexpr std::int32_t unindexed = 8;  // a list of up to so many elements: a walk is faster than an index

  static StringView key_of(const Variant& key) {
    if (key.is<Missing>()) return {};
    const String* text = key.text();
    if (text == nullptr) fail(FailureNumber::TypeMismatch);
    return *text;
  }

  std::int32_t checked(std::int32_t index) const {
    if (index < 1 || index > count()) fail(FailureNumber::SubscriptOutOfRange);
    return index;
  }

  std::int32_t position(const Key& key) const noexcept {
    return static_cast<std::int32_t>((key.slot >= 0 ? key.slot : count() + key.slot) + 1);
  }

  std::int32_t position(const Variant& index) const {
    const std::int32_t found = find_position(index);
    if (found == 0) {
      if (index.is_number()) fail(FailureNumber::SubscriptOutOfRange);
      fail(index.text() != nullptr ? FailureNumber::InvalidCall : FailureNumber::TypeMismatch);
    }
    return found;
  }

  std::int32_t insertion_point(const Variant& before, const Variant& after) const {
    const bool has_before = !before.is<Missing>();
    const bool has_after = !after.is<Missing>();
    if (has_before && has_after) fail(FailureNumber::InvalidCall);
    if (!has_before && !has_after) return count() + 1;
    const Variant& index = has_before ? before : after;
    if (!index.is_number() && index.text() == nullptr) fail(FailureNumber::TypeMismatch);
    const std::int32_t found = find_position(index);
    if (found == 0) fail(FailureNumber::InvalidCall);
    return has_before ? found : found + 1;
  }

  const Entry& entry(std::int32_t index) const noexcept {
    const auto at = static_cast<std::size_t>(index);
    return at <= front_.size() ? front_[at - 1] : back_[back_.size() - (at - front_.size())];
  }

  const Key* find_key(StringView text) const noexcept {
    if (text.empty() || keys_ == 0) return nullptr;
    if (index_) {
      const auto found = index_->find(text);
      return found == index_->end() ? nullptr : *found;
    }
    for (const auto* half : {&front_, &back_}) {
      for (const Entry& e : *half) {
        if (e.key && equal_ignoring_case(e.key->text, text)) return e.key.get();
      }
    }
    return nullptr;
  }

  void build_index() {
    auto index = std::make_unique<Index>();
    for (const auto* half : {&front_, &back_}) {
      for (const Entry& e : *half) {
        if (e.key) index->insert(e.key.get());
      }
    }
    index_ = std::move(index);
  }

  void insert(std::int32_t position, T value, StringView text) {
    if (count() == std::numeric_limits<std::int32_t>::max()) fail(FailureNumber::Overflow);
    Entry added{std::move(value), text.empty() ? nullptr : std::make_unique<Key>(Key{String(text)})};
    const Key* key = added.key.get();
    move_gap(static_cast<std::size_t>(position - 1));
    if (front_.size() == front_.capacity()) front_.reserve(front_.empty() ? 4 : 2 * front_.size());
    if (!index_ && count() >= unindexed && (key != nullptr || keys_ > 0)) build_index();
    if (index_ && key != nullptr) index_->insert(key);
    push(front_, std::move(added));
    if (key != nullptr) ++keys_;
  }

  T remove_at(std::int32_t position) {
    move_gap(static_cast<std::size_t>(position));
    Entry& last = front_.back();
    if (last.key) {
      if (index_) index_->erase(last.key.get());
      --keys_;
    }
    T value = std::move(last.value);
    front_.pop_back();
    return value;
  }

  // Moves elements between the two halves until `front_` holds `size` of them.
  void move_gap(std::size_t size) {
    while (front_.size() > size) {
      push(back_, std::move(front_.back()));
      front_.pop_back();
    }
    while (front_.size() < size) {
      push(front_, std::move(back_.back()));
      back_.pop_back();
    }
  }

  void push(std::vector<Entry>& half, Entry&& moved) {
    half.push_back(std::move(moved));
    const auto index = static_cast<std::int64_t>(half.size()) - 1;
    if (const auto& key = half.back().key) key->slot = &half == &front_ ? index : -1 - index;
  }

  std::vector<Entry> front_;  // the elements before the gap, in order
  std::vector<Entry> back_;   // the elements behind the gap, the last one first
  std::unique_ptr<Index> index_;
  std::int32_t keys_ = 0;
};

}  // namespace hedro34
