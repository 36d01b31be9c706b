#include "tests/faults/provoke_posix.h"

#include <pthread.h>
#include <sys/mman.h>
#include <unistd.h>

#include "hedro34/runtime/modStartup.h"

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
std::string former_handler;
sigjmp_buf way_back;
volatile bool jumps = false;

namespace {

volatile int sink = 0;
alignas(8) char data[64];

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

std::vector<Provocation> provocations_of_system() {
  return {
      {"file cut short", read_beyond_file, "10006 In Page Error"},
      {"misaligned",
       [] {
         volatile int* volatile misaligned = reinterpret_cast<volatile int*>(data + 1);
         __builtin_ia32_writeeflags_u64(__builtin_ia32_readeflags_u64() | 0x40000);
         sink = *misaligned;
       },
       "10002 Data Type Misalignment"},
      {"inside malloc",
       [] {
         struct Broken {  // until the failure is on its way: making it must not allocate
           Broken() { malloc_faults = true; }
           ~Broken() { malloc_faults = false; }
         } const broken;
         const std::vector<int> numbers(1000);
       },
       "10005 Access Violation"},
  };
}

bool null_reaches_former_handler() { return outside(read_null) == "fault at 0"; }

void on_thread(std::size_t stack_size, void (*deed)()) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, stack_size), 0);
  const auto start = [](void* body) -> void* {
    Main();
    reinterpret_cast<void (*)()>(body)();
    return nullptr;
  };
  pthread_t thread;
  ASSERT_EQ(pthread_create(&thread, &attributes, start, reinterpret_cast<void*>(deed)), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
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
