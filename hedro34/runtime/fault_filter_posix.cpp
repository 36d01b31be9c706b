#include "hedro34/runtime/fault_filter.h"

#include "hedro34/runtime/fault_support.h"

#ifdef HEDRO34_TRANSLATES_FAULTS

#include <pthread.h>
#include <signal.h>
#include <sys/syscall.h>
#include <ucontext.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <mutex>

#include <xmmintrin.h>

#include "hedro34/runtime/fault_codes_posix.h"
#include "hedro34/runtime/fault_thread.h"
#include "hedro34/runtime/fault_trap.h"
#include "hedro34/runtime/fault_walk_posix.h"

namespace hedro34 {
namespace {

FaultFilter filter_of_process = nullptr;

// The action that was there before ours.
struct Former {
  int signal;
  struct sigaction action = {};
  std::atomic<bool> spent = false;  // it wanted to be called once only
};

Former formers[] = {{SIGSEGV}, {SIGBUS}, {SIGFPE}, {SIGILL}, {SIGTRAP}};

Former& former_of(int signal) {
  for (Former& former : formers) {
    if (former.signal == signal) return former;
  }
  return formers[0];
}

// What the system does without a handler. A fault comes up again at its instruction, where a core dump then shows it; a
// breakpoint lies behind the instruction already, and a signal that was sent does not come by itself.
void end_as_the_system_does(int signal, siginfo_t* info) {
  struct sigaction action = {};
  action.sa_handler = SIG_DFL;
  sigaction(signal, &action, nullptr);
  if (signal == SIGTRAP || !is_fault(*info)) syscall(SYS_rt_tgsigqueueinfo, getpid(), gettid(), signal, info);
}

void pass_on(int signal, siginfo_t* info, void* context) {
  Former& former = former_of(signal);
  const struct sigaction& action = former.action;
  const bool once = (action.sa_flags & static_cast<int>(SA_RESETHAND)) != 0;
  const bool with_info = (action.sa_flags & SA_SIGINFO) != 0;
  if (!with_info && action.sa_handler == SIG_IGN && !is_fault(*info)) return;
  const bool no_handler = !with_info && (action.sa_handler == SIG_DFL || action.sa_handler == SIG_IGN);
  if (no_handler || (once && former.spent.exchange(true))) return end_as_the_system_does(signal, info);

  sigset_t blocked = action.sa_mask;
  if ((action.sa_flags & SA_NODEFER) == 0) sigaddset(&blocked, signal);
  sigset_t before;
  pthread_sigmask(SIG_BLOCK, &blocked, &before);
  if (with_info) {
    action.sa_sigaction(signal, info, context);
  } else {
    action.sa_handler(signal);
  }
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

// Throws, on the stack on which it is called.
[[gnu::noinline]] void raise(std::uint32_t code, void* address) {
  EXCEPTION_RECORD record = {.ExceptionCode = code, .ExceptionAddress = address};
  filter_of_process({&record, nullptr});
}

// The floating-point unit of a handler is a fresh one. The code that goes on finds its own modes again, without the flags of
// the fault, which would come up once more.
void clear_float_flags(ucontext_t& context) {
  if (context.uc_mcontext.fpregs == nullptr) return;
  constexpr std::uint32_t flags = 0x3F;
  context.uc_mcontext.fpregs->mxcsr &= ~flags;
  context.uc_mcontext.fpregs->swd = 0;
  context.uc_mcontext.fpregs->ftw = 0;
}

void restore_float_modes(const ucontext_t& context) {
  if (context.uc_mcontext.fpregs == nullptr) return;
  _mm_setcsr(context.uc_mcontext.fpregs->mxcsr);
  asm volatile("fldcw %0" : : "m"(context.uc_mcontext.fpregs->cwd));
}

bool is_in_handler(const ucontext_t& context) {
  const auto stack_pointer = static_cast<std::uintptr_t>(context.uc_mcontext.gregs[REG_RSP]);
  const auto start = reinterpret_cast<std::uintptr_t>(context.uc_stack.ss_sp);
  return stack_pointer >= start && stack_pointer - start < context.uc_stack.ss_size;
}

// Throws the fault as a failure, or changes the context so that returning to it does. False when the fault is not ours.
bool translate(const siginfo_t& info, ucontext_t& context) {
  if (!is_fault(info) || faults_of_thread.innermost == nullptr) return false;
  if (faults_of_thread.raising || is_in_handler(context)) return false;  // a fault on the way of a fault
  const std::uint32_t code = exception_code(info, context);
  void* const address = reinterpret_cast<void*>(context.uc_mcontext.gregs[REG_RIP]);
  const Departure departure = depart(context, code == code_stack_overflow, raise);
  if (departure == Departure::Nowhere) return false;
  clear_float_flags(context);
  if (departure == Departure::AtCall) {
    context.uc_mcontext.gregs[REG_RDI] = static_cast<greg_t>(code);
    context.uc_mcontext.gregs[REG_RSI] = reinterpret_cast<greg_t>(address);
    return true;
  }
  restore_float_modes(context);
  raise(code, address);
  return true;
}

// Alignment checks of the interrupted code would stop the handler as well.
void clear_alignment_check() {
  constexpr std::uint64_t alignment_check = 0x40000;
  __builtin_ia32_writeeflags_u64(__builtin_ia32_readeflags_u64() & ~alignment_check);
}

void on_signal(int signal, siginfo_t* info, void* context) {
  clear_alignment_check();
  const int error = errno;
  if (!translate(*info, *static_cast<ucontext_t*>(context))) pass_on(signal, info, context);
  errno = error;
}

void install() noexcept {
  struct sigaction action = {};
  action.sa_sigaction = on_signal;
  action.sa_flags = SA_SIGINFO | SA_NODEFER | SA_ONSTACK;
  sigemptyset(&action.sa_mask);
  for (Former& former : formers) {
    sigaction(former.signal, nullptr, &former.action);  // known before ours can be called
    sigaction(former.signal, &action, nullptr);
  }
}

}  // namespace

bool set_fault_filter(FaultFilter filter) noexcept {
  const bool prepared = prepare_thread_for_faults();
  static const bool installed = [filter] {
    filter_of_process = filter;
    install();
    return true;
  }();
  return installed && prepared;
}

bool fault_filter_supported() noexcept { return true; }

}  // namespace hedro34

#else

namespace hedro34 {

bool set_fault_filter(FaultFilter) noexcept { return true; }

bool fault_filter_supported() noexcept { return false; }

}  // namespace hedro34

#endif
