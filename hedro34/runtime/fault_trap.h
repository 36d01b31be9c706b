// What a native fault finds when it comes up on a thread: the traps that are active there, and a failure that was made
// beforehand, since a fault may come out of the memory allocation itself. All of it is plain data of the thread, which a
// handler of faults can read. Where the system calls handlers of frames, a trap runs its body in a guard, a frame with such a
// handler, and is found by it; elsewhere the thread has a list of its traps.
#pragma once

#include <cstdint>

#include "hedro34/runtime/fault_support.h"

#include "hedro34/base/failure.h"
#include "hedro34/base/text.h"

namespace hedro34 {

#if defined(_WIN32) && defined(HEDRO34_TRANSLATES_FAULTS)
#define HEDRO34_GUARDED_TRAPS 1
#ifdef __i386__
#define HEDRO34_CHAINED_GUARDS 1
#endif
#endif

#ifdef HEDRO34_CHAINED_GUARDS

// An entry in the system's chain of handlers for the thread, which it asks from the innermost. It lives on the stack.
struct FrameHandler {
  FrameHandler* next = nullptr;
  int (*handler)(void* record, void* frame, void* context, void* dispatcher) = nullptr;
};

// What a guard keeps: its entry, and its stack pointer where it calls the body.
struct GuardEntry {
  FrameHandler handler;
  const void* stack = nullptr;
};

inline FrameHandler* first_frame_handler() noexcept {
  FrameHandler* first = nullptr;
  asm volatile("movl %%fs:0, %0" : "=r"(first));
  return first;
}

inline void set_first_frame_handler(FrameHandler* first) noexcept {
  asm volatile("movl %0, %%fs:0" : : "r"(first) : "memory");
}

extern "C" int hedro34_on_exception(void* record, void* frame, void* context, void* dispatcher);

#endif

// A trap that is running its body; it lives in the frame of the trap. Frames that a stack overflow skips never leave theirs,
// so the trap that catches takes them off the list with its own.
class ActiveTrap {
 public:
  explicit ActiveTrap(bool reports) noexcept;
  ActiveTrap(const ActiveTrap&) = delete;
  ActiveTrap& operator=(const ActiveTrap&) = delete;

  void run(void (*body)(void*), void* context);
  void leave() noexcept;
  const ActiveTrap* outer() const noexcept { return outer_; }
  bool reports() const noexcept { return reports_; }  // what it catches

 private:
#ifdef HEDRO34_GUARDED_TRAPS
  friend class Guard;
#endif
#ifdef HEDRO34_CHAINED_GUARDS
  GuardEntry entry_;
#endif
  const ActiveTrap* outer_;  // with guards, as far as the fault that is being looked at needs it
  bool reports_;
};

struct ThreadFaults {
  const ActiveTrap* innermost;  // without guards
  const void* hidden;           // with guards: the traps from this address on are not to be seen
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

#ifdef HEDRO34_GUARDED_TRAPS

extern "C" void hedro34_run_guarded(void (*body)(void*), void* context, void* trap);

#ifdef HEDRO34_CHAINED_GUARDS
inline ActiveTrap::ActiveTrap(bool reports) noexcept
    : entry_{{first_frame_handler(), hedro34_on_exception}}, outer_(nullptr), reports_(reports) {
  set_first_frame_handler(&entry_.handler);
}
inline void ActiveTrap::leave() noexcept { set_first_frame_handler(entry_.handler.next); }
#else
inline ActiveTrap::ActiveTrap(bool reports) noexcept : outer_(nullptr), reports_(reports) {}
inline void ActiveTrap::leave() noexcept {}
#endif
inline void ActiveTrap::run(void (*body)(void*), void* context) { hedro34_run_guarded(body, context, this); }

#else

inline ActiveTrap::ActiveTrap(bool reports) noexcept : outer_(faults_of_thread.innermost), reports_(reports) {
  faults_of_thread.innermost = this;
}
inline void ActiveTrap::run(void (*body)(void*), void* context) { body(context); }
inline void ActiveTrap::leave() noexcept { faults_of_thread.innermost = outer_; }

#endif

// After a stack overflow, once the stack is free again: makes its end stop the next one. Nothing where it does so by itself.
void restore_end_of_stack() noexcept;

// Makes the thread's prepared failure; allocates.
void make_fault_failure();

// Releases it.
void drop_fault_failure() noexcept;

// Throws the prepared failure, without allocating as long as there is one. `source` is static text.
[[noreturn]] void raise_fault(std::int32_t number, StringView description, StringView source);

}  // namespace hedro34
