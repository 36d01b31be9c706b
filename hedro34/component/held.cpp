#include "hedro34/component/held.h"

#include <atomic>

namespace hedro34 {

namespace {
std::atomic<bool> are_failures{true};
}

HostCall::HostCall() noexcept {
  if (!are_failures.load(std::memory_order_relaxed)) hidden_.emplace();
}

bool HostCall::faults_are_failures() noexcept { return are_failures; }

void HostCall::set_faults_are_failures(bool yes) noexcept { are_failures = yes; }

}  // namespace hedro34
