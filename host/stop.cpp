#include "host/stop.h"

#include <cerrno>
#include <cstdio>
#include <iostream>
#include <system_error>

#include "hedro34/base/text.h"

namespace host {

std::string one_line(std::string_view text) {
  constexpr std::string_view hex = "0123456789abcdef";
  std::string line;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte != 0x7f) {
      line += c;
    } else if (c == '\n') {
      line += "\\n";
    } else if (c == '\t') {
      line += "\\t";
    } else {
      line.append("\\x").append({hex[byte >> 4], hex[byte & 15]});
    }
  }
  return line;
}

void report(std::string_view line) { std::cerr << ("hedro34: " + one_line(line) + '\n') << std::flush; }

void print(std::string_view text) {
  errno = 0;
  const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
  if (written && std::fflush(stdout) == 0) return;
  throw Stop(ExitCode::BadOutput, "cannot write standard output: " + std::generic_category().message(errno));
}

bool is_utf8(std::string_view bytes) { return hedro34::to_utf8(hedro34::from_utf8(bytes)) == bytes; }

}  // namespace host
