// A value of a kind that is known at run time only: nothing (empty, null, missing), a Boolean, a number, text, an object or
// an array. Index arguments, keys, the values of XML nodes and calls by name use it. It converts only where a conversion
// function below says so; every other conversion is failure 13 "Type mismatch".
#pragma once

#include <concepts>
#include <cstdint>
#include <variant>

#include "hedro34/base/array.h"
#include "hedro34/base/ref.h"
#include "hedro34/base/text.h"

namespace hedro34 {

// The value of a variant that was given none.
struct Empty {
  friend bool operator==(Empty, Empty) = default;
};
// The null of a database.
struct Null {
  friend bool operator==(Null, Null) = default;
};
// The value of an optional argument that was left out.
struct Missing {
  friend bool operator==(Missing, Missing) = default;
};

// A Boolean or a number that a variant can hold.
template <class T>
concept PlainValue = std::same_as<T, bool> || std::same_as<T, std::int8_t> || std::same_as<T, std::uint8_t> ||
    std::same_as<T, std::int16_t> || std::same_as<T, std::int32_t> || std::same_as<T, std::int64_t> ||
    std::floating_point<T>;

class Variant {
 public:
  using Value = std::variant<Empty, Null, Missing, bool, std::int8_t, std::uint8_t, std::int16_t, std::int32_t,
                             std::int64_t, float, double, String, Ref<Object>, Array<String>, Array<std::int32_t>>;

  Variant() noexcept = default;
  Variant(Null value) noexcept : value_(value) {}
  Variant(Missing value) noexcept : value_(value) {}
  template <PlainValue T>
  Variant(T value) noexcept : value_(value) {}
  Variant(String value) noexcept : value_(std::move(value)) {}
  Variant(StringView value) : value_(String(value)) {}
  Variant(const char16_t* value) : value_(String(value)) {}
  template <std::size_t Limit>
  Variant(const Text<Limit>& value) : value_(value.str()) {}
  template <IsA<Object> T>
  Variant(Ref<T> value) noexcept : value_(Ref<Object>(std::move(value))) {}
  Variant(Array<String> value) noexcept : value_(std::move(value)) {}
  Variant(Array<std::int32_t> value) noexcept : value_(std::move(value)) {}

  // Whether the value is a `T`.
  template <class T>
  bool is() const noexcept {
    return std::holds_alternative<T>(value_);
  }
  // A number: an integer or a float. A Boolean is none.
  bool is_number() const noexcept {
    const auto index = value_.index();
    return index >= Value(std::in_place_type<std::int8_t>).index() &&
           index <= Value(std::in_place_type<double>).index();
  }
  // The text, or the value that is a `T`; null for a variant of another kind.
  const String* text() const noexcept { return std::get_if<String>(&value_); }
  template <class T>
  const T* get_if() const noexcept {
    return std::get_if<T>(&value_);
  }
  // The value, of whatever kind.
  const Value& value() const noexcept { return value_; }
  Value& value() noexcept { return value_; }

  friend bool operator==(const Variant&, const Variant&) = default;

 private:
  Value value_;
};

// The argument that stands for an optional one that was left out.
inline const Variant missing{Missing{}};

// The value as text: text as it is, nothing for Empty, "True" and "False", numbers in their shortest decimal form. Failure 13
// for null, missing, objects and arrays.
HEDRO34_API String to_text(const Variant& value);
HEDRO34_API String to_text(Variant&& value);

// The value as a 64-bit float: numbers, Booleans (True is -1), Empty (0) and text that is a decimal number, with or without
// blanks around it. Failure 13 for all else.
HEDRO34_API double to_double(const Variant& value);

// The value as an integer: as `to_double`, then rounded to the nearest, halves to the even one. Failure 6 beyond the width.
HEDRO34_API std::int32_t to_int32(const Variant& value);
HEDRO34_API std::int16_t to_int16(const Variant& value);

// The value as a Boolean: Booleans, numbers (0 is False), Empty (False), and text that is "True" or "False" in any case or
// a decimal number. Failure 13 for all else, empty text included.
HEDRO34_API bool to_boolean(const Variant& value);

// The 64-bit value in 32 bits; failure 6 when its magnitude is too large for them.
HEDRO34_API float to_float32(double value);

// The value as an array of strings; failure 13 when it holds none.
HEDRO34_API const Array<String>& to_strings(const Variant& value);

}  // namespace hedro34
