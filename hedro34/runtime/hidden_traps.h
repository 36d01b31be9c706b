// Traps that are to let native faults pass.
#pragma once

namespace hedro34 {

// While it lives, the traps that are active now catch no native faults: those go to the handler that was there before.
class HiddenTraps {
 public:
  HiddenTraps() noexcept;
  ~HiddenTraps();
  HiddenTraps(const HiddenTraps&) = delete;
  HiddenTraps& operator=(const HiddenTraps&) = delete;

 private:
  const void* former_;
};

}  // namespace hedro34
