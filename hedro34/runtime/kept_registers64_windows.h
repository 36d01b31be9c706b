// The registers that a call keeps.
#pragma once

#include <array>
#include <cstdint>

namespace hedro34 {

// As a frame has them at its present instruction: rbx, rbp, rsi, rdi, r12 to r15, and then xmm6 to xmm15, each in two.
using KeptRegisters = std::array<std::uintptr_t, 28>;

}  // namespace hedro34
