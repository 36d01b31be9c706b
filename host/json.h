// Writes one JSON value piece by piece, with the commas, line breaks and indentation that its layout asks for.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "hedro34/base/text.h"

namespace host {

class JsonText {
 public:
  enum class Layout {
    Indented,  // two blanks for each level; an inner value opened as `Plain` stays on one line
    Plain,     // one line, with a blank behind commas and colons
    Compact,   // one line without blanks
  };

  explicit JsonText(Layout layout) : layout_(layout) {}

  void open(char bracket) { open(bracket, levels_.empty() ? layout_ : levels_.back().layout); }
  void open(char bracket, Layout layout);  // '{' or '['
  void close();

  void name(hedro34::StringView name);  // of the object's next member; the value comes next
  void text(hedro34::StringView value);
  void number(std::int32_t value);
  void number(float value);  // the shortest text that reads back to the same 32-bit value
  void flag(bool value);

  const std::string& str() const noexcept { return out_; }

 private:
  struct Level {
    char end;
    Layout layout;
    bool empty = true;
  };

  void begin();  // what stands between this value, or name, and the one before it
  void new_line();
  void quoted(hedro34::StringView text);

  std::string out_;
  std::vector<Level> levels_;
  Layout layout_;
  bool named_ = false;
};

}  // namespace host
