#include "tests/failing_allocation.h"

#include <cstdlib>
#include <new>

namespace {

thread_local int allocations_until_failure = 0;  // 0: none fails
thread_local bool failing_for_good = false;
thread_local bool gone = false;
thread_local long all_allocations = 0;

void* allocate(std::size_t size) {
  ++all_allocations;
  if (allocations_until_failure > 0 && --allocations_until_failure == 0) {
    gone = failing_for_good;
    throw std::bad_alloc();
  }
  if (gone) throw std::bad_alloc();
  if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}

void* allocate_or_null(std::size_t size) noexcept {
  try {
    return allocate(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

}  // namespace

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate_or_null(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocate_or_null(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

namespace hedro34::testing {

FailingAllocation::FailingAllocation(int number, bool for_good) {
  allocations_until_failure = number;
  failing_for_good = for_good;
}
FailingAllocation::~FailingAllocation() {
  allocations_until_failure = 0;
  gone = false;
}
bool FailingAllocation::came() noexcept { return allocations_until_failure == 0; }
long FailingAllocation::allocations() noexcept { return all_allocations; }

}  // namespace hedro34::testing
