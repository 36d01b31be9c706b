#include "hedro34/component/own_library.h"

#include <dlfcn.h>
#include <link.h>

#include <cstdlib>
#include <memory>

namespace hedro34 {

String path_of_library(const void* address_in_it) {
  Dl_info info{};
  void* map = nullptr;
  if (::dladdr1(address_in_it, &info, &map, RTLD_DL_LINKMAP) == 0) return {};
  // Of the program itself the loader knows only the name by which it was called.
  const bool program = map == nullptr || static_cast<const link_map*>(map)->l_name[0] == '\0';
  const std::unique_ptr<char, decltype(&std::free)> resolved(
      ::realpath(program ? "/proc/self/exe" : info.dli_fname, nullptr), &std::free);
  if (!resolved) return {};
  String path = from_utf8(resolved.get());
  return to_utf8(path) == resolved.get() ? path : String();
}

void keep_loaded(const void*) noexcept {}  // the linker has marked the library so

}  // namespace hedro34
