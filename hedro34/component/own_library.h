// The library as the system has loaded it.
#pragma once

#include "hedro34/base/text.h"

namespace hedro34 {

// The absolute path of the shared library or program that holds this address, without links where the system resolves them.
// Empty when there is none, its file cannot be found any more, or its path is no text.
String path_of_library(const void* address_in_it);

// Keeps the shared library that holds this address in memory to the end of the process.
void keep_loaded(const void* address_in_it) noexcept;

}  // namespace hedro34
