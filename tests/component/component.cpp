// A component library for the tests of creation by name: one class that works, and classes that fail at each step. They are
// told apart by the first part of their identifiers.

#include <atomic>
#include <memory>

#include "hedro34/component/binary.h"

using namespace hedro34::binary;

namespace {

std::atomic<int> held = 0;  // references to objects and factories

template <class Interface>
class Counted : public Interface {
 public:
  Counted() { ++held; }
  virtual ~Counted() = default;

  std::uint32_t HEDRO34_CALL AddRef() final {
    ++held;
    return ++count_;
  }
  std::uint32_t HEDRO34_CALL Release() final {
    --held;
    const std::uint32_t left = --count_;
    if (left == 0) std::unique_ptr<Counted>(this).reset();
    return left;
  }

 protected:
  HRESULT answer(bool known, void** object) {
    *object = known ? static_cast<Interface*>(this) : nullptr;
    if (known) AddRef();
    return known ? S_OK : E_NOINTERFACE;
  }

 private:
  std::uint32_t count_ = 1;
};

class Thing final : public Counted<IDispatch> {
 public:
  HRESULT HEDRO34_CALL QueryInterface(const GUID& iid, void** object) override {
    return answer(iid == IID_IUnknown || iid == IID_IDispatch, object);
  }
  HRESULT HEDRO34_CALL GetTypeInfoCount(std::uint32_t* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT HEDRO34_CALL GetTypeInfo(std::uint32_t, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT HEDRO34_CALL GetIDsOfNames(const GUID&, OLECHAR**, std::uint32_t, LCID, DISPID*) override {
    return DISP_E_UNKNOWNNAME;
  }
  HRESULT HEDRO34_CALL Invoke(DISPID, const GUID&, LCID, std::uint16_t, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                              std::uint32_t*) override {
    return DISP_E_MEMBERNOTFOUND;
  }
};

class Factory final : public Counted<IClassFactory> {
 public:
  explicit Factory(std::uint32_t kind) : kind_(kind) {}

  HRESULT HEDRO34_CALL QueryInterface(const GUID& iid, void** object) override {
    return answer(iid == IID_IUnknown || iid == IID_IClassFactory, object);
  }
  HRESULT HEDRO34_CALL CreateInstance(IUnknown* outer, const GUID& iid, void** object) override {
    if (kind_ == 2) *object = this;  // a failure with a pointer, which is worth nothing
    if (kind_ == 2 || outer != nullptr) return CLASS_E_NOAGGREGATION;
    if (kind_ == 3) return S_OK;  // without an object
    if (kind_ == 4) throw kind_;
    auto* const thing = std::make_unique<Thing>().release();
    const HRESULT result = thing->QueryInterface(iid, object);
    thing->Release();
    return result;
  }
  HRESULT HEDRO34_CALL LockServer(std::int32_t) override { return S_OK; }

 private:
  std::uint32_t kind_;
};

}  // namespace

HEDRO34_EXPORT HRESULT HEDRO34_CALL DllGetClassObject(const GUID& class_id, const GUID& iid, void** object) {
  if (class_id.Data1 == 0) return S_OK;  // without a factory
  if (class_id.Data1 > 4) return CLASS_E_CLASSNOTAVAILABLE;
  auto* const factory = std::make_unique<Factory>(class_id.Data1).release();
  const HRESULT result = factory->QueryInterface(iid, object);
  factory->Release();
  return result;
}

HEDRO34_EXPORT HRESULT HEDRO34_CALL DllCanUnloadNow() { return held == 0 ? S_OK : S_FALSE; }
