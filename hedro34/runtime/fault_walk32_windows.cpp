#include "hedro34/runtime/fault_walk_windows.h"

#include "hedro34/runtime/fault_support.h"

#if defined(HEDRO34_TRANSLATES_FAULTS) && defined(__i386__)

#include <cstring>

#include "hedro34/runtime/fault_backtrace.h"
#include "hedro34/runtime/hidden_traps.h"

namespace {

// What `hedro34_at_fault` leads the unwinder to, in the order that its unwind data say.
struct Registers {
  DWORD instruction, stack_pointer, ebx, ebp, esi, edi;
};

}  // namespace

extern "C" void hedro34_at_fault(const Registers* registers, void (*called)(void*), void* argument);
extern "C" void hedro34_leave_frames(hedro34::FrameHandler* up_to, ::EXCEPTION_RECORD* record);
extern "C" char hedro34_behind_body;

namespace hedro34 {

class Guard {
 public:
  static FrameHandler& handler(ActiveTrap& trap) noexcept { return trap.entry_.handler; }
  static const GuardEntry& entry(const ActiveTrap& trap) noexcept { return trap.entry_; }
  static void set_outer(ActiveTrap& trap, const ActiveTrap* outer) noexcept { trap.outer_ = outer; }
};

namespace {

constexpr DWORD word = sizeof(DWORD);

// Takes a call to where the unwinder knows no function back: the caller stands at its call instruction again. Where the stack
// shows no caller, the registers stay.
void stand_at_caller(Registers& registers, const ActiveTrap& innermost) {
  if (has_table(registers.instruction)) return;
  const DWORD slot = slot_of_caller(registers.instruction, registers.stack_pointer);
  if (slot % word != 0 || slot >= reinterpret_cast<DWORD>(&innermost)) return;
  const DWORD instruction = word_at(slot) - 1;
  if (!has_table(instruction)) return;
  registers.instruction = instruction;
  registers.stack_pointer = slot + word;
}

// Links the traps from the given one outwards, as far as they are to be seen.
void link_traps(ActiveTrap& innermost) {
  ActiveTrap* last = &innermost;
  constexpr auto end = ~std::uintptr_t{};
  for (FrameHandler* at = Guard::handler(innermost).next; reinterpret_cast<std::uintptr_t>(at) != end; at = at->next) {
    if (at->handler != hedro34_on_exception) continue;
    ActiveTrap* const trap = trap_of_guard(at);
    if (is_hidden(*trap)) return;
    Guard::set_outer(*last, trap);
    last = trap;
  }
}

Registers at_call_of(const GuardEntry& guard) {
  return {reinterpret_cast<DWORD>(&hedro34_behind_body) - 1, reinterpret_cast<DWORD>(guard.stack), 0, 0, 0, 0};
}

// Where the unwinder reaches the trap that is to catch, from the given registers outwards.
Registers find_place_from(const Registers& start, FaultSearch search) {
  if (!has_table(start.instruction)) return {};
  struct Walk {
    FaultSearch& search;
    DWORD instruction;
  } walk = {search, start.instruction};
  const auto run = [](void* argument) {
    const Walk& to_run = *static_cast<Walk*>(argument);
    walk_by_tables(to_run.search, to_run.instruction);
  };
  hedro34_at_fault(&start, run, &walk);
  const Place place = search.found();
  if (!place) return {};
  const bool at_start = place.stack_pointer == start.stack_pointer && place.return_address == start.instruction;
  return {place.return_address - (at_start ? 0 : 1),
          place.stack_pointer,
          place.kept[0],
          place.kept[1],
          place.kept[2],
          place.kept[3]};
}

int on_foreign_exception(void*, void*, void*, void*) { return ExceptionContinueSearch; }

// The innermost frame from which the unwinder reaches a trap: from the fault, from the innermost call of a host that it reaches
// one from, and at last the guard of that trap itself.
Registers find_place(const Registers& fault, ActiveTrap& innermost, bool stack_overflow) {
  const FaultSearch search(&innermost, fault.stack_pointer, stack_overflow);
  if (!search.can_begin()) return {};
  Registers place = find_place_from(fault, search);
  for (FrameHandler* at = first_frame_handler(); at != &Guard::handler(innermost); at = at->next) {
    if (place.stack_pointer != 0) break;
    if (at->handler != on_foreign_exception) continue;
    place = find_place_from(at_call_of(*reinterpret_cast<const GuardEntry*>(at)), search);
  }
  if (place.stack_pointer != 0) return place;
  return at_call_of(Guard::entry(*reinterpret_cast<const ActiveTrap*>(search.catching_trap())));
}

void restore_float_modes(const CONTEXT& context) {
  const auto has = [&](DWORD part) { return (context.ContextFlags & part) == part; };
  if (has(CONTEXT_FLOATING_POINT)) {
    const auto modes = static_cast<std::uint16_t>(context.FloatSave.ControlWord);
    asm volatile("fninit; fldcw %0" : : "m"(modes));
  }
  if (has(CONTEXT_EXTENDED_REGISTERS)) {
    constexpr DWORD flags = 0x3F;
    DWORD modes = 0;
    std::memcpy(&modes, context.ExtendedRegisters + 24, sizeof modes);
    modes &= ~flags;
    asm volatile("ldmxcsr %0" : : "m"(modes));
  }
}

class ForeignCall {
 public:
  ForeignCall() noexcept : entry_(on_foreign_exception) {}
  ~ForeignCall() { entry_.leave(); }
  ForeignCall(const ForeignCall&) = delete;
  ForeignCall& operator=(const ForeignCall&) = delete;

  void run(void (*called)(void*), void* context) { hedro34_run_guarded(called, context, &entry_); }

 private:
  GuardEntry entry_;
};

}  // namespace

void call_foreign(void (*called)(void*), void* context) { ForeignCall().run(called, context); }

ActiveTrap* trap_of_guard(void* frame) noexcept { return static_cast<ActiveTrap*>(frame); }

bool depart(CONTEXT& context, ActiveTrap& innermost, bool stack_overflow, DWORD code, const void* address) noexcept {
  Guard::set_outer(innermost, nullptr);
  if (stack_overflow) link_traps(innermost);
  Registers fault = {context.Eip, context.Esp, context.Ebx, context.Ebp, context.Esi, context.Edi};
  stand_at_caller(fault, innermost);
  const Registers place = find_place(fault, innermost, stack_overflow);
  if (place.stack_pointer == 0) return false;
  context.Eip = place.instruction;
  context.Esp = place.stack_pointer;
  context.Ebx = place.ebx;
  context.Ebp = place.ebp;
  context.Esi = place.esi;
  context.Edi = place.edi;
  context.Ecx = code;
  context.Edx = reinterpret_cast<DWORD>(address);
  return true;
}

// The handlers of a host's frames inside the guard hear that they are left. The throw is made from here: the unwinder goes on
// at the place, whatever lies between.
void go_on(CONTEXT& context, ActiveTrap& innermost, ::EXCEPTION_RECORD& record) {
  const Registers place = {context.Eip, context.Esp, context.Ebx, context.Ebp, context.Esi, context.Edi};
  hedro34_leave_frames(&Guard::handler(innermost), &record);
  FrameHandler* first = &Guard::handler(innermost);
  while (reinterpret_cast<DWORD>(first) < place.stack_pointer) first = first->next;
  set_first_frame_handler(first);
  restore_float_modes(context);
  const auto raise = [](void* argument) {
    const auto& fault = *static_cast<const CONTEXT*>(argument);
    raise_fault_of_system(fault.Ecx, reinterpret_cast<const void*>(fault.Edx));
  };
  hedro34_at_fault(&place, raise, &context);
  __builtin_unreachable();
}

}  // namespace hedro34

#endif
