#include "hedro34/runtime/fault_thread.h"

#include "hedro34/runtime/fault_trap.h"

#ifdef HEDRO34_TRANSLATES_FAULTS

#include "hedro34/platform/thread_value.h"

#include <malloc.h>
#include <windows.h>

namespace hedro34 {
namespace {

constexpr std::uintptr_t page = 4096;
constexpr ULONG guarantee = 32 * 1024;  // left of a stack that has run full, for the system's own way to a handler

class Preparation {
 public:
  Preparation() noexcept {
    ULONG_PTR low = 0, high = 0;
    GetCurrentThreadStackLimits(&low, &high);
    ULONG left = guarantee;
    SetThreadStackGuarantee(&left);
    _resetstkoflw();  // Wine heeds the guarantee where the guard at the end was set after it
    stack_ = {low + guarantee + page, high};
    faults_of_thread.started = true;
    try {
      make_fault_failure();
    } catch (...) {  // the next trap that catches something tries again
    }
  }
  ~Preparation() {
    faults_of_thread.started = false;
    drop_fault_failure();
  }
  Preparation(const Preparation&) = delete;
  Preparation& operator=(const Preparation&) = delete;

  Stack stack() const noexcept { return stack_; }

 private:
  Stack stack_;
};

}  // namespace

bool prepare_thread_for_faults() noexcept { return ThreadValue<Preparation>::make() != nullptr; }

Stack stack_of_this_thread() noexcept {
  const Preparation* const of_thread = ThreadValue<Preparation>::get();
  return of_thread == nullptr ? Stack() : of_thread->stack();
}

}  // namespace hedro34

#else

#include <malloc.h>

#endif

namespace hedro34 {

bool restore_end_of_stack() noexcept { return _resetstkoflw() != 0; }

}  // namespace hedro34
