#include "hedro34/component/system_text_windows.h"

#include <windows.h>

#include <cstdio>

namespace hedro34 {

std::string system_words(long code) {
  char16_t buffer[512];
  constexpr DWORD flags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK;
  const DWORD length = ::FormatMessageW(flags, nullptr, static_cast<DWORD>(code), 0, reinterpret_cast<wchar_t*>(buffer),
                                        static_cast<DWORD>(std::size(buffer)), nullptr);
  StringView words(buffer, length);
  while (!words.empty() && (words.back() <= u' ' || words.back() == u'.')) words.remove_suffix(1);
  if (!words.empty()) return to_utf8(words);
  char text[32];
  std::snprintf(text, sizeof text, "error 0x%08lX", static_cast<unsigned long>(code));
  return text;
}

}  // namespace hedro34
