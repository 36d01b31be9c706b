#include "hedro34/runtime/fault_codes.h"

#ifdef HEDRO34_FAULT_SIGNALS

#include "hedro34/runtime/fault_thread.h"

namespace hedro34 {
namespace {

bool is_prefix(std::uint8_t byte) {
  switch (byte) {
    case 0x26:
    case 0x2E:
    case 0x36:
    case 0x3E:
    case 0x64:
    case 0x65:
    case 0x66:
    case 0x67:
    case 0xF0:
    case 0xF2:
    case 0xF3: return true;
    default: return (byte & 0xF0) == 0x40;
  }
}

// Instructions that only the system may execute.
bool is_privileged(const std::uint8_t* instruction) {
  for (int length = 0; length < 14 && is_prefix(*instruction); ++length) ++instruction;
  switch (*instruction) {
    case 0xF4:
    case 0xFA:
    case 0xFB: return true;  // hlt, cli, sti
    case 0x6C:
    case 0x6D:
    case 0x6E:
    case 0x6F:
    case 0xE4:
    case 0xE5:
    case 0xE6:
    case 0xE7:  // ports
    case 0xEC:
    case 0xED:
    case 0xEE:
    case 0xEF: return true;
    case 0x0F: break;
    default: return false;
  }
  switch (instruction[1]) {
    case 0x06:
    case 0x07:
    case 0x08:
    case 0x09:
    case 0x20:
    case 0x21:
    case 0x22:
    case 0x23:
    case 0x30:
    case 0x32:
    case 0x33:
    case 0x35: return true;  // clts, sysret, invd, wbinvd, control and debug registers, wrmsr, rdmsr, rdpmc, sysexit
    case 0x00: return ((instruction[2] >> 3) & 6) == 2;  // lldt, ltr
    case 0x01: {
      const int operation = (instruction[2] >> 3) & 7;
      const bool in_memory = (instruction[2] >> 6) != 3;
      return operation == 6 || (in_memory && (operation == 2 || operation == 3 || operation == 7)) ||
             instruction[2] == 0xD1 || instruction[2] == 0xF8;  // lmsw, lgdt, lidt, invlpg, xsetbv, swapgs
    }
    default: return false;
  }
}

std::uint32_t memory_code(const siginfo_t& signal, const ucontext_t& context) {
  const auto instruction = static_cast<std::uintptr_t>(context.uc_mcontext.gregs[REG_RIP]);
  const auto stack = static_cast<std::uintptr_t>(context.uc_mcontext.gregs[REG_RSP]);
  if (signal.si_code == SI_KERNEL) {
    const bool can_exist = instruction >> 47 == 0;
    return can_exist && is_privileged(reinterpret_cast<const std::uint8_t*>(instruction)) ? 0xC0000096 : 0xC0000005;
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
