// Files as the library reads and writes them. A path is a text, UTF-8 for the system. Where the platform's own separator is
// "/", a path that names no file as it stands is tried once more with every "\" read as "/", and a new file is written under
// that name. A failure leaves its reason in `last_file_error()`; a success leaves the file error as it was.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "hedro34/base/text.h"
#include "hedro34/platform/file_error.h"

namespace hedro34 {

// A file opened for reading, closed at the end of its life.
class InputFile {
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
  InputFile(int descriptor, std::uint64_t size, StringView path) : descriptor_(descriptor), size_(size), path_(path) {}
  int descriptor_;
  std::uint64_t size_;
  String path_;
};

// The whole content, or nothing and a file error of kind Unreadable.
std::optional<std::string> read_file(StringView path);

// A file written beside its target: complete and flushed to disk when `write` returns, in place after `commit`. Without a
// commit the target keeps its content and the temporary file is removed.
class PendingFile {
 public:
  // Nothing, and a file error of kind Unwritable, when it cannot be written; nothing is left behind then. An existing target
  // passes on its permissions and, where the system lets it, its owner; it must be a regular file that may be written. A
  // symbolic link stays, and what it names is replaced.
  static std::optional<PendingFile> write(StringView path, std::string_view bytes);

  // The same with bytes that come in parts: `produce` hands them to the writer that it is given and stops when that answers
  // False, which is when the system does not take them. When `produce` answers False by itself, the file error that it set stands.
  using Writer = std::function<bool(std::string_view bytes)>;
  static std::optional<PendingFile> write(StringView path, const std::function<bool(const Writer&)>& produce);

  PendingFile(PendingFile&& other) noexcept;
  PendingFile& operator=(PendingFile&&) = delete;
  ~PendingFile();

  // Renames the temporary file over the target; called once. False and a file error when the system does not let it: the
  // target is then as it was.
  bool commit();

 private:
  PendingFile(std::string target, StringView path) : target_(std::move(target)), path_(path) {}
  std::string temporary_;  // empty when there is nothing to remove
  std::string target_;
  String path_;
};

// True when both paths name one file, be it there already or not: equal texts, equal after resolving ".", "..", links and
// "\", or the same file under two names.
bool same_file(StringView a, StringView b);

}  // namespace hedro34
