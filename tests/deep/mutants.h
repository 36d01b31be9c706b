// What the mutants of a source stand behind: HEDRO34_MUTANT is the number of the one that is on.
#pragma once

#pragma GCC diagnostic ignored "-Wnarrowing"

#include <cstdlib>
#include <type_traits>
#include <utility>

namespace mutants {

enum Reached : char { no, yes, cannot_be };  // the last for a mutant that would not compile

inline constexpr int most = 1 << 16;

struct Switches {
  int chosen;
  Reached reached[most];
};

inline Switches& switches() {
  static Switches* const those = [] {
    const char* const chosen = std::getenv("HEDRO34_MUTANT");
    return new Switches{chosen ? std::atoi(chosen) : 0, {}};
  }();
  return *those;
}

inline bool on(int number) {
  Switches& those = switches();
  if (those.reached[number] == no) those.reached[number] = yes;
  return those.chosen == number;
}

template <class Value>
Value next(int number, Value value) {
  return on(number) ? static_cast<Value>(value + 1) : value;
}

inline bool truth(int number, bool value) { return value != on(number); }

template <class Condition>
bool flip(int number, const Condition& condition) {
  return static_cast<bool>(condition) != on(number);
}

template <class Unit, std::size_t Size>
const Unit (&text(int number, const Unit (&own)[Size], const Unit (&other)[Size]))[Size] {
  return on(number) ? other : own;
}

template <class Unit>
const Unit* text(int number, const Unit (&own)[1], const Unit (&other)[2]) {
  return on(number) ? other : own;
}

struct negation {
  int number;
};
template <class Value>
bool operator->*(negation place, const Value& value) {
  return static_cast<bool>(value) == on(place.number);
}

struct up {
  int number;
};
template <class Value>
Value& operator->*(up place, Value& value) {
  if constexpr (requires { --value; }) {
    return on(place.number) ? --value : ++value;
  } else {
    switches().reached[place.number] = cannot_be;
    return ++value;
  }
}

struct down {
  int number;
};
template <class Value>
Value& operator->*(down place, Value& value) {
  return on(place.number) ? ++value : --value;
}

// `a < less{1} < b` is `a < b` or, with mutant 1 on, `a <= b`. What stands between two operands of an operator leaves its
// precedence as it is.
template <class Place, class Value>
struct Left {
  Place place;
  Value&& value;
};

#define MUTANTS_OPERATOR(name, own, other)                                                                         \
  struct name {                                                                                                    \
    int number;                                                                                                    \
  };                                                                                                               \
  template <class Value>                                                                                           \
  Left<name, Value> operator own(Value&& value, name place) {                                                      \
    return {place, std::forward<Value>(value)};                                                                    \
  }                                                                                                                \
  template <class A, class B>                                                                                      \
  decltype(auto) operator own(Left<name, A> left, B&& right) {                                                     \
    using Result = std::decay_t<decltype(std::forward<A>(left.value) own std::forward<B>(right))>;                 \
    if constexpr (requires { static_cast<Result>(std::forward<A>(left.value) other std::forward<B>(right)); }) {   \
      return on(left.place.number) ? static_cast<Result>(std::forward<A>(left.value) other std::forward<B>(right)) \
                                   : static_cast<Result>(std::forward<A>(left.value) own std::forward<B>(right));  \
    } else {                                                                                                       \
      switches().reached[left.place.number] = cannot_be;                                                           \
      return static_cast<Result>(std::forward<A>(left.value) own std::forward<B>(right));                          \
    }                                                                                                              \
  }

MUTANTS_OPERATOR(equal, ==, !=)
MUTANTS_OPERATOR(unequal, !=, ==)
MUTANTS_OPERATOR(less, <, <=)
MUTANTS_OPERATOR(at_most, <=, <)
MUTANTS_OPERATOR(more, >, >=)
MUTANTS_OPERATOR(at_least, >=, >)
MUTANTS_OPERATOR(plus, +, -)
MUTANTS_OPERATOR(minus, -, +)
MUTANTS_OPERATOR(times, *, +)
MUTANTS_OPERATOR(over, /, *)
MUTANTS_OPERATOR(rest, %, *)

}  // namespace mutants
