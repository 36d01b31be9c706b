// Takes a fault to where it can leave the stack as a failure, and the entries in assembly that this needs.
#pragma once

#include <windows.h>

#include <cstdint>

#include "hedro34/runtime/fault_trap.h"

namespace hedro34 {

// Looks for the place, as `FaultSearch` says, with `innermost` the trap whose guard met the fault, and changes the context so
// that `go_on` throws the fault from there. A call to where there is no code counts as a fault of the caller. False when there
// is no such place; the context is as it was.
bool depart(CONTEXT& context, ActiveTrap& innermost, bool stack_overflow, DWORD code, const void* address) noexcept;

// Leaves the handler for where `depart` decided. The code there finds its own modes of the floating-point unit, without the flags
// of the fault, which would come up once more.
[[noreturn]] void go_on(CONTEXT& context, ActiveTrap& innermost, ::EXCEPTION_RECORD& record);

// The trap whose guard stands in a frame.
ActiveTrap* trap_of_guard(void* frame) noexcept;

// Whether the trap is one that a call of a host's code hides (hidden_traps.h).
bool is_hidden(const ActiveTrap& trap) noexcept;

// Where a function without unwind data has its return address, when it stands at the instruction with that stack pointer.
std::uintptr_t slot_of_caller(std::uintptr_t instruction, std::uintptr_t stack_pointer) noexcept;

// What stands there.
std::uintptr_t word_at(std::uintptr_t address) noexcept;

// Throws the fault; to be called with unwind data that lead to the place.
[[noreturn]] void raise_fault_of_system(DWORD code, const void* address);

}  // namespace hedro34
