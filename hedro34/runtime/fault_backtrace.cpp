#include "hedro34/runtime/fault_backtrace.h"

#ifdef HEDRO34_UNWINDS_BY_TABLES

#include <unwind.h>

namespace hedro34 {
namespace {

// The frames of the present thread, from the one that stands at the faulting instruction.
class Walk {
 public:
  Walk(FaultSearch& search, std::uintptr_t fault_instruction)
      : search_(search), fault_instruction_(fault_instruction) {}

  void run() {
    _Unwind_Backtrace([](_Unwind_Context* frame, void* walk) { return static_cast<Walk*>(walk)->step(frame); }, this);
  }

 private:
  _Unwind_Reason_Code step(_Unwind_Context* context) {
    int at_instruction = 0;
    const std::uintptr_t instruction = _Unwind_GetIPInfo(context, &at_instruction);
    if (!begun_) begun_ = at_instruction != 0 && instruction == fault_instruction_;
    if (!begun_) return _URC_NO_REASON;
    const StackFrame frame = {.stack_pointer = _Unwind_GetCFA(context),
                              .instruction = instruction - (at_instruction == 0 ? 1 : 0),
                              .function = _Unwind_GetRegionStart(context),
                              .table = _Unwind_GetLanguageSpecificData(context),
                              .return_address = instruction};
    const bool goes_on = search_.step(frame, [&](KeptRegisters& kept) {
      for (std::size_t i = 0; i < kept.size(); ++i)
        kept[i] = _Unwind_GetGR(context, static_cast<int>(numbers_of_kept[i]));
    });
    return goes_on ? _URC_NO_REASON : _URC_END_OF_STACK;
  }

  FaultSearch& search_;
  std::uintptr_t fault_instruction_;
  bool begun_ = false;  // beyond the frames of the handler
};

}  // namespace

bool has_table(std::uintptr_t instruction) noexcept {
  return _Unwind_FindEnclosingFunction(reinterpret_cast<void*>(instruction + 1)) != nullptr;
}

void walk_by_tables(FaultSearch& search, std::uintptr_t fault_instruction) noexcept {
  Walk(search, fault_instruction).run();
}

}  // namespace hedro34

#endif
