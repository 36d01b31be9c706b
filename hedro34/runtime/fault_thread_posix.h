// What a thread knows of its stack where the system does not say that one has run full.
#pragma once

#include <cstdint>

namespace hedro34 {

// Whether an invalid address, with the stack pointer of that moment, means that the thread's stack has run full.
bool is_stack_overflow(std::uintptr_t address, std::uintptr_t stack_pointer) noexcept;

}  // namespace hedro34
