// The table of call sites that g++ writes for a function with destructors or handlers: what happens to a failure that comes
// out of an instruction.
#pragma once

#include <cstdint>

namespace hedro34 {

// What happens to a failure that comes out of a frame at its present instruction.
enum class Passage {
  Ends,    // the process ends: the frame's table does not list the instruction
  Free,    // goes on, perhaps after destructors
  Caught,  // a handler may catch it
};

struct CallSite {
  Passage passage = Passage::Free;
  std::uintptr_t start = 0;  // from the function's own; with `length` 0 for an instruction that is not listed
  std::uintptr_t length = 0;
};

// The entry for the instruction at such an offset from the function's start. `table` is the frame's language-specific data;
// null, and one of another compiler, lets everything pass.
CallSite call_site(const void* table, std::uintptr_t offset) noexcept;

}  // namespace hedro34
