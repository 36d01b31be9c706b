#include "hedro34/platform/system_user.h"

#include <windows.h>
// It has names of ours as macros.
#undef MessageBox

#include <string>

namespace hedro34::system {
namespace {

class WindowMessageBox : public MessageBox {
 public:
  std::int32_t Show(StringView text, std::int32_t flags, StringView title) override {
    const std::wstring wide_text(text.begin(), text.end());
    const std::wstring wide_title(title.begin(), title.end());
    const UINT style = static_cast<UINT>(flags) | MB_TASKMODAL;
    const int answer = ::MessageBoxW(nullptr, wide_text.c_str(), wide_title.c_str(), style);
    if (answer > 0) return answer;
    // Where there is no desktop nobody can be asked.
    return (flags & box_buttons_mask) == box_ok_cancel ? answer_cancel : answer_ok;
  }
};

class SystemScreen : public Screen {
 public:
  void SetMousePointer(std::int32_t shape) override {
    if (shape == 0) ::SetCursor(::LoadCursorW(nullptr, IDC_ARROW));
  }
};

}  // namespace

MessageBox& default_message_box() noexcept {
  static WindowMessageBox box;
  return box;
}

Screen& default_screen() noexcept {
  static SystemScreen screen;
  return screen;
}

bool standard_input_is_terminal() noexcept {
  DWORD mode = 0;
  return ::GetConsoleMode(::GetStdHandle(STD_INPUT_HANDLE), &mode) != 0;
}

}  // namespace hedro34::system
