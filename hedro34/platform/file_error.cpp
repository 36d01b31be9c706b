#include "hedro34/platform/file_error.h"

#include <utility>

#include "hedro34/platform/thread_value.h"

namespace hedro34 {
namespace {

using Last = ThreadValue<FileError>;

const FileError none;

}  // namespace

void prepare_thread_for_file_errors() noexcept { Last::make(); }

const FileError& last_file_error() noexcept {
  const FileError* const last = Last::get();
  return last != nullptr ? *last : none;
}

void set_file_error(FileError error) noexcept {
  if (FileError* const last = Last::make()) *last = std::move(error);
}

void set_file_error(FileError::Kind kind, StringView path, std::string_view reason) noexcept {
  FileError error;
  error.kind = kind;
  try {
    error.path = path;
    error.reason = reason;
  } catch (const std::exception&) {
    error.path.clear();
    error.reason = "out of memory";  // short enough to stand in the object itself
  }
  set_file_error(std::move(error));
}

void clear_file_error() noexcept {
  if (FileError* const last = Last::get()) *last = FileError();
}

std::string to_line(const FileError& error) {
  if (error.kind == FileError::Kind::None) return {};
  std::string line = to_utf8(error.path);
  if (error.line > 0) {
    line += ": line " + std::to_string(error.line) + ", column " + std::to_string(error.column);
  }
  if (!error.pointer.empty()) line += ": " + error.pointer;
  return line + ": " + error.reason;
}

}  // namespace hedro34
