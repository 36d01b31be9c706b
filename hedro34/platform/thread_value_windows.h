// How a thread's value comes into being, for thread_value.h. The compiler's own thread data is freed before its destructors
// run, so what is to go when a thread ends is kept apart from it, and keeps no reference into it.
#pragma once

#include <memory>
#include <new>

namespace hedro34 {

struct EndsWithThread {
  virtual ~EndsWithThread() = default;
  std::unique_ptr<EndsWithThread> before;
};

// Takes what is to go when the calling thread ends, the last one first. False, and gone already, when memory is gone. What a
// process still has when it ends is left to the system.
bool end_with_thread(std::unique_ptr<EndsWithThread> value) noexcept;

// Makes the value of the calling thread, one for each `T`. `place` gives the thread's pointer to it, which is null again when
// the thread ends, and stays so when memory is gone.
template <class T, T*& (*place)() noexcept>
void begin_in_thread() noexcept try {
  struct Held final : EndsWithThread {
    T value{};
    ~Held() { place() = nullptr; }
  };
  auto held = std::make_unique<Held>();
  T* const made = &held->value;
  if (end_with_thread(std::move(held))) place() = made;
} catch (const std::bad_alloc&) {
  // The next call tries again.
}

}  // namespace hedro34
