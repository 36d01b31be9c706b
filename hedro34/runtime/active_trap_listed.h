// The trap where nobody asks frames for their handlers: the thread has a list of its traps.
#pragma once

#include "hedro34/runtime/thread_faults.h"

namespace hedro34 {

// A trap that is running its body; it lives in the frame of the trap. Frames that a stack overflow skips never leave theirs,
// so the trap that catches takes them off the list with its own.
class ActiveTrap {
 public:
  explicit ActiveTrap(bool reports) noexcept : outer_(faults_of_thread.innermost), reports_(reports) {
    faults_of_thread.innermost = this;
  }
  ActiveTrap(const ActiveTrap&) = delete;
  ActiveTrap& operator=(const ActiveTrap&) = delete;

  void run(void (*body)(void*), void* context) { body(context); }
  void leave() noexcept { faults_of_thread.innermost = outer_; }
  const ActiveTrap* outer() const noexcept { return outer_; }
  bool reports() const noexcept { return reports_; }  // what it catches

 private:
  const ActiveTrap* outer_;
  bool reports_;
};

}  // namespace hedro34
