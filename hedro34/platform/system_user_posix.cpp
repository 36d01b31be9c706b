#include <unistd.h>

#include "hedro34/platform/system_user.h"

namespace hedro34::system {
namespace {

class NoScreen : public Screen {
 public:
  void SetMousePointer(std::int32_t) override {}
};

}  // namespace

MessageBox& default_message_box() noexcept {
  static TerminalMessageBox box;
  return box;
}

Screen& default_screen() noexcept {
  static NoScreen screen;
  return screen;
}

bool standard_input_is_terminal() noexcept { return ::isatty(STDIN_FILENO) != 0; }

}  // namespace hedro34::system
