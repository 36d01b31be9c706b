// Native faults as the operating system tells of them: by signals that a thread raises by its own instruction, or by the frame
// handlers of the guards around the traps. They become records for the filter, which throws; the failure then leaves the
// faulting instruction like an exception. Where the build does not translate them nothing is installed.
#pragma once

#include "hedro34/runtime/modvbCodeShieldSupport.h"

namespace hedro34 {

// Called on the thread of a fault, with a trap of the library active there. It has to throw.
using FaultFilter = void (*)(const EXCEPTION_POINTERS&);

// The filter of the process, which the first call decides, and the calling thread's own preparations: a stack for what has to
// be done when its own has run full, the bounds of its stack, a failure in reserve. A thread calls it once; False when
// memory was gone and another call is wanted.
bool set_fault_filter(FaultFilter filter) noexcept;

// Whether `set_fault_filter` installs anything in this build.
bool fault_filter_supported() noexcept;

}  // namespace hedro34
