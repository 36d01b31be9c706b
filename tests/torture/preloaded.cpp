// Preloaded into a program, it lets one allocation fail, or one transfer move fewer bytes than it was asked for. HEDRO34_FAULT
// says which: "memory:17" is the 17th allocation, "memory:17-" that one and all behind it, "short:3" the third of all reads and
// writes. They count from the start of main, which a call of access with a name of its own shows to whoever looks at system
// calls. With HEDRO34_FAULT_OF, parts of names of shared libraries with blanks between them, they count from a call of
// hedro34_fault_start, and only what these libraries ask for. HEDRO34_FAULT_TOLD is the number of a file that takes an "!" when
// the fault comes and at the end of the program how many allocations and transfers there were.
#include <dlfcn.h>
#include <link.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

enum Kind { Memory, Transfer };
constexpr const char* kinds[] = {"memory:%ld", "short:%ld"};

bool started = false;
long counted[2] = {};
long fault_at[2] = {};
bool for_good = false;

struct Range {
  std::uintptr_t begin, end;
};
std::array<Range, 64> ranges;  // where the code of HEDRO34_FAULT_OF lies; none when all counts
std::size_t range_count = 0;

void tell(const char* text, int size) {
  const char* file = std::getenv("HEDRO34_FAULT_TOLD");
  if (file != nullptr && ::dprintf(std::atoi(file), "%.*s", size, text) < 0) std::abort();
}

template <class Function>
Function next(const char* name) {
  return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

// The C library's list of what runs at the end of a thread, for which it ends the process when there is no memory. The library
// makes sure that there is some before it asks for a place in it (thread_value.h).
bool is_list_of_thread(std::uintptr_t caller) {
  static const auto begin = reinterpret_cast<std::uintptr_t>(::dlsym(RTLD_DEFAULT, "__cxa_thread_atexit_impl"));
  return caller - begin < 256;
}

bool strikes(Kind kind, const void* caller) {
  const auto at = reinterpret_cast<std::uintptr_t>(caller);
  const auto holds = [at](const Range& range) { return range.begin <= at && at < range.end; };
  if (!started || is_list_of_thread(at) || (range_count > 0 && std::none_of(ranges.begin(), ranges.end(), holds)))
    return false;
  const long number = ++counted[kind];
  if (number == fault_at[kind]) tell("!", 1);
  return fault_at[kind] > 0 && (number == fault_at[kind] || (for_good && number > fault_at[kind]));
}

int keep_ranges(dl_phdr_info* info, std::size_t, void* names) {
  const char* name = std::strrchr(info->dlpi_name, '/');
  const std::size_t length = name == nullptr ? 0 : std::strcspn(++name, ".");
  for (const char* part = static_cast<const char*>(names); length > 0 && *part != '\0'; part += *part == ' ') {
    const std::size_t size = std::strcspn(part, " ");
    for (int i = 0; size == length && std::strncmp(name, part, size) == 0 && i < info->dlpi_phnum; ++i) {
      const auto begin = info->dlpi_addr + info->dlpi_phdr[i].p_vaddr;
      if ((info->dlpi_phdr[i].p_flags & PF_X) != 0 && range_count < ranges.size()) {
        ranges[range_count++] = {begin, begin + info->dlpi_phdr[i].p_memsz};
      }
    }
    part += size;
  }
  return 0;
}

using Main = int(int, char**, char**);
Main* main_of_program = nullptr;

}  // namespace

#pragma GCC visibility push(default)

extern "C" void hedro34_fault_start(const char* fault) {
  if (const char* names = std::getenv("HEDRO34_FAULT_OF")) ::dl_iterate_phdr(keep_ranges, const_cast<char*>(names));
  for (const Kind kind : {Memory, Transfer}) {
    if (fault != nullptr) std::sscanf(fault, kinds[kind], &fault_at[kind]);
  }
  for_good = fault != nullptr && std::strchr(fault, '-') != nullptr;
  started = ::access("the faults start here", F_OK) != 0;
}

extern "C" void hedro34_fault_end() {
  char text[64];
  started = false;
  tell(text, std::snprintf(text, sizeof(text), "%ld %ld", counted[Memory], counted[Transfer]));
}

extern "C" int __libc_start_main(Main* main, int argc, char** argv, void (*init)(), void (*fini)(), void (*loader)(),
                                 void* stack) {
  main_of_program = main;
  Main* const wrapped = [](int count, char** words, char** environment) {
    if (std::getenv("HEDRO34_FAULT_OF") == nullptr) {
      std::atexit(hedro34_fault_end);
      hedro34_fault_start(std::getenv("HEDRO34_FAULT"));
    }
    return main_of_program(count, words, environment);
  };
  return next<decltype(&__libc_start_main)>("__libc_start_main")(wrapped, argc, argv, init, fini, loader, stack);
}

extern "C" void* malloc(std::size_t size) {
  static const auto behind = next<void* (*)(std::size_t)>("malloc");
  if (!strikes(Memory, __builtin_return_address(0))) return behind(size);
  errno = ENOMEM;
  return nullptr;
}

extern "C" void* calloc(std::size_t count, std::size_t size) {
  static const auto behind = next<void* (*)(std::size_t, std::size_t)>("calloc");
  if (!strikes(Memory, __builtin_return_address(0))) return behind(count, size);
  errno = ENOMEM;
  return nullptr;
}

extern "C" void* realloc(void* memory, std::size_t size) {
  static const auto behind = next<void* (*)(void*, std::size_t)>("realloc");
  if (size == 0 || !strikes(Memory, __builtin_return_address(0))) return behind(memory, size);
  errno = ENOMEM;
  return nullptr;
}

// A sanitizer has its own, which do not ask malloc.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  static const auto behind = next<void* (*)(std::size_t)>("malloc");
  return strikes(Memory, __builtin_return_address(0)) ? nullptr : behind(size);
}
void* operator new(std::size_t size) {
  static const auto behind = next<void* (*)(std::size_t)>("malloc");
  void* const memory = strikes(Memory, __builtin_return_address(0)) ? nullptr : behind(size);
  return memory != nullptr ? memory : throw std::bad_alloc();
}

extern "C" ssize_t read(int file, void* target, std::size_t size) {
  static const auto behind = next<ssize_t (*)(int, void*, std::size_t)>("read");
  return behind(file, target, size > 1 && strikes(Transfer, __builtin_return_address(0)) ? (size + 1) / 2 : size);
}

extern "C" ssize_t write(int file, const void* source, std::size_t size) {
  static const auto behind = next<ssize_t (*)(int, const void*, std::size_t)>("write");
  return behind(file, source, size > 1 && strikes(Transfer, __builtin_return_address(0)) ? (size + 1) / 2 : size);
}
