#include "hedro34/runtime/fault_frames.h"

#ifdef HEDRO34_FAULT_SIGNALS

#include <unwind.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "hedro34/runtime/fault_thread.h"
#include "hedro34/runtime/fault_trap.h"

namespace hedro34 {
namespace {

// What a failure and its report are left of a stack that has run full: a quarter of it within these bounds.
constexpr std::uintptr_t least_left = 24 * 1024;
constexpr std::uintptr_t most_left = 64 * 1024;

// What happens to a failure that comes out of a frame at its present instruction.
enum class Passage {
  Ends,    // the process ends: the frame's table does not list the instruction
  Free,    // goes on, perhaps after destructors
  Caught,  // a handler may catch it
};

// Reader of a frame's table of call sites, in the two encodings that compilers use.
class Table {
 public:
  explicit Table(const void* at) : at_(static_cast<const std::uint8_t*>(at)) {}

  const std::uint8_t* at() const { return at_; }
  std::uint8_t byte() { return *at_++; }

  std::uintptr_t leb128() {
    std::uintptr_t value = 0;
    for (unsigned shift = 0;; shift += 7) {
      const std::uintptr_t next = byte();
      value |= (next & 0x7F) << shift;
      if ((next & 0x80) == 0) return value;
    }
  }

  std::uintptr_t number(std::uint8_t encoding) {
    if (encoding == encoding_leb128) return leb128();
    std::uint32_t value = 0;
    std::memcpy(&value, at_, sizeof value);
    at_ += sizeof value;
    return value;
  }

  static constexpr std::uint8_t omitted = 0xFF;
  static constexpr std::uint8_t encoding_leb128 = 0x01;
  static constexpr std::uint8_t encoding_four_bytes = 0x03;

 private:
  const std::uint8_t* at_;
};

Passage passage(_Unwind_Context* frame) {
  const void* const data = _Unwind_GetLanguageSpecificData(frame);
  if (data == nullptr) return Passage::Free;
  int at_instruction = 0;
  const std::uintptr_t return_address = _Unwind_GetIPInfo(frame, &at_instruction);
  const std::uintptr_t offset = return_address - (at_instruction == 0 ? 1 : 0) - _Unwind_GetRegionStart(frame);
  Table table(data);
  // A start of its own for handlers: no table of these compilers.
  if (table.byte() != Table::omitted) return Passage::Free;
  if (table.byte() != Table::omitted) table.leb128();
  const std::uint8_t encoding = table.byte();
  if (encoding != Table::encoding_leb128 && encoding != Table::encoding_four_bytes) return Passage::Free;
  const std::uintptr_t size = table.leb128();
  const std::uint8_t* const end = table.at() + size;
  while (table.at() < end) {
    const std::uintptr_t start = table.number(encoding);
    const std::uintptr_t length = table.number(encoding);
    table.number(encoding);  // where the handler is
    const std::uintptr_t action = table.leb128();
    if (offset < start) break;
    if (offset < start + length) return action == 0 ? Passage::Free : Passage::Caught;
  }
  return Passage::Ends;
}

// The registers that a call keeps, by their numbers in unwind tables and in a context.
constexpr std::array<std::pair<int, int>, 6> kept_registers = {
    {{3, REG_RBX}, {6, REG_RBP}, {12, REG_R12}, {13, REG_R13}, {14, REG_R14}, {15, REG_R15}}};

struct Frame {
  std::uintptr_t stack_pointer = 0;  // 0: none
  std::uintptr_t instruction = 0;
  std::array<std::uintptr_t, kept_registers.size()> kept = {};

  explicit operator bool() const { return stack_pointer != 0; }
};

std::uintptr_t address_of(const ActiveTrap* trap) { return reinterpret_cast<std::uintptr_t>(trap); }

class Search {
 public:
  Search(std::uintptr_t instruction, std::uintptr_t stack_pointer, bool stack_overflow)
      : fault_instruction_(instruction), fault_stack_(stack_pointer), wanted_(stack_pointer), needed_(stack_pointer) {
    if (stack_overflow) {
      const Stack stack = stack_of_this_thread();
      const std::uintptr_t end = std::max(stack_pointer, stack.low);  // a large frame reaches out beyond the end
      wanted_ = end + std::clamp((stack.high - stack.low) / 4, least_left, most_left);
      needed_ = end + least_left;
    }
    catching_ = catching_trap();
    if (catching_ < wanted_) wanted_ = needed_;
  }

  void run() {
    if (catching_ == 0) return;
    _Unwind_Backtrace([](_Unwind_Context* frame, void* search) { return static_cast<Search*>(search)->step(frame); },
                      this);
    if (!found_) found_ = last_;
    if (!reached_) found_ = {};
  }

  const Frame& found() const { return found_; }
  bool at_instruction() const {
    return found_.stack_pointer == fault_stack_ && found_.instruction == fault_instruction_;
  }

 private:
  // The innermost trap with the space that is wanted. One inside it that has what is needed is better where the former
  // would report nothing, and is all there is where no trap has more.
  std::uintptr_t catching_trap() const {
    std::uintptr_t second = 0;
    for (const ActiveTrap* trap = faults_of_thread.innermost; trap != nullptr; trap = trap->outer()) {
      const std::uintptr_t at = address_of(trap);
      if (at < needed_) continue;
      if (second == 0 || trap->reports()) second = at;
      if (at >= wanted_) break;
    }
    return second;
  }

  _Unwind_Reason_Code step(_Unwind_Context* frame) {
    int at_instruction = 0;
    const std::uintptr_t instruction = _Unwind_GetIPInfo(frame, &at_instruction);
    if (!begun_) begun_ = at_instruction != 0 && instruction == fault_instruction_;
    if (!begun_) return _URC_NO_REASON;
    const std::uintptr_t stack_pointer = _Unwind_GetCFA(frame);
    if (stack_pointer > catching_) {
      reached_ = true;
      return _URC_END_OF_STACK;
    }
    const Passage way = passage(frame);
    if (way == Passage::Ends) {
      if (!may_be_caught_) found_ = last_ = {};
      return _URC_NO_REASON;
    }
    if (!found_) {
      last_.stack_pointer = stack_pointer;
      last_.instruction = instruction;
      for (std::size_t i = 0; i < kept_registers.size(); ++i) {
        last_.kept[i] = _Unwind_GetGR(frame, kept_registers[i].first);
      }
      if (stack_pointer >= wanted_) found_ = last_;
    }
    if (found_ && way == Passage::Caught) may_be_caught_ = true;
    return _URC_NO_REASON;
  }

  std::uintptr_t fault_instruction_;
  std::uintptr_t fault_stack_;
  std::uintptr_t wanted_;  // what the stack pointers of trap and frame should be at least
  std::uintptr_t needed_;  // and have to be
  std::uintptr_t catching_ = 0;
  bool begun_ = false;  // beyond the frames of the handler
  bool may_be_caught_ = false;
  bool reached_ = false;
  Frame found_;
  Frame last_;
};

bool has_table(std::uintptr_t instruction) {
  return _Unwind_FindEnclosingFunction(reinterpret_cast<void*>(instruction + 1)) != nullptr;
}

// Takes a call to nowhere back: the caller stands at its call instruction again. False when the stack shows no caller.
bool stand_at_caller(greg_t* registers) {
  const auto stack_pointer = static_cast<std::uintptr_t>(registers[REG_RSP]);
  if (stack_pointer % sizeof(std::uintptr_t) != 0 || stack_pointer >= address_of(faults_of_thread.innermost))
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

  Search search(static_cast<std::uintptr_t>(registers[REG_RIP]), static_cast<std::uintptr_t>(registers[REG_RSP]),
                stack_overflow);
  search.run();
  const Frame& frame = search.found();
  if (!frame) {
    registers[REG_RIP] = instruction;
    registers[REG_RSP] = stack_pointer;
    return Departure::Nowhere;
  }
  if (search.at_instruction()) return Departure::AtInstruction;

  const std::uintptr_t return_slot = frame.stack_pointer - sizeof(std::uintptr_t);
  std::memcpy(reinterpret_cast<void*>(return_slot), &frame.instruction, sizeof frame.instruction);
  registers[REG_RSP] = static_cast<greg_t>(return_slot);
  registers[REG_RIP] = reinterpret_cast<greg_t>(thrower);
  for (std::size_t i = 0; i < kept_registers.size(); ++i) {
    registers[kept_registers[i].second] = static_cast<greg_t>(frame.kept[i]);
  }
  constexpr greg_t modes = 0x40500;  // alignment check, direction, single step
  registers[REG_EFL] &= ~modes;
  return Departure::AtCall;
}

}  // namespace hedro34

#endif
