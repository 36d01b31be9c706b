#include "hedro34/component/type_info.h"

#include "hedro34/component/classes.h"
#include "hedro34/component/own_library.h"
#include "hedro34/component/system_text_windows.h"

#include <oaidl.h>
#include <objbase.h>
#include <ocidl.h>
#include <oleauto.h>

#include <atomic>
#include <bit>
#include <memory>

namespace hedro34 {
namespace {

// The library of the module that this code is in, for all threads and to the end of the process: the system's type libraries
// belong to no thread. Null when it cannot be loaded, as for want of memory; the next call tries again.
ITypeLib* type_library() {
  static std::atomic<ITypeLib*> library = nullptr;
  if (ITypeLib* const known = library) return known;
  static constexpr char here = 0;
  ITypeLib* loaded = nullptr;
  const String path = path_of_library(&here);
  if (FAILED(::LoadTypeLibEx(wide(path), REGKIND_NONE, &loaded))) return nullptr;
  ITypeLib* first = nullptr;
  if (library.compare_exchange_strong(first, loaded)) return loaded;
  loaded->Release();  // another thread was faster
  return first;
}

ITypeInfo* type_of(const binary::GUID& id) {
  ITypeLib* const library = type_library();
  ITypeInfo* info = nullptr;
  return library != nullptr && SUCCEEDED(library->GetTypeInfoOfGuid(std::bit_cast<GUID>(id), &info)) ? info : nullptr;
}

struct ReleaseInterface {
  void operator()(IUnknown* object) const noexcept { object->Release(); }
};
template <class T>
using Owned = std::unique_ptr<T, ReleaseInterface>;

template <class Interface>
class Counted : public Interface {
 public:
  virtual ~Counted() = default;
  ULONG STDMETHODCALLTYPE AddRef() final { return ++count_; }
  ULONG STDMETHODCALLTYPE Release() final {
    const ULONG left = --count_;
    if (left == 0) std::unique_ptr<Counted>(this).reset();
    return left;
  }

 private:
  std::atomic<ULONG> count_{1};
};

// The type information of an interface, but for the name: a host that asks for the name of an object's type wants its class.
class NamedTypeInfo final : public Counted<ITypeInfo> {
 public:
  NamedTypeInfo(Owned<ITypeInfo> info, StringView name) : info_(std::move(info)), name_(name) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    if (object == nullptr) return E_POINTER;
    const bool known = IsEqualGUID(iid, __uuidof(IUnknown)) || IsEqualGUID(iid, __uuidof(ITypeInfo));
    *object = known ? static_cast<ITypeInfo*>(this) : nullptr;
    if (known) AddRef();
    return known ? S_OK : E_NOINTERFACE;
  }
  HRESULT STDMETHODCALLTYPE GetDocumentation(MEMBERID member, BSTR* name, BSTR* text, DWORD* context,
                                             BSTR* file) override {
    const HRESULT result = info_->GetDocumentation(member, name, text, context, file);
    if (FAILED(result) || member != MEMBERID_NIL || name == nullptr) return result;
    ::SysFreeString(*name);
    *name = ::SysAllocStringLen(reinterpret_cast<const wchar_t*>(name_.data()), static_cast<UINT>(name_.size()));
    return *name != nullptr ? result : E_OUTOFMEMORY;
  }

  HRESULT STDMETHODCALLTYPE GetTypeAttr(TYPEATTR** attributes) override { return info_->GetTypeAttr(attributes); }
  HRESULT STDMETHODCALLTYPE GetTypeComp(ITypeComp** binder) override { return info_->GetTypeComp(binder); }
  HRESULT STDMETHODCALLTYPE GetFuncDesc(UINT index, FUNCDESC** function) override {
    return info_->GetFuncDesc(index, function);
  }
  HRESULT STDMETHODCALLTYPE GetVarDesc(UINT index, VARDESC** variable) override {
    return info_->GetVarDesc(index, variable);
  }
  HRESULT STDMETHODCALLTYPE GetNames(MEMBERID member, BSTR* names, UINT count, UINT* found) override {
    return info_->GetNames(member, names, count, found);
  }
  HRESULT STDMETHODCALLTYPE GetRefTypeOfImplType(UINT index, HREFTYPE* type) override {
    return info_->GetRefTypeOfImplType(index, type);
  }
  HRESULT STDMETHODCALLTYPE GetImplTypeFlags(UINT index, INT* flags) override {
    return info_->GetImplTypeFlags(index, flags);
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(LPOLESTR* names, UINT count, MEMBERID* members) override {
    return info_->GetIDsOfNames(names, count, members);
  }
  HRESULT STDMETHODCALLTYPE Invoke(void* object, MEMBERID member, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                                   EXCEPINFO* exception, UINT* bad_argument) override {
    return info_->Invoke(object, member, flags, arguments, result, exception, bad_argument);
  }
  HRESULT STDMETHODCALLTYPE GetDllEntry(MEMBERID member, INVOKEKIND kind, BSTR* library, BSTR* name,
                                        WORD* ordinal) override {
    return info_->GetDllEntry(member, kind, library, name, ordinal);
  }
  HRESULT STDMETHODCALLTYPE GetRefTypeInfo(HREFTYPE type, ITypeInfo** info) override {
    return info_->GetRefTypeInfo(type, info);
  }
  HRESULT STDMETHODCALLTYPE AddressOfMember(MEMBERID member, INVOKEKIND kind, void** address) override {
    return info_->AddressOfMember(member, kind, address);
  }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
    return info_->CreateInstance(outer, iid, object);
  }
  HRESULT STDMETHODCALLTYPE GetMops(MEMBERID member, BSTR* text) override { return info_->GetMops(member, text); }
  HRESULT STDMETHODCALLTYPE GetContainingTypeLib(ITypeLib** library, UINT* index) override {
    return info_->GetContainingTypeLib(library, index);
  }
  void STDMETHODCALLTYPE ReleaseTypeAttr(TYPEATTR* attributes) override { info_->ReleaseTypeAttr(attributes); }
  void STDMETHODCALLTYPE ReleaseFuncDesc(FUNCDESC* function) override { info_->ReleaseFuncDesc(function); }
  void STDMETHODCALLTYPE ReleaseVarDesc(VARDESC* variable) override { info_->ReleaseVarDesc(variable); }

 private:
  const Owned<ITypeInfo> info_;
  const StringView name_;
};

// Tells the class of an object, which it keeps alive and for which it answers to all other interfaces.
class ClassTeller final : public Counted<IProvideClassInfo> {
 public:
  ClassTeller(const ClassTable& table, binary::IUnknown& object) : table_(table), object_(&object) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    if (object == nullptr) return E_POINTER;
    if (!IsEqualGUID(iid, __uuidof(IProvideClassInfo))) {
      return object_->QueryInterface(std::bit_cast<binary::GUID>(iid), object);
    }
    *object = static_cast<IProvideClassInfo*>(this);
    AddRef();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) override {
    if (info == nullptr) return E_POINTER;
    *info = type_of(table_.class_id);
    return *info != nullptr ? S_OK : E_UNEXPECTED;
  }

 private:
  const ClassTable& table_;
  const Held<binary::IUnknown> object_;
};

}  // namespace

bool has_type_info(const ClassTable& table) { return Owned<ITypeInfo>(type_of(table.interface_id)) != nullptr; }

binary::ITypeInfo* type_info_of(const ClassTable& table) {
  Owned<ITypeInfo> info(type_of(table.interface_id));
  if (!info) return nullptr;
  ITypeInfo* const named = std::make_unique<NamedTypeInfo>(std::move(info), table.name).release();
  return static_cast<binary::ITypeInfo*>(static_cast<void*>(named));
}

void* further_interface(const ClassTable& table, const binary::GUID& iid, binary::IUnknown& object) {
  if (!IsEqualGUID(std::bit_cast<GUID>(iid), __uuidof(IProvideClassInfo)) || !has_type_info(table)) return nullptr;
  IProvideClassInfo* const teller = std::make_unique<ClassTeller>(table, object).release();
  return teller;
}

}  // namespace hedro34
