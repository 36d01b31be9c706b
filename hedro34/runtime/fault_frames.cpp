#include "hedro34/runtime/fault_frames.h"

#ifdef HEDRO34_TRANSLATES_FAULTS

#include <algorithm>

#include "hedro34/runtime/fault_table.h"
#include "hedro34/runtime/fault_thread.h"

namespace hedro34 {
namespace {

// What a failure and its report are left of a stack that has run full: a quarter of it within these bounds.
constexpr std::uintptr_t least_left = 24 * 1024;
constexpr std::uintptr_t most_left = 64 * 1024;

// The innermost trap with the space that is wanted. One inside it that has what is needed is better where the former
// would report nothing, and is all there is where no trap has more.
std::uintptr_t choose_trap(const ActiveTrap* innermost, std::uintptr_t wanted, std::uintptr_t needed) {
  std::uintptr_t second = 0;
  for (const ActiveTrap* trap = innermost; trap != nullptr; trap = trap->outer()) {
    const auto at = reinterpret_cast<std::uintptr_t>(trap);
    if (at < needed) continue;
    if (second == 0 || trap->reports()) second = at;
    if (at >= wanted) break;
  }
  return second;
}

}  // namespace

FaultSearch::FaultSearch(const ActiveTrap* innermost, std::uintptr_t stack_pointer, bool stack_overflow) noexcept
    : wanted_(stack_pointer), needed_(stack_pointer) {
  if (stack_overflow) {
    const Stack stack = stack_of_this_thread();
    const std::uintptr_t end = std::max(stack_pointer, stack.low);  // a large frame reaches out beyond the end
    wanted_ = end + std::clamp((stack.high - stack.low) / 4, least_left, most_left);
    needed_ = end + least_left;
  }
  catching_ = choose_trap(innermost, wanted_, needed_);
  if (catching_ < wanted_) wanted_ = needed_;
}

FaultSearch::Look FaultSearch::look_at(const StackFrame& frame) noexcept {
  if (frame.stack_pointer > catching_) {
    reached_ = true;
    return Look::Done;
  }
  const Passage way =
      frame.return_address == 0 ? Passage::Ends : call_site(frame.table, frame.instruction - frame.function).passage;
  if (way == Passage::Ends) {
    if (!may_be_caught_) found_ = candidate_ = {};
    return Look::GoOn;
  }
  const bool searching = !found_;
  const bool is_found = !searching || frame.stack_pointer >= wanted_;
  if (is_found && way == Passage::Caught) may_be_caught_ = true;
  if (!searching) return Look::GoOn;
  candidate_.stack_pointer = frame.stack_pointer;
  candidate_.return_address = frame.return_address;
  return Look::Keep;
}

void FaultSearch::took_candidate() noexcept {
  if (candidate_.stack_pointer >= wanted_) found_ = candidate_;
}

}  // namespace hedro34

#endif
