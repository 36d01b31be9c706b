// What a guard enters with the system: nothing in 64 bits, where the system finds it by its unwind data.
#pragma once

namespace hedro34 {

class GuardEntry {
 public:
  explicit GuardEntry(int (*)(void*, void*, void*, void*)) noexcept {}
  void leave() noexcept {}
};

}  // namespace hedro34
