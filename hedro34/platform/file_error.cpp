#include "hedro34/platform/file_error.h"

#include <utility>

namespace hedro34 {
namespace {

thread_local FileError last;

}  // namespace

const FileError& last_file_error() noexcept { return last; }

void set_file_error(FileError error) noexcept { last = std::move(error); }

void set_file_error(FileError::Kind kind, StringView path, std::string reason) {
  FileError error;
  error.kind = kind;
  error.path = path;
  error.reason = std::move(reason);
  set_file_error(std::move(error));
}

void clear_file_error() noexcept { last.kind = FileError::Kind::None; }

std::string to_line(const FileError& error) {
  std::string line = to_utf8(error.path);
  if (error.line > 0) {
    line += ": line " + std::to_string(error.line) + ", column " + std::to_string(error.column);
  }
  if (!error.pointer.empty()) line += ": " + error.pointer;
  return line + ": " + error.reason;
}

}  // namespace hedro34
