// What the six collections of the test model share: a private keyed list, and operations that never let a failure leave.
// `Self` is the collection, with its name as `class_name`; `T` is the type of its elements.
//
// An index is a number, which is a position from 1, or text, which is a key in any case of its letters. An empty text is no
// key: an element under it is reached by position only, and several may stand side by side. A look-up that misses is no
// failure; every other failure is reported once, at "HEDRO34 - ", class, ".", operation, and the operation returns its result
// as it stood.
#pragma once

#include <cstdint>

#include "hedro34/base/keyed_list.h"
#include "hedro34/runtime/basError.h"

namespace hedro34 {

inline constexpr const char16_t* tab = u"\t";

template <class Self, class T>
class Collection : public Object {
 public:
  // The number of elements.
  std::int32_t Count() const {
    std::int32_t result = 0;
    trap(here(u"Count"), [&] { result = items_.count(); });
    return result;
  }

  // Whether there is an element at the index. Never reports.
  bool Exists(const Variant& Index) const noexcept {
    bool result = false;
    quietly([&] { result = items_.find(Index) != nullptr; });
    return result;
  }

 protected:
  ~Collection() override {
    trap(here(u"Class_Terminate"), [&] { items_ = {}; });
  }

  static constexpr Location here(const char16_t* operation) { return {Self::class_name, operation}; }

  // The element, or `neutral` when there is none at the index.
  T item_or(const Variant& Index, T neutral) const {
    T result = std::move(neutral);
    trap(here(u"Item"), [&] {
      if (const T* found = items_.find(Index)) result = *found;
    });
    return result;
  }

  // Removes the element; False, and no report, when there is none at the index.
  bool remove_existing(const Variant& Index) {
    bool result = false;
    trap(here(u"Remove"), [&] {
      if (!Exists(Index)) return;
      items_.remove(Index);
      result = true;
    });
    return result;
  }

  // Removes from the last position down to 1 through the collection's own `Remove`; gives whether nothing is left.
  bool remove_all() {
    bool result = false;
    trap(here(u"RemoveAll"), [&] {
      for (std::int32_t i = items_.count(); i >= 1; --i) static_cast<Self*>(this)->Remove(i);
      result = items_.count() == 0;
    });
    return result;
  }

  KeyedList<T> items_;
};

}  // namespace hedro34
