// Why a file could last not be read or written on this thread: what a program prints after a load or save that answered
// False, without reading the file twice.
#pragma once

#include <cstdint>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>

#include "hedro34/base/text.h"

namespace hedro34 {

struct FileError {
  enum class Kind {
    None,        // no file is at fault
    Unreadable,  // the file is not there or the system does not let it be read
    Malformed,   // the file is not what its format asks for
    WrongKind,   // well-formed, but another kind of document
    Unwritable,  // the file could not be written
    NoMemory,    // memory ran out while it was read; the file is not at fault
  };

  Kind kind = Kind::None;
  String path{};            // as the caller gave it
  std::int64_t line = 0;    // from 1; 0 when no line is known
  std::int64_t column = 0;  // from 1, in characters or bytes of the file
  // JSON pointer of the offending value, UTF-8; empty when there is none or it is the whole file.
  std::string pointer{};
  std::string reason{};  // one line, UTF-8, without path and position
};

// The last file error of this thread; kind None, and nothing in it, when its last load or save went well.
HEDRO34_API const FileError& last_file_error() noexcept;

// Remembers a file error; `clear_file_error` is called at the start of each load and save. Where even the texts find no
// memory, the reason is "out of memory" and the path empty.
HEDRO34_API void set_file_error(FileError error) noexcept;
HEDRO34_API void set_file_error(FileError::Kind kind, StringView path, std::string_view reason) noexcept;
HEDRO34_API void clear_file_error() noexcept;

// Makes the storage of the calling thread's errors, which the first of them makes otherwise.
void prepare_thread_for_file_errors() noexcept;

// Runs a step of a load or save and gives its answer. Memory that runs out in it becomes a file error of that kind, and the
// answer is False or nothing.
template <class Step>
auto unless_out_of_memory(FileError::Kind kind, StringView path, Step step) -> decltype(step()) {
  try {
    return step();
  } catch (const std::bad_alloc&) {
  } catch (const std::length_error&) {
  }
  set_file_error(kind, path, "out of memory");
  return {};
}

// "path: line 3, column 14: reason" or "path: /questions/0/name: reason", in UTF-8; empty for kind None.
HEDRO34_API std::string to_line(const FileError& error);

}  // namespace hedro34
