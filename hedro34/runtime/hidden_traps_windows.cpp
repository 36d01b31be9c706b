#include "hedro34/runtime/hidden_traps.h"

#include <utility>

#include "hedro34/runtime/fault_trap.h"

namespace hedro34 {

HiddenTraps::HiddenTraps() noexcept : former_(std::exchange(faults_of_thread.hidden, this)) {}
HiddenTraps::~HiddenTraps() { faults_of_thread.hidden = static_cast<const HiddenTraps*>(former_); }

#if !(defined(HEDRO34_TRANSLATES_FAULTS) && defined(__i386__))  // there it takes a guard: fault_walk32_windows.cpp
void call_foreign(void (*called)(void*), void* context) { called(context); }
#endif

}  // namespace hedro34
