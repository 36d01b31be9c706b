#include "hedro34/platform/message_box.h"

#include <iostream>
#include <string>

#include "hedro34/platform/system_user.h"

namespace hedro34 {

namespace {

// Text as a terminal may be given it: no control characters but tabs and line feeds.
String harmless(StringView text) {
  String result(text);
  for (char16_t& unit : result) {
    const bool is_control = unit < 0x20 || (unit >= 0x7F && unit < 0xA0);
    if (is_control && unit != u'\t' && unit != u'\n') unit = u'\uFFFD';
  }
  return result;
}

}  // namespace

std::string box_as_lines(StringView text, StringView title) {
  std::string lines = to_utf8(harmless(title)) + '\n';
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t end = std::min(text.find(u"\r\n", i), text.size());
    append_utf8(lines, harmless(text.substr(i, end - i)));
    lines += '\n';
    i = end + 2;
  }
  return lines;
}

std::int32_t TerminalMessageBox::Show(StringView text, std::int32_t flags, StringView title) {
  std::cerr << box_as_lines(text, title) << std::flush;
  if ((flags & box_buttons_mask) != box_ok_cancel) return answer_ok;
  if (!system::standard_input_is_terminal()) return answer_cancel;
  std::cerr << "OK or Cancel? [o/C] " << std::flush;
  std::string answer;
  if (!std::getline(std::cin, answer)) std::cerr << std::endl;
  return !answer.empty() && (answer.front() == 'o' || answer.front() == 'O') ? answer_ok : answer_cancel;
}

}  // namespace hedro34
