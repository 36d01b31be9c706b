// What a call of a host's code does to native faults in it.
#pragma once

#include "hedro34/base/export.h"

namespace hedro34 {

// While it lives, the traps that are active now catch no native faults: those go to the handler that was there before.
class HEDRO34_API HiddenTraps {
 public:
  HiddenTraps() noexcept;
  ~HiddenTraps();
  HiddenTraps(const HiddenTraps&) = delete;
  HiddenTraps& operator=(const HiddenTraps&) = delete;

  const void* former() const noexcept { return former_; }  // what was in its place; on Windows one of these

 private:
  const void* former_;
};

// Calls `called(context)`, a host's code. A native fault in there leaves this call like a failure that was thrown from it, also
// where the host's frames say nothing to g++'s unwinder, as on Windows in 32 bits.
HEDRO34_API void call_foreign(void (*called)(void*), void* context);

}  // namespace hedro34
