#include "hedro34/runtime/fault_thread.h"

#ifdef HEDRO34_TRANSLATES_FAULTS

#include <pthread.h>
#include <signal.h>
#include <sys/mman.h>
#include <unistd.h>

#include "hedro34/platform/thread_value.h"
#include "hedro34/runtime/fault_thread_posix.h"
#include "hedro34/runtime/fault_trap.h"

namespace hedro34 {
namespace {

constexpr std::size_t alternate_size = 64 * 1024;
constexpr std::uintptr_t page = 4096;
constexpr std::uintptr_t probe = 64 * 1024;        // how far below the stack pointer a frame reaches out
constexpr std::uintptr_t reach = 8 * 1024 * 1024;  // how far a large frame jumps over the end of the stack

struct Bounds {
  std::uintptr_t low;
  std::uintptr_t high;  // 0 for a thread that was not prepared
  bool grows;           // the main thread's stack, which the system extends while it may
};

[[gnu::tls_model("initial-exec")]] constinit thread_local Bounds bounds = {};

Bounds bounds_of_this_thread() noexcept {
  pthread_attr_t attributes;
  if (pthread_getattr_np(pthread_self(), &attributes) != 0) return {};
  void* low = nullptr;
  std::size_t size = 0;
  const bool known = pthread_attr_getstack(&attributes, &low, &size) == 0;
  pthread_attr_destroy(&attributes);
  if (!known) return {};
  const auto start = reinterpret_cast<std::uintptr_t>(low);
  return {start, start + size, getpid() == gettid()};
}

class AlternateStack {
 public:
  AlternateStack() noexcept {
    if (sigaltstack(nullptr, &former_) != 0) return;
    if ((former_.ss_flags & SS_DISABLE) == 0 && former_.ss_size >= alternate_size) return;
    void* const mapping =
        mmap(nullptr, page + alternate_size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_STACK, -1, 0);
    if (mapping == MAP_FAILED) return;
    stack_t ours = {};
    ours.ss_sp = static_cast<char*>(mapping) + page;
    ours.ss_size = alternate_size;
    if (mprotect(ours.ss_sp, alternate_size, PROT_READ | PROT_WRITE) != 0 || sigaltstack(&ours, nullptr) != 0) {
      munmap(mapping, page + alternate_size);
      return;
    }
    mapping_ = mapping;
  }

  // A stack that the host has put in place of ours since may lead it back to ours: then it stays.
  ~AlternateStack() {
    stack_t present = {};
    if (mapping_ == nullptr || sigaltstack(nullptr, &present) != 0) return;
    if (present.ss_sp != static_cast<char*>(mapping_) + page) return;
    if (sigaltstack(&former_, nullptr) == 0) munmap(mapping_, page + alternate_size);
  }

  AlternateStack(const AlternateStack&) = delete;
  AlternateStack& operator=(const AlternateStack&) = delete;

 private:
  stack_t former_ = {};
  void* mapping_ = nullptr;
};

class Preparation {
 public:
  Preparation() noexcept {
    bounds = bounds_of_this_thread();
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

 private:
  AlternateStack alternate_stack_;
};

}  // namespace

bool prepare_thread_for_faults() noexcept { return ThreadValue<Preparation>::make() != nullptr; }

Stack stack_of_this_thread() noexcept { return {bounds.low + page, bounds.high}; }

bool is_stack_overflow(std::uintptr_t address, std::uintptr_t stack_pointer) noexcept {
  const auto [low, high, grows] = bounds;
  const bool on_this_stack = stack_pointer < high && stack_pointer + reach > low;
  if (!on_this_stack || address + probe < stack_pointer || address >= high) return false;
  // What the system did not extend lies near the stack pointer, wherever the limit is by now.
  return address < low + page || (grows && address < stack_pointer + probe);
}

}  // namespace hedro34

#endif

namespace hedro34 {

bool restore_end_of_stack() noexcept { return true; }

}  // namespace hedro34
