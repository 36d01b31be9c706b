// What a thread needs of its own for the translation of faults: space to work in when its stack has run full, and the bounds
// of its stack.
#pragma once

#include "hedro34/runtime/fault_support.h"

#ifdef HEDRO34_TRANSLATES_FAULTS

#include <cstddef>
#include <cstdint>

namespace hedro34 {

inline constexpr std::uint32_t code_stack_overflow = 0xC00000FD;

// Prepares the calling thread, until it ends. The space is an alternate stack for handlers of signals; one that the thread has
// already stays when it is large enough, and comes back at the end of the thread when it is not. Without memory for one the
// thread goes on without. Where the system can leave space at the end of the stack, it is asked to leave 32 KiB.
// False when memory was gone before anything was prepared.
bool prepare_thread_for_faults() noexcept;

// The stack of the calling thread: what can be used of it. Nothing when the thread was not prepared.
struct Stack {
  std::uintptr_t low = 0;
  std::uintptr_t high = 0;
};
Stack stack_of_this_thread() noexcept;

}  // namespace hedro34

#endif
