// Texts on their way to functions of the system, and its words for an error code. For sources of that system only.
#pragma once

#include <string>

#include "hedro34/base/text.h"

namespace hedro34 {

inline const wchar_t* wide(const String& text) noexcept { return reinterpret_cast<const wchar_t*>(text.c_str()); }

// One line, without the full stop; "error 0x80040154" for a code that has none.
std::string system_words(long code);

}  // namespace hedro34
