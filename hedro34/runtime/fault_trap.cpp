#include "hedro34/runtime/fault_trap.h"

#include <memory>
#include <utility>

#if defined(__GNUC__)
#include <cxxabi.h>
#endif

namespace hedro34 {

constinit thread_local ThreadFaults faults_of_thread = {};

#if defined(__GNUC__)

namespace {

constexpr std::size_t longest_description = 40;

struct Raising {
  explicit Raising(ThreadFaults& of) noexcept : thread(of) { thread.raising = true; }
  ~Raising() { thread.raising = false; }
  ThreadFaults& thread;
};

// Called like a member function, of which g++ reminds where that makes a difference.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wattributes"
void _GLIBCXX_CDTOR_CALLABI destroy(void* failure) { std::destroy_at(static_cast<Failure*>(failure)); }
#pragma GCC diagnostic pop

}  // namespace

void make_fault_failure() {
  void* const storage = abi::__cxa_allocate_exception(sizeof(Failure));
  try {
    auto* const failure = std::construct_at(static_cast<Failure*>(storage), 0, StringView());
    failure->description.reserve(longest_description);
    faults_of_thread.prepared = failure;
  } catch (...) {
    destroy(storage);
    abi::__cxa_free_exception(storage);
    throw;
  }
}

void drop_fault_failure() noexcept {
  if (faults_of_thread.prepared == nullptr) return;
  destroy(faults_of_thread.prepared);
  abi::__cxa_free_exception(std::exchange(faults_of_thread.prepared, nullptr));
}

void raise_fault(std::int32_t number, StringView description, StringView source) {
  ThreadFaults& thread = faults_of_thread;
  if (thread.prepared == nullptr) {
    const Raising raising(thread);
    make_fault_failure();
  }
  Failure* const failure = std::exchange(thread.prepared, nullptr);
  failure->number = number;
  failure->description.assign(description.substr(0, longest_description));
  failure->source = source;
  abi::__cxa_throw(failure, const_cast<std::type_info*>(&typeid(Failure)), destroy);
}

#else

void make_fault_failure() {}

void drop_fault_failure() noexcept {}

void raise_fault(std::int32_t number, StringView description, StringView source) {
  throw Failure(number, description, source);
}

#endif

}  // namespace hedro34
