// The bounds of the arrays that the collections give out.
#pragma once

#include <cstdint>
#include <limits>

#include "hedro34/base/failure.h"

namespace hedro34 {

// `count` - 1 + `lower` in 32 bits: below `lower` for an empty collection. Failure 6 beyond the width.
inline std::int32_t upper_bound(std::int32_t count, std::int32_t lower) {
  const std::int64_t upper = std::int64_t{count} - 1 + lower;
  if (upper > std::numeric_limits<std::int32_t>::max() || upper < std::numeric_limits<std::int32_t>::min()) {
    fail(FailureNumber::Overflow);
  }
  return static_cast<std::int32_t>(upper);
}

}  // namespace hedro34
