// The number at the start of a text, as the points of a question are written.
#pragma once

#include "hedro34/base/text.h"

namespace hedro34 {

// Reads a sign, digits with a period as decimal mark, and an exponent ("e" or "E", a sign, digits). Blanks (32) before and
// inside the number are skipped; reading stops at the first other character. 0 for a text that does not begin with a number,
// infinity beyond 64 bits.
double leading_number(StringView text);

}  // namespace hedro34
