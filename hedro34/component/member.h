// The table of a class: its members in interface order, with names, kinds, arguments, the C++ member behind each row and a line
// that says what it does.
//
//   constexpr Member strings[] = {
//       property<&Strings::Count>(u"Count", u"The number of elements."),
//       method<&Strings::AsString>(u"AsString", u"The elements as one text, with the delimiter between them.",
//                                  optional(u"sDelimiter", tab)), ...};
//   constexpr ClassTable classes[] = {
//       creatable<Strings>(u"{1862B1D1-...}", u"{829401B7-...}", strings, u"An ordered list of texts.", u"Item"), ...};
//
// A line is one sentence with its period, of ASCII, with other members and arguments in backquotes; a member without one does
// not compile. What an argument's name does not say stands beside it: `optional(u"bNumeric", false).is(u"numbers ...")`.
//
// Types come from the C++ member, so that a row cannot say another one. From these tables come calls by name, the interface
// definition, the reference page, the manual page and the types of the Python client, which `hedro34_tables` writes. A member is
// called by its position, so a new row goes to the end.
#pragma once

#include <array>
#include <cstring>
#include <span>
#include <tuple>
#include <type_traits>
#include <typeinfo>

#include "hedro34/component/host_object.h"
#include "hedro34/component/identifier.h"
#include "hedro34/component/type_name.h"

namespace hedro34 {

enum class Kind : std::uint8_t {
  None,
  Boolean,
  Int16,
  Int32,
  Float,
  Double,
  Text,
  Value,
  Object,
  Texts,
  Numbers,
  Enumeration
};

struct ValueType {
  Kind kind = Kind::None;
  StringView name{};  // of the class or the enumeration; empty for an object of any class
};

struct Argument {
  StringView name{};
  bool optional = false;
  bool by_reference = false;
  std::int32_t number = 0;         // what stands for an optional one that was left out: the number or Boolean,
  const char16_t* text = nullptr;  // or the text, null for an empty one; for a variant the missing value
  const char16_t* meaning = nullptr;
  ValueType type{};

  constexpr Argument is(const char16_t* said) const {
    Argument result = *this;
    result.meaning = said;
    return result;
  }
};

constexpr StringView text_of(const char16_t* text) { return text == nullptr ? StringView() : StringView(text); }

constexpr Argument required(StringView name) { return {.name = name}; }
constexpr Argument by_reference(StringView name) { return {.name = name, .by_reference = true}; }
constexpr Argument optional_by_reference(StringView name) {
  return {.name = name, .optional = true, .by_reference = true};
}
constexpr Argument optional(StringView name) { return {.name = name, .optional = true}; }
constexpr Argument optional(StringView name, std::int32_t number) {
  return {.name = name, .optional = true, .number = number};
}
constexpr Argument optional(StringView name, bool value) { return optional(name, value ? -1 : 0); }
constexpr Argument optional(StringView name, const char16_t* text) {
  return {.name = name, .optional = true, .text = text};
}

inline constexpr std::size_t most_arguments = 5;

struct Member;

// The arguments of one call, by position: null for one that was left out.
struct CallArguments {
  explicit CallArguments(const Member& called) noexcept : member(&called) {}

  const Member* member;
  std::array<binary::VARIANT*, most_arguments + 1> given{};  // the value of a put behind the others
  std::size_t at = 0;                                        // the one that is being converted
  bool converted = false;                                    // all of them are: what fails now is the member itself
};

struct Member {
  using Step = void (*)(Object& object, CallArguments& arguments, binary::VARIANT& result);

  StringView name{};
  std::uint16_t kinds = 0;  // DISPATCH_METHOD, or DISPATCH_PROPERTYGET, DISPATCH_PROPERTYPUT, DISPATCH_PROPERTYPUTREF
  ValueType type{};         // the result, or the property
  std::array<Argument, most_arguments> arguments{};
  std::uint8_t count = 0;             // of the arguments
  Step read = nullptr;                // the method, or the reading side
  Step write = nullptr;               // the writing side
  StringView put_name = u"newValue";  // what the value of a put is called
  StringView line{};                  // what it does
};

// --- types of C++ members --------------------------------------------------------------------------------------------

template <class T>
constexpr ValueType value_type() {
  using U = std::remove_cvref_t<T>;
  if constexpr (std::is_void_v<U>) {
    return {};
  } else if constexpr (std::is_same_v<U, bool> || std::is_same_v<U, bool*>) {
    return {Kind::Boolean};
  } else if constexpr (std::is_same_v<U, std::int16_t>) {
    return {Kind::Int16};
  } else if constexpr (std::is_same_v<U, std::int32_t>) {
    return {Kind::Int32};
  } else if constexpr (std::is_same_v<U, float>) {
    return {Kind::Float};
  } else if constexpr (std::is_same_v<U, double>) {
    return {Kind::Double};
  } else if constexpr (std::is_same_v<U, Variant>) {
    return {Kind::Value};
  } else if constexpr (std::is_same_v<U, Array<String>>) {
    return {Kind::Texts};
  } else if constexpr (std::is_same_v<U, Array<std::int32_t>>) {
    return {Kind::Numbers};
  } else if constexpr (std::is_enum_v<U>) {
    return {Kind::Enumeration, type_name<U>};
  } else if constexpr (RefTarget<U>::value) {
    return {Kind::Object, type_name<typename RefTarget<U>::type>};
  } else {
    static_assert(std::is_convertible_v<const U&, StringView>, "a type that has no form outside the library");
    return {Kind::Text};
  }
}

// --- arguments of a call ---------------------------------------------------------------------------------------------

// One argument of the type that a C++ member takes.
template <class T>
class Incoming {
 public:
  using Value = std::conditional_t<std::is_same_v<std::remove_cvref_t<T>, StringView>, String, std::remove_cvref_t<T>>;

  Incoming(CallArguments& arguments, std::size_t position) : value_(take(arguments, position)) {}
  const Value& get() const noexcept { return value_; }
  void finish() const noexcept {}

 private:
  static Value take(CallArguments& arguments, std::size_t position) {
    arguments.at = position;
    const binary::VARIANT* const given = arguments.given[position];
    if (given == nullptr) return left_out(arguments.member->arguments[position]);
    return value_as<Value>(*given);
  }

  static Value left_out([[maybe_unused]] const Argument& argument) {
    if constexpr (std::is_same_v<Value, bool>) {
      return argument.number != 0;
    } else if constexpr (std::is_arithmetic_v<Value> || std::is_enum_v<Value>) {
      return static_cast<Value>(argument.number);
    } else if constexpr (std::is_same_v<Value, Variant>) {
      return missing;
    } else if constexpr (std::is_same_v<Value, String>) {
      return Value(text_of(argument.text));
    } else {
      return {};
    }
  }

  Value value_;
};

// A Boolean in and out: when the member has changed it, it goes back into the caller's variable, where the caller gave one.
template <>
class Incoming<bool*> {
 public:
  Incoming(CallArguments& arguments, std::size_t position);
  bool* get() noexcept { return given_ != nullptr ? &value_ : nullptr; }
  void finish() const;

 private:
  binary::VARIANT* given_;
  bool value_ = false;
  bool before_ = false;
};

// --- rows ------------------------------------------------------------------------------------------------------------

template <class T>
void put_result(binary::VARIANT& target, const T& value) {
  if constexpr (RefTarget<T>::value) {
    put_object(target, value);
  } else if constexpr (value_type<T>().kind == Kind::Text) {
    put(target, StringView(value));
  } else if constexpr (std::is_enum_v<T>) {
    put(target, static_cast<std::int32_t>(value));
  } else {
    put(target, value);
  }
}

template <class>
struct Signature;
template <class C, class R, class... A>
struct Signature<R (C::*)(A...)> {
  using Class = C;
  using Result = R;
  static constexpr std::size_t count = sizeof...(A);
  static constexpr std::array<ValueType, most_arguments> types = {value_type<A>()...};

  template <auto member>
  static void call(Object& object, CallArguments& arguments, binary::VARIANT& result) {
    [&]<std::size_t... i>(std::index_sequence<i...>) {
      // Braces, so that the arguments are converted from the first to the last.
      Run<member>{object, arguments, result, Incoming<std::remove_cvref_t<A>>(arguments, i)...};
    }
    (std::index_sequence_for<A...>{});
  }

 private:
  template <auto member>
  struct Run {
    Run(Object& object, CallArguments& arguments, binary::VARIANT& result,
        Incoming<std::remove_cvref_t<A>>&&... values) {
      arguments.converted = true;
      C& self = static_cast<C&>(object);
      if constexpr (std::is_void_v<R>) {
        (self.*member)(values.get()...);
        (values.finish(), ...);
      } else {
        decltype(auto) value = (self.*member)(values.get()...);
        (values.finish(), ...);  // first: one of them may be the caller's result, which wins
        put_result(result, value);
      }
    }
  };
};
template <class C, class R, class... A>
struct Signature<R (C::*)(A...) const> : Signature<R (C::*)(A...)> {};
template <class C, class R, class... A>
struct Signature<R (C::*)(A...) noexcept> : Signature<R (C::*)(A...)> {};
template <class C, class R, class... A>
struct Signature<R (C::*)(A...) const noexcept> : Signature<R (C::*)(A...)> {};

template <auto member>
constexpr Member row(StringView name, StringView line, std::uint16_t kind, std::initializer_list<Argument> arguments) {
  using Of = Signature<decltype(member)>;
  if (arguments.size() != Of::count) throw "a row with another number of arguments than its member";
  Member result{
      .name = name, .kinds = kind, .type = value_type<typename Of::Result>(), .count = Of::count, .line = line};
  std::size_t at = 0;
  for (const Argument& argument : arguments) {
    result.arguments[at] = argument;
    result.arguments[at].type = Of::types[at];
    ++at;
  }
  result.read = &Of::template call<member>;
  return result;
}

template <auto member, class... A>
constexpr Member method(StringView name, StringView line, A... arguments) {
  return row<member>(name, line, binary::DISPATCH_METHOD, {arguments...});
}

namespace detail {

// The writing side of a property: objects are assigned by reference, values by value.
template <class T>
constexpr std::uint16_t put_kind =
    RefTarget<std::remove_cvref_t<T>>::value ? binary::DISPATCH_PROPERTYPUTREF : binary::DISPATCH_PROPERTYPUT;

template <class>
struct Field;
template <class C, class T>
struct Field<T C::*> {
  template <T C::*field>
  static void get(Object& object, CallArguments& arguments, binary::VARIANT& result) {
    arguments.converted = true;
    put_result(result, static_cast<C&>(object).*field);
  }
  template <T C::*field>
  static void set(Object& object, CallArguments& arguments, binary::VARIANT&) {
    if constexpr (value_type<T>().kind == Kind::Text) {
      const Incoming<StringView> value(arguments, 0);
      arguments.converted = true;
      static_cast<C&>(object).*field = StringView(value.get());
    } else {
      const Incoming<T> value(arguments, 0);
      arguments.converted = true;
      static_cast<C&>(object).*field = value.get();
    }
  }
  using type = T;
};

}  // namespace detail

// A property that is a public field, or one that an accessor reads; `put` is its writing side.
template <auto get, auto... put, class... A>
constexpr Member property(StringView name, StringView line, A... arguments) {
  static_assert(sizeof...(put) <= 1);
  if constexpr (std::is_member_object_pointer_v<decltype(get)>) {
    static_assert(sizeof...(A) == 0);
    using Of = detail::Field<decltype(get)>;
    using T = typename Of::type;
    return {.name = name,
            .kinds = static_cast<std::uint16_t>(binary::DISPATCH_PROPERTYGET | detail::put_kind<T>),
            .type = value_type<T>(),
            .read = &Of::template get<get>,
            .write = &Of::template set<get>,
            .line = line};
  } else {
    Member result = row<get>(name, line, binary::DISPATCH_PROPERTYGET, {arguments...});
    if constexpr (sizeof...(put) == 1) {
      ((result.write = &Signature<decltype(put)>::template call<put>), ...);
      result.kinds =
          static_cast<std::uint16_t>(result.kinds | detail::put_kind<typename Signature<decltype(get)>::Result>);
    }
    return result;
  }
}

// The same property, with a name for the value of its put.
constexpr Member with_value(StringView put_name, Member property) {
  property.put_name = put_name;
  return property;
}

// --- tables ----------------------------------------------------------------------------------------------------------

// Finds a member by its name without regard to the case of ASCII letters.
class NameIndex {
 public:
  constexpr explicit NameIndex(std::span<const Member> members) {
    if (members.size() > slots_.size() / 2) throw "too many members for the index";
    for (std::size_t i = 0; i < members.size(); ++i) {
      std::size_t slot = hash(members[i].name);
      while (slots_[slot] != 0) slot = (slot + 1) % slots_.size();
      slots_[slot] = static_cast<std::uint8_t>(i + 1);
    }
  }

  // The position from 0, or -1.
  int find(std::span<const Member> members, StringView name) const noexcept {
    if (name.empty()) return -1;
    for (std::size_t slot = hash(name); slots_[slot] != 0; slot = (slot + 1) % slots_.size()) {
      const StringView known = members[slots_[slot] - 1u].name;
      if (known.size() != name.size()) continue;
      const bool exact = std::memcmp(known.data(), name.data(), name.size() * sizeof(char16_t)) == 0;
      if (exact || equal(known, name)) return slots_[slot] - 1;
    }
    return -1;
  }

  static bool equal(StringView a, StringView b) noexcept;

 private:
  static constexpr std::size_t hash(StringView name) noexcept {
    constexpr auto caseless = [](char16_t unit) { return unit & ~0x20u; };
    const std::size_t value = name.size() * 5 + caseless(name.front()) * 3 + caseless(name[name.size() / 2]) * 17 +
                              caseless(name.back()) * 11;
    return value % 128;
  }

  std::array<std::uint8_t, 128> slots_{};
};

struct ClassTable {
  StringView name;
  binary::GUID class_id;
  binary::GUID interface_id;
  const std::type_info* type;  // of the objects
  std::span<const Member> members;
  NameIndex index;
  int default_member = -1;            // position in `members`, from 0
  Ref<Object> (*create)() = nullptr;  // for a class that a host may create
  StringView summary{};               // one line for the reference

  // Numbers by which members are called: 0 for the default member, for the others their position from 1.
  constexpr binary::DISPID id_of(int position) const noexcept {
    return position == default_member ? binary::DISPID_VALUE : position + 1;
  }
  // The number of the member of a name; `DISPID_UNKNOWN` when there is none.
  binary::DISPID id_of(StringView called) const noexcept {
    const int position = index.find(members, called);
    return position >= 0 ? id_of(position) : binary::DISPID_UNKNOWN;
  }
  const Member* member(binary::DISPID id) const noexcept {
    const std::int64_t position = id == binary::DISPID_VALUE ? default_member : std::int64_t{id} - 1;
    if (position < 0 || position >= static_cast<std::int64_t>(members.size())) return nullptr;
    if (id != binary::DISPID_VALUE && position == default_member) return nullptr;
    return &members[static_cast<std::size_t>(position)];
  }
};

// One line of ASCII that ends with a period.
constexpr bool is_sentence(StringView line) noexcept {
  for (const char16_t unit : line) {
    if (unit < u' ' || unit > u'~') return false;
  }
  return line.size() > 1 && line.back() == u'.';
}

// The table of a class whose objects only the library makes. The default member is the row of that name.
template <class T, std::size_t count>
constexpr ClassTable inner(StringView class_id, StringView interface_id, const Member (&members)[count],
                           StringView summary, StringView default_member = {}) {
  ClassTable result{.name = type_name<T>,
                    .class_id = identifier_of(class_id).value(),
                    .interface_id = identifier_of(interface_id).value(),
                    .type = &typeid(T),
                    .members = members,
                    .index = NameIndex(members),
                    .summary = summary};
  for (std::size_t i = 0; i < count; ++i) {
    if (!is_sentence(members[i].line)) throw "a row that does not say what its member does";
    if (members[i].name == default_member) result.default_member = static_cast<int>(i);
  }
  if (!default_member.empty() && result.default_member < 0) throw "no row has the name of the default member";
  return result;
}

// The table of a class that a host may create.
template <class T, std::size_t count>
constexpr ClassTable creatable(StringView class_id, StringView interface_id, const Member (&members)[count],
                               StringView summary, StringView default_member = {}) {
  ClassTable result = inner<T>(class_id, interface_id, members, summary, default_member);
  result.create = [] { return Ref<Object>(make<T>()); };
  return result;
}

}  // namespace hedro34
