#include "hedro34/runtime/hidden_traps.h"

#include <utility>

#include "hedro34/runtime/fault_trap.h"

namespace hedro34 {

HiddenTraps::HiddenTraps() noexcept : former_(std::exchange(faults_of_thread.innermost, nullptr)) {}
HiddenTraps::~HiddenTraps() { faults_of_thread.innermost = static_cast<const ActiveTrap*>(former_); }

void call_foreign(void (*called)(void*), void* context) { called(context); }

}  // namespace hedro34
