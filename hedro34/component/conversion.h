// A value of the binary interface as the type that a C++ member takes or an object of the host gives. Failures as in
// values.h; an object of another kind than the one asked for is failure 13.
#pragma once

#include <type_traits>

#include "hedro34/component/identity.h"
#include "hedro34/component/type_names.h"
#include "hedro34/component/values.h"

namespace hedro34 {

// An object of the host that serves as a `T`: one of the host's templates and documents, or any object.
template <class T>
Ref<T> adapted(Held<binary::IDispatch>) {
  fail(FailureNumber::TypeMismatch);
}
template <>
Ref<Object> adapted<Object>(Held<binary::IDispatch> host);
template <>
Ref<TIBTemplate> adapted<TIBTemplate>(Held<binary::IDispatch> host);
template <>
Ref<TIBPages> adapted<TIBPages>(Held<binary::IDispatch> host);
template <>
Ref<TIBPage> adapted<TIBPage>(Held<binary::IDispatch> host);
template <>
Ref<TIBRegions> adapted<TIBRegions>(Held<binary::IDispatch> host);
template <>
Ref<TIBRegion> adapted<TIBRegion>(Held<binary::IDispatch> host);
template <>
Ref<TIBQuestions> adapted<TIBQuestions>(Held<binary::IDispatch> host);
template <>
Ref<TIBQuestion> adapted<TIBQuestion>(Held<binary::IDispatch> host);
template <>
Ref<TIBChoiceList> adapted<TIBChoiceList>(Held<binary::IDispatch> host);
template <>
Ref<WENKtdDocument> adapted<WENKtdDocument>(Held<binary::IDispatch> host);
template <>
Ref<WENKtdQuestions> adapted<WENKtdQuestions>(Held<binary::IDispatch> host);
template <>
Ref<WENKtdQuestion> adapted<WENKtdQuestion>(Held<binary::IDispatch> host);
template <>
Ref<WENKtdStrings> adapted<WENKtdStrings>(Held<binary::IDispatch> host);
template <>
Ref<WENKtdObjectives> adapted<WENKtdObjectives>(Held<binary::IDispatch> host);
template <>
Ref<WENKtdObjective> adapted<WENKtdObjective>(Held<binary::IDispatch> host);
template <>
Ref<WENKtdObjectiveFlags> adapted<WENKtdObjectiveFlags>(Held<binary::IDispatch> host);
template <>
Ref<WENKtdObjectiveFlag> adapted<WENKtdObjectiveFlag>(Held<binary::IDispatch> host);
template <>
Ref<WENKtdVersions> adapted<WENKtdVersions>(Held<binary::IDispatch> host);
template <>
Ref<WENKtdOrders> adapted<WENKtdOrders>(Held<binary::IDispatch> host);
template <>
Ref<WENKtdOrder> adapted<WENKtdOrder>(Held<binary::IDispatch> host);

// An object that came through the boundary: one of the library itself, or one of the host that serves as a `T`.
template <class T>
Ref<T> serving_as(Held<binary::IDispatch> given) {
  if (const Ref<Object> own = own_object(given.get())) {
    Ref<T> result = ref_cast<T>(own);
    if (!result) fail(FailureNumber::TypeMismatch);
    return result;
  }
  return adapted<T>(std::move(given));
}

// The object that a value holds; empty for the empty reference.
template <class T>
Ref<T> object_of(const binary::VARIANT& value) {
  Held<binary::IDispatch> keeper;
  binary::IDispatch* const given = dispatch_of(value, keeper);
  return given == nullptr ? Ref<T>() : serving_as<T>(Held<binary::IDispatch>(given));
}

template <class T>
struct RefTarget : std::false_type {};
template <class T>
struct RefTarget<Ref<T>> : std::true_type {
  using type = T;
};

template <class T>
T value_as(const binary::VARIANT& value) {
  if constexpr (std::is_same_v<T, bool>) {
    return boolean_of(value);
  } else if constexpr (std::is_same_v<T, std::int16_t>) {
    return int16_of(value);
  } else if constexpr (std::is_same_v<T, std::int32_t>) {
    return int32_of(value);
  } else if constexpr (std::is_enum_v<T>) {
    return static_cast<T>(int32_of(value));
  } else if constexpr (std::is_same_v<T, float>) {
    return value.vt == binary::VT_R4 ? value.fltVal : to_float32(double_of(value));
  } else if constexpr (std::is_same_v<T, double>) {
    return double_of(value);
  } else if constexpr (std::is_same_v<T, Variant>) {
    return variant_of(value);
  } else if constexpr (std::is_same_v<T, Array<String>>) {
    return texts_of(value);
  } else if constexpr (std::is_same_v<T, Array<std::int32_t>>) {
    return numbers_of(value);
  } else if constexpr (RefTarget<T>::value) {
    return object_of<typename RefTarget<T>::type>(value);
  } else {
    static_assert(std::is_same_v<T, String>);
    return text_of(value);
  }
}

}  // namespace hedro34
