#include "host/system.h"

#include <csignal>
#include <cstdlib>
#include <limits>
#include <memory>
// After them, which say whose library it is.
#ifdef __GLIBC__
#include <malloc.h>
#include <sys/mman.h>
#endif

namespace host {

std::vector<std::string> words_of(int argc, char** argv) { return {argv + (argc > 0 ? 1 : 0), argv + argc}; }

void keep_memory() noexcept {
#ifdef __GLIBC__
  // Another allocator that stands in for the C library's takes no advice.
  if (::mallopt(M_MMAP_MAX, 0) == 0 || ::mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max()) == 0) return;
#ifdef MADV_HUGEPAGE
  // A test of 10,000 questions needs 70 MB, which would be 18,000 pages taken one by one. The heap is made to reach that far,
  // which takes no memory before it is touched; the first part, all that a usual test needs, stays in small pages.
  constexpr std::size_t large_page = std::size_t{1} << 21;
  constexpr std::size_t reach = std::size_t{1} << 28;
  void* const heap = std::malloc(reach);
  if (heap == nullptr) return;
  void* first = static_cast<char*>(heap) + large_page;
  std::size_t size = reach - large_page;
  if (std::align(large_page, large_page, first, size) != nullptr) ::madvise(first, size, MADV_HUGEPAGE);
  std::free(heap);
#endif
#endif
}

Streams::Streams() noexcept { std::signal(SIGPIPE, SIG_IGN); }
Streams::~Streams() { static_cast<void>(former_); }  // nothing was changed but what ends with the process

}  // namespace host
