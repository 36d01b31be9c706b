#include "hedro34/json/json_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <utility>

namespace hedro34 {
namespace {

constexpr std::size_t part_size = std::size_t{1} << 16;
constexpr std::size_t longest_number = 32;
constexpr std::size_t usual_blanks = 32;

constexpr bool is_plain(char16_t unit) { return unit >= 0x20 && unit < 0x80 && unit != u'"' && unit != u'\\'; }

// Copies units for as long as they are plain and gives how many; what it leaves behind those in `target` means nothing.
std::size_t copy_plain(char* target, StringView text) {
  constexpr std::size_t step = 16;  // at once, which takes vectors of the machine
  std::size_t done = 0;
  for (bool all = true; all && text.size() - done >= step; done += all ? step : 0) {
    for (std::size_t i = 0; i < step; ++i) {
      const char16_t unit = text[done + i];
      target[done + i] = static_cast<char>(unit);
      all &= is_plain(unit);
    }
  }
  for (; done < text.size() && is_plain(text[done]); ++done) target[done] = static_cast<char>(text[done]);
  return done;
}

// Whether the number is one of few digits and without a sign, which all ways of writing it agree on.
bool is_small_integer(double value) {
  return value >= 0 && value < 10000 && value == static_cast<std::int32_t>(value) && !std::signbit(value);
}

}  // namespace

JsonText::JsonText(Layout layout, Sink sink) : layout_(layout), sink_(std::move(sink)) {
  buffer_.resize(part_size + part_size / 4);
}

void JsonText::begin(char first, char last, Layout layout) {
  before_value();
  put(first);
  levels_.push_back({last, layout});
}

void JsonText::end() {
  const Level level = levels_.back();
  levels_.pop_back();
  if (level.layout == Layout::Indented && !level.is_empty) new_line();
  put(level.end);
}

void JsonText::key(std::string_view plain) {
  separate();
  const std::string_view end = layout() == Layout::Compact ? "\":" : "\": ";
  char* const target = free_space(1 + plain.size() + end.size());
  target[0] = '"';
  std::memcpy(target + 1, plain.data(), plain.size());
  std::memcpy(target + 1 + plain.size(), end.data(), end.size());
  size_ += 1 + plain.size() + end.size();
  has_key_ = true;
}

void JsonText::key(StringView key) {
  separate();
  quoted(key);
  put(layout() == Layout::Compact ? ":" : ": ");
  has_key_ = true;
}

void JsonText::value(StringView text) {
  before_value();
  quoted(text);
}

void JsonText::value(std::string_view plain) {
  before_value();
  put('"');
  put(plain);
  put('"');
}

void JsonText::value(std::int16_t value) { number(value); }

void JsonText::value(std::int32_t value) { number(value); }

void JsonText::value(float value) { number(value); }

void JsonText::value(double value) { number(value); }

bool JsonText::finish() {
  put('\n');
  if (sink_) hand_on();
  buffer_.resize(size_);
  return !stopped_;
}

inline void JsonText::before_value() {
  if (!std::exchange(has_key_, false)) separate();
}

inline void JsonText::separate() {
  if (levels_.empty()) return;
  Level& level = levels_.back();
  if (!std::exchange(level.is_empty, false)) {
    put(',');
    if (level.layout == Layout::Spaced) put(' ');
  }
  if (level.layout == Layout::Indented) new_line();
}

void JsonText::new_line() {
  if (size_ >= part_size && sink_) hand_on();
  const std::size_t blanks = 2 * levels_.size();
  char* const target = free_space(1 + std::max(blanks, usual_blanks));
  target[0] = '\n';
  std::memset(target + 1, ' ', usual_blanks);  // of a fixed size, without a call
  if (blanks > usual_blanks) std::memset(target + 1, ' ', blanks);
  size_ += 1 + blanks;
}

void JsonText::hand_on() {
  stopped_ = stopped_ || !sink_({buffer_.data(), size_});
  size_ = 0;
}

void JsonText::quoted(StringView text) {
  put('"');
  while (!text.empty()) {
    const StringView part = text.substr(0, part_size);
    char* const target = free_space(part.size());
    const std::size_t plain = copy_plain(target, part);
    size_ += plain;
    text.remove_prefix(plain);
    if (plain == part.size()) continue;
    if (text[0] < 0x80) {
      escaped(text[0]);
      text.remove_prefix(1);
      continue;
    }
    const auto* const end = std::find_if(text.begin(), text.end(), [](char16_t unit) { return unit < 0x80; });
    const auto beyond = static_cast<std::size_t>(end - text.begin());
    utf8_.clear();
    append_utf8(utf8_, text.substr(0, beyond));
    put(utf8_);
    text.remove_prefix(beyond);
  }
  put('"');
}

void JsonText::escaped(char16_t unit) {
  constexpr std::string_view hex = "0123456789abcdef";
  switch (unit) {
    case u'\b': return put("\\b");
    case u'\f': return put("\\f");
    case u'\n': return put("\\n");
    case u'\r': return put("\\r");
    case u'\t': return put("\\t");
    case u'"': return put("\\\"");
    case u'\\': return put("\\\\");
    default:
      put("\\u00");
      put(hex[unit >> 4]);
      put(hex[unit & 15]);
  }
}

void JsonText::literal(std::string_view text) {
  before_value();
  put(text);
}

template <class Number>
void JsonText::number(Number value) {
  if constexpr (!std::is_integral_v<Number>) {
    if (is_small_integer(value)) return number(static_cast<std::int32_t>(value));
    if (!std::isfinite(value)) return literal("null");
  }
  before_value();
  char* const target = free_space(longest_number);
  size_ += static_cast<std::size_t>(std::to_chars(target, target + longest_number, value).ptr - target);
}

inline char* JsonText::free_space(std::size_t size) {
  if (buffer_.size() - size_ < size) buffer_.resize(std::max(size_ + size, 2 * buffer_.size() + 64));
  return buffer_.data() + size_;
}

inline void JsonText::put(std::string_view text) {
  std::memcpy(free_space(text.size()), text.data(), text.size());
  size_ += text.size();
}

inline void JsonText::put(char c) {
  *free_space(1) = c;
  ++size_;
}

}  // namespace hedro34
