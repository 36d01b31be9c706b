#include "hedro34/platform/thread_value_windows.h"

#include <windows.h>

#include <utility>

namespace hedro34 {
namespace {

DWORD slot() noexcept {
  static const DWORD allocated = ::TlsAlloc();
  return allocated;
}

void NTAPI at_thread_end(void*, DWORD reason, void*) {
  if (reason != DLL_THREAD_DETACH || slot() == TLS_OUT_OF_INDEXES) return;
  std::unique_ptr<EndsWithThread> last(static_cast<EndsWithThread*>(::TlsGetValue(slot())));
  ::TlsSetValue(slot(), nullptr);
  while (last) last = std::move(last->before);
}

}  // namespace

bool end_with_thread(std::unique_ptr<EndsWithThread> value) noexcept {
  if (slot() == TLS_OUT_OF_INDEXES) return false;
  value->before.reset(static_cast<EndsWithThread*>(::TlsGetValue(slot())));
  if (::TlsSetValue(slot(), value.get()) != 0) {
    static_cast<void>(value.release());
    return true;
  }
  static_cast<void>(value->before.release());
  return false;
}

}  // namespace hedro34

// Among the functions that the system calls at the ends of threads, in the order of these sections: before those of the compiler.
extern "C" {
extern const PIMAGE_TLS_CALLBACK hedro34_at_thread_end;
[[gnu::section(".CRT$XLB"), gnu::used]] const PIMAGE_TLS_CALLBACK hedro34_at_thread_end = hedro34::at_thread_end;
}
