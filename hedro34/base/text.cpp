#include "hedro34/base/text.h"

#include <array>
#include <charconv>
#include <cstring>

namespace hedro34 {
namespace {

constexpr char32_t replacement = 0xFFFD;

bool is_high_surrogate(char16_t unit) noexcept { return unit >= 0xD800 && unit <= 0xDBFF; }
bool is_low_surrogate(char16_t unit) noexcept { return unit >= 0xDC00 && unit <= 0xDFFF; }

void append_code_point(std::string& target, char32_t code) {
  const auto put = [&target](char32_t byte) { target.push_back(static_cast<char>(byte)); };
  if (code < 0x80) {
    put(code);
  } else if (code < 0x800) {
    put(0xC0 | (code >> 6));
    put(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    put(0xE0 | (code >> 12));
    put(0x80 | ((code >> 6) & 0x3F));
    put(0x80 | (code & 0x3F));
  } else {
    put(0xF0 | (code >> 18));
    put(0x80 | ((code >> 12) & 0x3F));
    put(0x80 | ((code >> 6) & 0x3F));
    put(0x80 | (code & 0x3F));
  }
}

// Reads one code point at `at`; moves `at` behind it, or one byte on when the bytes there are not UTF-8.
char32_t read_code_point(std::string_view bytes, std::size_t& at) noexcept {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const char32_t first = byte(at);
  std::size_t length = 0;
  char32_t code = 0;
  char32_t least = 0;
  if (first < 0x80) {
    ++at;
    return first;
  }
  if (first >= 0xC2 && first <= 0xDF) {
    length = 2, code = first & 0x1F, least = 0x80;
  } else if (first >= 0xE0 && first <= 0xEF) {
    length = 3, code = first & 0x0F, least = 0x800;
  } else if (first >= 0xF0 && first <= 0xF4) {
    length = 4, code = first & 0x07, least = 0x10000;
  }
  if (length == 0 || bytes.size() - at < length) {
    ++at;
    return replacement;
  }
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(at + i) & 0xC0) != 0x80) {
      ++at;
      return replacement;
    }
    code = (code << 6) | (byte(at + i) & 0x3Fu);
  }
  if (code < least || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) {
    ++at;
    return replacement;
  }
  at += length;
  return code;
}

}  // namespace

void append_utf8(std::string& target, StringView text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    std::size_t end = i;
    while (end < text.size() && text[end] < 0x80) ++end;
    if (end > i) {
      const std::size_t start = target.size();
      target.resize(start + (end - i));
      char* const out = target.data() + start;
      for (std::size_t k = 0; k < end - i; ++k) out[k] = static_cast<char>(text[i + k]);
      i = end;
      if (i == text.size()) return;
    }
    const char16_t unit = text[i];
    if (is_high_surrogate(unit) && i + 1 < text.size() && is_low_surrogate(text[i + 1])) {
      const char32_t high = unit - 0xD800u;
      const char32_t low = text[++i] - 0xDC00u;
      append_code_point(target, 0x10000 + (high << 10) + low);
    } else if (is_high_surrogate(unit) || is_low_surrogate(unit)) {
      append_code_point(target, replacement);
    } else {
      append_code_point(target, unit);
    }
  }
}

std::string to_utf8(StringView text) {
  std::string result;
  result.reserve(text.size());
  append_utf8(result, text);
  return result;
}

void append_utf16(String& target, std::string_view bytes) {
  const std::size_t start = target.size();
  target.resize(start + bytes.size());  // never too short: no code point takes more units than bytes
  char16_t* out = target.data() + start;
  for (std::size_t at = 0;;) {
    for (std::uint64_t eight = 0; bytes.size() - at >= sizeof eight; at += sizeof eight, out += sizeof eight) {
      std::memcpy(&eight, bytes.data() + at, sizeof eight);
      if ((eight & 0x8080808080808080u) != 0) break;
      for (std::size_t i = 0; i < sizeof eight; ++i) out[i] = static_cast<unsigned char>(bytes[at + i]);
    }
    for (; at < bytes.size() && static_cast<unsigned char>(bytes[at]) < 0x80; ++at) {
      *out++ = static_cast<unsigned char>(bytes[at]);
    }
    if (at == bytes.size()) break;
    const char32_t code = read_code_point(bytes, at);
    if (code < 0x10000) {
      *out++ = static_cast<char16_t>(code);
    } else {
      *out++ = static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10));
      *out++ = static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
    }
  }
  target.resize(static_cast<std::size_t>(out - target.data()));
}

String from_utf8(std::string_view bytes) {
  String result;
  append_utf16(result, bytes);
  return result;
}

String upper(StringView text) {
  String result(text);
  for (char16_t& unit : result) unit = upper(unit);
  return result;
}

String lower(StringView text) {
  String result(text);
  for (char16_t& unit : result) unit = lower(unit);
  return result;
}

bool equal_ignoring_case(StringView a, StringView b) noexcept {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i] != b[i] && upper(a[i]) != upper(b[i])) return false;
  }
  return true;
}

bool lower_equals(StringView text, StringView expected) noexcept {
  if (text.size() != expected.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (lower(text[i]) != expected[i]) return false;
  }
  return true;
}

StringView trim(StringView text) noexcept {
  while (!text.empty() && text.front() == u' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == u' ') text.remove_suffix(1);
  return text;
}

String decimal(std::int64_t number) {
  std::array<char, 24> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  return String(digits.data(), end);
}

}  // namespace hedro34
