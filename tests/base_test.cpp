#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "hedro34/base/array.h"
#include "hedro34/base/keyed_list.h"
#include "tests/failing_allocation.h"
#include "tests/support.h"

namespace hedro34 {
namespace {

using namespace std::string_view_literals;
using testing::failure_of;

// --- text

TEST(Utf, ConvertsBothWays) {
  const std::pair<std::string_view, StringView> rows[] = {
      {"a\0b\x7F"sv, u"a\0b\x7F"sv},
      {"\xC2\x80\xDF\xBF", u"\x80\u07FF"},
      {"\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF", u"\u0800\uD7FF\uE000\uFFFF"},
      {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", u"\U00010000\U0010FFFF"},
      {"eight at a time \xE2\x82\xAC and on again", u"eight at a time \u20AC and on again"},
  };
  for (const auto& [bytes, units] : rows) {
    EXPECT_EQ(from_utf8(bytes), units);
    EXPECT_EQ(to_utf8(units), bytes);
  }
}

TEST(Utf, WhatIsNoneBecomesReplacements) {
  const std::pair<std::string_view, StringView> rows[] = {
      {"\x80", u"\uFFFD"},                                // a continuation alone
      {"\xC3(", u"\uFFFD("},                              // cut by another character
      {"\xE0\x9F\xBF", u"\uFFFD\uFFFD\uFFFD"},            // overlong
      {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},            // a surrogate
      {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},  // beyond the last code point
      {"\xF0\x9F\x98", u"\uFFFD\uFFFD\uFFFD"},            // cut at the end
      {"\xE2\x82\xE2\x82\xAC", u"\uFFFD\uFFFD\u20AC"},    // cut by a whole one
  };
  for (const auto& [bytes, units] : rows) EXPECT_EQ(from_utf8(bytes), units);
  EXPECT_EQ(to_utf8(u"a\xD800"sv), "a\xEF\xBF\xBD");
  EXPECT_EQ(to_utf8(u"\xDC00\xD83D\xD83D\xDE00"sv), "\xEF\xBF\xBD\xEF\xBF\xBD\xF0\x9F\x98\x80");
}

TEST(Text, ComparesAndTrims) {
  EXPECT_TRUE(equal_ignoring_case(u"Key \u03C2 1", u"kEY \u03C3 1"));  // both sigmas have one capital
  EXPECT_FALSE(equal_ignoring_case(u"key", u"keys"));
  EXPECT_FALSE(equal_ignoring_case(u"stra\u00DFe", u"STRASSE"));
  EXPECT_EQ(IgnoringCase()(u"\u00E9\u03C2"), IgnoringCase()(u"\u00C9\u03C3"));
  EXPECT_TRUE(lower_equals(u"MTF", u"mtf"));
  EXPECT_FALSE(lower_equals(u"\u017Fa", u"sa"));  // the long s is small already
  EXPECT_EQ(trim(u"  \ta b\u00A0  "), u"\ta b\u00A0"sv);
  EXPECT_EQ(decimal(std::numeric_limits<std::int64_t>::min()), u"-9223372036854775808"sv);
}

TEST(Text, AFieldKeepsItsFirstUnits) {
  Text<3> field(u"abcd");
  EXPECT_EQ(field, u"abc"sv);
  field = String(u"moved");
  EXPECT_EQ(field, u"mov"sv);
  field = StringView(field).substr(1);
  EXPECT_EQ(field, u"ov"sv);
}

// --- array

TEST(Array, HasTheBoundsItWasGiven) {
  const std::pair<std::int64_t, std::int64_t> rows[] = {{1, 1}, {-5, -3}, {2147483646, 2147483647}};
  for (const auto& [lower, upper] : rows) {
    Array<std::int32_t> array(lower, upper);
    EXPECT_EQ(array.LBound(), lower);
    EXPECT_EQ(array.UBound(), upper);
    for (std::int64_t i = lower; i <= upper; ++i) array[i] = static_cast<std::int32_t>(i);
    EXPECT_EQ(array.elements().front(), lower);
    EXPECT_EQ(array.elements().size(), static_cast<std::size_t>(upper - lower) + 1);
    EXPECT_EQ(failure_of([&, at = lower - 1] { array[at] = 0; }), 9);
    EXPECT_EQ(failure_of([&, at = upper + 1] { array[at] = 0; }), 9);
  }
  for (Array<String> array : {Array<String>(), Array<String>(7, 6), Array<String>::of({}, 5)}) {
    EXPECT_FALSE(array.has_bounds());
    EXPECT_EQ(failure_of([&] { array.LBound(); }), 9);
    EXPECT_EQ(failure_of([&] { array.UBound(); }), 9);
    EXPECT_EQ(array, Array<String>());
  }
  EXPECT_NE(Array<String>::of({u"a"}), Array<String>::of({u"a"}, 0));
}

// --- references

class Counted : public Object {
 public:
  explicit Counted(int& alive) : alive_(alive) { ++alive_; }
  ~Counted() override { --alive_; }

 private:
  int& alive_;
};

TEST(Ref, TheLastHolderReleases) {
  int alive = 0;
  Ref<Counted> first = make<Counted>(alive);
  Ref<Object> second = first;
  first = nullptr;
  const Ref<Object>& alias = second;
  second = alias;  // itself
  EXPECT_EQ(alive, 1);
  Variant held = std::move(second);
  EXPECT_EQ(failure_of([&] { (*held.get_if<Ref<Object>>())->Call(u"Anything", {}); }), 438);
  held = Ref<Object>(make<Counted>(alive));
  EXPECT_EQ(alive, 1);
  held = Variant();
  EXPECT_EQ(alive, 0);
  EXPECT_EQ(failure_of([&] { first->Call(u"Anything", {}); }), 91);
}

// --- variants

template <class Convert>
std::string outcome(Convert convert) {
  try {
    return to_utf8(to_text(Variant(convert())));
  } catch (const Failure& failure) {
    return "#" + std::to_string(failure.number);
  }
}

// The text, the 64-bit float, the two integers and the Boolean of a variant, or "#" and a failure's number.
std::string conversions(const Variant& value) {
  return outcome([&] { return to_text(value); }) + " | " + outcome([&] { return to_double(value); }) + " | " +
         outcome([&] { return to_int32(value); }) + " | " + outcome([&] { return to_int16(value); }) + " | " +
         outcome([&] { return to_boolean(value); });
}

TEST(Variant, Converts) {
  const std::pair<Variant, const char*> rows[] = {
      {Variant(), " | 0 | 0 | 0 | False"},
      {Null(), "#13 | #13 | #13 | #13 | #13"},
      {missing, "#13 | #13 | #13 | #13 | #13"},
      {Ref<Object>(), "#13 | #13 | #13 | #13 | #13"},
      {true, "True | -1 | -1 | -1 | True"},
      {std::int32_t{0}, "0 | 0 | 0 | 0 | False"},
      {std::int32_t{32768}, "32768 | 32768 | 32768 | #6 | True"},
      {std::int64_t{2147483648}, "2147483648 | 2147483648 | #6 | #6 | True"},
      {0.1F, "0.1 | 0.10000000149011612 | 0 | 0 | True"},
      {2.5, "2.5 | 2.5 | 2 | 2 | True"},
      {32767.5, "32767.5 | 32767.5 | 32768 | #6 | True"},
      {-32768.5, "-32768.5 | -32768.5 | -32768 | -32768 | True"},
      {std::nan(""), "nan | nan | #6 | #6 | True"},
      {u"", " | #13 | #13 | #13 | #13"},
      {u" -2.5e1 ", " -2.5e1  | -25 | -25 | -25 | True"},
      {u"+7", "+7 | 7 | 7 | 7 | True"},
      {u"1e999", "1e999 | #6 | #6 | #6 | #6"},
      {u"tRUE", "tRUE | #13 | #13 | #13 | True"},
      {u"12a", "12a | #13 | #13 | #13 | #13"},
      {u"+-5", "+-5 | #13 | #13 | #13 | #13"},
      {u"\u0661", "\u0661 | #13 | #13 | #13 | #13"},
  };
  for (const auto& [value, expected] : rows) EXPECT_EQ(conversions(value), expected);
  // Digits and powers that lie near the middle between two floats.
  EXPECT_EQ(to_double(u"236726227e19"), 236726227e19);
  EXPECT_EQ(to_double(u"6206282636059e14"), 6206282636059e14);
  EXPECT_EQ(to_float32(0.1), 0.1F);
  EXPECT_EQ(failure_of([] { to_float32(-1e39); }), 6);
  EXPECT_TRUE(std::isinf(to_float32(std::numeric_limits<double>::infinity())));
}

// --- keyed lists

// A list and the same one without any art: a vector, searched from its start.
class Comparison {
 public:
  explicit Comparison(unsigned seed) : random_(seed) {}

  void step(std::int32_t size_aimed_at) {
    one_in(list_.count() < size_aimed_at ? 4 : 2) ? remove() : add();
    compare();
  }

 private:
  struct Element {
    std::int32_t value;
    String key;
  };

  std::int32_t below(std::int32_t limit) { return static_cast<std::int32_t>(random_() % static_cast<unsigned>(limit)); }
  bool one_in(std::int32_t n) { return below(n) == 0; }

  Variant any_key() {
    static const StringView stems[] = {u"q", u"\u00E9", u"\u03C2", u"", u"Item "};
    String key(stems[below(5)]);
    if (key.empty() && one_in(2)) return key;
    key += decimal(below(12));
    for (char16_t& unit : key) unit = one_in(2) ? upper(unit) : lower(unit);
    return key;
  }
  Variant any_index() { return one_in(2) ? any_key() : Variant(below(list_.count() + 3) - 1); }

  std::int32_t position(const Variant& index) const {
    const String* key = index.text();
    for (std::size_t i = 0; i < naive_.size(); ++i) {
      const auto number = static_cast<std::int32_t>(i) + 1;
      if (key == nullptr ? index == Variant(number) : !key->empty() && upper(*key) == upper(naive_[i].key)) {
        return number;
      }
    }
    return 0;
  }

  void add() {
    const std::int32_t value = next_value_++;
    const Variant key = one_in(3) ? missing : any_key();
    const Variant before = one_in(4) ? any_index() : missing;
    const Variant after = one_in(4) ? any_index() : missing;
    const bool has_before = !before.is<Missing>();
    const bool has_after = !after.is<Missing>();
    const bool twice = !key.is<Missing>() && position(key) != 0;
    const bool nowhere = (has_before && (has_after || position(before) == 0)) || (has_after && position(after) == 0);
    const std::int32_t expected = has_before ? position(before) : has_after ? position(after) + 1 : list_.count() + 1;
    const std::int32_t failure = failure_of([&] { list_.add(value, key, before, after); });
    if (twice || nowhere) {
      ASSERT_TRUE((twice && failure == 457) || (nowhere && failure == 5)) << failure;
      return;
    }
    ASSERT_EQ(failure, 0);
    naive_.insert(naive_.begin() + expected - 1, {value, key.is<Missing>() ? String() : *key.text()});
  }

  void remove() {
    const Variant index = any_index();
    const std::int32_t found = position(index);
    const std::int32_t failure = failure_of([&] { list_.remove(index); });
    ASSERT_EQ(failure, found != 0 ? 0 : index.text() == nullptr ? 9 : 5);
    if (found == 0) return;
    naive_.erase(naive_.begin() + found - 1);
  }

  void compare() {
    ASSERT_EQ(list_.count(), static_cast<std::int32_t>(naive_.size()));
    for (std::int32_t i = 1; i <= list_.count(); ++i) {
      const auto& [value, key] = naive_[static_cast<std::size_t>(i) - 1];
      ASSERT_EQ(list_.at(i), value);
      ASSERT_TRUE(key.empty() || list_.find_position(key) == i);
    }
    for (int i = 0; i < 4; ++i) {
      const Variant index = any_index();
      const std::int32_t found = position(index);
      ASSERT_EQ(list_.find_position(index), found);
    }
  }

  std::mt19937 random_;
  KeyedList<std::int32_t> list_;
  std::vector<Element> naive_;
  std::int32_t next_value_ = 1;
};

TEST(KeyedList, AgreesWithANaiveListThroughRandomOperations) {
  for (unsigned seed = 1; seed <= 40; ++seed) {
    Comparison comparison(seed);
    for (const std::int32_t size : {3, 30, 0, 14, 5, 60, 0}) {
      for (int i = 0; i < 150; ++i) {
        ASSERT_NO_FATAL_FAILURE(comparison.step(size)) << "seed " << seed << ", size " << size << ", step " << i;
      }
    }
  }
}

TEST(KeyedList, NumbersOfEveryKindArePositionsAndOnlyTextIsAKey) {
  // The position that an index names, the failure of a removal, such indices.
  const std::tuple<std::int32_t, std::int32_t, std::vector<Variant>> rows[] = {
      {1, 0, {std::int8_t{1}, std::int64_t{1}}},
      {2, 0, {2.0F, 2.5}},
      {3, 0, {2.51, u"1"}},
      {0, 9, {0.5, 3.5, -1, 1e300, std::nan(""), std::int64_t{4294967297}}},
      {0, 5, {u"2", u""}},
      {0, 13, {true, Variant(), Null(), missing}},
  };
  for (const auto& [position, failure, indices] : rows) {
    for (const Variant& index : indices) {
      KeyedList<std::int32_t> list;
      list.append(10);
      list.add(20, u"");
      list.add(30, u"1");
      EXPECT_EQ(list.find_position(index), position);
      EXPECT_EQ(failure_of([&] { list.remove(index); }), failure);
      EXPECT_EQ(list.count(), failure == 0 ? 2 : 3);
    }
  }
  KeyedList<std::int32_t> list;
  EXPECT_EQ(failure_of([&] { list.add(1, 1); }), 13);
  EXPECT_EQ(failure_of([&] { list.add(1, u"key", Variant()); }), 13);
}

TEST(KeyedList, AFailedAllocationChangesNothing) {
  struct State {
    KeyedList<String> list;
    bool failed = false;
  };
  const auto prepare = [] {
    auto state = std::make_unique<State>();  // with the gap in the middle, so that both halves move
    for (std::int32_t i = 1; i <= 10; ++i) state->list.add(decimal(i), decimal(i), i > 5 ? Variant(3) : missing);
    return state;
  };
  const std::pair<StringView, void (*)(KeyedList<String>&)> rows[] = {
      {u"1 2 10 9 8 7 6 3 4 5 eleven ", [](KeyedList<String>& list) { list.add(u"eleven", u"eleven"); }},
      {u"as new and long 1 2 10 9 8 7 6 3 4 5 ",
       [](KeyedList<String>& list) { list.add(u"as new and long", u"as new and long", 1); }},
      {u"2 10 9 8 7 6 3 4 5 ", [](KeyedList<String>& list) { list.remove(u"1"); }},
  };
  for (const auto& row : rows) {
    const auto act = [&](const std::unique_ptr<State>& state) {
      try {
        row.second(state->list);
      } catch (const std::bad_alloc&) {
        state->failed = true;
      }
    };
    testing::fail_each_allocation(prepare, act, [&](const std::unique_ptr<State>& state) {
      String text;
      for (std::int32_t i = 1; i <= state->list.count(); ++i) {
        EXPECT_EQ(state->list.find_position(state->list.at(i)), i);  // each is its own key
        text.append(state->list.at(i)).append(u" ");
      }
      EXPECT_EQ(text, state->failed ? u"1 2 10 9 8 7 6 3 4 5 "sv : row.first);
    });
  }
}

}  // namespace
}  // namespace hedro34
