#include "hedro34/platform/thread_value.h"

#include <cstdlib>

namespace hedro34 {

bool has_memory() noexcept {
  void* const volatile probe = std::malloc(4096);  // volatile: else the compiler takes the pair away
  std::free(probe);
  return probe != nullptr;
}

}  // namespace hedro34
