#include "hedro34/component/own_library.h"

#include <windows.h>

#include <vector>

namespace hedro34 {
namespace {

HMODULE module_of(const void* address, DWORD flags) noexcept {
  HMODULE module = nullptr;
  flags |= GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS;
  return ::GetModuleHandleExW(flags, static_cast<const wchar_t*>(address), &module) != 0 ? module : nullptr;
}

}  // namespace

String path_of_library(const void* address_in_it) {
  const HMODULE module = module_of(address_in_it, GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT);
  if (module == nullptr) return {};
  std::vector<wchar_t> path(MAX_PATH);
  for (;;) {  // the length is not told beforehand
    const DWORD length = ::GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) return String(path.begin(), path.begin() + length);
    path.resize(2 * path.size());
  }
}

void keep_loaded(const void* address_in_it) noexcept { module_of(address_in_it, GET_MODULE_HANDLE_EX_FLAG_PIN); }

}  // namespace hedro34
