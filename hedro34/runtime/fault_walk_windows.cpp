#include "hedro34/runtime/fault_walk_windows.h"

#include "hedro34/runtime/fault_support.h"

#ifdef HEDRO34_TRANSLATES_FAULTS

#include <cstring>

#include "hedro34/runtime/hidden_traps.h"

namespace hedro34 {
namespace {

bool is_code(std::uintptr_t address) {
  MEMORY_BASIC_INFORMATION memory = {};
  return VirtualQuery(reinterpret_cast<const void*>(address), &memory, sizeof memory) != 0 &&
         memory.State == MEM_COMMIT && memory.Type == MEM_IMAGE;
}

// libgcc's probe of a large frame has no unwind data, and has pushed two registers when it meets the end of the stack.
bool is_stack_probe(std::uintptr_t address) {
  constexpr unsigned char probe[] = {0x48, 0x83, 0x09, 0x00};  // orq $0, (%rcx); without the first byte orl $0, (%ecx)
  constexpr std::size_t skipped = sizeof(void*) == 8 ? 0 : 1;
  return is_code(address) &&
         std::memcmp(reinterpret_cast<const void*>(address), probe + skipped, sizeof probe - skipped) == 0;
}

}  // namespace

std::uintptr_t word_at(std::uintptr_t address) noexcept {
  std::uintptr_t result = 0;
  std::memcpy(&result, reinterpret_cast<const void*>(address), sizeof result);
  return result;
}

std::uintptr_t slot_of_caller(std::uintptr_t instruction, std::uintptr_t stack_pointer) noexcept {
  return stack_pointer + (is_stack_probe(instruction) ? 2 * sizeof(std::uintptr_t) : 0);
}

bool is_hidden(const ActiveTrap& trap) noexcept {
  const void* const from = faults_of_thread.hidden;
  return from != nullptr && static_cast<const void*>(&trap) >= from;
}

}  // namespace hedro34

#endif
