// Case of text: the simple, one-to-one Unicode mapping of a single 16-bit unit, the same on every platform and in
// every locale. A unit without a mapping, or with one outside the 16-bit units, stays as it is; so do surrogates, and
// letters whose other case is longer than one unit. Constant time; never fails.
#pragma once

#include "hedro34/base/export.h"

namespace hedro34 {

namespace detail {
HEDRO34_API char16_t upper_from_table(char16_t unit) noexcept;
HEDRO34_API char16_t lower_from_table(char16_t unit) noexcept;
}  // namespace detail

// The unit as a capital.
inline char16_t upper(char16_t unit) noexcept {
  if (unit >= 0x80) return detail::upper_from_table(unit);
  return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - 0x20) : unit;
}

// The unit as a small letter.
inline char16_t lower(char16_t unit) noexcept {
  if (unit >= 0x80) return detail::lower_from_table(unit);
  return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
}

}  // namespace hedro34
