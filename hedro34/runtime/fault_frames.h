// Where a fault can leave the stack as a failure: not every frame at the place of a fault can be unwound. The decision is made
// here, over the frames that each system's own walk shows (fault_walk_*.cpp).
#pragma once

#include "hedro34/runtime/fault_support.h"

#ifdef HEDRO34_TRANSLATES_FAULTS

#include <cstdint>

#include "hedro34/runtime/fault_trap.h"

#ifndef _WIN32
#include "hedro34/runtime/kept_registers_posix.h"
#elif defined(__x86_64__)
#include "hedro34/runtime/kept_registers64_windows.h"
#else
#include "hedro34/runtime/kept_registers32_windows.h"
#endif

namespace hedro34 {

// A frame as a walk passes it.
struct StackFrame {
  std::uintptr_t stack_pointer = 0;   // at its present instruction
  std::uintptr_t instruction = 0;     // the one that faulted, or the last byte of the call
  std::uintptr_t function = 0;        // where the function starts
  const void* table = nullptr;        // of its call sites
  std::uintptr_t return_address = 0;  // that a failure finds which comes out of it; 0: none can
};

// Where to throw from: as if the frame had called.
struct Place {
  std::uintptr_t stack_pointer = 0;  // 0: nowhere
  std::uintptr_t return_address = 0;
  KeptRegisters kept = {};

  explicit operator bool() const { return stack_pointer != 0; }
};

// Looks for the innermost frame from which a failure reaches an active trap. The frames inside it are skipped, without their
// destructors:
// (a) frames that would end the process, as they admit no failure: noexcept ones, and such as were compiled without the flags
//     when they fault themselves;
// (b) after a stack overflow those at its end, where no space is left to work: 64 KiB, less on a small stack, never below
//     24 KiB. Traps in there are skipped as well. A trap that reports is preferred to one around it that does not.
class FaultSearch {
 public:
  // `innermost` is the trap that the thread entered last, null for none.
  FaultSearch(const ActiveTrap* innermost, std::uintptr_t stack_pointer, bool stack_overflow) noexcept;

  bool can_begin() const noexcept { return catching_ != 0; }
  std::uintptr_t catching_trap() const noexcept { return catching_; }  // its address

  // Takes the frames from the fault outwards; `keep(KeptRegisters&)` fills in those of the frame. False when no more is needed.
  template <class Keep>
  bool step(const StackFrame& frame, Keep keep) {
    switch (look_at(frame)) {
      case Look::Done: return false;
      case Look::Keep: return keep(candidate_.kept), took_candidate(), true;
      default: return true;
    }
  }

  Place found() const noexcept { return !reached_ ? Place() : found_ ? found_ : candidate_; }

 private:
  enum class Look { Done, GoOn, Keep };
  Look look_at(const StackFrame& frame) noexcept;
  void took_candidate() noexcept;

  std::uintptr_t wanted_;  // what the stack pointers of trap and frame should be at least
  std::uintptr_t needed_;  // and have to be
  std::uintptr_t catching_ = 0;
  bool may_be_caught_ = false;
  bool reached_ = false;
  Place found_;
  Place candidate_;
};

}  // namespace hedro34

#endif
