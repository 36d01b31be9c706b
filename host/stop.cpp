#include "host/stop.h"

#include <array>
#include <cerrno>
#include <cstdio>

#include "hedro34/base/text.h"
#include "hedro34/platform/system_files.h"

namespace host {
namespace {

// Hands each character of the text to `put`, control characters as visible escapes.
template <class Put>
void escape(std::string_view text, const Put& put) {
  constexpr std::string_view hex = "0123456789abcdef";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte != 0x7f) {
      put(c);
    } else if (c == '\n' || c == '\t') {
      put('\\');
      put(c == '\n' ? 'n' : 't');
    } else {
      for (const char escaped : {'\\', 'x', hex[byte >> 4], hex[byte & 15]}) put(escaped);
    }
  }
}

// 0, or the reason in terms of `errno`.
int written(std::string_view text) {
  return hedro34::system::write_all(hedro34::system::standard_output(), text) ? 0 : errno;
}

[[noreturn]] void not_written(std::string_view what, int error) {
  throw Stop(ExitCode::BadOutput,
             "cannot write " + std::string(what) + "standard output: " + hedro34::system::reason(error));
}

}  // namespace

std::string one_line(std::string_view text) {
  std::string line;
  escape(text, [&](char c) { line += c; });
  return line;
}

void complain(std::initializer_list<std::string_view> parts) noexcept {
  std::array<char, 1024> buffer;
  std::size_t size = 0;
  const auto put = [&](char c) {
    buffer[size++] = c;
    if (size == buffer.size() || c == '\n') std::fwrite(buffer.data(), 1, std::exchange(size, 0), stderr);
  };
  for (const char c : std::string_view("hedro34: ")) put(c);
  for (const std::string_view part : parts) escape(part, put);
  put('\n');
}

void print(std::string_view text) {
  if (const int error = written(text); error != 0 && error != EPIPE) not_written({}, error);
}

void print_output(std::string_view what, std::string_view text) {
  if (const int error = written(text); error != 0) not_written(std::string(what) + " to ", error);
}

bool is_utf8(std::string_view bytes) { return hedro34::to_utf8(hedro34::from_utf8(bytes)) == bytes; }

}  // namespace host
