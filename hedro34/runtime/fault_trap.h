// What a native fault finds when it comes up on a thread: the traps that are active there, and a failure that was made
// beforehand, since a fault may come out of the memory allocation itself. All of it is plain data of the thread, which a
// handler of faults can read. Where the system calls handlers of frames, a trap runs its body in a guard, a frame with such a
// handler, and is found by it; elsewhere the thread has a list of its traps.
#pragma once

#include <cstdint>

#include "hedro34/runtime/fault_support.h"

#include "hedro34/base/failure.h"
#include "hedro34/base/text.h"
#include "hedro34/runtime/thread_faults.h"

#if defined(HEDRO34_TRANSLATES_FAULTS) && defined(_WIN32)
#include "hedro34/runtime/active_trap_guarded_windows.h"
#else
#include "hedro34/runtime/active_trap_listed.h"
#endif

namespace hedro34 {

// After a stack overflow, once the stack is free again: makes its end stop the next one. Nothing where it does so by itself.
// False when the system did not do it, as closer to the end than it wants; further out it may.
bool restore_end_of_stack() noexcept;

// Makes the thread's prepared failure; allocates.
void make_fault_failure();

// Releases it.
void drop_fault_failure() noexcept;

// Throws the prepared failure, without allocating as long as there is one. `source` is static text.
[[noreturn]] void raise_fault(std::int32_t number, StringView description, StringView source);

}  // namespace hedro34
