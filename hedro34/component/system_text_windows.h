// Texts on their way to functions of the system, and its words for a result code or an error code. For sources of that system
// only.
#pragma once

#include "hedro34/platform/system_files.h"

namespace hedro34 {

inline const wchar_t* wide(const String& text) noexcept { return reinterpret_cast<const wchar_t*>(text.c_str()); }

inline std::string system_words(long code) {
  constexpr long code_part = 0xFFFF;
  if ((code & ~code_part) == static_cast<long>(0x80070000)) code &= code_part;  // an error code, as a result code
  return system::reason(static_cast<int>(-code));
}

}  // namespace hedro34
