#include "host/terminal_text.h"

#include <utf8proc.h>

#include <algorithm>

namespace host {
namespace {

using hedro34::String;
using hedro34::StringView;

constexpr bool turns_direction(char16_t unit) {
  return (unit >= 0x202a && unit <= 0x202e) || (unit >= 0x2066 && unit <= 0x2069);
}

constexpr bool is_control(char16_t unit) { return unit < 0x20 || (unit >= 0x7f && unit < 0xa0); }

constexpr bool ends_line(char16_t unit) {
  return unit == u'\n' || unit == u'\r' || unit == 0x85 || unit == 0x2028 || unit == 0x2029;
}

std::string plain_text(StringView text, char16_t end_of_line) {
  String result = without_turns(text);
  std::size_t size = 0;
  for (std::size_t i = 0; i < result.size(); ++i) {
    const char16_t unit = result[i];
    if (unit == u'\r' && i + 1 < result.size() && result[i + 1] == u'\n') continue;
    result[size++] = ends_line(unit) ? end_of_line : is_control(unit) ? u' ' : unit;
  }
  result.resize(size);
  return hedro34::to_utf8(result);
}

std::size_t columns_of(utf8proc_int32_t character) {
  const utf8proc_property_t& property = *utf8proc_get_property(character);
  // A vowel or final consonant of Hangul stands in the syllable before it.
  if (property.boundclass == UTF8PROC_BOUNDCLASS_V || property.boundclass == UTF8PROC_BOUNDCLASS_T) return 0;
  return static_cast<std::size_t>(utf8proc_charwidth(character));
}

}  // namespace

String without_turns(StringView text) {
  String result(text);
  std::replace_if(result.begin(), result.end(), turns_direction, u'\ufffd');
  return result;
}

std::string plain(StringView text) { return plain_text(text, u'\n'); }

std::string plain_line(StringView text) { return plain_text(text, u' '); }

std::size_t columns(std::string_view line) {
  std::size_t result = 0;
  const auto* at = reinterpret_cast<const utf8proc_uint8_t*>(line.data());
  for (auto left = static_cast<utf8proc_ssize_t>(line.size()); left > 0;) {
    utf8proc_int32_t character = 0;
    const utf8proc_ssize_t size = std::max<utf8proc_ssize_t>(utf8proc_iterate(at, left, &character), 1);
    result += character < 0 ? 1 : columns_of(character);
    at += size;
    left -= size;
  }
  return result;
}

std::string padded(std::string line, std::size_t to) {
  const std::size_t width = columns(line);
  if (width < to) line.append(to - width, ' ');
  return line;
}

}  // namespace host
