#include "tests/process.h"

#include <windows.h>

#include <cstdlib>
#include <stdexcept>

namespace hedro34::testing {

Variable::Variable(const char* name) : name_(name) {
  if (const char* value = std::getenv(name)) former_ = value;
}

void Variable::set(const char* value) const { ::_putenv_s(name_, value == nullptr ? "" : value); }

void* address_in(const String& library, const char* function) {
  const HMODULE loaded = ::LoadLibraryW(reinterpret_cast<const wchar_t*>(library.c_str()));
  const FARPROC found = loaded != nullptr ? ::GetProcAddress(loaded, function) : nullptr;
  if (found == nullptr) throw std::runtime_error("error " + std::to_string(::GetLastError()) + ": " + function);
  return reinterpret_cast<void*>(found);
}

}  // namespace hedro34::testing
