// Values on their way through the boundary: variants of the binary interface into the library's types and back. What cannot
// be converted throws failure 13, what is too wide failure 6. An object of the library that comes back is found as itself;
// an object of the other side is given as one that is called by name.
#pragma once

#include "hedro34/component/held.h"

namespace hedro34 {

// The value itself, for one that is given by reference: a shallow copy that owns nothing.
binary::VARIANT plain(const binary::VARIANT& value);

// Whether the value stands for an argument that was left out.
bool is_left_out(const binary::VARIANT& value);

// Into the library. Currency and date are numbers. Arrays have one dimension; those of variants are arrays of text. An array
// without elements has no bounds.
Variant variant_of(const binary::VARIANT& given);
bool boolean_of(const binary::VARIANT& value);
std::int16_t int16_of(const binary::VARIANT& value);
std::int32_t int32_of(const binary::VARIANT& value);
double double_of(const binary::VARIANT& value);
String text_of(const binary::VARIANT& value);
Array<String> texts_of(const binary::VARIANT& given);
Array<std::int32_t> numbers_of(const binary::VARIANT& given);

// The interface that a value holds, not counted; null for the empty reference.
binary::IDispatch* dispatch_of(const binary::VARIANT& given, Held<binary::IDispatch>& keeper);

// Out of the library; the caller owns what is made.
binary::BSTR bstr_of(StringView text);
void put(binary::VARIANT& target, bool value) noexcept;
inline void put(binary::VARIANT& target, std::int16_t value) noexcept {
  target.vt = binary::VT_I2;
  target.iVal = value;
}
inline void put(binary::VARIANT& target, std::int32_t value) noexcept {
  target.vt = binary::VT_I4;
  target.lVal = value;
}
inline void put(binary::VARIANT& target, float value) noexcept {
  target.vt = binary::VT_R4;
  target.fltVal = value;
}
inline void put(binary::VARIANT& target, double value) noexcept {
  target.vt = binary::VT_R8;
  target.dblVal = value;
}
void put(binary::VARIANT& target, StringView value);
void put(binary::VARIANT& target, const Array<String>& value);
void put(binary::VARIANT& target, const Array<std::int32_t>& value);
void put(binary::VARIANT& target, const Variant& value);
void put_object(binary::VARIANT& target, const Ref<Object>& value);  // the empty reference: VT_DISPATCH, null

}  // namespace hedro34
