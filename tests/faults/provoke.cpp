#include "tests/faults/provoke.h"

#include <sys/mman.h>
#include <unistd.h>
#include <xmmintrin.h>

#include <cfenv>
#include <limits>

extern "C" void* __libc_malloc(std::size_t size);
extern "C" void* __libc_calloc(std::size_t count, std::size_t size);
extern "C" void* __libc_realloc(void* memory, std::size_t size);

namespace {

bool is_memory_gone() {
  using hedro34::testing::allocations_left;
  if (allocations_left > 0) return --allocations_left < 0;
  return allocations_left == 0;
}

}  // namespace

// The allocation of the whole program.
extern "C" void* malloc(std::size_t size) {
  if (hedro34::testing::malloc_faults) hedro34::testing::read_null();
  return is_memory_gone() ? nullptr : __libc_malloc(size);
}

extern "C" void* calloc(std::size_t count, std::size_t size) {
  return is_memory_gone() ? nullptr : __libc_calloc(count, size);
}

extern "C" void* realloc(void* memory, std::size_t size) {
  return is_memory_gone() ? nullptr : __libc_realloc(memory, size);
}

namespace hedro34::testing {

thread_local bool malloc_faults = false;
thread_local int allocations_left = -1;
thread_local int Counted::ended = 0;
std::string former_handler;
sigjmp_buf way_back;
volatile bool jumps = false;
volatile int* volatile null = nullptr;

namespace {

volatile int zero = 0;
volatile int sink = 0;
alignas(8) char data[64];
void (*volatile nowhere)() = nullptr;
void (*volatile into_data)() = reinterpret_cast<void (*)()>(data);

template <int exceptions>
void floating(double a, double b, bool multiplied) {
  struct Enabled {
    Enabled() { feenableexcept(exceptions); }
    ~Enabled() { fedisableexcept(exceptions); }
  } const enabled;
  volatile double left = a, right = b, result;
  result = multiplied ? left * right : left / right;
  static_cast<void>(result);
}

void set_flag(std::uint64_t flag) { __builtin_ia32_writeeflags_u64(__builtin_ia32_readeflags_u64() | flag); }

// Memory of a file that has no such page any more.
void read_beyond_file() {
  std::string name = "/tmp/hedro34-XXXXXX";
  const int file = mkstemp(name.data());
  unlink(name.c_str());
  EXPECT_EQ(ftruncate(file, 4096), 0);
  struct Mapping {
    void* memory;
    ~Mapping() { munmap(memory, 4096); }
  } const mapping{mmap(nullptr, 4096, PROT_READ, MAP_SHARED, file, 0)};
  EXPECT_EQ(ftruncate(file, 0), 0);
  close(file);
  sink = *static_cast<volatile char*>(mapping.memory);
}

}  // namespace

void read_null() { sink = *null; }

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winfinite-recursion"
[[gnu::noinline]] int recurse_for_ever(int depth) {
  const Counted counted;
  volatile char frame[200];
  frame[depth % 200] = 1;
  return recurse_for_ever(depth + 1) + frame[0];
}
#pragma GCC diagnostic pop

std::vector<Provocation> provocations() {
  const double huge = std::numeric_limits<double>::max();
  const double tiny = std::numeric_limits<double>::min();
  return {
      {"read at null", read_null, "10005 Access Violation"},
      {"write at null", [] { *null = 1; }, "10005 Access Violation"},
      {"write to code", [] { *reinterpret_cast<volatile char*>(&read_null) = 0; }, "10005 Access Violation"},
      {"address that cannot exist", [] { sink = *reinterpret_cast<volatile int*>(1ULL << 63); },
       "10005 Access Violation"},
      {"call of null", [] { nowhere(); }, "10005 Access Violation"},
      {"call of data", [] { into_data(); }, "10005 Access Violation"},
      {"file cut short", read_beyond_file, "10006 In Page Error"},
      {"misaligned",
       [] {
         volatile int* volatile misaligned = reinterpret_cast<volatile int*>(data + 1);
         set_flag(0x40000);
         sink = *misaligned;
       },
       "10002 Data Type Misalignment"},
      {"integer division", [] { sink = 1 / zero; }, "10132 Integer Divide By Zero"},
      {"float division", [] { floating<FE_DIVBYZERO>(1, 0, false); }, "10142 Divide By Zero"},
      {"float overflow", [=] { floating<FE_OVERFLOW>(huge, huge, true); }, "10129 Float Overflow"},
      {"float underflow", [=] { floating<FE_UNDERFLOW>(tiny, tiny, true); }, "10131 Float Underflow"},
      {"denormal operand",
       [] {
         constexpr std::uint32_t denormal = 0x100;  // its mask
         struct Enabled {
           Enabled() { _mm_setcsr(_mm_getcsr() & ~denormal); }
           ~Enabled() { _mm_setcsr(_mm_getcsr() | denormal); }
         } const enabled;
         volatile double smallest = std::numeric_limits<double>::denorm_min();
         smallest = smallest + 1;
       },
       "10141 Float Denormal Operand"},
      {"empty register stack",
       [] {
         const std::uint16_t control = 0x037E;  // as it is at the start, but that an invalid operation stops
         struct Restored {
           ~Restored() { asm volatile("fninit"); }
         } const restored;
         asm volatile("fldcw %0; fstp %%st(0); fwait" : : "m"(control));
       },
       "10130 Float Stack Check"},
      {"inexact", [] { floating<FE_INEXACT>(1, 3, false); }, "10143 Floating Point Inexact Result"},
      {"invalid", [] { floating<FE_INVALID>(0, 0, false); }, "10128 Invalid Operation"},
      {"ud2", [] { asm volatile("ud2"); }, "10013 Illegal Instruction"},
      {"hlt", [] { asm volatile("hlt"); }, "10134 Privileged Instruction"},
      {"in, with prefix",
       [] {
         asm volatile("inw %%dx, %%ax" ::: "rax");
       },
       "10134 Privileged Instruction"},
      {"wrmsr", [] { asm volatile("wrmsr"); }, "10134 Privileged Instruction"},
      {"int3", [] { asm volatile("int3"); }, "10003 Breakpoint"},
      {"single step", [] { set_flag(0x100); }, "10004 Single Step"},
      {"recursion", [] { recurse_for_ever(0); }, "10237 Stack Overflow"},
      {"inside malloc",
       [] {
         struct Broken {  // until the failure is on its way: making it must not allocate
           Broken() { malloc_faults = true; }
           ~Broken() { malloc_faults = false; }
         } const broken;
         const std::vector<int> numbers(1000);
       },
       "10005 Access Violation"},
      {"without the flags", fault_without_the_flags, "10005 Access Violation"},
  };
}

void install_former_handlers() {
  struct sigaction action = {};
  action.sa_flags = SA_SIGINFO;
  action.sa_sigaction = [](int, siginfo_t* info, void*) {
    former_handler = (info->si_code > 0 ? "fault at " : "sent by ") +
                     std::to_string(reinterpret_cast<std::uintptr_t>(info->si_code > 0 ? info->si_addr : nullptr));
    if (jumps) siglongjmp(way_back, 1);
  };
  sigaction(SIGSEGV, &action, nullptr);
  std::signal(SIGFPE, [](int signal) {
    former_handler = "plain " + std::to_string(signal);
    siglongjmp(way_back, 1);
  });
  std::signal(SIGILL, SIG_IGN);
}

}  // namespace hedro34::testing
