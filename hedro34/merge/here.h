// What the operations of the merge object share: their location texts and their boxes.
#pragma once

#include "hedro34/platform/message_box.h"
#include "hedro34/platform/platform.h"
#include "hedro34/runtime/basError.h"

namespace hedro34 {

constexpr Location here(const char16_t* operation) { return {u"clsHEDRO", operation}; }

// The object of a field, held while it is called: what is called may change the field, and be all that held the object.
template <class T>
Ref<T> held(const Ref<T>& field) noexcept {
  return field;
}

inline constexpr StringView line_break = u"\r\n";

inline void show_warning(StringView title, StringView text) {
  platform().message_box->Show(text, box_exclamation, title);
}

}  // namespace hedro34
