// What the collections of the default form and document share: an index without keys, and appending that cannot fail halfway.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "hedro34/base/variant.h"

namespace hedro34 {

// The offset, from 0, of the element that a position, from 1, selects among `count`. Failure 9 for a position that is not
// there.
inline std::size_t offset_of(std::int32_t position, std::size_t count) {
  if (position < 1 || static_cast<std::size_t>(position) > count) fail(FailureNumber::SubscriptOutOfRange);
  return static_cast<std::size_t>(position) - 1;
}

// The same for an index: a number of any kind, rounded to an integer. Failure 13 for all else.
inline std::size_t offset_of(const Variant& index, std::size_t count) {
  if (const auto* position = index.get_if<std::int32_t>()) return offset_of(*position, count);
  if (!index.is_number()) fail(FailureNumber::TypeMismatch);
  const double position = std::nearbyint(to_double(index));
  if (!(position >= 1 && position <= static_cast<double>(count))) fail(FailureNumber::SubscriptOutOfRange);
  return static_cast<std::size_t>(position) - 1;
}

// Sees to it that appending one more element needs no memory.
template <class T>
void reserve_one_more(std::vector<T>& list) {
  if (list.size() == list.capacity()) list.reserve(list.empty() ? 5 : 2 * list.size());
}

}  // namespace hedro34
