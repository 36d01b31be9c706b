// The names under which the types of the library are known outside: their own, as the compiler spells them. An object that is
// a service, such as `MessageBoxObject`, does without the ending "Object"; so `Object` itself, any class, has no name.
#pragma once

#include <array>
#include <string_view>

#include "hedro34/base/text.h"

namespace hedro34 {
namespace detail {

#if defined(_MSC_VER) && !defined(__clang__)
#define HEDRO34_SIGNATURE __FUNCSIG__
#else
#define HEDRO34_SIGNATURE __PRETTY_FUNCTION__
#endif
template <class T>
constexpr std::string_view with_type() {
  return HEDRO34_SIGNATURE;
}
template <auto value>
constexpr std::string_view with_value() {
  return HEDRO34_SIGNATURE;
}
#undef HEDRO34_SIGNATURE

// What stands in the first text where the second, a like one, has `known`; without namespaces and the word "class".
constexpr std::string_view differing(std::string_view text, std::string_view like, std::string_view known) {
  const std::size_t start = like.rfind(known);
  text = text.substr(start, text.size() - (like.size() - known.size()));
  text.remove_prefix(text.find_last_of(" :") + 1);  // no such character: the whole text
  return text;
}

template <class T>
constexpr std::string_view type_name() {
  constexpr std::string_view ending = "Object";
  const std::string_view name = differing(with_type<T>(), with_type<int>(), "int");
  return name.ends_with(ending) ? name.substr(0, name.size() - ending.size()) : name;
}

template <auto value>
constexpr std::string_view value_name() {
  return differing(with_value<value>(), with_value<true>(), "true");
}

template <std::size_t size>
constexpr std::array<char16_t, size> widened(std::string_view text) {
  std::array<char16_t, size> result{};
  for (std::size_t i = 0; i < size; ++i) result[i] = static_cast<char16_t>(text[i]);
  return result;
}
// (Members of class templates: g++ shows variable templates outside of a shared library.)
template <class T>
struct TypeLetters {
  static constexpr auto all = widened<type_name<T>().size()>(type_name<T>());
};
template <auto value>
struct ValueLetters {
  static constexpr auto all = widened<value_name<value>().size()>(value_name<value>());
};

}  // namespace detail

template <class T>
inline constexpr StringView type_name{detail::TypeLetters<T>::all.data(), detail::TypeLetters<T>::all.size()};

// The name of an enumerator.
template <auto value>
inline constexpr StringView value_name{detail::ValueLetters<value>::all.data(),
                                       detail::ValueLetters<value>::all.size()};

}  // namespace hedro34
