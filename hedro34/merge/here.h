// What the operations of the merge object share: their location texts and their boxes.
#pragma once

#include "hedro34/platform/message_box.h"
#include "hedro34/platform/platform.h"
#include "hedro34/runtime/basError.h"

namespace hedro34 {

constexpr Location here(const char16_t* operation) { return {u"clsHEDRO", operation}; }

inline constexpr StringView line_break = u"\r\n";

inline void show_warning(StringView title, StringView text) {
  platform().message_box->Show(text, box_exclamation, title);
}

}  // namespace hedro34
