// What a native fault finds when it comes up on a thread: the traps that are active there, and a failure that was made
// beforehand, since a fault may come out of the memory allocation itself. All of it is plain data of the thread, which a
// signal handler can read.
#pragma once

#include <cstdint>

#include "hedro34/base/failure.h"
#include "hedro34/base/text.h"

namespace hedro34 {

// A trap that is running its body; it lives in the frame of the trap. Frames that a stack overflow skips never leave theirs,
// so the trap that catches takes them off the list with its own.
class ActiveTrap {
 public:
  explicit ActiveTrap(bool reports) noexcept;
  ActiveTrap(const ActiveTrap&) = delete;
  ActiveTrap& operator=(const ActiveTrap&) = delete;

  void leave() const noexcept;
  const ActiveTrap* outer() const noexcept { return outer_; }
  bool reports() const noexcept { return reports_; }  // what it catches

 private:
  const ActiveTrap* outer_;
  bool reports_;
};

struct ThreadFaults {
  const ActiveTrap* innermost;
  Failure* prepared;  // an exception that has not been thrown yet, with capacity for the longest description
  bool started;       // keeps a prepared failure
  bool making;        // one is being made in ordinary context
  bool raising;       // one is being made by a fault that found none: a second fault in there has no way out

  bool needs_failure() const noexcept { return started && prepared == nullptr && !making; }
};

// Initial-exec, so that a handler reads it without a call that may allocate. A library that is loaded later gets such data
// from the space that the loader keeps for it.
#if defined(__GNUC__)
[[gnu::tls_model("initial-exec")]]
#endif
extern constinit thread_local ThreadFaults faults_of_thread;

inline ActiveTrap::ActiveTrap(bool reports) noexcept : outer_(faults_of_thread.innermost), reports_(reports) {
  faults_of_thread.innermost = this;
}
inline void ActiveTrap::leave() const noexcept { faults_of_thread.innermost = outer_; }

// Makes the thread's prepared failure; allocates.
void make_fault_failure();

// Releases it.
void drop_fault_failure() noexcept;

// Throws the prepared failure, without allocating as long as there is one. `source` is static text.
[[noreturn]] void raise_fault(std::int32_t number, StringView description, StringView source);

}  // namespace hedro34
