// Where a fault can leave the stack as a failure: not every frame at the place of a fault can be unwound.
#pragma once

#include "hedro34/runtime/fault_support.h"

#ifdef HEDRO34_FAULT_SIGNALS

#include <ucontext.h>

#include <cstdint>

namespace hedro34 {

enum class Departure {
  Nowhere,        // no way from here to an active trap: the fault is not ours
  AtInstruction,  // the faulting instruction itself can throw
  AtCall,         // the context was changed to the call of a frame further out, whose callee can throw
};

// Looks for the innermost frame from which a failure reaches an active trap, and changes the context of the fault so that the
// frames inside it are skipped. Skipped, without their destructors:
// (a) frames that would end the process, as they admit no failure: noexcept ones, and such as were compiled without the flags
//     when they fault themselves;
// (b) after a stack overflow those at its end, where no space is left to work: 64 KiB, less on a small stack, never below
//     24 KiB. Traps in there are skipped as well. A trap that reports is preferred to one around it that does not.
// A call to where there is no code is taken back first: the fault is then at that call.
// With `AtCall`, returning to the context enters `thrower` with the two arguments, as if that frame had called it.
Departure depart(ucontext_t& context, bool stack_overflow, void (*thrower)(std::uint32_t, void*)) noexcept;

}  // namespace hedro34

#endif
