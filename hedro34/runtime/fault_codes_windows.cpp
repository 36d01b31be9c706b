#include "hedro34/runtime/fault_codes_windows.h"

#include <cstring>

#include "hedro34/runtime/fault_instruction.h"

namespace hedro34 {
namespace {

constexpr std::uint32_t invalid = 0x01;
constexpr std::uint32_t denormal = 0x02;
constexpr std::uint32_t division = 0x04;
constexpr std::uint32_t overflow = 0x08;
constexpr std::uint32_t underflow = 0x10;
constexpr std::uint32_t inexact = 0x20;

// The faults that are raised and not masked, as the bits of either unit.
std::uint32_t raised(const CONTEXT& context) {
#ifdef __x86_64__
  const std::uint32_t vector = context.FltSave.MxCsr;
  const std::uint32_t status = context.FltSave.StatusWord;
  const std::uint32_t control = context.FltSave.ControlWord;
#else
  std::uint32_t vector = 0;
  std::memcpy(&vector, context.ExtendedRegisters + 24, sizeof vector);
  const DWORD status = context.FloatSave.StatusWord;
  const DWORD control = context.FloatSave.ControlWord;
#endif
  return ((vector & ~(vector >> 7)) | (status & ~control)) & 0x3F;
}

// The processor reports a privileged instruction like an address that cannot exist, and not every system tells them apart.
bool is_privileged_fault(const ::EXCEPTION_RECORD& last) {
  constexpr ULONG_PTR no_address = ~ULONG_PTR{};
  return last.NumberParameters >= 2 && last.ExceptionInformation[0] == EXCEPTION_READ_FAULT &&
         last.ExceptionInformation[1] == no_address && is_privileged(last.ExceptionAddress);
}

// The first of several faults in one instruction, as the processor orders them.
std::uint32_t first_of(std::uint32_t bits, std::uint32_t otherwise) {
  if ((bits & invalid) != 0) return EXCEPTION_FLT_INVALID_OPERATION;
  if ((bits & division) != 0) return EXCEPTION_FLT_DIVIDE_BY_ZERO;
  if ((bits & denormal) != 0) return EXCEPTION_FLT_DENORMAL_OPERAND;
  if ((bits & overflow) != 0) return EXCEPTION_FLT_OVERFLOW;
  if ((bits & underflow) != 0) return EXCEPTION_FLT_UNDERFLOW;
  return (bits & inexact) != 0 ? EXCEPTION_FLT_INEXACT_RESULT : otherwise;
}

}  // namespace

std::uint32_t code_of_fault(const ::EXCEPTION_RECORD& last, const CONTEXT& context) noexcept {
  switch (last.ExceptionCode) {
    case EXCEPTION_ACCESS_VIOLATION:
      return is_privileged_fault(last) ? EXCEPTION_PRIV_INSTRUCTION : EXCEPTION_ACCESS_VIOLATION;
    case EXCEPTION_FLT_UNDERFLOW:
      return (raised(context) & (denormal | underflow)) == denormal ? EXCEPTION_FLT_DENORMAL_OPERAND
                                                                    : EXCEPTION_FLT_UNDERFLOW;
    case STATUS_FLOAT_MULTIPLE_FAULTS:
    case STATUS_FLOAT_MULTIPLE_TRAPS: return first_of(raised(context), last.ExceptionCode);
    default: return last.ExceptionCode;
  }
}

}  // namespace hedro34
