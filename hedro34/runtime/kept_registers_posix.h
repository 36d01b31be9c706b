// The registers that a call keeps.
#pragma once

#include <array>
#include <cstdint>

namespace hedro34 {

// As a frame has them at its present instruction: rbx, rbp, r12 to r15.
using KeptRegisters = std::array<std::uintptr_t, 6>;

// Their numbers in unwind tables.
inline constexpr KeptRegisters numbers_of_kept = {3, 6, 12, 13, 14, 15};

}  // namespace hedro34
