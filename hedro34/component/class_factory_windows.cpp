#include "hedro34/component/class_registry.h"
#include "hedro34/component/create_object.h"
#include "hedro34/component/held.h"
#include "hedro34/component/result_of.h"
#include "hedro34/component/system_text_windows.h"
#include "hedro34/platform/file_error.h"

#include <objbase.h>

namespace hedro34 {

binary::HRESULT class_factory(StringView name, binary::IClassFactory** factory) noexcept {
  if (factory == nullptr) return E_POINTER;
  *factory = nullptr;
  return result_of([&]() -> HRESULT {
    clear_file_error();
    const HostCall running;
    CLSID class_id{};
    if (name.find(u'\0') != StringView::npos) return CO_E_CLASSSTRING;
    if (const HRESULT result = ::CLSIDFromProgID(wide(String(name)), &class_id); FAILED(result)) return result;
    void* answer = nullptr;
    const HRESULT result = running.make(
        [&] { return ::CoGetClassObject(class_id, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory, &answer); });
    if (FAILED(result)) {
      RegisteredClass registered;
      if (find_class(name, registered) != S_OK) registered.library = name;
      set_file_error(FileError::Kind::Unreadable, registered.library, system_words(result));
      return result;
    }
    *factory = static_cast<binary::IClassFactory*>(answer);
    return answer == nullptr ? E_UNEXPECTED : result;
  });
}

}  // namespace hedro34
