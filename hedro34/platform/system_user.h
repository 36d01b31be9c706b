// How the system lets the library speak to whoever sits in front of it: one source for each system answers it.
#pragma once

#include "hedro34/platform/message_box.h"
#include "hedro34/platform/platform.h"

namespace hedro34::system {

// What `platform()` has as its box and its screen until a host gives its own.
MessageBox& default_message_box() noexcept;
Screen& default_screen() noexcept;

bool standard_input_is_terminal() noexcept;

}  // namespace hedro34::system
