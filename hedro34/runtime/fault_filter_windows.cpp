#include "hedro34/runtime/fault_filter.h"

#include "hedro34/runtime/fault_support.h"

#ifdef HEDRO34_TRANSLATES_FAULTS

#include <atomic>
#include <utility>

#include "hedro34/runtime/fault_codes_windows.h"
#include "hedro34/runtime/fault_thread.h"
#include "hedro34/runtime/fault_walk_windows.h"
#include "hedro34/runtime/hidden_traps.h"

namespace hedro34 {
namespace {

static_assert(sizeof(EXCEPTION_RECORD) == sizeof(::EXCEPTION_RECORD));
static_assert(offsetof(EXCEPTION_RECORD, ExceptionCode) == offsetof(::EXCEPTION_RECORD, ExceptionCode));
static_assert(offsetof(EXCEPTION_RECORD, ExceptionFlags) == offsetof(::EXCEPTION_RECORD, ExceptionFlags));
static_assert(offsetof(EXCEPTION_RECORD, ExceptionRecord) == offsetof(::EXCEPTION_RECORD, ExceptionRecord));
static_assert(offsetof(EXCEPTION_RECORD, ExceptionAddress) == offsetof(::EXCEPTION_RECORD, ExceptionAddress));
static_assert(offsetof(EXCEPTION_RECORD, NumberParameters) == offsetof(::EXCEPTION_RECORD, NumberParameters));
static_assert(offsetof(EXCEPTION_RECORD, ExceptionInformation) == offsetof(::EXCEPTION_RECORD, ExceptionInformation));
static_assert(sizeof(EXCEPTION_POINTERS) == sizeof(::EXCEPTION_POINTERS));
static_assert(offsetof(EXCEPTION_POINTERS, ContextRecord) == offsetof(::EXCEPTION_POINTERS, ContextRecord));

std::atomic<FaultFilter> filter_of_process = nullptr;

bool translate(const ::EXCEPTION_RECORD& record, CONTEXT& context, ActiveTrap& trap) noexcept {
  if (!is_fault(record.ExceptionCode) || filter_of_process.load(std::memory_order_relaxed) == nullptr) return false;
  ThreadFaults& thread = faults_of_thread;
  if (thread.raising) return false;  // a fault on the way of a fault
  if (is_hidden(trap)) return false;
  const ::EXCEPTION_RECORD* last = &record;
  while (last->ExceptionRecord != nullptr) last = last->ExceptionRecord;
  const DWORD code = code_of_fault(*last, context);
  const bool stack_overflow = code == code_stack_overflow;
  if (stack_overflow && !thread.started) return false;
  if (!depart(context, trap, stack_overflow, code, last->ExceptionAddress)) return false;
  if (stack_overflow) thread.overflowed = true;
  return true;
}

// A host that leaves by a long jump ends its calls without destructors; what they hide inside the guard is to be seen again.
void end_hiding_inside(const ActiveTrap& trap) noexcept {
  const HiddenTraps*& hidden = faults_of_thread.hidden;
  const void* inside = __builtin_frame_address(0);
  while (hidden > inside && hidden < static_cast<const void*>(&trap)) {
    inside = std::exchange(hidden, static_cast<const HiddenTraps*>(hidden->former()));
  }
}

}  // namespace

bool set_fault_filter(FaultFilter filter) noexcept {
  FaultFilter none = nullptr;
  filter_of_process.compare_exchange_strong(none, filter);
  return prepare_thread_for_faults();
}

bool fault_filter_supported() noexcept { return true; }

void raise_fault_of_system(DWORD code, const void* address) {
  EXCEPTION_RECORD record = {.ExceptionCode = code, .ExceptionAddress = const_cast<void*>(address)};
  filter_of_process.load()({&record, nullptr});
  __builtin_unreachable();
}

// The handler of all guards.
extern "C" int hedro34_on_exception(void* exception, void* frame, void* registers, void*) {
  auto& record = *static_cast<::EXCEPTION_RECORD*>(exception);
  auto& context = *static_cast<CONTEXT*>(registers);
  ActiveTrap& trap = *trap_of_guard(frame);
  constexpr DWORD unwinding = 0x06;  // EXCEPTION_UNWINDING, EXCEPTION_EXIT_UNWIND
  if ((record.ExceptionFlags & unwinding) != 0) {
    end_hiding_inside(trap);
  } else if (translate(record, context, trap)) {
    go_on(context, trap, record);
  }
  return ExceptionContinueSearch;
}

}  // namespace hedro34

#else

namespace hedro34 {

bool set_fault_filter(FaultFilter) noexcept { return true; }

bool fault_filter_supported() noexcept { return false; }

}  // namespace hedro34

#endif
