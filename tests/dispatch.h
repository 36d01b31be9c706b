// Objects of a host that are called by name, for the tests and the fuzz targets.
#pragma once

#include <algorithm>
#include <memory>
#include <vector>

#include "hedro34/base/text.h"
#include "hedro34/component/values.h"

namespace hedro34::testing::component {

using namespace binary;

// The number of a member, or else the result code.
inline DISPID id_of(IDispatch* object, StringView name) {
  String text(name);
  OLECHAR* names[] = {text.data()};
  DISPID id = 0;
  const HRESULT code = object->GetIDsOfNames(IID_NULL, names, 1, 0, &id);
  return code < 0 ? code : id;
}

template <class T>
OwnedVariant owned(const T& value) {
  OwnedVariant result;
  put(*result, Variant(value));
  return result;
}

// What they all have: the last reference takes the object along, any name has a number, and there is no type information.
// What a call does is for the derived class to say.
class Dispatch : public IDispatch {
 public:
  virtual ~Dispatch() = default;
  HRESULT HEDRO34_CALL QueryInterface(const GUID& iid, void** object) override {
    const bool known = iid == IID_IUnknown || iid == IID_IDispatch;
    *object = known ? this : nullptr;
    if (known) AddRef();
    return known ? S_OK : E_NOINTERFACE;
  }
  std::uint32_t HEDRO34_CALL AddRef() override { return ++count; }
  std::uint32_t HEDRO34_CALL Release() override {
    const std::uint32_t left = --count;
    if (left == 0) std::unique_ptr<Dispatch>(this).reset();
    return left;
  }
  HRESULT HEDRO34_CALL GetTypeInfoCount(std::uint32_t*) override { return E_NOTIMPL; }
  HRESULT HEDRO34_CALL GetTypeInfo(std::uint32_t, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT HEDRO34_CALL GetIDsOfNames(const GUID&, OLECHAR** wanted, std::uint32_t, LCID, DISPID* ids) override {
    const auto found = std::find(names_.begin(), names_.end(), wanted[0]);
    ids[0] = static_cast<DISPID>(found - names_.begin());
    if (found == names_.end()) names_.emplace_back(wanted[0]);
    return S_OK;
  }

  std::uint32_t count = 0;  // of references

 protected:
  const String& name_of(DISPID id) const { return names_.at(static_cast<std::size_t>(id)); }

 private:
  std::vector<String> names_ = {u""};  // by number; the default member first
};

template <class T, class... Arguments>
Held<IDispatch> dispatch(Arguments&&... arguments) {
  return Held<IDispatch>(std::make_unique<T>(std::forward<Arguments>(arguments)...).release());
}

// Stands before an object of the library as one of the host's own.
class Proxy : public Dispatch {
 public:
  explicit Proxy(Held<IDispatch> its_target) : target(std::move(its_target)) {}
  Held<IDispatch> target;

 protected:
  // The same before an object that a call gives.
  virtual Held<IDispatch> before(Held<IDispatch> object) = 0;

  // Calls the target. Proxies among the arguments are passed as what they stand before.
  HRESULT pass_on(DISPID id, std::uint16_t flags, const DISPPARAMS& given, VARIANT* result, EXCEPINFO* exception,
                  std::uint32_t* bad) {
    const Held<IDispatch> called = target;
    if (id != DISPID_VALUE) id = id_of(called.get(), name_of(id));
    std::vector<VARIANT> arguments(given.rgvarg, given.rgvarg + given.cArgs);
    for (VARIANT& argument : arguments) {
      const VARIANT value = plain(argument);
      if (value.vt != VT_DISPATCH) continue;
      argument = value;
      const auto* const proxy = dynamic_cast<const Proxy*>(value.pdispVal);
      if (proxy != nullptr && proxy->target) argument.pdispVal = proxy->target.get();
    }
    DISPPARAMS passed = given;
    passed.rgvarg = arguments.data();
    const HRESULT code = called->Invoke(id, IID_NULL, 0, flags, &passed, result, exception, bad);
    if (code == S_OK && result != nullptr && result->vt == VT_DISPATCH && result->pdispVal != nullptr) {
      result->pdispVal = before(Held<IDispatch>::taken(result->pdispVal)).detach();
    }
    return code;
  }
};

}  // namespace hedro34::testing::component
