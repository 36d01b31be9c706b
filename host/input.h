// A file that a command names as an input.
#pragma once

#include <optional>
#include <string>

#include "hedro34/platform/files.h"

namespace host {

// Whether a path stands for standard input or standard output: "-".
inline bool is_standard_stream(hedro34::StringView path) { return path == u"-"; }

// An input's path as a message shows it: "standard input" for "-".
inline hedro34::String input_name(hedro34::StringView path) {
  return hedro34::String(is_standard_stream(path) ? u"standard input" : path);
}

// An input that the library can read more than once, which a pipe or a device cannot be; standard input is kept on the disk
// for as long as this lives. Throws a `Stop` with `BadInput` that names it as "the WHAT".
class Input {
 public:
  Input(const char* what, const hedro34::String& path);

  const hedro34::String& path() const noexcept { return spooled_ ? spooled_->path() : path_; }
  const hedro34::String& given() const noexcept { return path_; }  // as the command names it
  bool is_standard_input() const noexcept { return spooled_.has_value(); }

  // Names it as "the WHAT" from here on.
  void call(const char* what) noexcept { what_ = what; }

  // The `Stop` for the last file error, which came up when this input was read.
  [[noreturn]] void cannot_read(const char* way_out = "") const;

 private:
  const char* what_;
  hedro34::String path_;
  std::optional<hedro34::SpooledInput> spooled_;
};

}  // namespace host
