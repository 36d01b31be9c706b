// What the tests do with their own process: variables of its environment, and libraries that it loads.
#pragma once

#include <optional>
#include <string>

#include "hedro34/base/text.h"

namespace hedro34::testing {

// A variable of the environment, put back at the end.
class Variable {
 public:
  explicit Variable(const char* name);
  ~Variable() { set(former_ ? former_->c_str() : nullptr); }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;
  void set(const char* value) const;  // null: there is none

 private:
  const char* name_;
  std::optional<std::string> former_;
};

// A function of a library, which is loaded and stays so. Throws where there is none.
void* address_in(const String& library, const char* function);

template <class Function>
Function* function_in(const String& library, const char* function) {
  return reinterpret_cast<Function*>(address_in(library, function));
}

}  // namespace hedro34::testing
