// The modal box through which the library speaks to the user. A host replaces it through `platform()`.
#pragma once

#include <cstdint>

#include "hedro34/base/text.h"

namespace hedro34 {

// Flags of a box, and the numbers of its buttons as an answer.
inline constexpr std::int32_t box_ok_cancel = 1;     // buttons OK and Cancel; without it OK alone
inline constexpr std::int32_t box_stop = 16;         // stop icon
inline constexpr std::int32_t box_exclamation = 48;  // exclamation icon
inline constexpr std::int32_t box_buttons_mask = 15;
inline constexpr std::int32_t answer_ok = 1;
inline constexpr std::int32_t answer_cancel = 2;

class HEDRO34_API MessageBox {
 public:
  virtual ~MessageBox() = default;

  // Shows the box, waits for the user and returns the button pressed. Lines of `text` end with carriage return, line feed.
  virtual std::int32_t Show(StringView text, std::int32_t flags, StringView title) = 0;
};

// Writes title and text to standard error. A question with Cancel is asked where standard input is a terminal; where nobody
// can be asked the answer is Cancel. Every other box is answered with OK at once.
class HEDRO34_API TerminalMessageBox : public MessageBox {
 public:
  std::int32_t Show(StringView text, std::int32_t flags, StringView title) override;
};

// What `TerminalMessageBox` writes: the title, then the text, each ending with a line feed, in UTF-8. Control characters but
// tabs and line feeds become U+FFFD.
HEDRO34_API std::string box_as_lines(StringView text, StringView title);

}  // namespace hedro34
