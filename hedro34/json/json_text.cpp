#include "hedro34/json/json_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <utility>

namespace hedro34 {
namespace {

constexpr std::size_t part_size = std::size_t{1} << 16;

constexpr bool needs_escape(char16_t unit) { return unit < 0x20 || unit == u'"' || unit == u'\\'; }

}  // namespace

JsonText::JsonText(Layout layout, Sink sink) : layout_(layout), sink_(std::move(sink)) {
  out_.reserve(part_size + part_size / 4);
  levels_.reserve(8);
}

void JsonText::begin(char first, char last, Layout layout) {
  separate();
  out_ += first;
  levels_.push_back({last, layout});
}

void JsonText::end() {
  const Level level = levels_.back();
  levels_.pop_back();
  if (level.layout == Layout::Indented && !level.empty) new_line();
  out_ += level.end;
}

void JsonText::key(std::string_view plain) {
  separate();
  out_ += '"';
  out_ += plain;
  out_ += layout() == Layout::Compact ? "\":" : "\": ";
  has_key_ = true;
}

void JsonText::key(StringView key) {
  separate();
  quoted(key);
  out_ += layout() == Layout::Compact ? ":" : ": ";
  has_key_ = true;
}

void JsonText::value(StringView text) {
  separate();
  quoted(text);
}

void JsonText::value(std::string_view plain) {
  separate();
  out_ += '"';
  out_ += plain;
  out_ += '"';
}

void JsonText::literal(std::string_view text) {
  separate();
  out_ += text;
}

void JsonText::value(std::int16_t value) { number(value); }

void JsonText::value(std::int32_t value) { number(value); }

void JsonText::value(float value) { number(value); }

void JsonText::value(double value) { number(value); }

bool JsonText::finish() {
  out_ += '\n';
  if (sink_) hand_on();
  return !stopped_;
}

void JsonText::separate() {
  if (has_key_ || levels_.empty()) {
    has_key_ = false;
    return;
  }
  Level& level = levels_.back();
  if (!level.empty) out_ += level.layout == Layout::Spaced ? ", " : ",";
  level.empty = false;
  if (level.layout == Layout::Indented) new_line();
}

void JsonText::new_line() {
  if (sink_ && out_.size() >= part_size) hand_on();
  out_ += '\n';
  out_.append(2 * levels_.size(), ' ');
}

void JsonText::hand_on() {
  stopped_ = stopped_ || !sink_(out_);
  out_.clear();
}

void JsonText::quoted(StringView text) {
  constexpr std::string_view hex = "0123456789abcdef";
  out_ += '"';
  std::size_t start = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t unit = text[i];
    if (!needs_escape(unit)) continue;
    append_utf8(out_, text.substr(start, i - start));
    start = i + 1;
    out_ += '\\';
    switch (unit) {
      case u'"':
      case u'\\': out_ += static_cast<char>(unit); break;
      case u'\b': out_ += 'b'; break;
      case u'\f': out_ += 'f'; break;
      case u'\n': out_ += 'n'; break;
      case u'\r': out_ += 'r'; break;
      case u'\t': out_ += 't'; break;
      default: out_.append("u00").append({hex[unit >> 4], hex[unit & 15]});
    }
  }
  append_utf8(out_, text.substr(start));
  out_ += '"';
}

template <class Number>
void JsonText::number(Number value) {
  if constexpr (!std::is_integral_v<Number>) {
    if (!std::isfinite(value)) return literal("null");
  }
  separate();
  std::array<char, 32> digits;
  out_.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr);
}

}  // namespace hedro34
