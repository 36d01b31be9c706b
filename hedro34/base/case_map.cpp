#include "hedro34/base/case_map.h"

#include <cstddef>
#include <cstdint>

namespace hedro34 {

namespace {

#include "case_table.inc"

template <std::size_t N>
char16_t mapped(const std::uint8_t (&pages)[N], char16_t unit) noexcept {
  static_assert(N * units_of_a_page == 0x10000);
  const char16_t delta = case_deltas[pages[unit / units_of_a_page]][unit % units_of_a_page];
  return static_cast<char16_t>(unit + delta);
}

}  // namespace

namespace detail {
char16_t upper_from_table(char16_t unit) noexcept { return mapped(upper_pages, unit); }
char16_t lower_from_table(char16_t unit) noexcept { return mapped(lower_pages, unit); }
}  // namespace detail

}  // namespace hedro34
