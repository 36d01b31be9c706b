#include "hedro34/runtime/fault_walk_windows.h"

#include "hedro34/runtime/fault_support.h"

#if defined(HEDRO34_TRANSLATES_FAULTS) && defined(__x86_64__)

#include <algorithm>
#include <cstring>

#include "hedro34/runtime/fault_frames.h"
#include "hedro34/runtime/fault_table.h"

extern "C" void hedro34_throw_fault();
extern "C" [[noreturn]] void hedro34_raise_fault(DWORD code, const void* address) {
  hedro34::raise_fault_of_system(code, address);
}

namespace hedro34 {

class Guard {
 public:
  static void set_outer(ActiveTrap& trap, const ActiveTrap* outer) noexcept { trap.outer_ = outer; }
};

namespace {

constexpr DWORD64 word = sizeof(DWORD64);

constexpr DWORD64 CONTEXT::*kept_whole[] = {&CONTEXT::Rbx, &CONTEXT::Rbp, &CONTEXT::Rsi, &CONTEXT::Rdi,
                                            &CONTEXT::R12, &CONTEXT::R13, &CONTEXT::R14, &CONTEXT::R15};
constexpr std::size_t first_kept_vector = 6;
constexpr std::size_t kept_vectors = 10;

void keep(KeptRegisters& kept, const CONTEXT& context) {
  std::size_t next = 0;
  for (const auto whole : kept_whole) kept[next++] = context.*whole;
  std::memcpy(&kept[next], &context.FltSave.XmmRegisters[first_kept_vector], kept_vectors * sizeof(M128A));
}

void put_back(CONTEXT& context, const KeptRegisters& kept) {
  std::size_t next = 0;
  for (const auto whole : kept_whole) context.*whole = kept[next++];
  std::memcpy(&context.FltSave.XmmRegisters[first_kept_vector], &kept[next], kept_vectors * sizeof(M128A));
}

// The walk from the fault outwards, as the system's own dispatcher goes.
class Walk {
 public:
  explicit Walk(const CONTEXT& fault) : context_(fault), high_(stack_base()) { look(); }

  bool at_end() const { return ended_; }
  const CONTEXT& context() const { return context_; }
  bool has_table() const { return entry_ != nullptr; }
  DWORD64 function() const { return entry_ == nullptr ? 0 : base_ + entry_->BeginAddress; }
  const void* table() const { return table_; }
  const CONTEXT& outer() const { return outer_; }

  void step() {
    context_ = outer_;
    ended_ = context_.Rip == 0 || context_.Rsp >= high_ || context_.Rsp % word != 0;
    if (!ended_) look();
  }

  // Whether a frame that returns to this address would be unwound from there as the present one is from where it stands.
  bool unwinds_alike(DWORD64 address) const {
    DWORD64 base = 0;
    if (RtlLookupFunctionEntry(address, &base, nullptr) != entry_) return false;
    CONTEXT outer = context_;
    void* const table = unwind(outer, address, base, entry_);
    KeptRegisters here, there;
    keep(here, outer_);
    keep(there, outer);
    return table == table_ && outer.Rip == outer_.Rip && outer.Rsp == outer_.Rsp && here == there;
  }

 private:
  static DWORD64 stack_base() {
    ULONG_PTR low = 0, high = 0;
    GetCurrentThreadStackLimits(&low, &high);
    return high;
  }

  // Gives the table of call sites: none where a function begins or ends, from where nothing of it is called.
  static void* unwind(CONTEXT& context, DWORD64 address, DWORD64 base, RUNTIME_FUNCTION* entry) {
    void* data = nullptr;
    DWORD64 frame = 0;
    const auto handler = RtlVirtualUnwind(UNW_FLAG_EHANDLER, base, address, entry, &context, &data, &frame, nullptr);
    return handler == nullptr ? nullptr : data;
  }

  void look() {
    outer_ = context_;
    table_ = nullptr;
    entry_ = RtlLookupFunctionEntry(context_.Rip, &base_, nullptr);
    if (entry_ != nullptr) {
      table_ = unwind(outer_, context_.Rip, base_, entry_);
      return;
    }
    outer_.Rsp = slot_of_caller(context_.Rip, context_.Rsp);
    outer_.Rip = outer_.Rsp % word == 0 && outer_.Rsp < high_ ? word_at(outer_.Rsp) : 0;
    outer_.Rsp += word;
  }

  CONTEXT context_;
  CONTEXT outer_;
  DWORD64 high_;
  DWORD64 base_ = 0;
  RUNTIME_FUNCTION* entry_ = nullptr;
  void* table_ = nullptr;
  bool ended_ = false;
};

// The address to return to that makes language and system treat the faulting instruction as what it is: the former looks up
// the byte before it, the latter unwinds from it. 0 when there is none.
DWORD64 return_address_for_fault(const Walk& walk) {
  if (!walk.has_table()) return 0;  // called to nowhere, or where only the caller is known
  constexpr DWORD64 longest_instruction = 15;
  const DWORD64 instruction = walk.context().Rip;
  const CallSite here = call_site(walk.table(), instruction - walk.function());
  for (DWORD64 i = 1; i <= longest_instruction + 1; ++i) {
    const DWORD64 address = instruction + i % (longest_instruction + 1);  // the instruction itself at last
    const CallSite there = call_site(walk.table(), address - 1 - walk.function());
    const bool same_site = there.passage == here.passage && there.start == here.start;
    if (same_site && walk.unwinds_alike(address)) return address;
  }
  return 0;
}

// Links the traps from the given one outwards, as far as they are to be seen.
void link_traps(Walk walk, ActiveTrap& innermost) {
  ActiveTrap* last = &innermost;
  bool begun = false;
  for (; !walk.at_end(); walk.step()) {
    if (walk.function() != reinterpret_cast<DWORD64>(&hedro34_run_guarded)) continue;
    ActiveTrap* const trap = trap_of_guard(reinterpret_cast<void*>(walk.context().Rsp));
    if (!begun) {
      begun = trap == &innermost;
      continue;
    }
    if (is_hidden(*trap)) return;
    Guard::set_outer(*last, trap);
    last = trap;
  }
}

}  // namespace

ActiveTrap* trap_of_guard(void* frame) noexcept {
  constexpr std::size_t place_of_trap = 32;
  ActiveTrap* trap = nullptr;
  std::memcpy(&trap, static_cast<char*>(frame) + place_of_trap, sizeof trap);
  return trap;
}

bool depart(CONTEXT& context, ActiveTrap& innermost, bool stack_overflow, DWORD code, const void* address) noexcept {
  Walk walk(context);
  Guard::set_outer(innermost, nullptr);
  if (stack_overflow) link_traps(walk, innermost);
  FaultSearch search(&innermost, context.Rsp, stack_overflow);
  if (!search.can_begin()) return false;
  bool at_fault = true;
  for (bool goes_on = true; goes_on && !walk.at_end(); walk.step()) {
    const CONTEXT& here = walk.context();
    const StackFrame frame = {.stack_pointer = here.Rsp,
                              .instruction = here.Rip - (at_fault ? 0 : 1),
                              .function = walk.function(),
                              .table = walk.table(),
                              .return_address = at_fault ? return_address_for_fault(walk) : here.Rip};
    goes_on = search.step(frame, [&](KeptRegisters& kept) { keep(kept, here); });
    at_fault = false;
  }
  const Place place = search.found();
  if (!place) return false;

  struct MachineFrame {
    DWORD64 instruction, code_segment, flags, stack_pointer, stack_segment;
  };
  constexpr DWORD64 alignment = 16;
  const MachineFrame machine_frame = {place.return_address, context.SegCs, context.EFlags, place.stack_pointer,
                                      context.SegSs};
  put_back(context, place.kept);
  context.Rsp = (place.stack_pointer - sizeof machine_frame) & ~(alignment - 1);
  std::memcpy(reinterpret_cast<void*>(context.Rsp), &machine_frame, sizeof machine_frame);
  context.Rip = reinterpret_cast<DWORD64>(&hedro34_throw_fault);
  context.Rcx = code;
  context.Rdx = reinterpret_cast<DWORD64>(address);
  return true;
}

// As a failure may come out of an exception that must not be continued, the way on is a new context and no answer.
void go_on(CONTEXT& context, ActiveTrap&, ::EXCEPTION_RECORD&) {
  constexpr DWORD modes = 0x40500;  // alignment check, direction, single step
  context.EFlags &= ~modes;
  constexpr DWORD flags = 0x3F;
  context.FltSave.MxCsr &= ~flags;
  context.MxCsr &= ~flags;
  context.FltSave.StatusWord = 0;
  context.FltSave.TagWord = 0;
  context.ContextFlags = CONTEXT_FULL;
  RtlRestoreContext(&context, nullptr);
  __builtin_unreachable();
}

}  // namespace hedro34

#endif
