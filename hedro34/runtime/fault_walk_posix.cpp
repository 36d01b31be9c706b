#include "hedro34/runtime/fault_walk_posix.h"

#ifdef HEDRO34_TRANSLATES_FAULTS

#include <unwind.h>

#include <cstring>
#include <utility>

#include "hedro34/runtime/fault_frames.h"

namespace hedro34 {
namespace {

// The registers that a call keeps, by their numbers in unwind tables and in a context.
constexpr std::array<std::pair<int, int>, std::tuple_size_v<KeptRegisters>> kept_registers = {
    {{3, REG_RBX}, {6, REG_RBP}, {12, REG_R12}, {13, REG_R13}, {14, REG_R14}, {15, REG_R15}}};

// The frames of the present thread, from the one that stands at the faulting instruction.
class Walk {
 public:
  Walk(FaultSearch& search, std::uintptr_t fault_instruction) : search_(search), fault_instruction_(fault_instruction) {
    _Unwind_Backtrace([](_Unwind_Context* frame, void* walk) { return static_cast<Walk*>(walk)->step(frame); }, this);
  }

 private:
  _Unwind_Reason_Code step(_Unwind_Context* context) {
    int at_instruction = 0;
    const std::uintptr_t instruction = _Unwind_GetIPInfo(context, &at_instruction);
    if (!begun_) begun_ = at_instruction != 0 && instruction == fault_instruction_;
    if (!begun_) return _URC_NO_REASON;
    const StackFrame frame = {.stack_pointer = _Unwind_GetCFA(context),
                              .instruction = instruction - (at_instruction == 0 ? 1 : 0),
                              .function = _Unwind_GetRegionStart(context),
                              .table = _Unwind_GetLanguageSpecificData(context),
                              .return_address = instruction};
    const bool goes_on = search_.step(frame, [&](KeptRegisters& kept) {
      for (std::size_t i = 0; i < kept.size(); ++i) kept[i] = _Unwind_GetGR(context, kept_registers[i].first);
    });
    return goes_on ? _URC_NO_REASON : _URC_END_OF_STACK;
  }

  FaultSearch& search_;
  std::uintptr_t fault_instruction_;
  bool begun_ = false;  // beyond the frames of the handler
};

bool has_table(std::uintptr_t instruction) {
  return _Unwind_FindEnclosingFunction(reinterpret_cast<void*>(instruction + 1)) != nullptr;
}

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
  if (search.can_begin()) Walk(search, fault_instruction);
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
    registers[kept_registers[i].second] = static_cast<greg_t>(place.kept[i]);
  }
  constexpr greg_t modes = 0x40500;  // alignment check, direction, single step
  registers[REG_EFL] &= ~modes;
  return Departure::AtCall;
}

}  // namespace hedro34

#endif
