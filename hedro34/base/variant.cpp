#include "hedro34/base/variant.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

#include "hedro34/base/from_decimal.h"

namespace hedro34 {
namespace {

template <class Number>
String shortest(Number number) {
  std::array<char, 64> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  return String(digits.data(), end);
}

// A whole text as a decimal number; nothing when it is none.
std::optional<double> parse_number(StringView text) {
  text = trim(text);
  if (text.starts_with(u'+')) {
    text.remove_prefix(1);
    if (text.starts_with(u'-')) return std::nullopt;
  }
  std::string ascii;
  for (const char16_t unit : text) {
    const bool of_a_number =
        (unit >= u'0' && unit <= u'9') || unit == u'.' || unit == u'-' || unit == u'+' || unit == u'e' || unit == u'E';
    if (!of_a_number) return std::nullopt;
    ascii.push_back(static_cast<char>(unit));
  }
  double number = 0;
  const auto [end, error] = from_decimal(ascii.data(), ascii.data() + ascii.size(), number);
  if (error == std::errc::result_out_of_range) fail(FailureNumber::Overflow);
  if (error != std::errc() || end != ascii.data() + ascii.size()) return std::nullopt;
  return number;
}

template <class Integer>
Integer to_integer(const Variant& value) {
  const double rounded = std::nearbyint(to_double(value));
  if (!(rounded >= static_cast<double>(std::numeric_limits<Integer>::min()) &&
        rounded <= static_cast<double>(std::numeric_limits<Integer>::max()))) {
    fail(FailureNumber::Overflow);
  }
  return static_cast<Integer>(rounded);
}

}  // namespace

String to_text(const Variant& value) {
  return std::visit(
      [](const auto& held) -> String {
        using T = std::decay_t<decltype(held)>;
        if constexpr (std::is_same_v<T, String>) {
          return held;
        } else if constexpr (std::is_same_v<T, Empty>) {
          return {};
        } else if constexpr (std::is_same_v<T, bool>) {
          return held ? u"True" : u"False";
        } else if constexpr (std::is_arithmetic_v<T>) {
          return shortest(held);
        } else {
          fail(FailureNumber::TypeMismatch);
        }
      },
      value.value());
}

String to_text(Variant&& value) {
  if (String* text = std::get_if<String>(&value.value())) return std::move(*text);
  return to_text(std::as_const(value));
}

double to_double(const Variant& value) {
  return std::visit(
      [](const auto& held) -> double {
        using T = std::decay_t<decltype(held)>;
        if constexpr (std::is_same_v<T, String>) {
          if (const auto number = parse_number(held)) return *number;
          fail(FailureNumber::TypeMismatch);
        } else if constexpr (std::is_same_v<T, Empty>) {
          return 0;
        } else if constexpr (std::is_same_v<T, bool>) {
          return held ? -1 : 0;
        } else if constexpr (std::is_arithmetic_v<T>) {
          return static_cast<double>(held);
        } else {
          fail(FailureNumber::TypeMismatch);
        }
      },
      value.value());
}

std::int32_t to_int32(const Variant& value) { return to_integer<std::int32_t>(value); }
std::int16_t to_int16(const Variant& value) { return to_integer<std::int16_t>(value); }

bool to_boolean(const Variant& value) {
  if (const String* text = value.text()) {
    if (equal_ignoring_case(*text, u"True")) return true;
    if (equal_ignoring_case(*text, u"False")) return false;
  }
  return to_double(value) != 0;
}

float to_float32(double value) {
  const auto narrow = static_cast<float>(value);
  if (std::isinf(narrow) && !std::isinf(value)) fail(FailureNumber::Overflow);
  return narrow;
}

const Array<String>& to_strings(const Variant& value) {
  const auto* strings = value.get_if<Array<String>>();
  if (strings == nullptr) fail(FailureNumber::TypeMismatch);
  return *strings;
}

}  // namespace hedro34
