// One value of a class for each thread, with a destructor that runs when the thread ends. A plain `thread_local` has its
// destructor noted at the first use, and where memory is gone at that moment the C library ends the process. This one comes
// into being only while there is memory.
#pragma once

namespace hedro34 {

// Whether a few thousand bytes can be had; they are given back.
bool has_memory() noexcept;

// `T` is made without allocating.
template <class T>
class ThreadValue {
 public:
  // The value of the calling thread; null before it was made and once the thread ends.
  static T* get() noexcept { return value_; }

  // The same, made when it is not there; null as well when memory is gone.
  static T* make() noexcept {
    struct Held {
      T value{};
      Held() noexcept { value_ = &value; }
      ~Held() { value_ = nullptr; }
    };
    if (value_ == nullptr && has_memory()) {
      static thread_local const Held held;
      static_cast<void>(&held);
    }
    return value_;
  }

 private:
  constinit static inline thread_local T* value_ = nullptr;
};

}  // namespace hedro34
