// The registers that a call keeps.
#pragma once

#include <array>
#include <cstdint>

namespace hedro34 {

// As a frame has them at its present instruction: ebx, ebp, esi, edi.
using KeptRegisters = std::array<std::uintptr_t, 4>;

// Their numbers in unwind tables.
inline constexpr KeptRegisters numbers_of_kept = {3, 5, 6, 7};

}  // namespace hedro34
