// One value of a class for each thread, with a destructor that runs when the thread ends. A plain `thread_local` has its
// destructor noted at the first use, and where memory is gone at that moment the C library ends the process. This one comes
// into being only while there is memory.
#pragma once

#include <memory>
#include <new>

namespace hedro34 {

// Whether a few thousand bytes can be had; they are given back.
bool has_memory() noexcept;

// For Windows, where the compiler's own thread data is freed before its destructors run: takes what is to go when the calling
// thread ends, the last one first. False, and gone already, when memory is gone. What a process still has when it ends is left
// to the system.
struct EndsWithThread {
  virtual ~EndsWithThread() = default;
  std::unique_ptr<EndsWithThread> before;
};
bool end_with_thread(std::unique_ptr<EndsWithThread> value) noexcept;

// The constructor of `T` allocates nothing.
template <class T>
class ThreadValue {
 public:
  // The value of the calling thread; null before it was made and once the thread ends.
  static T* get() noexcept { return value_; }

  // The same, made when it is not there; null as well when memory is gone.
  static T* make() noexcept {
    if (value_ != nullptr || !has_memory()) return value_;
#ifdef _WIN32
    struct Held final : EndsWithThread {
      T value{};
      ~Held() { value_ = nullptr; }
    };
    std::unique_ptr<Held> held(new (std::nothrow) Held);
    T* const made = held ? &held->value : nullptr;
    if (made != nullptr && end_with_thread(std::move(held))) value_ = made;
#else
    struct Held {
      T value{};
      Held() noexcept { value_ = &value; }
      ~Held() { value_ = nullptr; }
    };
    static thread_local const Held held;
    static_cast<void>(&held);
#endif
    return value_;
  }

 private:
  constinit static inline thread_local T* value_ = nullptr;
};

}  // namespace hedro34
