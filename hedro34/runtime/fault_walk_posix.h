// Takes a fault of a signal handler to where it can leave the stack as a failure.
#pragma once

#include "hedro34/runtime/fault_support.h"

#ifdef HEDRO34_TRANSLATES_FAULTS

#include <ucontext.h>

#include <cstdint>

namespace hedro34 {

enum class Departure {
  Nowhere,        // no way from here to an active trap: the fault is not ours
  AtInstruction,  // the faulting instruction itself can throw
  AtCall,         // the context was changed to the call of a frame further out, whose callee can throw
};

// Looks for the place, as `FaultSearch` says, and changes the context of the fault so that the frames inside it are skipped. A
// call to where there is no code is taken back first: the fault is then at that call.
// With `AtCall`, returning to the context enters `thrower` with the two arguments, as if that frame had called it.
Departure depart(ucontext_t& context, bool stack_overflow, void (*thrower)(std::uint32_t, void*)) noexcept;

}  // namespace hedro34

#endif
