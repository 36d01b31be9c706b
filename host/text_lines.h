// Text for a person, gathered line by line: what a text may hold never leads the terminal astray, further lines of it stand
// under its start, and no line ends with blanks.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "hedro34/base/text.h"

namespace host {

class TextLines {
 public:
  // The title, underlined.
  void heading(hedro34::StringView title);

  // A name, and in the column behind the names its text; nothing for an empty text.
  void row(std::string_view name, hedro34::StringView text);

  // A start, which may reach a terminal as it is, and the text behind it with its further lines aligned.
  void lines(std::string start, hedro34::StringView text);

  // A line that may reach a terminal as it is.
  void line(std::string_view text) { lines(std::string(text), {}); }
  void empty_line() { out_ += '\n'; }

  std::string str() && { return std::move(out_); }

 private:
  std::string out_;
};

}  // namespace host
