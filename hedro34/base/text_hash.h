// Hash of texts for unordered containers where case counts, as `IgnoringCase` is where it does not. Both depend on what each
// process draws for itself, so that no choice of texts in a file puts them all in one place.
#pragma once

#include "hedro34/base/text.h"

namespace hedro34 {

// (Not noexcept, though it cannot fail: so the containers keep what they have computed.)
struct TextHash {
  using is_transparent = void;
  std::size_t operator()(StringView text) const;
};

}  // namespace hedro34
