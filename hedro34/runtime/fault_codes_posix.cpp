#include "hedro34/runtime/fault_codes_posix.h"

#ifdef HEDRO34_TRANSLATES_FAULTS

#include "hedro34/runtime/fault_instruction.h"
#include "hedro34/runtime/fault_thread.h"
#include "hedro34/runtime/fault_thread_posix.h"

namespace hedro34 {
namespace {

std::uint32_t memory_code(const siginfo_t& signal, const ucontext_t& context) {
  const auto instruction = static_cast<std::uintptr_t>(context.uc_mcontext.gregs[REG_RIP]);
  const auto stack = static_cast<std::uintptr_t>(context.uc_mcontext.gregs[REG_RSP]);
  if (signal.si_code == SI_KERNEL) {
    const bool can_exist = instruction >> 47 == 0;
    return can_exist && is_privileged(reinterpret_cast<const void*>(instruction)) ? 0xC0000096 : 0xC0000005;
  }
  return is_stack_overflow(reinterpret_cast<std::uintptr_t>(signal.si_addr), stack) ? code_stack_overflow : 0xC0000005;
}

// The system names a denormal operand an underflow, and an overflow of the x87 register stack an invalid operation. The
// flags of the unit that stopped tell them apart: those that are raised and not masked.
std::uint32_t arithmetic_code(int kind, const ucontext_t& context) {
  constexpr std::uint32_t denormal = 0x02;
  constexpr std::uint32_t underflow = 0x10;
  constexpr std::uint32_t stack_and_invalid = 0x41;
  std::uint32_t raised = 0;
  bool register_stack = false;
  if (const auto* const unit = context.uc_mcontext.fpregs) {
    raised = unit->swd & ~std::uint32_t{unit->cwd} & 0x3F;
    register_stack = (raised & 1) != 0 && (unit->swd & stack_and_invalid) == stack_and_invalid;
    raised |= unit->mxcsr & ~(unit->mxcsr >> 7) & 0x3F;
  }
  switch (kind) {
    case FPE_INTDIV: return 0xC0000094;
    case FPE_INTOVF: return 0xC0000095;
    case FPE_FLTDIV: return 0xC000008E;
    case FPE_FLTOVF: return 0xC0000091;
    case FPE_FLTUND: return (raised & (denormal | underflow)) == denormal ? 0xC000008D : 0xC0000093;
    case FPE_FLTRES: return 0xC000008F;
    case FPE_FLTSUB: return 0xC000008C;
    default: return register_stack ? 0xC0000092 : 0xC0000090;
  }
}

}  // namespace

bool is_fault(const siginfo_t& signal) noexcept {
  if (signal.si_code <= 0) return false;
  switch (signal.si_signo) {
    case SIGBUS: return signal.si_code != BUS_MCEERR_AO;
    case SIGTRAP:
      return signal.si_code == SI_KERNEL || signal.si_code == TRAP_BRKPT || signal.si_code == TRAP_TRACE ||
             signal.si_code == TRAP_HWBKPT;
    default: return true;
  }
}

std::uint32_t exception_code(const siginfo_t& signal, const ucontext_t& context) noexcept {
  switch (signal.si_signo) {
    case SIGSEGV: return memory_code(signal, context);
    case SIGBUS: return signal.si_code == BUS_ADRALN ? 0x80000002 : 0xC0000006;
    case SIGFPE: return arithmetic_code(signal.si_code, context);
    case SIGILL: return signal.si_code == ILL_PRVOPC || signal.si_code == ILL_PRVREG ? 0xC0000096 : 0xC000001D;
    default: return signal.si_code == TRAP_TRACE || signal.si_code == TRAP_HWBKPT ? 0x80000004 : 0x80000003;
  }
}

}  // namespace hedro34

#endif
