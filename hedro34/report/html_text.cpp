#include "hedro34/report/html_text.h"

#include <array>
#include <charconv>

namespace hedro34 {
namespace {

constexpr std::string_view hex_digits = "0123456789ABCDEF";

bool turns_direction(char16_t unit) { return (unit >= 0x202A && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069); }

// Soft hyphen, blanks without width, what else has no looks, and what is no character.
bool is_invisible(char16_t unit) {
  return unit == 0xAD || unit == 0x180E || unit == 0x200B || (unit >= 0x2060 && unit <= 0x2064) ||
         (unit >= 0x206A && unit <= 0x206F) || (unit >= 0xFDD0 && unit <= 0xFDEF) || unit == 0xFEFF ||
         (unit >= 0xFFF9 && unit <= 0xFFFB) || unit >= 0xFFFE;
}

bool is_line_break(char16_t unit) { return unit == u'\n' || unit == u'\r' || unit == 0x2028 || unit == 0x2029; }

bool is_plain(char16_t unit) {
  if (unit < 0x80) {
    return (unit >= 0x20 || unit == u'\t') && unit != 0x7F && unit != u'&' && unit != u'<' && unit != u'>' &&
           unit != u'"' && unit != u'\'';
  }
  return unit > 0x9F && !turns_direction(unit) && !is_invisible(unit) && !is_line_break(unit);
}

// "[U+0085]".
void append_number(std::string& html, char16_t unit) {
  html += "[U+";
  for (int shift = 12; shift >= 0; shift -= 4) html += hex_digits[(unit >> shift) & 15u];
  html += ']';
}

}  // namespace

HtmlText& HtmlText::raw(std::string_view markup) {
  html_ += markup;
  return *this;
}

HtmlText& HtmlText::number(std::int64_t number) {
  std::array<char, 24> digits{};
  html_.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
  return *this;
}

HtmlText& HtmlText::real(double number) {
  std::array<char, 32> digits{};
  html_.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
  return *this;
}

HtmlText& HtmlText::escaped(StringView text, bool with_markup) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::size_t start = i;
    while (i < text.size() && is_plain(text[i])) ++i;
    append_utf8(html_, text.substr(start, i - start));
    if (i == text.size()) break;
    const char16_t unit = text[i];
    if (is_line_break(unit)) {
      if (unit == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n') ++i;
      html_ += '\n';
    } else if (turns_direction(unit) || is_invisible(unit)) {
      if (with_markup) html_ += "<small>";
      append_number(html_, unit);
      if (with_markup) html_ += "</small>";
    } else if (unit < 0x20 || unit == 0x7F) {
      const char16_t picture = static_cast<char16_t>(unit < 0x20 ? 0x2400 + unit : 0x2421);
      append_utf8(html_, StringView(&picture, 1));
    } else if (unit >= 0x80) {
      append_number(html_, unit);
    } else {
      html_ += unit == u'&'   ? "&amp;"
               : unit == u'<' ? "&lt;"
               : unit == u'>' ? "&gt;"
               : unit == u'"' ? "&quot;"
                              : "&#39;";
    }
  }
  return *this;
}

}  // namespace hedro34
