// What faults need on systems with signals: the handlers that were there before, and memory that ends.
#pragma once

#include <csetjmp>
#include <csignal>
#include <string>

#include "tests/faults/provoke.h"

namespace hedro34::testing {

extern thread_local bool malloc_faults;  // every allocation of the thread does

// So many allocations of the thread succeed, and none after them; below 0 memory does not end.
extern thread_local int allocations_left;

// Of the handlers that were there before the library's, those of SIGSEGV and SIGFPE note the signal and jump back to where
// `outside` was called; SIGILL is ignored, SIGBUS and SIGTRAP have none.
extern std::string former_handler;  // what it noted
extern sigjmp_buf way_back;
extern volatile bool jumps;  // else the handler of SIGSEGV returns

template <class Deed>
std::string outside(Deed deed) {
  former_handler.clear();
  jumps = true;
  if (sigsetjmp(way_back, 1) == 0) deed();
  jumps = false;
  return former_handler;
}

}  // namespace hedro34::testing
