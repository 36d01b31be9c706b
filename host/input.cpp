#include "host/input.h"

#include "hedro34/platform/file_error.h"
#include "host/hints.h"
#include "host/stop.h"

namespace host {

Input::Input(const char* what, const hedro34::String& path)
    : what_(what), path_(path), spooled_(is_standard_stream(path) ? hedro34::SpooledInput::read() : std::nullopt) {
  if (is_standard_stream(path)) {
    if (!spooled_) cannot_read();
  } else if (hedro34::kind_of(path) == hedro34::FileKind::Other) {
    throw Stop(ExitCode::BadInput, std::string("cannot read the ") + what + ": " + hedro34::to_utf8(path) +
                                       ": it is not a regular file; save it as one, or hand it over as -");
  }
}

void Input::cannot_read(const char* way_out) const {
  hedro34::FileError error = hedro34::last_file_error();
  error.path = input_name(path_);
  throw Stop(ExitCode::BadInput, std::string("cannot read the ") + what_ + ": " + to_line(error) + way_out +
                                     reading_hint(what_, path(), error));
}

}  // namespace host
