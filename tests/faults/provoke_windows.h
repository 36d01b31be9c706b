// A frame of a host that looks into faults itself, in the system's own way.
#pragma once

#include "tests/faults/provoke.h"

namespace hedro34::testing {

// Runs the deed in such a frame, which leaves it when it faults; gives the code of the fault, 0 for none. The handler may fault
// itself, once; the fault inside a fault is then the host's as well.
std::uint32_t in_host_frame(void (*deed)(), bool with_faulting_handler = false);

#ifdef __i386__
// Runs the deed, unless it is null, and faults, in a frame that tells an unwinder nothing.
void in_bare_frame(void (*deed)());
#endif

// Whether the host's filter for exceptions that nobody handles is still in place.
bool has_filter_of_host();

}  // namespace hedro34::testing
