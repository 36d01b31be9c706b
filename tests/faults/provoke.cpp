#include "tests/faults/provoke.h"

#include <limits>

namespace hedro34::testing {

thread_local int Counted::ended = 0;
volatile int* volatile null = nullptr;

namespace {

volatile int zero = 0;
volatile int sink = 0;
alignas(8) char data[64];
void (*volatile nowhere)() = nullptr;
void (*volatile into_data)() = reinterpret_cast<void (*)()>(data);

// Nothing of the compiler's is in that register there.
[[gnu::noinline]] void divide(double left, double right) {
  asm volatile("movsd %0, %%xmm0; divsd %1, %%xmm0" : : "m"(left), "m"(right));
}
[[gnu::noinline]] void multiply(double left, double right) {
  asm volatile("movsd %0, %%xmm0; mulsd %1, %%xmm0" : : "m"(left), "m"(right));
}
void divide_x87(double left, double right) { asm volatile("fldl %0; fdivl %1; fwait" : : "m"(left), "m"(right)); }

void set_flag(std::uintptr_t flag) {
#ifdef __x86_64__
  __builtin_ia32_writeeflags_u64(__builtin_ia32_readeflags_u64() | flag);
#else
  __builtin_ia32_writeeflags_u32(__builtin_ia32_readeflags_u32() | flag);
#endif
}

struct Initialised {  // the x87 unit, in the end
  ~Initialised() { asm volatile("fninit"); }
};

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

[[gnu::noinline]] void touch_the_next_100_kb() {
  volatile char frame[100 * 1024];
  frame[0] = 1;
  static_cast<void>(frame[0]);
}

void may_throw() {
  if (zero != 0) throw Failure(5, {});
}

Lines load(clsHEDROTest& test, const std::function<void()>& deed) {
  const FaultingHost host(deed);
  Recorder recorder;
  const Folder folder;
  const String path = folder.write("t.xml", "<examview><question type='essay' question-id='1'/></examview>");
  const bool loaded = test.LoadXML(path);
  EXPECT_EQ(loaded, recorder.lines.empty());
  return recorder.take();
}

std::uint32_t Unmasked::vector_modes() {
  std::uint32_t modes = 0;
  asm volatile("stmxcsr %0" : "=m"(modes));
  return modes & ~std::uint32_t{0x3F};
}

std::uint16_t Unmasked::control_word() {
  std::uint16_t word = 0;
  asm volatile("fnstcw %0" : "=m"(word));
  return word;
}

void Unmasked::set(std::uint32_t vector_modes, std::uint16_t control_word) {
  asm volatile("ldmxcsr %0; fnclex; fldcw %1" : : "m"(vector_modes), "m"(control_word));
}

Unmasked::Unmasked(std::uint32_t faults) : vector_modes_(vector_modes()), control_word_(control_word()) {
  set(vector_modes_ & ~(faults << 7), static_cast<std::uint16_t>(control_word_ & ~faults));
}

Unmasked::~Unmasked() { set(vector_modes_, control_word_); }

std::vector<Provocation> provocations() {
  const double huge = std::numeric_limits<double>::max();
  const double tiny = std::numeric_limits<double>::min();
  const double least = std::numeric_limits<double>::denorm_min();
  const auto with = [](std::uint32_t faults, void (*operation)(double, double), double left, double right) {
    return [=] {
      const Unmasked unmasked(faults);
      operation(left, right);
    };
  };
  std::vector<Provocation> result = {
      {"read at null", read_null, "10005 Access Violation"},
      {"write at null", [] { *null = 1; }, "10005 Access Violation"},
      {"write to code", [] { *reinterpret_cast<volatile char*>(&read_null) = 0; }, "10005 Access Violation"},
      {"address that cannot exist", [] { sink = *reinterpret_cast<volatile int*>(~(~std::uintptr_t{} >> 1)); },
       "10005 Access Violation"},
      {"call of null", [] { nowhere(); }, "10005 Access Violation"},
      {"call of data", [] { into_data(); }, "10005 Access Violation"},
      {"integer division", [] { sink = 1 / zero; }, "10132 Integer Divide By Zero"},
      {"float division", with(4, divide, 1, 0), "10142 Divide By Zero"},
      {"float division, x87", with(4, divide_x87, 1, 0), "10142 Divide By Zero"},
      {"float overflow", with(8, multiply, huge, huge), "10129 Float Overflow"},
      {"float underflow", with(16, multiply, tiny, tiny), "10131 Float Underflow"},
      {"denormal operand", with(2, multiply, least, 1), "10141 Float Denormal Operand"},
      {"empty register stack",
       [] {
         const std::uint16_t control = 0x037E;  // as it is at the start, but that an invalid operation stops
         const Initialised initialised;
         asm volatile("fninit; fldcw %0; fstp %%st(0); fwait" : : "m"(control));
       },
       "10130 Float Stack Check"},
      {"inexact", with(32, divide, 1, 3), "10143 Floating Point Inexact Result"},
      {"invalid", with(1, divide, 0, 0), "10128 Invalid Operation"},
      {"ud2", [] { asm volatile("ud2"); }, "10013 Illegal Instruction"},
      {"hlt", [] { asm volatile("hlt"); }, "10134 Privileged Instruction"},
      {"in, with prefix",
       [] {
         asm volatile("inw %%dx, %%ax" ::: "ax");
       },
       "10134 Privileged Instruction"},
      {"wrmsr", [] { asm volatile("wrmsr"); }, "10134 Privileged Instruction"},
      {"int3", [] { asm volatile("int3"); }, "10003 Breakpoint"},
      {"single step", [] { set_flag(0x100); }, "10004 Single Step"},
      {"recursion", [] { recurse_for_ever(0); }, "10237 Stack Overflow"},
      {"without the flags", fault_without_the_flags, "10005 Access Violation"},
  };
  for (Provocation& provocation : provocations_of_system()) result.push_back(std::move(provocation));
  return result;
}

}  // namespace hedro34::testing
