// The ordered list under all collections: positions from 1 without gaps, and for an element, where it was added with one, a
// key that is fixed from then on, unique in the list and compared without regard to case. An index is a variant: a number
// selects by position, text selects by key, also when the text holds digits. An empty text is no key.
//
// Access by position and by key takes constant time. Insertion and removal cost the distance from the last one: a walk that
// removes from either end, or appends, is linear. All texts, keys and elements alike, lie in one buffer, a key that is its
// element's text only once; a small list needs no other block of memory.
//
// Failures: 9 for a position that is not there, 5 for a key that is not there, for a `Before` or `After` that names nothing
// and for both of them given, 457 for a key in use, 13 for an index or key of another kind. A failure changes nothing.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <type_traits>
#include <utility>

#include "hedro34/base/gap_buffer.h"
#include "hedro34/base/key_index.h"
#include "hedro34/base/variant.h"

namespace hedro34 {

template <class T>
class KeyedList {
  static constexpr bool holds_text = std::is_same_v<T, String>;

 public:
  using Added = std::conditional_t<holds_text, StringView, T>;           // a text that does not lie in this list
  using Element = std::conditional_t<holds_text, StringView, const T&>;  // a text stays until the list is changed

  std::int32_t count() const noexcept { return entries_.size(); }

  // Adds behind the last element, or before or behind the one that `before` or `after` names. Neither is needed; `key` may
  // be missing.
  void add(Added value, const Variant& key = missing, const Variant& before = missing, const Variant& after = missing) {
    add_under(key_of(key), std::move(value), before, after);
  }
  void add_under(StringView key, Added value, const Variant& before = missing, const Variant& after = missing) {
    if (place_of(key) != KeyIndex::nowhere) fail(FailureNumber::DuplicateKey);
    insert(insertion_point(before, after), std::move(value), key);
  }

  // As `add` without key, behind the last element.
  void append(Added value) { insert(count() + 1, std::move(value), {}); }

  // The element at a position or under a key.
  Element at(const Variant& index) const { return value_of(entry(position(index))); }
  Element at(std::int32_t index) const { return value_of(entry(checked(index))); }

  // The position that the index names, 0 for none.
  std::int32_t find_position(const Variant& index) const noexcept {
    if (const auto* number = index.get_if<std::int32_t>()) return *number < 1 || *number > count() ? 0 : *number;
    if (const String* text = index.text()) {
      const std::int32_t found = place_of(*text);
      return found == KeyIndex::nowhere ? 0 : found >= 0 ? found + 1 : count() + found + 1;
    }
    if (!index.is_number()) return 0;
    const double number = std::nearbyint(to_double(index));
    return number >= 1 && number <= static_cast<double>(count()) ? static_cast<std::int32_t>(number) : 0;
  }

  // Removes the element; every later element moves down one position.
  void remove(const Variant& index) { remove_at(position(index)); }
  void remove(std::int32_t index) { remove_at(checked(index)); }

  void clear() {
    entries_.clear();
    texts_.clear();
    index_ = nullptr;
  }

 private:
  struct Range {  // of `texts_`
    std::uint32_t start = 0;
    std::uint32_t size = 0;

    friend bool operator==(Range, Range) = default;
  };
  struct Entry {
    std::conditional_t<holds_text, Range, T> value{};
    Range key;  // empty for an element without one
  };
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

  const Entry& entry(std::int32_t position) const noexcept { return entries_[entries_.place(position - 1)]; }

  StringView text(Range range) const noexcept { return {texts_.data() + range.start, range.size}; }
  std::size_t hash_of(Range key) const noexcept { return IgnoringCase()(text(key)); }

  Element value_of(const Entry& entry) const noexcept {
    if constexpr (holds_text) {
      return text(entry.value);
    } else {
      return entry.value;
    }
  }

  // The place of the element under the key, or nowhere. A list without an index has few elements, or none with a key.
  std::int32_t place_of(StringView key) const noexcept {
    const auto is_it = [&](std::int32_t place) { return equal_ignoring_case(text(entries_[place].key), key); };
    if (key.empty()) return KeyIndex::nowhere;
    if (index_) return index_->find(IgnoringCase()(key), is_it);
    if (count() > unindexed) return KeyIndex::nowhere;
    for (std::int32_t i = 0; i < count(); ++i) {
      if (is_it(entries_.place(i))) return entries_.place(i);
    }
    return KeyIndex::nowhere;
  }

  // All texts in the order of the list; `visit` may say where they lie from then on.
  template <class Visit>
  void each_text(Visit visit) {
    for (std::int32_t i = 0; i < count(); ++i) {
      Entry& e = entries_[entries_.place(i)];
      if constexpr (holds_text) {
        const bool once = e.key == e.value;
        visit(e.value);
        if (once) {
          e.key = e.value;
        } else {
          visit(e.key);
        }
      } else {
        visit(e.key);
      }
    }
  }

  void insert(std::int32_t position, Added value, StringView key) {
    if (count() == std::numeric_limits<std::int32_t>::max()) fail(FailureNumber::Overflow);
    entries_.reserve_one();
    make_room_for_key(!key.empty());
    Entry added;
    if constexpr (holds_text) {
      const bool once = key == value;
      make_room_for_text(value.size() + (once ? 0 : key.size()));
      added.value = put(texts_, value);
      added.key = once ? added.value : put(texts_, key);
    } else {
      make_room_for_text(key.size());
      added.value = std::move(value);
      added.key = put(texts_, key);
    }
    move_gap(position - 1);
    if (index_ && !key.empty()) index_->add(hash_of(added.key), position - 1);
    entries_.push(std::move(added));
  }

  // An index comes with the first key of a list that is not small, and stays.
  void make_room_for_key(bool keyed) {
    const auto size = static_cast<std::size_t>(count());
    if (index_) return index_->reserve(size + 1);
    if (count() < unindexed) return;
    for (std::int32_t i = 0; i < count() && count() == unindexed; ++i)
      keyed |= entries_[entries_.place(i)].key.size > 0;
    if (!keyed) return;
    auto index = std::make_unique<KeyIndex>();
    index->reserve(size + 1);
    for (std::int32_t i = 0; i < count(); ++i) {
      const std::int32_t place = entries_.place(i);
      if (const Range key = entries_[place].key; key.size > 0) index->add(hash_of(key), place);
    }
    index_ = std::move(index);
  }

  // The texts of removed elements stay in the buffer until it is full; then those in use move to another one.
  void make_room_for_text(std::size_t added) {
    if (texts_.capacity() - texts_.size() >= added) return;
    constexpr std::size_t most = std::numeric_limits<std::uint32_t>::max();
    std::size_t used = added;
    each_text([&](const Range& range) { used += range.size; });
    if (used > most) fail(FailureNumber::OutOfMemory);
    String kept;
    kept.reserve(
        std::min(used + std::max(used, static_cast<std::size_t>(count())), most));  // the walk pays off for each
    each_text([&](Range& range) { range = put(kept, text(range)); });
    texts_.swap(kept);
  }

  static Range put(String& texts, StringView text) {
    const std::size_t start = texts.size();
    texts.append(text);
    return {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(text.size())};
  }

  void move_gap(std::int32_t front) {
    entries_.move_gap(front, [&](const Entry& moved, std::int32_t from, std::int32_t to) {
      if (index_ && moved.key.size > 0) index_->change(hash_of(moved.key), from, to);
    });
  }

  void remove_at(std::int32_t position) {
    move_gap(position);
    const Entry removed = entries_.pop();
    if (index_ && removed.key.size > 0) index_->remove(hash_of(removed.key), position - 1);
    if (count() == 0) clear();
  }

  std::unique_ptr<KeyIndex> index_;
  String texts_;
  GapBuffer<Entry> entries_;
};

}  // namespace hedro34
