#include "hedro34/component/binary.h"

#include <cstdint>

// Each list is read twice: with the values of binary.h, and with those of the system's headers, which are macros in part.
#define HEDRO34_CODES                                                                                                  \
  S_OK, S_FALSE, E_NOTIMPL, E_NOINTERFACE, E_POINTER, E_FAIL, E_UNEXPECTED, E_OUTOFMEMORY, E_INVALIDARG,               \
      DISP_E_UNKNOWNINTERFACE, DISP_E_MEMBERNOTFOUND, DISP_E_PARAMNOTFOUND, DISP_E_TYPEMISMATCH, DISP_E_UNKNOWNNAME,   \
      DISP_E_NONAMEDARGS, DISP_E_BADVARTYPE, DISP_E_EXCEPTION, DISP_E_OVERFLOW, DISP_E_BADINDEX, DISP_E_BADPARAMCOUNT, \
      DISP_E_PARAMNOTOPTIONAL, CLASS_E_NOAGGREGATION, CLASS_E_CLASSNOTAVAILABLE, REGDB_E_READREGDB,                    \
      REGDB_E_WRITEREGDB, CO_E_CLASSSTRING, CO_E_DLLNOTFOUND, CO_E_ERRORINDLL
#define HEDRO34_NUMBERS                                                                                               \
  VT_EMPTY, VT_NULL, VT_I2, VT_I4, VT_R4, VT_R8, VT_CY, VT_DATE, VT_BSTR, VT_DISPATCH, VT_ERROR, VT_BOOL, VT_VARIANT, \
      VT_UNKNOWN, VT_I1, VT_UI1, VT_UI2, VT_UI4, VT_I8, VT_UI8, VT_INT, VT_UINT, VT_ARRAY, VT_BYREF, FADF_BSTR,       \
      FADF_UNKNOWN, FADF_DISPATCH, FADF_VARIANT, DISPATCH_METHOD, DISPATCH_PROPERTYGET, DISPATCH_PROPERTYPUT,         \
      DISPATCH_PROPERTYPUTREF, DISPID_VALUE, DISPID_UNKNOWN, DISPID_PROPERTYPUT

namespace hedro34::binary {
namespace {

constexpr std::int64_t own_codes[] = {HEDRO34_CODES};
constexpr std::int64_t own_numbers[] = {HEDRO34_NUMBERS};

}  // namespace
}  // namespace hedro34::binary

#include <objbase.h>
#include <oleauto.h>

#include <algorithm>
#include <iterator>
#include <type_traits>

namespace {

namespace own = hedro34::binary;

constexpr std::int64_t codes[] = {HEDRO34_CODES};
constexpr std::int64_t numbers[] = {HEDRO34_NUMBERS};
static_assert(std::equal(std::begin(codes), std::end(codes), std::begin(own::own_codes), std::end(own::own_codes)));
static_assert(std::equal(std::begin(numbers), std::end(numbers), std::begin(own::own_numbers),
                         std::end(own::own_numbers)));
static_assert(own::variant_true == VARIANT_TRUE);

template <class T, class System>
constexpr bool alike = sizeof(T) == sizeof(System) && alignof(T) == alignof(System);
template <class T, class System>
constexpr bool same_number =
    alike<T, System>&& std::is_signed_v<T> == std::is_signed_v<System>&& std::is_integral_v<System>;
static_assert(same_number<own::HRESULT, HRESULT> && same_number<own::DISPID, DISPID> && same_number<own::LCID, LCID> &&
              same_number<own::VARTYPE, VARTYPE> && same_number<std::uint32_t, ULONG> &&
              same_number<std::uint32_t, UINT> && same_number<std::int32_t, BOOL> && same_number<std::uint16_t, WORD> &&
              same_number<std::int16_t, VARIANT_BOOL> && alike<own::OLECHAR, OLECHAR> && alike<own::BSTR, BSTR>);

// clang-format off
#define HEDRO34_SAME(type, member) (offsetof(own::type, member) == offsetof(type, member) && \
                                    sizeof(own::type::member) == sizeof(type::member))
static_assert(alike<own::GUID, GUID> && HEDRO34_SAME(GUID, Data1) && HEDRO34_SAME(GUID, Data2) &&
              HEDRO34_SAME(GUID, Data3) && HEDRO34_SAME(GUID, Data4));
static_assert(alike<own::SAFEARRAYBOUND, SAFEARRAYBOUND> && HEDRO34_SAME(SAFEARRAYBOUND, cElements) &&
              HEDRO34_SAME(SAFEARRAYBOUND, lLbound));
static_assert(alike<own::SAFEARRAY, SAFEARRAY> && HEDRO34_SAME(SAFEARRAY, cDims) &&
              HEDRO34_SAME(SAFEARRAY, fFeatures) && HEDRO34_SAME(SAFEARRAY, cbElements) &&
              HEDRO34_SAME(SAFEARRAY, cLocks) && HEDRO34_SAME(SAFEARRAY, pvData) && HEDRO34_SAME(SAFEARRAY, rgsabound));
static_assert(alike<own::VARIANT, VARIANT> && HEDRO34_SAME(VARIANT, vt) && HEDRO34_SAME(VARIANT, cVal) &&
              HEDRO34_SAME(VARIANT, bVal) && HEDRO34_SAME(VARIANT, iVal) && HEDRO34_SAME(VARIANT, uiVal) &&
              HEDRO34_SAME(VARIANT, lVal) && HEDRO34_SAME(VARIANT, ulVal) && HEDRO34_SAME(VARIANT, llVal) &&
              HEDRO34_SAME(VARIANT, ullVal) && HEDRO34_SAME(VARIANT, fltVal) && HEDRO34_SAME(VARIANT, dblVal) &&
              HEDRO34_SAME(VARIANT, boolVal) && HEDRO34_SAME(VARIANT, scode) && HEDRO34_SAME(VARIANT, bstrVal) &&
              HEDRO34_SAME(VARIANT, punkVal) && HEDRO34_SAME(VARIANT, pdispVal) && HEDRO34_SAME(VARIANT, parray) &&
              HEDRO34_SAME(VARIANT, pbVal) && HEDRO34_SAME(VARIANT, piVal) && HEDRO34_SAME(VARIANT, plVal) &&
              HEDRO34_SAME(VARIANT, pllVal) && HEDRO34_SAME(VARIANT, pfltVal) && HEDRO34_SAME(VARIANT, pdblVal) &&
              HEDRO34_SAME(VARIANT, pboolVal) && HEDRO34_SAME(VARIANT, pbstrVal) && HEDRO34_SAME(VARIANT, ppunkVal) &&
              HEDRO34_SAME(VARIANT, ppdispVal) && HEDRO34_SAME(VARIANT, pparray) && HEDRO34_SAME(VARIANT, pvarVal) &&
              HEDRO34_SAME(VARIANT, byref));
static_assert(alike<own::DISPPARAMS, DISPPARAMS> && HEDRO34_SAME(DISPPARAMS, rgvarg) &&
              HEDRO34_SAME(DISPPARAMS, rgdispidNamedArgs) && HEDRO34_SAME(DISPPARAMS, cArgs) &&
              HEDRO34_SAME(DISPPARAMS, cNamedArgs));
static_assert(alike<own::EXCEPINFO, EXCEPINFO> && HEDRO34_SAME(EXCEPINFO, wCode) &&
              HEDRO34_SAME(EXCEPINFO, bstrSource) && HEDRO34_SAME(EXCEPINFO, bstrDescription) &&
              HEDRO34_SAME(EXCEPINFO, bstrHelpFile) && HEDRO34_SAME(EXCEPINFO, dwHelpContext) &&
              HEDRO34_SAME(EXCEPINFO, pvReserved) && HEDRO34_SAME(EXCEPINFO, pfnDeferredFillIn) &&
              HEDRO34_SAME(EXCEPINFO, scode));
// clang-format on

// The interfaces: as many bytes, the same identifiers, and functions that take the same words in the same convention.
static_assert(alike<own::IUnknown, IUnknown> && alike<own::IDispatch, IDispatch> &&
              alike<own::IClassFactory, IClassFactory>);
constexpr bool same_id(const own::GUID& a, const GUID& b) {
  return a.Data1 == b.Data1 && a.Data2 == b.Data2 && a.Data3 == b.Data3 &&
         std::equal(std::begin(a.Data4), std::end(a.Data4), std::begin(b.Data4));
}
static_assert(same_id(own::IID_IUnknown, __uuidof(IUnknown)) && same_id(own::IID_IDispatch, __uuidof(IDispatch)) &&
              same_id(own::IID_IClassFactory, __uuidof(IClassFactory)));

// A function of an interface by the convention and the sizes of what it takes.
template <class>
struct Words;
template <class C, class R, class... A>
struct Words<R (__stdcall C::*)(A...)> {
  template <class>
  struct Like : std::false_type {};
  template <class D, class S, class... B>
  requires(sizeof...(A) == sizeof...(B)) struct Like<S (__stdcall D::*)(B...)>
      : std::bool_constant<((sizeof(A) == sizeof(B)) && ... && (sizeof(R) == sizeof(S)))> {
  };
};
template <class F, class G>
constexpr bool called_alike = Words<F>::template Like<G>::value;
static_assert(called_alike<decltype(&own::IUnknown::QueryInterface), HRESULT (__stdcall IUnknown::*)(REFIID, void**)> &&
              called_alike<decltype(&own::IUnknown::AddRef), decltype(&IUnknown::AddRef)> &&
              called_alike<decltype(&own::IUnknown::Release), decltype(&IUnknown::Release)> &&
              called_alike<decltype(&own::IDispatch::GetTypeInfoCount), decltype(&IDispatch::GetTypeInfoCount)> &&
              called_alike<decltype(&own::IDispatch::GetTypeInfo), decltype(&IDispatch::GetTypeInfo)> &&
              called_alike<decltype(&own::IDispatch::GetIDsOfNames), decltype(&IDispatch::GetIDsOfNames)> &&
              called_alike<decltype(&own::IDispatch::Invoke), decltype(&IDispatch::Invoke)> &&
              called_alike<decltype(&own::IClassFactory::CreateInstance),
                           HRESULT (__stdcall IClassFactory::*)(IUnknown*, REFIID, void**)> &&
              called_alike<decltype(&own::IClassFactory::LockServer), decltype(&IClassFactory::LockServer)>);

template <class To, class From>
To* as(From* pointer) noexcept {
  return static_cast<To*>(static_cast<void*>(pointer));
}

}  // namespace

namespace hedro34::binary {

BSTR SysAllocStringLen(const OLECHAR* text, std::uint32_t length) {
  return as<OLECHAR>(::SysAllocStringLen(reinterpret_cast<const wchar_t*>(text), length));
}

void SysFreeString(BSTR text) { ::SysFreeString(as<wchar_t>(text)); }

std::uint32_t SysStringLen(BSTR text) { return ::SysStringLen(as<wchar_t>(text)); }

HRESULT VariantClear(VARIANT* variant) { return ::VariantClear(as<::VARIANT>(variant)); }

SAFEARRAY* SafeArrayCreateVector(VARTYPE element, std::int32_t lower, std::uint32_t count) {
  return as<SAFEARRAY>(::SafeArrayCreateVector(element, lower, count));
}

HRESULT SafeArrayDestroy(SAFEARRAY* array) { return ::SafeArrayDestroy(as<::SAFEARRAY>(array)); }

}  // namespace hedro34::binary
