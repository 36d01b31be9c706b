#include "hedro34/report/key_layout.h"

#include <algorithm>

namespace hedro34 {
namespace {

// All in micrometres, so that every processor comes to the same layout.
using Length = std::int64_t;

// What is left of A4 in width and of Letter in height by the margins of the page; of the height also the heading and the head of
// the table.
constexpr Length page_width = 184'000;
constexpr Length page_height = 226'000;
constexpr Length gap = 3'000;  // between columns
constexpr Length rule = 300;   // below each row

// Of a font size: an average character of a key, what is left free beside each text.
constexpr Length character_width(Length size) { return size * 62 / 100; }
constexpr Length padding(Length size) { return size * 35 / 100; }

constexpr std::array<std::size_t, 3> heads = {
    5, 4, 5};                             // of the columns: no part is narrower, so that no two texts run together
constexpr std::size_t widest_part = 24;   // a longer text takes several lines
constexpr std::size_t sign = 2;           // in front of a remark
constexpr std::size_t longest_word = 9;   // of a remark
constexpr std::size_t most_rows = 5'000;  // no page holds more in the smallest print
constexpr std::array sizes = {130, 120, 110, 100, 90, 80, 70, 65, 60, 55, 50, 45, 40, 35};  // in tenths of a point
constexpr int most_columns = 14;

// The height of a line in percent of the font size: some air where there is room.
constexpr int line_of(int tenths) { return tenths >= 90 ? 150 : 115; }

constexpr Length size_of(int tenths) { return Length{tenths} * 25'400 / 720; }

// The lines that a remark takes at most, however its words fall. Two lines behind each other hold more than one line can.
constexpr std::size_t lines_of_remark(std::size_t remark, std::size_t in_line) {
  if (remark == 0) return 0;
  const std::size_t text = remark + sign;
  const std::size_t narrow = 2 * text / in_line + 1;
  if (in_line <= longest_word) return narrow;
  const std::size_t least = in_line - longest_word;
  return std::min(narrow, (text + least - 1) / least);
}

// Whether all rows stand on one page, side by side in that many columns.
bool fits(const std::vector<KeyRow>& rows, const KeyLayout& layout, int tenths, int columns) {
  const Length size = size_of(tenths);
  const Length line = size * line_of(tenths) / 100;
  const Length width = (page_width - gap * (columns - 1)) / columns;
  const std::size_t all = layout.parts[0] + layout.parts[1] + layout.parts[2];
  std::array<std::size_t, 3> characters{};
  for (std::size_t i = 0; i < 3; ++i) {
    const Length cell = width * static_cast<Length>(layout.parts[i]) / static_cast<Length>(all);
    characters[i] = static_cast<std::size_t>(std::max(Length{1}, (cell - padding(size)) / character_width(size)));
  }
  const auto lines = [](std::size_t text, std::size_t in_line) { return (text + in_line - 1) / in_line; };
  Length sum = 0;
  Length highest = 0;
  for (const KeyRow& row : rows) {
    const std::size_t key =
        std::max(lines(row[1], characters[1]), std::size_t{1}) + lines_of_remark(row[3], characters[1]);
    const std::size_t most = std::max({lines(row[0], characters[0]), key, lines(row[2], characters[2])});
    const Length height = static_cast<Length>(most) * line + rule;
    sum += height;
    highest = std::max(highest, height);
  }
  return sum / columns + highest <= page_height;
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
    for (std::size_t i = 0; i < 3; ++i) {
      if (row[i] > 0) layout.parts[i] = std::max({layout.parts[i], heads[i], std::min(row[i] + 1, widest_part)});
    }
    if (row[3] > 0) layout.parts[1] = widest_part;  // a remark in the cell of the key
  }
  if (rows.size() <= most_rows) {
    for (const int tenths : sizes) {
      for (int columns = 1; columns <= most_columns; ++columns) {
        if (!fits(rows, layout, tenths, columns)) continue;
        layout.points = tenths / 10.0;
        layout.line = line_of(tenths) / 100.0;
        layout.columns = columns;
        return layout;
      }
    }
  }
  layout.points = sizes.back() / 10.0;
  layout.line = line_of(sizes.back()) / 100.0;
  // As many as leave each cell its part.
  const std::size_t row = layout.parts[0] + layout.parts[1] + layout.parts[2];
  const Length size = size_of(sizes.back());
  const Length width = static_cast<Length>(row) * character_width(size) + 3 * padding(size) + gap;
  layout.columns = static_cast<int>(std::clamp(page_width / width, Length{1}, Length{8}));
  layout.fits = false;
  return layout;
}

}  // namespace hedro34
