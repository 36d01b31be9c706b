// `Main`, the start-up of the library on a thread. The component does it before the first object on a thread exists; a program
// that links the library calls it itself, once for each thread:
//
//   int main() {
//     hedro34::Main();
//     ...
//
// It makes what the library keeps for each thread: storage for the error object and the last file error, and what the
// handlers of faults need. On a thread without it the first use of the storage makes it, or goes without where memory is
// gone by then. A call that found no memory may be made again. Until some thread was started, a native fault ends the process;
// afterwards a thread that was not has its faults translated too, but for a stack overflow.
#pragma once

#include "hedro34/base/export.h"

namespace hedro34 {

HEDRO34_API void Main() noexcept;

}  // namespace hedro34
