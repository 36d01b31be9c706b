// Which fault a signal tells of.
#pragma once

#include "hedro34/runtime/fault_support.h"

#ifdef HEDRO34_TRANSLATES_FAULTS

#include <signal.h>
#include <ucontext.h>

#include <cstdint>

namespace hedro34 {

// Whether the signal comes from the thread's own instruction, and not from `kill` or from the memory hardware.
bool is_fault(const siginfo_t& signal) noexcept;

// The code in the table of exceptions. A stack overflow is told apart by the thread that knows its stack (fault_thread_posix.h).
// The processor reports a privileged instruction like an address that cannot exist; the instruction itself decides.
std::uint32_t exception_code(const siginfo_t& signal, const ucontext_t& context) noexcept;

}  // namespace hedro34

#endif
