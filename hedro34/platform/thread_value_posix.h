// How a thread's value comes into being, for thread_value.h.
#pragma once

namespace hedro34 {

// Makes the value of the calling thread, one for each `T`. `place` gives the thread's pointer to it, which is null again when
// the thread ends.
template <class T, T*& (*place)() noexcept>
void begin_in_thread() noexcept {
  struct Held {
    T value{};
    Held() noexcept { place() = &value; }
    ~Held() { place() = nullptr; }
  };
  static thread_local const Held held;
  static_cast<void>(&held);
}

}  // namespace hedro34
