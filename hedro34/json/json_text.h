// Writes one JSON value piece by piece: quoting, numbers, commas, line breaks and indentation. All JSON text of the library
// and of the program comes from here.
//
//   JsonText json(JsonText::Layout::Compact);
//   json.begin_object();
//   json.key("number");
//   json.value(457);
//   json.end();
//   json.finish();
//   use(json.str());                    // {"number":457} and a line feed
#pragma once

#include <concepts>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "hedro34/base/text.h"

namespace hedro34 {

class JsonText {
 public:
  enum class Layout {
    Indented,  // an element a line, two blanks for each level
    Spaced,    // one line, with a blank behind commas and colons
    Compact,   // one line without blanks
  };

  // Takes the text in parts and answers whether it takes more.
  using Sink = std::function<bool(std::string_view part)>;

  explicit JsonText(Layout layout) : layout_(layout) {}  // gathers the whole text for `str`
  JsonText(Layout layout, Sink sink);                    // hands it on whenever some 64 KiB are there

  // An object or array has the layout of what it stands in unless another is given.
  void begin_object() { begin('{', '}', layout()); }
  void begin_object(Layout layout) { begin('{', '}', layout); }
  void begin_array() { begin('[', ']', layout()); }
  void begin_array(Layout layout) { begin('[', ']', layout); }
  void end();  // of the innermost object or array

  // The key of the object's next member; the value comes next. One of 8-bit characters has none that needs quoting.
  void key(std::string_view plain);
  void key(StringView key);

  void value(StringView text);  // a lone surrogate becomes U+FFFD
  void value(std::string_view plain);
  void value(std::same_as<bool> auto value) { literal(value ? "true" : "false"); }
  void value(std::int16_t value);
  void value(std::int32_t value);
  // The shortest text that reads back to the same value of that width; null for a number that is not finite.
  void value(float value);
  void value(double value);

  // Ends the text with a line feed and hands on what is left. False when the sink took no more: what came behind was dropped.
  bool finish();

  bool stopped() const noexcept { return stopped_; }            // the sink takes no more
  const std::string& str() const& noexcept { return buffer_; }  // once it is finished
  std::string str() && noexcept { return std::move(buffer_); }

 private:
  struct Level {
    char end;
    Layout layout;
    bool is_empty = true;
  };

  Layout layout() const noexcept { return levels_.empty() ? layout_ : levels_.back().layout; }
  void begin(char first, char last, Layout layout);
  void before_value();
  void separate();  // what stands between this element, or member, and the one before it
  void new_line();
  void hand_on();
  void quoted(StringView text);
  void escaped(char16_t unit);
  void literal(std::string_view text);
  template <class Number>
  void number(Number value);

  // The free end of the buffer, of at least that size.
  char* free_space(std::size_t size);
  void put(std::string_view text);
  void put(char c);

  std::string buffer_;    // larger than what is in it: so a piece costs a copy and no more
  std::size_t size_ = 0;  // what is in it and was not handed on yet
  std::string utf8_;      // of characters beyond ASCII, on their way
  std::vector<Level> levels_;
  Layout layout_;
  bool has_key_ = false;
  bool stopped_ = false;
  Sink sink_;
};

}  // namespace hedro34
