// Which fault an exception of the system tells of.
#pragma once

#include <windows.h>

#include <cstdint>

namespace hedro34 {

// Whether the code is the system's own, of an error or a warning: not an application's, as those of C++ exceptions of whatever
// compiler are, and not a message to a debugger.
constexpr bool is_fault(DWORD code) noexcept { return (code & 0xA0000000) == 0x80000000; }

// The code of the last record in the chain, as the system names it; but for a privileged instruction and a denormal operand,
// which Wine names like others, and for several faults of the floating-point unit at once, of which the first is given.
std::uint32_t code_of_fault(const ::EXCEPTION_RECORD& last, const CONTEXT& context) noexcept;

}  // namespace hedro34
