// What an instruction of the x86 processors is, where the report of its fault does not say so.
#pragma once

namespace hedro34 {

// Whether only the system may execute the instruction at this address, which can be read.
bool is_privileged(const void* address) noexcept;

}  // namespace hedro34
