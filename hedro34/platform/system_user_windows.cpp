#include "hedro34/platform/system_user.h"

#include <windows.h>
// It has names of ours as macros.
#undef MessageBox

#include <algorithm>
#include <string>

namespace hedro34::system {
namespace {

// With U+FFFD for what would end it.
std::wstring whole(StringView text) {
  std::wstring result(text.begin(), text.end());
  std::replace(result.begin(), result.end(), L'\0', L'\uFFFD');
  return result;
}

class WindowMessageBox : public MessageBox {
 public:
  std::int32_t Show(StringView text, std::int32_t flags, StringView title) override {
    const UINT style = static_cast<UINT>(flags) | MB_TASKMODAL;
    const int answer = ::MessageBoxW(nullptr, whole(text).c_str(), whole(title).c_str(), style);
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
