#include "hedro34/component/identity_numbers.h"

#include <memory>
#include <vector>

namespace hedro34 {
namespace {

struct Numbered {
  void* identity;
  const void* object;
};

struct Numbers {
  std::vector<Numbered> identities = {{}};  // by number
  std::vector<std::uint32_t> free;
};

// Plain data, so that it is there until the thread is gone: objects may live longer than what a thread destroys at its end.
struct OfThread {
  Numbers* numbers;
  std::size_t taken;
  bool ending;
};
constinit thread_local OfThread of_thread = {};

void release_when_unused() noexcept {
  if (of_thread.ending && of_thread.taken == 0) {
    std::unique_ptr<Numbers>(of_thread.numbers).reset();
    of_thread.numbers = nullptr;
  }
}

struct End {
  ~End() {
    of_thread.ending = true;
    release_when_unused();
  }
};

Numbers& numbers() {
  if (of_thread.numbers == nullptr) {
    static thread_local const End end;
    static_cast<void>(end);
    of_thread.numbers = std::make_unique<Numbers>().release();
  }
  return *of_thread.numbers;
}

}  // namespace

std::uint32_t number_identity(void* identity, const void* object) {
  Numbers& all = numbers();
  std::uint32_t number = 0;
  if (all.free.empty()) {
    // Every number can come back without memory.
    if (all.free.capacity() <= all.identities.size()) all.free.reserve(2 * all.identities.size());
    number = static_cast<std::uint32_t>(all.identities.size());
    all.identities.push_back({identity, object});
  } else {
    number = all.free.back();
    all.free.pop_back();
    all.identities[number] = {identity, object};
  }
  ++of_thread.taken;
  return number;
}

void* numbered_identity(std::uint32_t number, const void* object) noexcept {
  const Numbers* const all = of_thread.numbers;
  const bool known = all != nullptr && number < all->identities.size() && all->identities[number].object == object;
  return known ? all->identities[number].identity : nullptr;
}

void forget_identity(std::uint32_t number, const void* object) noexcept {
  if (numbered_identity(number, object) == nullptr) return;
  of_thread.numbers->identities[number] = {};
  of_thread.numbers->free.push_back(number);
  --of_thread.taken;
  release_when_unused();
}

}  // namespace hedro34
