#include "host/system.h"

#include <windows.h>
// After it.
#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <cstdio>
#include <memory>

#include "hedro34/base/text.h"
#include "host/stop.h"

namespace host {

// Of the characters that the caller gave: those of `argv` are of a code page, which most letters are not in.
std::vector<std::string> words_of(int, char**) {
  int count = 0;
  const auto free = [](wchar_t** words) { ::LocalFree(words); };
  const std::unique_ptr<wchar_t*, decltype(free)> given(::CommandLineToArgvW(::GetCommandLineW(), &count), free);
  if (!given) throw std::bad_alloc();
  std::vector<std::string> words;
  for (int i = 1; i < count; ++i) {
    const std::wstring_view word = given.get()[i];
    const hedro34::String text(word.begin(), word.end());
    words.push_back(hedro34::to_utf8(text));
    if (hedro34::from_utf8(words.back()) == text) continue;
    throw Stop(ExitCode::WrongUsage,
               "argument " + std::to_string(i) + " has half of a surrogate pair in it: " + words.back());
  }
  return words;
}

void keep_memory() noexcept {}  // its heap keeps what it has

Streams::Streams() noexcept {
  for (std::FILE* stream : {stdin, stdout, stderr}) ::_setmode(::_fileno(stream), _O_BINARY);
  former_ = ::GetConsoleOutputCP();
  if (former_ != 0) ::SetConsoleOutputCP(CP_UTF8);
}

Streams::~Streams() {
  if (former_ != 0) ::SetConsoleOutputCP(former_);
}

}  // namespace host
