// How large a key can be printed so that all of its rows stand on one page, A4 or Letter.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "hedro34/base/text.h"

namespace hedro34 {

struct KeyLayout {
  double points = 10;                            // font size
  double line = 1.15;                            // height of a line in the font size
  int columns = 1;                               // of rows, side by side
  std::array<std::size_t, 3> parts = {1, 1, 1};  // how the width of a row is shared among its cells
  bool fits = true;                              // on one page
};

// The widths of a row's cells in average characters: field, key, question of the first version; then that of a remark below
// the key, 0 for none.
using KeyRow = std::array<std::size_t, 4>;

// The width of a text in average characters; wide ones count twice.
std::size_t text_width(StringView text) noexcept;

// The largest print of the rows with the fewest columns that fits on one page, else the smallest print there is. The time is
// linear in the rows.
KeyLayout key_layout(const std::vector<KeyRow>& rows);

}  // namespace hedro34
