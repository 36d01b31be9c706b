#include "host/json.h"

#include <array>
#include <charconv>

namespace host {
namespace {

template <class Number>
void append_shortest(std::string& out, Number value) {
  std::array<char, 32> digits{};
  out.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr);
}

}  // namespace

void JsonText::open(char bracket, Layout layout) {
  begin();
  out_ += bracket;
  levels_.push_back({bracket == '{' ? '}' : ']', layout});
}

void JsonText::close() {
  const Level level = levels_.back();
  levels_.pop_back();
  if (level.layout == Layout::Indented && !level.empty) new_line();
  out_ += level.end;
}

void JsonText::name(hedro34::StringView name) {
  begin();
  quoted(name);
  out_ += levels_.back().layout == Layout::Compact ? ":" : ": ";
  named_ = true;
}

void JsonText::text(hedro34::StringView value) {
  begin();
  quoted(value);
}

void JsonText::number(std::int32_t value) {
  begin();
  append_shortest(out_, value);
}

void JsonText::number(float value) {
  begin();
  append_shortest(out_, value);
}

void JsonText::flag(bool value) {
  begin();
  out_ += value ? "true" : "false";
}

void JsonText::begin() {
  if (named_ || levels_.empty()) {
    named_ = false;
    return;
  }
  Level& level = levels_.back();
  if (!level.empty) out_ += level.layout == Layout::Plain ? ", " : ",";
  level.empty = false;
  if (level.layout == Layout::Indented) new_line();
}

void JsonText::new_line() {
  out_ += '\n';
  out_.append(2 * levels_.size(), ' ');
}

void JsonText::quoted(hedro34::StringView text) {
  constexpr std::string_view hex = "0123456789abcdef";
  constexpr std::string_view letters = "\b\f\n\r\t";
  out_ += '"';
  std::size_t start = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t unit = text[i];
    if (unit >= 0x20 && unit != u'"' && unit != u'\\') continue;
    hedro34::append_utf8(out_, text.substr(start, i - start));
    start = i + 1;
    const auto character = static_cast<char>(unit);
    out_ += '\\';
    if (unit >= 0x20) {
      out_ += character;
    } else if (const auto letter = letters.find(character); letter != std::string_view::npos) {
      out_ += "bfnrt"[letter];
    } else {
      out_.append("u00").append({hex[unit >> 4], hex[unit & 15]});
    }
  }
  hedro34::append_utf8(out_, text.substr(start));
  out_ += '"';
}

}  // namespace host
