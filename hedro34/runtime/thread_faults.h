// What a native fault finds of its thread when it comes up: plain data, which a handler of faults can read.
#pragma once

#include "hedro34/base/failure.h"

namespace hedro34 {

class ActiveTrap;
class HiddenTraps;

struct ThreadFaults {
  const ActiveTrap* innermost;  // without guards
  const HiddenTraps* hidden;    // with guards: the traps from its address on are not to be seen
  Failure* prepared;            // an exception that has not been thrown yet, with capacity for the longest description
  bool started;                 // keeps a prepared failure
  bool making;                  // one is being made in ordinary context
  bool raising;                 // one is being made by a fault that found none: a second fault in there has no way out
  bool overflowed;              // the guard at the end of the stack is to be put back

  bool needs_failure() const noexcept { return started && prepared == nullptr && !making; }
};

// Initial-exec, so that a handler reads it without a call that may allocate. A library that is loaded later gets such data
// from the space that the loader keeps for it.
#if defined(__GNUC__) && !defined(_WIN32)
[[gnu::tls_model("initial-exec")]]
#endif
extern constinit thread_local ThreadFaults faults_of_thread;

}  // namespace hedro34
