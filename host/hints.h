// Ways out: the ends of lines that say what cannot be used, where what is at hand tells what was probably meant.
#pragma once

#include <string>

#include "hedro34/merge/clsHEDRO.h"
#include "hedro34/platform/file_error.h"
#include "host/arguments.h"

namespace host {

// What to do about a file that could not be read as a "test", "form" or "document", by what it looks like: another kind of
// file, or bytes that are no UTF-8 at the place of the error. Empty when nothing tells.
std::string reading_hint(const std::string& what, const hedro34::String& path, const hedro34::FileError& error);

// What to do when `Merge` has answered False because of the field with the version identifier. Empty when it has not.
std::string version_field_hint(const hedro34::clsHEDRO& merge, const MergeCommand& command);

}  // namespace host
