#include "hedro34/report/key_layout.h"

#include <algorithm>

namespace hedro34 {
namespace {

// What is left of A4 in width and of Letter in height by the margins of the page, in millimetres; of the height also the
// heading and the head of the table.
constexpr double page_width = 184;
constexpr double page_height = 226;
constexpr double gap = 3;  // between columns

constexpr double millimetres = 25.4 / 72;  // of a point
constexpr double character = 0.62;         // the width of a character in the font size, as keys have them
constexpr double cell_padding = 0.35;      // what is left free beside each text, in the font size
constexpr double rule = 0.3;               // below each row

constexpr std::size_t widest_part = 24;   // a longer text takes several lines
constexpr std::size_t most_rows = 5'000;  // no page holds more in the smallest print
constexpr std::array sizes = {13.0, 12.0, 11.0, 10.0, 9.0, 8.0, 7.0, 6.5, 6.0, 5.5, 5.0, 4.5, 4.0, 3.5};
constexpr int most_columns = 14;

// The height of a line in the font size: some air where there is room.
double line_of(double points) { return points >= 9 ? 1.5 : 1.15; }

double height_of(const std::vector<KeyRow>& rows, const KeyLayout& layout, double& highest) {
  const double size = layout.points * millimetres;
  const double width = (page_width - gap * (layout.columns - 1)) / layout.columns;
  const std::size_t all = layout.parts[0] + layout.parts[1] + layout.parts[2];
  std::array<double, 4> characters{};
  for (std::size_t i = 0; i < 3; ++i) {
    const double cell = width * static_cast<double>(layout.parts[i]) / static_cast<double>(all);
    characters[i] = std::max(1.0, (cell - cell_padding * size) / (character * size));
  }
  characters[3] = std::max(1.0, width / (character * size));
  double sum = 0;
  highest = 0;
  for (const KeyRow& row : rows) {
    const auto lines_of = [&](std::size_t i) {
      return static_cast<double>(static_cast<std::int64_t>((static_cast<double>(row[i]) - 0.001) / characters[i]) + 1);
    };
    const double lines = std::max({lines_of(0), lines_of(1), lines_of(2)}) + (row[3] == 0 ? 0.0 : lines_of(3));
    const double height = lines * layout.line * size + rule;
    sum += height;
    highest = std::max(highest, height);
  }
  return sum;
}

}  // namespace

std::size_t text_width(StringView text) noexcept {
  std::size_t width = 0;
  for (const char16_t unit : text) width += unit >= 0x1100 && (unit < 0xD800 || unit > 0xDFFF) ? 2 : 1;
  return width;
}

KeyLayout key_layout(const std::vector<KeyRow>& rows) {
  KeyLayout layout;
  for (const KeyRow& row : rows) {
    for (std::size_t i = 0; i < 3; ++i) layout.parts[i] = std::max(layout.parts[i], std::min(row[i], widest_part));
  }
  if (rows.size() <= most_rows) {
    for (const double size : sizes) {
      for (int columns = 1; columns <= most_columns; ++columns) {
        layout.points = size;
        layout.line = line_of(size);
        layout.columns = columns;
        double highest = 0;
        const double height = height_of(rows, layout, highest);
        if (height / columns + highest <= page_height) return layout;
      }
    }
  }
  layout.points = sizes.back();
  layout.line = line_of(sizes.back());
  layout.columns = 8;
  layout.fits = false;
  return layout;
}

}  // namespace hedro34
