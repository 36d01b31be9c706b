#include "hedro34/runtime/fault_walk_posix.h"

#ifdef HEDRO34_TRANSLATES_FAULTS

#include <cstring>

#include "hedro34/runtime/fault_backtrace.h"

namespace hedro34 {
namespace {

constexpr std::array<int, std::tuple_size_v<KeptRegisters>> kept_registers = {REG_RBX, REG_RBP, REG_R12,
                                                                              REG_R13, REG_R14, REG_R15};

// Takes a call to nowhere back: the caller stands at its call instruction again. False when the stack shows no caller.
bool stand_at_caller(greg_t* registers) {
  const auto stack_pointer = static_cast<std::uintptr_t>(registers[REG_RSP]);
  if (stack_pointer % sizeof(std::uintptr_t) != 0 ||
      stack_pointer >= reinterpret_cast<std::uintptr_t>(faults_of_thread.innermost))
    return false;
  std::uintptr_t return_address = 0;
  std::memcpy(&return_address, reinterpret_cast<const void*>(stack_pointer), sizeof return_address);
  if (!has_table(return_address - 1)) return false;
  registers[REG_RIP] = static_cast<greg_t>(return_address - 1);
  registers[REG_RSP] += static_cast<greg_t>(sizeof return_address);
  return true;
}

}  // namespace

Departure depart(ucontext_t& context, bool stack_overflow, void (*thrower)(std::uint32_t, void*)) noexcept {
  greg_t* const registers = context.uc_mcontext.gregs;
  const greg_t instruction = registers[REG_RIP];
  const greg_t stack_pointer = registers[REG_RSP];
  if (!has_table(static_cast<std::uintptr_t>(instruction)) && !stand_at_caller(registers)) return Departure::Nowhere;

  const auto fault_stack = static_cast<std::uintptr_t>(registers[REG_RSP]);
  const auto fault_instruction = static_cast<std::uintptr_t>(registers[REG_RIP]);
  FaultSearch search(faults_of_thread.innermost, fault_stack, stack_overflow);
  if (search.can_begin()) walk_by_tables(search, fault_instruction);
  const Place place = search.found();
  if (!place) {
    registers[REG_RIP] = instruction;
    registers[REG_RSP] = stack_pointer;
    return Departure::Nowhere;
  }
  if (place.stack_pointer == fault_stack && place.return_address == fault_instruction) return Departure::AtInstruction;

  const std::uintptr_t return_slot = place.stack_pointer - sizeof(std::uintptr_t);
  std::memcpy(reinterpret_cast<void*>(return_slot), &place.return_address, sizeof place.return_address);
  registers[REG_RSP] = static_cast<greg_t>(return_slot);
  registers[REG_RIP] = reinterpret_cast<greg_t>(thrower);
  for (std::size_t i = 0; i < place.kept.size(); ++i) {
    registers[kept_registers[i]] = static_cast<greg_t>(place.kept[i]);
  }
  constexpr greg_t modes = 0x40500;  // alignment check, direction, single step
  registers[REG_EFL] &= ~modes;
  return Departure::AtCall;
}

}  // namespace hedro34

#endif
