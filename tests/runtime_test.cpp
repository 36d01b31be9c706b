// The one way of failures: what a report looks like at the host's error object and in a box, and what happens when the
// report itself fails.
#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>
#include <tuple>

#include "hedro34/merge/clsHEDRO.h"
#include "tests/failing_allocation.h"
#include "tests/support.h"

namespace hedro34 {
namespace {

using testing::Lines;

// While it lives, it stands in for the world of this thread: it writes down what reaches it and fails where told to.
class World : public testing::Recorder, public Screen, public ErrorTexts {
 public:
  World() : former_(platform()) {
    platform().screen = this;
    platform().error_texts = this;
    set_error_object(nullptr);
  }
  ~World() override { platform() = former_; }

  std::int32_t Show(StringView text, std::int32_t flags, StringView title) override {
    Recorder::Show(text, flags, title);
    if (boxes_that_fail-- > 0) fail(FailureNumber::CannotCreateObject);
    return answer_ok;
  }
  void SetMousePointer(std::int32_t shape) override {
    lines.push_back("pointer " + std::to_string(shape));
    if (pointer_fails) fail(FailureNumber::InvalidCall);
  }
  String text(std::int32_t number) override {
    if (texts_fail) throw std::bad_alloc();
    return u"text of " + decimal(number);
  }

  int boxes_that_fail = 0;
  bool pointer_fails = false;
  bool texts_fail = false;

 private:
  Platform former_;
};

// An error object that writes each call down and then does what the test says.
class ErrorObject : public Object {
 public:
  using Method = std::function<Variant(std::span<Variant>)>;

  explicit ErrorObject(
      World& world, Method method = [](auto) { return std::int16_t{0}; })
      : world_(world), method_(std::move(method)) {}
  ~ErrorObject() override { world_.lines.emplace_back("released"); }

  Variant Call(StringView name, std::span<Variant> arguments) override {
    std::string line = to_utf8(name);
    for (const Variant& argument : arguments) {
      line += argument.is<std::int32_t>() ? ", long " : argument.is<String>() ? ", string " : ", other ";
      line += to_utf8(to_text(argument));
    }
    world_.lines.push_back(line);
    return method_(arguments);
  }

 private:
  World& world_;
  Method method_;
};

class Nameless : public Object {};  // has no method at all

std::int16_t raise(std::int32_t line, String location) {
  return RaiseError(line, 5, 0, u"D", std::move(location), u"", u"", u"", u"", 1, u"", u"", u"", false);
}

const std::string box = "box 48 \"Application Error\": ";
const std::string undelivered = " occurred while trying to display:\r\n\r\nError# 5: D, Location: HEDRO34 - a.B";

TEST(RaiseError, ShowsABoxWithoutAnErrorObject) {
  const std::tuple<std::int32_t, const char16_t*, const char*> rows[] = {
      {1, u"HEDRO34 - clsHEDROTest.Clear", "Error# 5: D, Location: HEDRO34 - clsHEDROTest.Clear; Line: 1"},
      {0, u"HEDRO34 - clsHEDROTest.Clear", "Error# 5: D, Location: HEDRO34 - clsHEDROTest.Clear"},
      {-5, u"", "Error# 5: D, Location: "},
      {7, u"a.B - HEDRO34 - HEDRO34; c - HEDRO34", "Error# 5: D, Location: a.B; c; Line: 7"},
  };
  World world;
  for (const auto& [line, location, text] : rows) {
    EXPECT_EQ(raise(line, location), 0);
    EXPECT_EQ(world.take(), (Lines{"pointer 0", box + text}));
  }
}

TEST(RaiseError, CallsTheErrorObjectWithThirteenArgumentsInOrder) {
  World world;
  set_error_object(make<ErrorObject>(world, [](std::span<Variant> arguments) {
    for (Variant& argument : arguments) argument = Null();  // by reference: it may write them
    return std::int16_t{12};
  }));
  EXPECT_EQ(RaiseError(105, 457, 2, u"d", u"HEDRO34 - a.B", u"s1", u"s2", u"s3", u"s4", 9, u"s5", u"s6", u"s7", true),
            12);
  EXPECT_EQ(world.take(), (Lines{"pointer 0",
                                 "RaiseError, long 457, long 2, string d, string HEDRO34 - a.B; Line: 105, string s1, "
                                 "string s2, string s3, string s4, long 9, string s5, string s6, string s7, "
                                 "other True"}));
  trap({u"a", u"B"}, [] { fail(FailureNumber::Overflow); });
  EXPECT_EQ(world.take(), (Lines{"pointer 0",
                                 "RaiseError, long 6, long 0, string Overflow, string HEDRO34 - a.B, string , string , "
                                 "string , string , long 1, string , string , string , other False"}));
}

TEST(RaiseError, ShowsWhatItCouldNotDeliver) {
  const std::tuple<ErrorObject::Method, std::int16_t, const char*> rows[] = {
      {[](auto) { return 2.5; }, 2, ""},
      {[](auto) { return 32768; }, 0, "(#6) text of 6"},
      {[](auto) { return Null(); }, 0, "(#13) text of 13"},
      {[](auto) -> Variant { throw Failure(-2147220991, u"the host's own"); }, 0, "(#-2147220991) text of -2147220991"},
  };
  World world;
  for (const auto& [method, result, failure] : rows) {
    set_error_object(make<ErrorObject>(world, method));
    world.take();
    EXPECT_EQ(raise(35, u"HEDRO34 - a.B"), result);
    const std::string last = world.take().back();
    const auto expected = box + "Application error: " + failure + undelivered + "; Line: 35";
    EXPECT_TRUE(*failure == 0 ? last.starts_with("RaiseError") : last == expected) << last;
  }
  world.pointer_fails = true;  // before the line number is there
  EXPECT_EQ(raise(35, u"HEDRO34 - a.B"), 0);
  EXPECT_EQ(world.take(), (Lines{"pointer 0", box + "Application error: (#5) text of 5" + undelivered}));
  world.pointer_fails = false;
  world.texts_fail = true;  // the platform's own words are the standard ones
  set_error_object(make<Nameless>());
  raise(0, u"HEDRO34 - a.B");
  EXPECT_EQ(world.take().back(),
            box + "Application error: (#438) Object doesn't support this property or method" + undelivered);
  set_error_object(nullptr);
  world.texts_fail = false;
  world.boxes_that_fail = 1;
  EXPECT_EQ(raise(0, u"HEDRO34 - a.B"), 0);
  EXPECT_EQ(world.take().back(), box + "Application error: (#429) text of 429" + undelivered);
  world.boxes_that_fail = 2;
  trap({u"a", u"B"}, [] { fail(FailureNumber::Overflow); });
  EXPECT_EQ(world.take().size(), 3U);
}

TEST(RaiseError, TheErrorObjectMayBeReplacedWhileItIsCalled) {
  World world;
  set_error_object(make<ErrorObject>(world, [&](auto) {
    set_error_object(nullptr);
    world.take();
    trap({u"c", u"D"}, [] { fail(FailureNumber::Overflow); });  // a report inside a report
    return std::int16_t{3};
  }));
  EXPECT_EQ(raise(0, u"HEDRO34 - a.B"), 3);
  EXPECT_EQ(world.take(), (Lines{"pointer 0", box + "Error# 6: Overflow, Location: HEDRO34 - c.D", "released"}));
}

TEST(SetError, BothClassesWriteTheObjectOfTheirThread) {
  World world;
  const auto report_goes_to = [&] {
    raise(0, u"HEDRO34 - a.B");
    return world.take().at(1).substr(0, 3);
  };
  clsHEDRO merge;
  clsHEDROTest test;
  EXPECT_TRUE(merge.SetError(make<ErrorObject>(world)));
  EXPECT_EQ(report_goes_to(), "Rai");
  EXPECT_FALSE(test.SetError(nullptr));
  EXPECT_EQ(world.take(), Lines{"released"});
  EXPECT_EQ(report_goes_to(), "box");
  EXPECT_TRUE(test.SetError(make<Nameless>()));  // any object is taken
  std::thread([&] {
    EXPECT_EQ(raise(0, u""), 0);
    EXPECT_EQ(world.take().back(), box + "Error# 5: D, Location: ");
    EXPECT_TRUE(test.SetError(make<ErrorObject>(world)));
  }).join();
  EXPECT_EQ(world.take(), Lines{"released"}) << "a thread releases its object at its end";
  EXPECT_FALSE(merge.SetError(nullptr));
  EXPECT_EQ(report_goes_to(), "box");
}

TEST(Trap, ReportsEachKindOfFailureOnce) {
  const std::pair<std::function<void()>, const char*> rows[] = {
      {[] { throw Failure(-2147467259, u"Caf\u00E9"); }, "-2147467259 Caf\xC3\xA9: HEDRO34 - clsAny.Operation"},
      {[] { Ref<clsHEDROTest>()->Clear(); }, "91 Object variable not set: HEDRO34 - clsAny.Operation"},
      {[] { throw std::bad_alloc(); }, "7 Out of memory: HEDRO34 - clsAny.Operation"},
      {[] { String().resize(String().max_size() + 1); }, "7 Out of memory: HEDRO34 - clsAny.Operation"},
      {[] { throw std::runtime_error("na\xC3\xAFve"); }, "5 na\xC3\xAFve: HEDRO34 - clsAny.Operation"},
      {[] { throw 42; }, "5 Invalid procedure call or argument: HEDRO34 - clsAny.Operation"},
      {[] { EXPECT_FALSE(quietly([] { throw 1; })); }, nullptr},
  };
  for (const auto& [body, line] : rows) {
    testing::Recorder recorder;
    trap({u"clsAny", u"Operation"}, body);
    EXPECT_EQ(recorder.take(), line == nullptr ? Lines() : Lines{line});
  }
}

TEST(Trap, ReportsOnceWhicheverAllocationFails) {
  constexpr const char16_t* words = u"The host has its own words for this";
  std::set<std::string> reports;
  bool came = true;
  for (int number = 1; came; ++number) {
    testing::Recorder recorder;
    {
      const testing::FailingAllocation failing(number);
      trap({u"clsAny", u"Operation"}, [&] { throw Failure(1234, words); });
      came = testing::FailingAllocation::came();
    }
    EXPECT_EQ(recorder.lines.size(), 1U) << number;
    for (const std::string& line : recorder.take()) reports.insert(line);
  }
  const std::string undelivered_report = box + "Application error: (#7) Out of memory";
  for (const std::string& line : {"1234 " + to_utf8(words) + ": HEDRO34 - clsAny.Operation",
                                  std::string("7 Out of memory: HEDRO34 - clsAny.Operation"),
                                  undelivered_report + " occurred while trying to display:\r\n\r\nError# 1234: " +
                                      to_utf8(words) + ", Location: HEDRO34 - clsAny.Operation"}) {
    EXPECT_EQ(reports.count(line), 1U) << line << ::testing::PrintToString(reports);
  }
}

}  // namespace
}  // namespace hedro34
