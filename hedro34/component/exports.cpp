// The four functions that the component library shows; nothing else of it is visible. `DllGetClassObject` starts the library
// on the calling thread, so that the start comes before the first object there.
#include <memory>
#include <vector>

#include "hedro34/component/class_registry.h"
#include "hedro34/component/classes.h"
#include "hedro34/component/identity.h"
#include "hedro34/component/own_library.h"
#include "hedro34/component/result_of.h"
#include "hedro34/component/services.h"
#include "hedro34/runtime/modStartup.h"

namespace hedro34 {
namespace {

using namespace binary;

constexpr char in_this_library = 0;

class ClassFactory final : public IClassFactory {
 public:
  explicit ClassFactory(const ClassTable& table) : table_(table) {}

  HRESULT HEDRO34_CALL QueryInterface(const GUID& iid, void** object) override {
    if (object == nullptr) return E_POINTER;
    const bool known = iid == IID_IUnknown || iid == IID_IClassFactory;
    *object = known ? static_cast<IClassFactory*>(this) : nullptr;
    if (known) AddRef();
    return known ? S_OK : E_NOINTERFACE;
  }
  std::uint32_t HEDRO34_CALL AddRef() override { return ++count_; }
  std::uint32_t HEDRO34_CALL Release() override {
    const std::uint32_t left = --count_;
    if (left == 0) std::unique_ptr<ClassFactory>(this).reset();
    return left;
  }

  HRESULT HEDRO34_CALL CreateInstance(IUnknown* outer, const GUID& iid, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    return result_of([&] {
      Main();
      return identity_of(table_.create())->QueryInterface(iid, object);
    });
  }
  HRESULT HEDRO34_CALL LockServer(std::int32_t lock) override {
    Alive::lock(lock != 0);
    return S_OK;
  }

 private:
  const ClassTable& table_;
  std::uint32_t count_ = 0;
  Alive alive_;
};

// What the class registry is to know of this library.
struct Registration {
  Registration() {
    for (const auto tables : {library_classes(), service_classes()}) {
      for (const ClassTable& table : tables) {
        if (table.create == nullptr) continue;
        classes.push_back({types.name + u"." + String(table.name), table.class_id, types.path});
      }
    }
    for (const ClassTable& table : library_classes()) {
      types.interfaces.push_back({u"_" + String(table.name), table.interface_id});
    }
  }

  RegisteredTypeLibrary types = {.name = String(type_library_name),
                                 .id = type_library_id,
                                 .major = type_library_major,
                                 .minor = type_library_minor,
                                 .locale = type_library_locale,
                                 .path = path_of_library(&in_this_library)};
  std::vector<RegisteredClass> classes;
};

}  // namespace
}  // namespace hedro34

using namespace hedro34;
using namespace hedro34::binary;

HEDRO34_EXPORT HRESULT HEDRO34_CALL DllGetClassObject(const GUID& class_id, const GUID& iid, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  return result_of([&]() -> HRESULT {
    Main();
    install_host_factories();
    const ClassTable* const table = table_of(class_id);
    if (table == nullptr || table->create == nullptr) return CLASS_E_CLASSNOTAVAILABLE;
    keep_loaded(&in_this_library);
    const Held<IClassFactory> factory(std::make_unique<ClassFactory>(*table).release());
    return factory->QueryInterface(iid, object);
  });
}

HEDRO34_EXPORT HRESULT HEDRO34_CALL DllCanUnloadNow() { return Alive::count() == 0 ? S_OK : S_FALSE; }

HEDRO34_EXPORT HRESULT HEDRO34_CALL DllRegisterServer() {
  return result_of([] {
    keep_loaded(&in_this_library);
    const Registration known;
    return register_classes(known.classes, &known.types);
  });
}

HEDRO34_EXPORT HRESULT HEDRO34_CALL DllUnregisterServer() {
  return result_of([] {
    keep_loaded(&in_this_library);
    const Registration known;
    return unregister_classes(known.classes, &known.types);
  });
}
