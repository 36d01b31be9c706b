// What `Save` does before it writes.
#pragma once

#include "hedro34/base/text.h"

namespace hedro34 {

// As `remove_abandoned_files`, but only once for each of the last folders: a program that saves many files into one would look
// through all of them each time.
void remove_abandoned_files_once(StringView path) noexcept;

}  // namespace hedro34
