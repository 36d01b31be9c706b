#include "host/stop.h"

#include <array>
#include <cerrno>
#include <cstdio>

#include "hedro34/base/text.h"
#include "hedro34/platform/system_files.h"

namespace host {
namespace {

constexpr std::string_view hex = "0123456789abcdef";

// The character at the start of the text, in 16 bits, when it is one of UTF-8's beyond ASCII that a terminal is not given: a
// control character, the end of a line, one that turns the direction of what stands behind it. Else 0.
unsigned hidden_character(std::string_view text) noexcept {
  const auto byte = [&](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0u; };
  if (byte(0) == 0xc2 && byte(1) >= 0x80 && byte(1) < 0xa0) return byte(1);
  if (byte(0) != 0xe2 || (byte(1) & 0xfe) != 0x80 || (byte(2) & 0xc0) != 0x80) return 0;
  const unsigned character = 0x2000 + (byte(1) & 0x3f) * 0x40 + (byte(2) & 0x3f);
  return (character >= 0x2028 && character <= 0x202e) || (character >= 0x2066 && character <= 0x2069) ? character : 0;
}

// Hands each byte of the text to `put`, and visible escapes for characters that would not leave a terminal as it is.
template <class Put>
void escape(std::string_view text, const Put& put) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte == '\n' || byte == '\t') {
      put('\\');
      put(byte == '\n' ? 'n' : 't');
    } else if (byte < 0x20 || byte == 0x7f) {
      for (const char escaped : {'\\', 'x', hex[byte >> 4], hex[byte & 15]}) put(escaped);
    } else if (const unsigned hidden = hidden_character(text.substr(i)); hidden != 0) {
      for (const char escaped : {'\\', 'u'}) put(escaped);
      for (const int shift : {12, 8, 4, 0}) put(hex[hidden >> shift & 15]);
      i += hidden < 0x100 ? 1 : 2;
    } else {
      put(text[i]);
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
