// Decimal numbers as text, read alike on every system.
#pragma once

#include <charconv>

namespace hedro34 {

// What `std::from_chars` answers in the general format: the double that lies nearest to the number. In 32 bits on x86 the
// library's own function computes with the 64-bit fractions of the x87 unit and rounds twice, one unit beside that for some
// numbers with many digits; here it is held to 53.
std::from_chars_result from_decimal(const char* first, const char* last, double& value) noexcept;

}  // namespace hedro34
