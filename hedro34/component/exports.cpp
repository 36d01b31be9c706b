// The four functions that the component library shows; nothing else of it is visible. `DllGetClassObject` starts the library
// on the calling thread, so that the start comes before the first object there.
#include <memory>
#include <vector>

#include "hedro34/component/class_registry.h"
#include "hedro34/component/classes.h"
#include "hedro34/component/create_object.h"
#include "hedro34/component/identity.h"
#include "hedro34/component/result_of.h"
#include "hedro34/component/services.h"
#include "hedro34/runtime/modStartup.h"

#define HEDRO34_EXPORT extern "C" [[gnu::visibility("default")]]

namespace hedro34 {
namespace {

using namespace binary;

class ClassFactory final : public IClassFactory {
 public:
  explicit ClassFactory(const ClassTable& table) : table_(table) {}

  HRESULT QueryInterface(const GUID& iid, void** object) override {
    if (object == nullptr) return E_POINTER;
    const bool known = iid == IID_IUnknown || iid == IID_IClassFactory;
    *object = known ? static_cast<IClassFactory*>(this) : nullptr;
    if (known) AddRef();
    return known ? S_OK : E_NOINTERFACE;
  }
  std::uint32_t AddRef() override { return ++count_; }
  std::uint32_t Release() override {
    const std::uint32_t left = --count_;
    if (left == 0) std::unique_ptr<ClassFactory>(this).reset();
    return left;
  }

  HRESULT CreateInstance(IUnknown* outer, const GUID& iid, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    return result_of([&] {
      Main();
      return identity_of(table_.create())->QueryInterface(iid, object);
    });
  }
  HRESULT LockServer(std::int32_t lock) override {
    Alive::lock(lock != 0);
    return S_OK;
  }

 private:
  const ClassTable& table_;
  std::uint32_t count_ = 0;
  Alive alive_;
};

std::vector<const ClassTable*> creatable_classes() {
  std::vector<const ClassTable*> result;
  for (const auto classes : {library_classes(), service_classes()}) {
    for (const ClassTable& table : classes) {
      if (table.create != nullptr) result.push_back(&table);
    }
  }
  return result;
}

}  // namespace
}  // namespace hedro34

using namespace hedro34;
using namespace hedro34::binary;

HEDRO34_EXPORT HRESULT DllGetClassObject(const GUID& class_id, const GUID& iid, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  return result_of([&]() -> HRESULT {
    Main();
    install_host_factories();
    const ClassTable* const table = table_of(class_id);
    if (table == nullptr || table->create == nullptr) return CLASS_E_CLASSNOTAVAILABLE;
    const Held<IClassFactory> factory(std::make_unique<ClassFactory>(*table).release());
    return factory->QueryInterface(iid, object);
  });
}

HEDRO34_EXPORT HRESULT DllCanUnloadNow() { return Alive::count() == 0 ? S_OK : S_FALSE; }

HEDRO34_EXPORT HRESULT DllRegisterServer() {
  return result_of([] {
    const String library = path_of_library(reinterpret_cast<const void*>(&DllCanUnloadNow));
    std::vector<RegisteredClass> classes;
    for (const ClassTable* const table : creatable_classes()) {
      classes.push_back({String(type_library_name) + u"." + String(table->name), table->class_id, library});
    }
    return register_classes(classes);
  });
}

HEDRO34_EXPORT HRESULT DllUnregisterServer() {
  return result_of([] {
    std::vector<GUID> ids;
    for (const ClassTable* const table : creatable_classes()) ids.push_back(table->class_id);
    return unregister_classes(ids);
  });
}
