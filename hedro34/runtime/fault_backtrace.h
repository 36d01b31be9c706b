// The walk over the frames of a fault where g++'s own unwinder reads the tables of functions.
#pragma once

#include "hedro34/runtime/fault_frames.h"

#if defined(HEDRO34_TRANSLATES_FAULTS) && !(defined(_WIN32) && defined(__x86_64__))
#define HEDRO34_UNWINDS_BY_TABLES 1

namespace hedro34 {

// Whether the unwinder knows the function of an instruction.
bool has_table(std::uintptr_t instruction) noexcept;

// Shows the search the frames from the one that stands at the faulting instruction. To be called where the unwinder comes to
// that frame: in a handler of signals, or as `hedro34_at_fault` does.
void walk_by_tables(FaultSearch& search, std::uintptr_t fault_instruction) noexcept;

}  // namespace hedro34

#endif
