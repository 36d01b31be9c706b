// The trap where the system asks frames for their handlers: it runs its body in a guard, a frame with such a handler, and is
// found by it.
#pragma once

#ifdef __x86_64__
#include "hedro34/runtime/guard_entry64_windows.h"
#else
#include "hedro34/runtime/guard_entry32_windows.h"
#endif

// The handler of all guards, and the guard itself, which has `trap` in its frame.
extern "C" int hedro34_on_exception(void* record, void* frame, void* context, void* dispatcher);
extern "C" void hedro34_run_guarded(void (*body)(void*), void* context, void* trap);

namespace hedro34 {

// A trap that is running its body; it lives in the frame of the trap, and begins with its entry.
class ActiveTrap {
 public:
  explicit ActiveTrap(bool reports) noexcept : entry_(hedro34_on_exception), outer_(nullptr), reports_(reports) {}
  ActiveTrap(const ActiveTrap&) = delete;
  ActiveTrap& operator=(const ActiveTrap&) = delete;

  void run(void (*body)(void*), void* context) { hedro34_run_guarded(body, context, this); }
  void leave() noexcept { entry_.leave(); }
  const ActiveTrap* outer() const noexcept { return outer_; }  // as far as the fault that is being looked at needs it
  bool reports() const noexcept { return reports_; }           // what it catches

 private:
  friend class Guard;
  [[no_unique_address]] GuardEntry entry_;
  const ActiveTrap* outer_;
  bool reports_;
};

}  // namespace hedro34
