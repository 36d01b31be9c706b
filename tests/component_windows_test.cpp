// The component in a process of the system's: type information, and the end of the process.
#include <thread>

#include "tests/component_support.h"

#include <objbase.h>
#include <ocidl.h>
#include <oleauto.h>

namespace hedro34::testing {
namespace {

using component::abc, component::created, component::id_of;

const String library = from_utf8(HEDRO34_COMPONENT);

IDispatch* system_view(const Held<binary::IDispatch>& object) {
  return static_cast<IDispatch*>(static_cast<void*>(object.get()));
}

std::string name_of(ITypeInfo* info, TYPEKIND& kind) {
  BSTR name = nullptr;
  TYPEATTR* attributes = nullptr;
  EXPECT_EQ(info->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr), S_OK);
  EXPECT_EQ(info->GetTypeAttr(&attributes), S_OK);
  kind = attributes->typekind;
  info->ReleaseTypeAttr(attributes);
  const std::string text = to_utf8(StringView(reinterpret_cast<char16_t*>(name), ::SysStringLen(name)));
  ::SysFreeString(name);
  info->Release();
  return text;
}

TEST(ComponentTypes, AnObjectTellsItsClass) {
  const auto object = created(library, u"clsHEDROTest");
  IDispatch* const test = system_view(object);
  UINT count = 0;
  EXPECT_EQ(test->GetTypeInfoCount(&count), S_OK);
  EXPECT_EQ(count, 1u);
  ITypeInfo* info = nullptr;
  EXPECT_EQ(test->GetTypeInfo(1, 0, &info), DISP_E_BADINDEX);
  EXPECT_EQ(info, nullptr);
  ASSERT_EQ(test->GetTypeInfo(0, LOCALE_USER_DEFAULT, &info), S_OK);
  wchar_t load[] = L"loadxml";
  wchar_t* names[] = {load};
  MEMBERID typed = -1;
  EXPECT_EQ(info->GetIDsOfNames(names, 1, &typed), S_OK);
  EXPECT_EQ(typed, id_of(object.get(), u"LoadXML"));
  TYPEKIND kind = TKIND_MAX;
  EXPECT_EQ(name_of(info, kind), "clsHEDROTest");
  EXPECT_EQ(kind, TKIND_DISPATCH);

  IProvideClassInfo* teller = nullptr;
  ASSERT_EQ(test->QueryInterface(__uuidof(IProvideClassInfo), reinterpret_cast<void**>(&teller)), S_OK);
  IUnknown *one = nullptr, *other = nullptr;
  test->QueryInterface(__uuidof(IUnknown), reinterpret_cast<void**>(&one));
  teller->QueryInterface(__uuidof(IUnknown), reinterpret_cast<void**>(&other));
  EXPECT_EQ(one, other);
  one->Release(), other->Release();
  ASSERT_EQ(teller->GetClassInfo(&info), S_OK);
  EXPECT_EQ(name_of(info, kind), "clsHEDROTest");
  EXPECT_EQ(kind, TKIND_COCLASS);
  EXPECT_EQ(teller->Release(), 0u);

  // The unit tests have no type library: neither have their objects types.
  const Held<binary::IDispatch> untyped = identity_of(abc());
  EXPECT_EQ(system_view(untyped)->GetTypeInfoCount(&count), S_OK);
  EXPECT_EQ(count, 0u);
  EXPECT_EQ(system_view(untyped)->GetTypeInfo(0, 0, &info), DISP_E_BADINDEX);
  EXPECT_EQ(system_view(untyped)->QueryInterface(__uuidof(IProvideClassInfo), reinterpret_cast<void**>(&teller)),
            E_NOINTERFACE);
}

// An object of a library that is gone when the process ends.
struct Gone final : IDispatch {
  static inline bool gone = false;
  static ULONG counted() {
    if (gone) ::TerminateProcess(::GetCurrentProcess(), 99);
    return 1;
  }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    const bool known = iid == __uuidof(IUnknown) || iid == __uuidof(IDispatch);
    *object = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return counted(); }
  ULONG STDMETHODCALLTYPE Release() override { return counted(); }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
    return DISP_E_MEMBERNOTFOUND;
  }
};

TEST(ComponentLifeDeathTest, TheProcessEndsWithObjectsOfTheHostHeld) {
  const auto hold = [] {
    static Gone host;
    const auto test = created(library, u"clsHEDROTest");
    VARIANT argument{};
    argument.vt = VT_DISPATCH;
    argument.pdispVal = &host;
    DISPPARAMS arguments = {&argument, nullptr, 1, 0};
    const HRESULT result = system_view(test)->Invoke(id_of(test.get(), u"SetError"), GUID{}, 0, DISPATCH_METHOD,
                                                     &arguments, nullptr, nullptr, nullptr);
    if (result != S_OK) ::TerminateProcess(::GetCurrentProcess(), 98);
  };
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        hold();
        HANDLE ready = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
        std::thread([&] {
          hold();
          ::SetEvent(ready);
          ::Sleep(INFINITE);
        }).detach();
        ::WaitForSingleObject(ready, INFINITE);
        Gone::gone = true;
        std::exit(3);
      },
      ::testing::ExitedWithCode(3), "");
}

}  // namespace
}  // namespace hedro34::testing
