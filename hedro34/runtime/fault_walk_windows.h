// Takes a fault to where it can leave the stack as a failure, and the entries in assembly that this needs.
#pragma once

#include <windows.h>

#include "hedro34/runtime/fault_trap.h"

namespace hedro34 {

// Looks for the place, as `FaultSearch` says, with `innermost` the trap whose guard met the fault, and changes the context so
// that going on with it throws from there: `hedro34_throw_fault` is entered with the two arguments. A call to where there is
// no code counts as a fault of the caller. False when there is no such place; the context is as it was.
bool depart(CONTEXT& context, ActiveTrap& innermost, bool stack_overflow, DWORD code, const void* address) noexcept;

// The trap whose guard stands in a frame.
ActiveTrap* trap_of_guard(const void* frame) noexcept;

// Throws the fault; to be called with unwind data that lead to the place.
extern "C" [[noreturn]] void hedro34_raise_fault(DWORD code, const void* address);

// Entered by `depart`.
extern "C" void hedro34_throw_fault();

}  // namespace hedro34
