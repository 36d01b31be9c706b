#include <dlfcn.h>

#include <cstdlib>
#include <stdexcept>

#include "tests/process.h"

namespace hedro34::testing {

Variable::Variable(const char* name) : name_(name) {
  if (const char* value = std::getenv(name)) former_ = value;
}

void Variable::set(const char* value) const { value == nullptr ? ::unsetenv(name_) : ::setenv(name_, value, 1); }

void* address_in(const String& library, const char* function) {
  void* const opened = ::dlopen(to_utf8(library).c_str(), RTLD_NOW | RTLD_LOCAL);
  void* const found = opened != nullptr ? ::dlsym(opened, function) : nullptr;
  if (found == nullptr) throw std::runtime_error(::dlerror());
  return found;
}

}  // namespace hedro34::testing
