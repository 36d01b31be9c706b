// One value of a class for each thread, with a destructor that runs when the thread ends. A plain `thread_local` has its
// destructor noted at the first use, and where memory is gone at that moment the C library ends the process. This one comes
// into being only while there is memory.
#pragma once

#ifdef _WIN32
#include "hedro34/platform/thread_value_windows.h"
#else
#include "hedro34/platform/thread_value_posix.h"
#endif

namespace hedro34 {

// Whether a few thousand bytes can be had; they are given back.
bool has_memory() noexcept;

// The constructor of `T` allocates nothing.
template <class T>
class ThreadValue {
 public:
  // The value of the calling thread; null before it was made and once the thread ends.
  static T* get() noexcept { return value_; }

  // The same, made when it is not there; null as well when memory is gone.
  static T* make() noexcept {
    if (value_ == nullptr && has_memory()) begin_in_thread<T, &place>();
    return value_;
  }

 private:
  static T*& place() noexcept { return value_; }

  constinit static inline thread_local T* value_ = nullptr;
};

}  // namespace hedro34
