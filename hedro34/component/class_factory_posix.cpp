#include "hedro34/component/create_object.h"

#include <dlfcn.h>

#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

#include "hedro34/component/class_registry.h"
#include "hedro34/component/held.h"
#include "hedro34/component/result_of.h"
#include "hedro34/platform/file_error.h"

namespace hedro34 {
namespace {

using binary::HRESULT;

using ClassObjectFunction = HRESULT(const binary::GUID& class_id, const binary::GUID& iid, void** object);

struct CloseLibrary {
  void operator()(void* library) const noexcept { ::dlclose(library); }
};

struct OpenLibraries {
  std::mutex mutex;
  std::unordered_map<String, ClassObjectFunction*> functions;  // by the library's path
};

OpenLibraries& open_libraries() {
  static OpenLibraries libraries;
  return libraries;
}

HRESULT library_error(HRESULT result, FileError::Kind kind, const String& path, std::string_view reason) {
  set_file_error(kind, path, reason);
  return result;
}

HRESULT class_object_function(const String& path, ClassObjectFunction*& function) {
  OpenLibraries& open = open_libraries();
  {
    const std::scoped_lock lock(open.mutex);
    if (const auto known = open.functions.find(path); known != open.functions.end()) {
      function = known->second;
      return binary::S_OK;
    }
  }
  // Not under the lock: a library may create objects while it is being opened.
  const HostCall running;
  const std::string name = to_utf8(path);
  std::unique_ptr<void, CloseLibrary> library(::dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL));
  if (!library) {
    const char* error = ::dlerror();
    std::string reason = error != nullptr ? error : "the library cannot be opened";
    if (reason.starts_with(name + ": ")) reason.erase(0, name.size() + 2);
    return library_error(binary::CO_E_DLLNOTFOUND, FileError::Kind::Unreadable, path, reason);
  }
  function = reinterpret_cast<ClassObjectFunction*>(::dlsym(library.get(), "DllGetClassObject"));
  if (function == nullptr) {
    return library_error(binary::CO_E_ERRORINDLL, FileError::Kind::WrongKind, path, "it has no DllGetClassObject");
  }
  const std::scoped_lock lock(open.mutex);
  if (open.functions.emplace(path, function).second) static_cast<void>(library.release());
  return binary::S_OK;
}

}  // namespace

HRESULT class_factory(StringView name, binary::IClassFactory** factory) noexcept {
  if (factory == nullptr) return binary::E_POINTER;
  *factory = nullptr;
  return result_of([&]() -> HRESULT {
    RegisteredClass wanted;
    if (const HRESULT result = find_class(name, wanted); result != binary::S_OK) return result;
    ClassObjectFunction* function = nullptr;
    if (const HRESULT result = class_object_function(wanted.library, function); result != binary::S_OK) return result;

    void* answer = nullptr;
    const HostCall running;
    const HRESULT result = function(wanted.id, binary::IID_IClassFactory, &answer);
    if (result < 0) return result;
    *factory = static_cast<binary::IClassFactory*>(answer);
    return answer == nullptr ? binary::E_UNEXPECTED : result;
  });
}

}  // namespace hedro34
