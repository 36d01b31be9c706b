// What the six collections of the test model share: a private keyed list, and operations that never let a failure leave.
// `Self` is the collection, with its name as `class_name`; `T` is the type of its elements. A collection states what it has
// besides, and where it differs.
//
// An index is a number, which is a position from 1, or text, which is a key in any case of its letters. An empty text is no
// key: an element under it is reached by position only, and several may stand side by side. A look-up that misses is no
// failure; every other failure is reported once, at "HEDRO34 - ", class, ".", operation, and the operation returns its result
// as it stood.
#pragma once

#include <cstdint>
#include <limits>
#include <type_traits>

#include "hedro34/base/keyed_list.h"
#include "hedro34/runtime/basError.h"

namespace hedro34 {

inline constexpr const char16_t* tab = u"\t";

template <class Self, class T>
class Collection : public Object {
 public:
  // The number of elements.
  std::int32_t Count() const {
    return trap<std::int32_t>(here(u"Count"), [&](auto& result) { result = items_.count(); });
  }

  // Whether there is an element at the index. Never reports.
  bool Exists(const Variant& Index) const noexcept {
    return quietly<bool>([&](auto& result) { result = items_.find_position(Index) != 0; });
  }

  // The text, the number or the object itself; an empty text, 0 or an empty reference when there is none at the index.
  T Item(const Variant& Index) const { return item_or(Index, T{}); }

  // True when removed; False, and no report, when there is none at the index.
  bool Remove(const Variant& Index) {
    return trap<bool>(here(u"Remove"), [&](auto& result) {
      const std::int32_t position = items_.find_position(Index);
      if (position == 0) return;
      items_.remove(position);
      result = true;
    });
  }

  // Removes all elements; gives whether nothing is left.
  bool RemoveAll() {
    return trap<bool>(here(u"RemoveAll"), [&](auto& result) {
      items_.clear();
      result = true;
    });
  }

 protected:
  ~Collection() override {
    trap(here(u"Class_Terminate"), [&] { items_.clear(); });
  }

  static constexpr Location here(const char16_t* operation) { return {Self::class_name, operation}; }

  // The element, or `result` as it was given when there is none at the index.
  T item_or(const Variant& Index, T result) const {
    trap(here(u"Item"), [&] {
      if (const std::int32_t position = items_.find_position(Index)) result = items_.at(position);
    });
    return result;
  }

  // The elements from the lower bound up; without bounds for an empty collection. Failure 6 for an upper bound beyond 32 bits.
  Array<T> as_array(std::int32_t lower) const {
    return trap<Array<T>>(here(u"AsArray"), [&](auto& result) {
      const std::int64_t upper = std::int64_t{items_.count()} - 1 + lower;
      using Bound = std::numeric_limits<std::int32_t>;
      if (upper > Bound::max() || upper < Bound::min()) fail(FailureNumber::Overflow);
      Array<T> values(lower, upper);
      for (std::int32_t i = 1; i <= items_.count(); ++i) values[std::int64_t{lower} + i - 1] = items_.at(i);
      result = std::move(values);
    });
  }

  // The elements with the delimiter between them, numbers in decimal.
  String as_string(StringView delimiter) const {
    return trap<String>(here(u"AsString"), [&](auto& result) {
      String text;
      for (std::int32_t i = 1; i <= items_.count(); ++i) {
        if constexpr (std::is_same_v<T, String>) {
          text.append(items_.at(i));
        } else {
          text.append(decimal(items_.at(i)));
        }
        text.append(delimiter);
      }
      if (!text.empty()) text.resize(text.size() - delimiter.size());
      result = std::move(text);
    });
  }

  KeyedList<T> items_;
};

}  // namespace hedro34
