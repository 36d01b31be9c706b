// The binary interface between a component and its callers, in any language: interfaces that are tables of functions,
// identifiers of 128 bits, result codes, texts with their length in front, variants and arrays with lower bounds. Names,
// values and layouts are the standard ones, with pointers of 8 and of 4 bytes. They stand here for every system, so that no
// header of a system's is needed beside them; functions take their arguments as the system's own components do.
//
// Memory crosses the boundary, so a system that has functions for texts, arrays and variants does that work
// (binary_windows.cpp, which holds all that stands here against the system's headers). Elsewhere (binary_posix.cpp) a text
// is a block of `malloc` with 4 unused bytes, the length in bytes (32-bit), the 16-bit units and a zero unit; the pointer
// names the first unit, so the block starts 8 bytes before it. An array is two blocks of `malloc`, the descriptor and the
// elements. Who gets one frees it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "hedro34/base/export.h"

// How functions of the interfaces, and the functions that a component library shows, are called.
#ifdef _WIN32
#define HEDRO34_CALL __stdcall
#define HEDRO34_EXPORT extern "C"  // a .def file names them
#else
#define HEDRO34_CALL
#define HEDRO34_EXPORT extern "C" [[gnu::visibility("default")]]
#endif

namespace hedro34::binary {

using HRESULT = std::int32_t;
using DISPID = std::int32_t;
using LCID = std::uint32_t;
using VARTYPE = std::uint16_t;
using OLECHAR = char16_t;
using BSTR = OLECHAR*;

struct GUID {
  std::uint32_t Data1;
  std::uint16_t Data2;
  std::uint16_t Data3;
  std::uint8_t Data4[8];

  friend bool operator==(const GUID& a, const GUID& b) noexcept { return std::memcmp(&a, &b, sizeof a) == 0; }
};

struct IDispatch;
struct ITypeInfo;  // the system's own, where it has type libraries
struct VARIANT;

struct IUnknown {
  virtual HRESULT HEDRO34_CALL QueryInterface(const GUID& iid, void** object) = 0;
  virtual std::uint32_t HEDRO34_CALL AddRef() = 0;
  virtual std::uint32_t HEDRO34_CALL Release() = 0;

 protected:
  ~IUnknown() = default;
};

struct SAFEARRAYBOUND {
  std::uint32_t cElements;
  std::int32_t lLbound;
};

struct SAFEARRAY {
  std::uint16_t cDims;
  std::uint16_t fFeatures;
  std::uint32_t cbElements;  // bytes of an element
  std::uint32_t cLocks;
  void* pvData;
  SAFEARRAYBOUND rgsabound[1];  // one for each dimension, the last one first
};

struct VARIANT {
  VARTYPE vt;
  std::uint16_t wReserved1;
  std::uint16_t wReserved2;
  std::uint16_t wReserved3;
  union {
    std::int8_t cVal;
    std::uint8_t bVal;
    std::int16_t iVal;
    std::uint16_t uiVal;
    std::int32_t lVal;
    std::uint32_t ulVal;
    std::int64_t llVal;
    std::uint64_t ullVal;
    float fltVal;
    double dblVal;  // also a date
    std::int16_t boolVal;
    HRESULT scode;
    BSTR bstrVal;
    IUnknown* punkVal;
    IDispatch* pdispVal;
    SAFEARRAY* parray;
    std::uint8_t* pbVal;
    std::int16_t* piVal;
    std::int32_t* plVal;
    std::int64_t* pllVal;
    float* pfltVal;
    double* pdblVal;
    std::int16_t* pboolVal;
    BSTR* pbstrVal;
    IUnknown** ppunkVal;
    IDispatch** ppdispVal;
    SAFEARRAY** pparray;
    VARIANT* pvarVal;
    void* byref;
    void* record[2];
  };
};

struct DISPPARAMS {
  VARIANT* rgvarg;            // the last argument first, behind the named ones
  DISPID* rgdispidNamedArgs;  // the place of each named argument, or `DISPID_PROPERTYPUT`
  std::uint32_t cArgs;        // all of them
  std::uint32_t cNamedArgs;   // the first so many of `rgvarg`
};

struct EXCEPINFO {
  std::uint16_t wCode;
  std::uint16_t wReserved;
  BSTR bstrSource;
  BSTR bstrDescription;
  BSTR bstrHelpFile;
  std::uint32_t dwHelpContext;
  void* pvReserved;
  HRESULT(HEDRO34_CALL* pfnDeferredFillIn)(EXCEPINFO*);
  HRESULT scode;
};

struct IDispatch : IUnknown {
  virtual HRESULT HEDRO34_CALL GetTypeInfoCount(std::uint32_t* count) = 0;
  virtual HRESULT HEDRO34_CALL GetTypeInfo(std::uint32_t index, LCID locale, ITypeInfo** info) = 0;
  virtual HRESULT HEDRO34_CALL GetIDsOfNames(const GUID& iid, OLECHAR** names, std::uint32_t count, LCID locale,
                                             DISPID* ids) = 0;
  virtual HRESULT HEDRO34_CALL Invoke(DISPID id, const GUID& iid, LCID locale, std::uint16_t flags,
                                      DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                                      std::uint32_t* bad_argument) = 0;

 protected:
  ~IDispatch() = default;
};

struct IClassFactory : IUnknown {
  virtual HRESULT HEDRO34_CALL CreateInstance(IUnknown* outer, const GUID& iid, void** object) = 0;
  virtual HRESULT HEDRO34_CALL LockServer(std::int32_t lock) = 0;

 protected:
  ~IClassFactory() = default;
};

// Layouts that callers rely on, by the size of a pointer.
inline constexpr std::size_t pointer_size = sizeof(void*);
static_assert(pointer_size == 8 || pointer_size == 4);
static_assert(sizeof(GUID) == 16 && alignof(GUID) == 4);
static_assert(sizeof(SAFEARRAYBOUND) == 8 && offsetof(SAFEARRAYBOUND, lLbound) == 4);
static_assert(sizeof(SAFEARRAY) == 16 + 2 * pointer_size && offsetof(SAFEARRAY, fFeatures) == 2 &&
              offsetof(SAFEARRAY, cbElements) == 4 && offsetof(SAFEARRAY, cLocks) == 8 &&
              offsetof(SAFEARRAY, pvData) == 8 + pointer_size &&
              offsetof(SAFEARRAY, rgsabound) == 8 + 2 * pointer_size);
static_assert(sizeof(VARIANT) == 8 + 2 * pointer_size && alignof(VARIANT) == 8 && offsetof(VARIANT, lVal) == 8);
static_assert(sizeof(DISPPARAMS) == 8 + 2 * pointer_size && offsetof(DISPPARAMS, rgdispidNamedArgs) == pointer_size &&
              offsetof(DISPPARAMS, cArgs) == 2 * pointer_size &&
              offsetof(DISPPARAMS, cNamedArgs) == 4 + 2 * pointer_size);
static_assert(sizeof(EXCEPINFO) == 8 * pointer_size && offsetof(EXCEPINFO, bstrSource) == pointer_size &&
              offsetof(EXCEPINFO, bstrDescription) == 2 * pointer_size &&
              offsetof(EXCEPINFO, bstrHelpFile) == 3 * pointer_size &&
              offsetof(EXCEPINFO, dwHelpContext) == 4 * pointer_size &&
              offsetof(EXCEPINFO, pvReserved) == 5 * pointer_size &&
              offsetof(EXCEPINFO, pfnDeferredFillIn) == 6 * pointer_size &&
              offsetof(EXCEPINFO, scode) == 7 * pointer_size);
static_assert(sizeof(IUnknown) == pointer_size && sizeof(IDispatch) == pointer_size &&
              sizeof(IClassFactory) == pointer_size);

enum : VARTYPE {
  VT_EMPTY = 0,
  VT_NULL = 1,
  VT_I2 = 2,
  VT_I4 = 3,
  VT_R4 = 4,
  VT_R8 = 5,
  VT_CY = 6,
  VT_DATE = 7,
  VT_BSTR = 8,
  VT_DISPATCH = 9,
  VT_ERROR = 10,
  VT_BOOL = 11,
  VT_VARIANT = 12,
  VT_UNKNOWN = 13,
  VT_I1 = 16,
  VT_UI1 = 17,
  VT_UI2 = 18,
  VT_UI4 = 19,
  VT_I8 = 20,
  VT_UI8 = 21,
  VT_INT = 22,
  VT_UINT = 23,
  VT_ARRAY = 0x2000,
  VT_BYREF = 0x4000,
};

inline constexpr std::uint16_t FADF_BSTR = 0x100;
inline constexpr std::uint16_t FADF_UNKNOWN = 0x200;
inline constexpr std::uint16_t FADF_DISPATCH = 0x400;
inline constexpr std::uint16_t FADF_VARIANT = 0x800;

inline constexpr std::uint16_t DISPATCH_METHOD = 1;
inline constexpr std::uint16_t DISPATCH_PROPERTYGET = 2;
inline constexpr std::uint16_t DISPATCH_PROPERTYPUT = 4;
inline constexpr std::uint16_t DISPATCH_PROPERTYPUTREF = 8;

inline constexpr DISPID DISPID_VALUE = 0;
inline constexpr DISPID DISPID_UNKNOWN = -1;
inline constexpr DISPID DISPID_PROPERTYPUT = -3;

inline constexpr GUID IID_NULL = {0, 0, 0, {0, 0, 0, 0, 0, 0, 0, 0}};
inline constexpr GUID IID_IUnknown = {0x00000000, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
inline constexpr GUID IID_IClassFactory = {
    0x00000001, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
inline constexpr GUID IID_IDispatch = {0x00020400, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

constexpr HRESULT result_code(std::uint32_t value) { return static_cast<HRESULT>(value); }
inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT S_FALSE = 1;
inline constexpr HRESULT E_NOTIMPL = result_code(0x80004001);
inline constexpr HRESULT E_NOINTERFACE = result_code(0x80004002);
inline constexpr HRESULT E_POINTER = result_code(0x80004003);
inline constexpr HRESULT E_FAIL = result_code(0x80004005);
inline constexpr HRESULT E_UNEXPECTED = result_code(0x8000FFFF);
inline constexpr HRESULT E_OUTOFMEMORY = result_code(0x8007000E);
inline constexpr HRESULT E_INVALIDARG = result_code(0x80070057);
inline constexpr HRESULT DISP_E_UNKNOWNINTERFACE = result_code(0x80020001);
inline constexpr HRESULT DISP_E_MEMBERNOTFOUND = result_code(0x80020003);
inline constexpr HRESULT DISP_E_PARAMNOTFOUND = result_code(0x80020004);
inline constexpr HRESULT DISP_E_TYPEMISMATCH = result_code(0x80020005);
inline constexpr HRESULT DISP_E_UNKNOWNNAME = result_code(0x80020006);
inline constexpr HRESULT DISP_E_NONAMEDARGS = result_code(0x80020007);
inline constexpr HRESULT DISP_E_BADVARTYPE = result_code(0x80020008);
inline constexpr HRESULT DISP_E_EXCEPTION = result_code(0x80020009);
inline constexpr HRESULT DISP_E_OVERFLOW = result_code(0x8002000A);
inline constexpr HRESULT DISP_E_BADINDEX = result_code(0x8002000B);
inline constexpr HRESULT DISP_E_BADPARAMCOUNT = result_code(0x8002000E);
inline constexpr HRESULT DISP_E_PARAMNOTOPTIONAL = result_code(0x8002000F);
inline constexpr HRESULT CLASS_E_NOAGGREGATION = result_code(0x80040110);
inline constexpr HRESULT CLASS_E_CLASSNOTAVAILABLE = result_code(0x80040111);
inline constexpr HRESULT REGDB_E_READREGDB = result_code(0x80040150);
inline constexpr HRESULT REGDB_E_WRITEREGDB = result_code(0x80040151);
inline constexpr HRESULT CO_E_CLASSSTRING = result_code(0x800401F3);
inline constexpr HRESULT CO_E_DLLNOTFOUND = result_code(0x800401F8);
inline constexpr HRESULT CO_E_ERRORINDLL = result_code(0x800401F9);

// A text of `length` units, copied from `text` where that is not null; null when memory runs out. `SysFreeString` and
// `SysStringLen` (in units) take null for the empty text.
HEDRO34_API BSTR SysAllocStringLen(const OLECHAR* text, std::uint32_t length);
HEDRO34_API void SysFreeString(BSTR text);
HEDRO34_API std::uint32_t SysStringLen(BSTR text);

// Releases what the variant owns and empties it. A variant by reference owns nothing.
HEDRO34_API HRESULT VariantClear(VARIANT* variant);

// An array of one dimension whose elements are zero; null when memory runs out. Elements are VT_BSTR, VT_I4 or VT_VARIANT.
HEDRO34_API SAFEARRAY* SafeArrayCreateVector(VARTYPE element, std::int32_t lower, std::uint32_t count);

// Frees the array with the texts, objects or variants in it; null is no array.
HEDRO34_API HRESULT SafeArrayDestroy(SAFEARRAY* array);

inline constexpr std::int16_t variant_true = -1;

}  // namespace hedro34::binary
