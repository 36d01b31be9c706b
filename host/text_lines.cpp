#include "host/text_lines.h"

#include <algorithm>

#include "host/terminal_text.h"

namespace host {

void TextLines::heading(hedro34::StringView title) {
  const std::string shown = plain(title);
  lines({}, title);
  out_.append(columns(std::string_view(shown).substr(shown.rfind('\n') + 1)), '=');
  out_ += "\n\n";
}

void TextLines::row(std::string_view name, hedro34::StringView text) {
  constexpr std::size_t names = 13;
  if (!text.empty()) lines(padded(std::string(name), names), text);
}

void TextLines::lines(std::string start, hedro34::StringView text) {
  const std::size_t column = columns(start);
  const std::string whole = std::move(start) + plain(text);
  for (std::size_t from = 0; from <= whole.size();) {
    const std::size_t end = std::min(whole.find('\n', from), whole.size());
    std::string line = whole.substr(from, end - from);
    if (from > 0) line.insert(0, column, ' ');
    out_.append(line, 0, line.find_last_not_of(' ') + 1);
    out_ += '\n';
    from = end + 1;
  }
}

}  // namespace host
