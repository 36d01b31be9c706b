// The tables by which forms and documents are read and written: one for each kind of JSON object, with its members in the
// order of the file, the name of each and the member that holds its value in the live object. Reader and writer go by
// the same table:
//
//   constexpr JsonRow rows[] = {json_row<&DataVersions::sequence_question_>("sequenceQuestion"), ...};
//   constinit const JsonTable DataVersions::json{rows};
//
// A member that a file leaves out leaves that member as a new object has it; only `JsonFixed` members, which come first, must
// be there.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "hedro34/base/ref.h"

namespace hedro34 {

struct JsonTable;

// What is wrong with an object as a whole.
struct JsonError {
  std::string pointer;  // from that object on
  std::string reason;   // one line
};

// A member that tells the kind of the file; any other value is another kind.
using JsonFixed = std::variant<std::string_view, std::int32_t>;

struct JsonTexts {  // list of strings
  void (*store)(Object&, std::vector<String>);
  std::size_t (*count)(Object&);
  StringView (*at)(Object&, std::size_t);
};

struct JsonFlags {  // list of Booleans
  void (*store)(Object&, std::vector<bool>);
  const std::vector<bool>* (*all)(Object&);  // null when there is none
};

struct JsonNumberLists {  // list of lists of 32-bit integers
  void (*add)(Object&, std::vector<std::int32_t>);
  std::size_t (*count)(Object&);
  const std::vector<std::int32_t>& (*at)(Object&, std::size_t);
};

struct JsonObject {
  Object& (*at)(Object&);
  const JsonTable* table;
};

struct JsonObjects {  // list of objects
  Object& (*add)(Object&);
  std::size_t (*count)(Object&);
  Object& (*at)(Object&, std::size_t);
  const JsonTable* table;
};

template <class Value>
using JsonFieldOf = Value& (*)(Object&);

using JsonField =
    std::variant<JsonFieldOf<String>, JsonFieldOf<bool>, JsonFieldOf<std::int16_t>, JsonFieldOf<std::int32_t>,
                 JsonFieldOf<double>, JsonTexts, JsonFlags, JsonNumberLists, JsonObject, JsonObjects, JsonFixed>;

struct JsonRow {
  std::string_view name;
  JsonField field;
};

struct JsonTable {
  std::span<const JsonRow> rows;  // at most 64
  // What no single member shows. Asked when an object was read to its end, and before one is written: what cannot be read
  // back is not saved.
  std::optional<JsonError> (*check)(Object&) = nullptr;
};

namespace detail {

template <auto...>
struct JsonMember;

template <class T, class Value, Value T::*member>
struct JsonMember<member> {
  using Type = Value;
  static Value& of(Object& object) { return static_cast<T&>(object).*member; }
};

template <class T, class Outer, Outer T::*outer, class Value, Value Outer::*member>
struct JsonMember<outer, member> {
  using Type = Value;
  static Value& of(Object& object) { return static_cast<T&>(object).*outer.*member; }
};

}  // namespace detail

// A row for a plain value: a member of the object, or a member of a struct that is its member.
template <auto... members>
constexpr JsonRow json_row(std::string_view name) {
  using Member = detail::JsonMember<members...>;
  return {name, JsonFieldOf<typename Member::Type>(&Member::of)};
}

// A row for a member `Ref<List>`, where a `List` is made of a vector of strings and gives it back as `all()`. An empty
// reference and an empty list are the same.
template <auto list>
constexpr JsonRow json_texts(std::string_view name) {
  using Member = detail::JsonMember<list>;
  using List = std::remove_reference_t<decltype(*Member::of(std::declval<Object&>()))>;
  return {name, JsonTexts{[](Object& object, std::vector<String> texts) {
                            if (!texts.empty()) Member::of(object) = make<List>(std::move(texts));
                          },
                          [](Object& object) {
                            const auto& held = Member::of(object);
                            return held ? held->all().size() : std::size_t{0};
                          },
                          [](Object& object, std::size_t i) { return StringView(Member::of(object)->all()[i]); }}};
}

// A row for a member `Ref<Collection>` that is never empty, where a `Collection` appends a new object by `add()` and gives all
// its objects as `all()`.
template <auto collection>
constexpr JsonRow json_objects(std::string_view name, const JsonTable& table) {
  using Member = detail::JsonMember<collection>;
  return {name,
          JsonObjects{[](Object& object) -> Object& { return *Member::of(object)->add(); },
                      [](Object& object) { return Member::of(object)->all().size(); },
                      [](Object& object, std::size_t i) -> Object& { return *Member::of(object)->all()[i]; }, &table}};
}

}  // namespace hedro34
