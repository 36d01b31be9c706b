// A value of the binary interface as the type that a C++ member takes or an object of the host gives. Failures as in
// values.h; an object of another kind than the one asked for is failure 13.
#pragma once

#include <type_traits>

#include "hedro34/component/identity.h"
#include "hedro34/component/values.h"

namespace hedro34 {

// An object of the host that serves as a `T`: each member is a call by name. There is one of every interface of templates and
// documents (host_template.h, host_document.h), and of `Object` (host_object.h).
template <class T>
struct Adapter;

template <class T>
Ref<T> adapted([[maybe_unused]] Held<binary::IDispatch> host) {
  if constexpr (std::is_abstract_v<T> || std::is_same_v<T, Object>) {
    return make<Adapter<T>>(std::move(host));
  } else {
    fail(FailureNumber::TypeMismatch);  // a class of the library is served by its own objects only
  }
}

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
