// Files as the library reads them. A path is a text, UTF-8 for a system whose paths are bytes. Where the system's separator is
// "/" alone, a path that names no file as it stands is tried once more with every "\" read as "/". A failure leaves its reason in
// `last_file_error()`; a success leaves the file error as it was. Memory that runs out is thrown. Files are written through
// pending_file.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "hedro34/base/text.h"
#include "hedro34/platform/file_error.h"

namespace hedro34 {

// A file opened for reading, closed at the end of its life.
class HEDRO34_API InputFile {
 public:
  // Nothing, and a file error of kind Unreadable, when the system does not open it or it is a folder.
  static std::optional<InputFile> open(StringView path);
  InputFile(InputFile&& other) noexcept;
  InputFile& operator=(InputFile&&) = delete;
  ~InputFile();

  // Reads until `size` bytes are there or the file ends, so that a smaller result means the end. Nothing, and a file error of
  // kind Unreadable, at a failure.
  std::optional<std::size_t> read(char* target, std::size_t size);
  std::uint64_t size() const noexcept { return size_; }  // bytes, as the system gave it at opening; 0 when it has none

 private:
  InputFile(std::intptr_t file, std::uint64_t size, StringView path) : file_(file), size_(size), path_(path) {}
  std::intptr_t file_;  // the system's number for it
  std::uint64_t size_;
  String path_;
};

// The whole content, or nothing and a file error of kind Unreadable. There is room for 64 bytes behind it as a rule.
HEDRO34_API std::optional<std::string> read_file(StringView path);

// Standard input as a file that can be read more than once: its bytes stand on the disk, under no name that outlives this
// object or the process.
class HEDRO34_API SpooledInput {
 public:
  // Reads standard input to its end. Nothing, and a file error of kind Unreadable, at a failure.
  static std::optional<SpooledInput> read();
  SpooledInput(SpooledInput&& other) noexcept;
  SpooledInput& operator=(SpooledInput&&) = delete;
  ~SpooledInput();

  const String& path() const noexcept { return path_; }  // for this process and as long as this object lives

 private:
  SpooledInput(std::intptr_t file, String path) : file_(file), path_(std::move(path)) {}
  std::intptr_t file_;  // the system's number for it
  String path_;
};

// What a path can name.
enum class FileKind { Nothing, Regular, Folder, Other };

// What a path names, as a load would find it; Nothing as well where the system does not tell.
HEDRO34_API FileKind kind_of(StringView path);

// True when both paths name one file, be it there already or not: equal texts, equal after resolving ".", "..", links and
// "\", or the same file under two names.
HEDRO34_API bool same_file(StringView a, StringView b);

}  // namespace hedro34
