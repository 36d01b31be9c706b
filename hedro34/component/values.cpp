#include "hedro34/component/values.h"

#include <limits>
#include <new>

#include "hedro34/component/host_object.h"

namespace hedro34 {
namespace {

using namespace binary;

[[noreturn]] void mismatch() { fail(FailureNumber::TypeMismatch); }

StringView view_of(BSTR text) { return {text, SysStringLen(text)}; }

template <class T>
T out_of_memory_unless(T made) {
  if (made == nullptr) throw std::bad_alloc();
  return made;
}

// The elements of an array of one dimension, converted one by one.
template <class Element, class T, class Convert>
Array<T> elements_of(const SAFEARRAY* array, Convert convert) {
  if (array == nullptr) return {};
  if (array->cDims != 1 || array->cbElements != sizeof(Element)) mismatch();
  const auto [count, lower] = array->rgsabound[0];
  if (count == 0) return {};
  if (array->pvData == nullptr || std::int64_t{lower} + count - 1 > std::numeric_limits<std::int32_t>::max()) {
    fail(FailureNumber::SubscriptOutOfRange);
  }
  const auto* const elements = static_cast<const Element*>(array->pvData);
  std::vector<T> result;
  result.reserve(count);
  for (std::uint32_t i = 0; i < count; ++i) result.push_back(convert(elements[i]));
  return Array<T>::of(std::move(result), lower);
}

// An element of an array, which is no array in turn: those would nest as deep as the caller likes.
const VARIANT& no_array(const VARIANT& value) {
  if ((plain(value).vt & VT_ARRAY) != 0) mismatch();
  return value;
}

const SAFEARRAY* array_of(const VARIANT& value) {
  if ((value.vt & VT_ARRAY) == 0) mismatch();
  return (value.vt & VT_BYREF) != 0 ? (value.pparray != nullptr ? *value.pparray : nullptr) : value.parray;
}

Variant integer_of(std::uint64_t value) {
  if (value > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
    return static_cast<double>(value);
  }
  return static_cast<std::int64_t>(value);
}

constexpr double units_of_currency = 10000;

// Puts each kind of value of the library.
struct Putter {
  VARIANT& target;
  void operator()(Empty) const { target.vt = VT_EMPTY; }
  void operator()(Null) const { target.vt = VT_NULL; }
  void operator()(Missing) const {
    target.vt = VT_ERROR;
    target.scode = DISP_E_PARAMNOTFOUND;
  }
  void operator()(std::int8_t number) const {
    target.vt = VT_I1;
    target.cVal = number;
  }
  void operator()(std::uint8_t number) const {
    target.vt = VT_UI1;
    target.bVal = number;
  }
  void operator()(std::int64_t number) const {
    target.vt = VT_I8;
    target.llVal = number;
  }
  void operator()(const Ref<Object>& object) const { put_object(target, object); }
  void operator()(const String& text) const { put(target, StringView(text)); }
  template <class T>
  void operator()(const T& other) const {
    put(target, other);
  }
};

}  // namespace

VARIANT plain(const VARIANT& value) {
  if ((value.vt & VT_BYREF) == 0) return value;
  if (value.byref == nullptr) mismatch();
  if (value.vt == (VT_BYREF | VT_VARIANT)) {
    if (value.pvarVal->vt == (VT_BYREF | VT_VARIANT)) mismatch();
    return plain(*value.pvarVal);
  }
  VARIANT result{};
  result.vt = static_cast<VARTYPE>(value.vt & ~VT_BYREF);
  if ((result.vt & VT_ARRAY) != 0) {
    result.parray = *value.pparray;
    return result;
  }
  switch (result.vt) {
    case VT_I1:
    case VT_UI1: result.bVal = *value.pbVal; break;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL: result.iVal = *value.piVal; break;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_ERROR: result.lVal = *value.plVal; break;
    case VT_I8:
    case VT_UI8:
    case VT_CY: result.llVal = *value.pllVal; break;
    case VT_R4: result.fltVal = *value.pfltVal; break;
    case VT_R8:
    case VT_DATE: result.dblVal = *value.pdblVal; break;
    case VT_BSTR: result.bstrVal = *value.pbstrVal; break;
    case VT_DISPATCH:
    case VT_UNKNOWN: result.punkVal = *value.ppunkVal; break;
    default: mismatch();
  }
  return result;
}

bool is_left_out(const VARIANT& value) {
  if (value.vt == (VT_BYREF | VT_VARIANT) && value.pvarVal != nullptr) {
    return value.pvarVal->vt == VT_ERROR && value.pvarVal->scode == DISP_E_PARAMNOTFOUND;
  }
  return value.vt == VT_ERROR && value.scode == DISP_E_PARAMNOTFOUND;
}

Variant variant_of(const VARIANT& given) {
  if (is_left_out(given)) return missing;
  const VARIANT value = plain(given);
  if ((value.vt & VT_ARRAY) != 0) {
    if ((value.vt & ~VT_ARRAY) == VT_I4) return numbers_of(value);
    return texts_of(value);
  }
  switch (value.vt) {
    case VT_EMPTY: return {};
    case VT_NULL: return Null{};
    case VT_BOOL: return value.boolVal != 0;
    case VT_I1: return value.cVal;
    case VT_UI1: return value.bVal;
    case VT_I2: return value.iVal;
    case VT_UI2: return std::int32_t{value.uiVal};
    case VT_I4:
    case VT_INT: return value.lVal;
    case VT_UI4:
    case VT_UINT: return std::int64_t{value.ulVal};
    case VT_I8: return value.llVal;
    case VT_UI8: return integer_of(value.ullVal);
    case VT_R4: return value.fltVal;
    case VT_R8:
    case VT_DATE: return value.dblVal;
    case VT_CY: return static_cast<double>(value.llVal) / units_of_currency;
    case VT_BSTR: return view_of(value.bstrVal);
    case VT_DISPATCH:
    case VT_UNKNOWN: return object_of<Object>(value);
    default: mismatch();
  }
}

bool boolean_of(const VARIANT& value) {
  return value.vt == VT_BOOL ? value.boolVal != 0 : to_boolean(variant_of(value));
}

std::int16_t int16_of(const VARIANT& value) { return value.vt == VT_I2 ? value.iVal : to_int16(variant_of(value)); }

std::int32_t int32_of(const VARIANT& value) { return value.vt == VT_I4 ? value.lVal : to_int32(variant_of(value)); }

double double_of(const VARIANT& value) { return value.vt == VT_R8 ? value.dblVal : to_double(variant_of(value)); }

String text_of(const VARIANT& value) {
  return value.vt == VT_BSTR ? String(view_of(value.bstrVal)) : to_text(variant_of(value));
}

Array<String> texts_of(const VARIANT& given) {
  const VARIANT value = plain(given);
  const SAFEARRAY* const array = array_of(value);
  switch (value.vt & ~VT_ARRAY) {
    case VT_BSTR: return elements_of<BSTR, String>(array, [](BSTR text) { return String(view_of(text)); });
    case VT_VARIANT:
      return elements_of<VARIANT, String>(array, [](const VARIANT& held) { return text_of(no_array(held)); });
    default: mismatch();
  }
}

Array<std::int32_t> numbers_of(const VARIANT& given) {
  const VARIANT value = plain(given);
  const SAFEARRAY* const array = array_of(value);
  switch (value.vt & ~VT_ARRAY) {
    case VT_I4: return elements_of<std::int32_t, std::int32_t>(array, [](std::int32_t number) { return number; });
    case VT_VARIANT:
      return elements_of<VARIANT, std::int32_t>(array, [](const VARIANT& held) { return int32_of(no_array(held)); });
    default: mismatch();
  }
}

IDispatch* dispatch_of(const VARIANT& given, Held<IDispatch>& keeper) {
  const VARIANT value = plain(given);
  if (value.vt == VT_DISPATCH) return value.pdispVal;
  if (value.vt != VT_UNKNOWN) mismatch();
  if (value.punkVal == nullptr) return nullptr;
  keeper = query<IDispatch>(value.punkVal, IID_IDispatch);
  if (!keeper) mismatch();
  return keeper.get();
}

BSTR bstr_of(StringView text) {
  if (text.size() > std::numeric_limits<std::uint32_t>::max()) throw std::bad_alloc();
  return out_of_memory_unless(SysAllocStringLen(text.data(), static_cast<std::uint32_t>(text.size())));
}

void put(VARIANT& target, bool value) noexcept {
  target.vt = VT_BOOL;
  target.boolVal = value ? variant_true : std::int16_t{0};
}

void put(VARIANT& target, StringView value) {
  target.bstrVal = bstr_of(value);
  target.vt = VT_BSTR;
}

void put(VARIANT& target, const Array<String>& value) {
  OwnedVariant array;
  array->vt = VT_ARRAY | VT_BSTR;
  array->parray = nullptr;  // `{}` clears the first member of a union only
  if (value.has_bounds()) {
    const auto& texts = value.elements();
    array->parray =
        out_of_memory_unless(SafeArrayCreateVector(VT_BSTR, value.LBound(), static_cast<std::uint32_t>(texts.size())));
    auto* const elements = static_cast<BSTR*>(array->parray->pvData);
    for (std::size_t i = 0; i < texts.size(); ++i) elements[i] = bstr_of(texts[i]);
  }
  target = array.detach();
}

void put(VARIANT& target, const Array<std::int32_t>& value) {
  VARIANT array{};
  array.vt = VT_ARRAY | VT_I4;
  array.parray = nullptr;
  if (value.has_bounds()) {
    const auto& numbers = value.elements();
    array.parray =
        out_of_memory_unless(SafeArrayCreateVector(VT_I4, value.LBound(), static_cast<std::uint32_t>(numbers.size())));
    auto* const elements = static_cast<std::int32_t*>(array.parray->pvData);
    for (std::size_t i = 0; i < numbers.size(); ++i) elements[i] = numbers[i];
  }
  target = array;
}

void put_object(VARIANT& target, const Ref<Object>& value) {
  target.pdispVal = counted_identity_of(value);
  target.vt = VT_DISPATCH;
}

void put(VARIANT& target, const Variant& value) { std::visit(Putter{target}, value.value()); }

}  // namespace hedro34
