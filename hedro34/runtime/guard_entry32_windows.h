// What a guard enters with the system: in 32 bits a thread has a chain of handlers, which the system asks from the innermost.
#pragma once

namespace hedro34 {

// An entry of the chain. It lives on the stack.
struct FrameHandler {
  FrameHandler* next = nullptr;
  int (*handler)(void* record, void* frame, void* context, void* dispatcher) = nullptr;
};

inline FrameHandler* first_frame_handler() noexcept {
  FrameHandler* first = nullptr;
  asm volatile("movl %%fs:0, %0" : "=r"(first));
  return first;
}

inline void set_first_frame_handler(FrameHandler* first) noexcept {
  asm volatile("movl %0, %%fs:0" : : "r"(first) : "memory");
}

// The entry of a guard, and its stack pointer where it calls the body, which the guard itself notes.
struct GuardEntry {
  explicit GuardEntry(int (*called)(void*, void*, void*, void*)) noexcept : handler{first_frame_handler(), called} {
    set_first_frame_handler(&handler);
  }
  GuardEntry(const GuardEntry&) = delete;
  GuardEntry& operator=(const GuardEntry&) = delete;
  void leave() noexcept { set_first_frame_handler(handler.next); }

  FrameHandler handler;
  const void* stack = nullptr;
};

}  // namespace hedro34
