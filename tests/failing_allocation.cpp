#include "tests/failing_allocation.h"

#include <cstdlib>
#include <new>

namespace {

thread_local int allocations_until_failure = 0;  // 0: none fails

void* allocate(std::size_t size) {
  if (allocations_until_failure > 0 && --allocations_until_failure == 0) throw std::bad_alloc();
  if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

namespace hedro34::testing {

FailingAllocation::FailingAllocation(int number) { allocations_until_failure = number; }
FailingAllocation::~FailingAllocation() { allocations_until_failure = 0; }
bool FailingAllocation::came() noexcept { return allocations_until_failure == 0; }

}  // namespace hedro34::testing
