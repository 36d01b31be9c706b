// Native faults inside operations, provoked for real: one report with number, name and location, the result as it stood,
// and the library goes on. Faults outside operations belong to the handlers that were there before.
#include <gtest/gtest.h>

#include <thread>

#include "hedro34/merge/clsHEDRO.h"
#include "hedro34/runtime/modStartup.h"
#include "hedro34/runtime/modvbCodeShieldSupport.h"
#include "tests/faults/provoke.h"

namespace hedro34 {
namespace {

using namespace testing;

constexpr const char* in_load = ": HEDRO34 - clsHEDROTest.LoadXML";
constexpr const char* violation = "10005 Access Violation";

TEST(Faults, EachKindIsReportedByItsOperationAndTheNextCallWorks) {
  ASSERT_TRUE(translates_faults());
  clsHEDROTest test;
  for (int round = 0; round < 3; ++round) {
    for (const auto& [name, fault, report, reaches_frames] : provocations()) {
      test.Title = u"before";
      Counted::ended = 0;
      EXPECT_EQ(load(test, fault), Lines{report + std::string(in_load)}) << name;
      EXPECT_EQ(Counted::ended > 0, reaches_frames) << name << ": destructors of the frames between";
      EXPECT_EQ(test.Questions->Count(), 0) << name;
      EXPECT_EQ(test.Title.str(), u"") << name << ": what the operation had done before stands";
      EXPECT_EQ(load(test, [] {}), Lines()) << name;
      EXPECT_EQ(test.Questions->Count(), 1) << name;
      EXPECT_TRUE(null_reaches_former_handler()) << name << ": no trap is left behind";
    }
  }
}

TEST(Faults, LeaveTheResultAsItStood) {
  for (int kind = 0; kind < 3; ++kind) {
    Recorder recorder;
    int result = 0;
    trap({u"a", u"B"}, [&] {
      result = 1;
      if (kind == 0) *null = 1;
      if (kind == 1) read_null();
      if (kind == 2) recurse_for_ever(0);
      result = 2;
    });
    EXPECT_EQ(result, 1) << kind;
    EXPECT_EQ(recorder.lines.size(), 1U) << kind;
  }
}

TEST(Faults, AHundredInARow) {
  clsHEDROTest test;
  const auto faults = [&] {
    for (int i = 0; i < 100; ++i) {
      ASSERT_EQ(load(test, read_null), Lines{std::string(violation) + in_load});
      if (i % 5 != 0) continue;
      Counted::ended = 0;
      ASSERT_EQ(load(test, [] { recurse_for_ever(0); }), Lines{std::string("10237 Stack Overflow") + in_load});
      ASSERT_GT(Counted::ended, 1000) << "the frames above the deepest have ended";
    }
  };
  faults();
  std::thread([&] {
    Main();
    faults();
  }).join();
}

TEST(Faults, AnOverflowThroughOperationsEndsTheInnermostWithRoom) {
  clsHEDROTest test;
  Recorder recorder;
  int depth = 0, ended = 0;
  FaultingHost host([&] {
    ++depth;
    touch_the_next_100_kb();
    clsHEDROTest inner;
    EXPECT_FALSE(inner.LoadXML(u"/nowhere"));
    ++ended;
  });
  EXPECT_FALSE(test.LoadXML(u"/nowhere"));
  EXPECT_EQ(recorder.take(), Lines{std::string("10237 Stack Overflow") + in_load});
  EXPECT_GT(depth, 20);
  EXPECT_GT(ended, depth / 2) << "the operations outside go on";
  EXPECT_LT(ended, depth);
}

class FaultingObject : public Object {
 public:
  ~FaultingObject() override {
    const Counted counted;
    read_null();
  }
  Variant Call(StringView, std::span<Variant>) override {
    const Counted counted;
    read_null();
    return {};
  }
};

TEST(Faults, InTheErrorObjectLeadToTheBoxOfRaiseError) {
  clsHEDRO merge;
  Recorder recorder;
  const auto failing = make<FaultingObject>();
  failing->retain();  // it stays: its end faults as well
  EXPECT_TRUE(merge.SetError(failing));
  trap({u"a", u"B"}, read_null);  // a fault while a fault is reported
  EXPECT_EQ(recorder.take(), Lines{"box 48 \"Application Error\": Application error: (#10005) Unknown error occurred "
                                   "while trying to display:\r\n\r\nError# 10005: Access Violation, Location: "
                                   "HEDRO34 - a.B"});
  EXPECT_TRUE(null_reaches_former_handler());
}

TEST(Faults, LeaveFramesThatAdmitNoFailure) {
  Recorder recorder;
  Counted::ended = 0;
  trap({u"a", u"Terminate"}, [] { make<FaultingObject>(); });  // out of a destructor and the release of a reference
  EXPECT_EQ(recorder.take(), Lines{std::string(violation) + ": HEDRO34 - a.Terminate"});
  const Variant* volatile nothing = nullptr;
  const clsHEDROTests tests;
  const clsHEDROTestQuestions questions;
  const clsHEDROTestStrings strings;
  EXPECT_FALSE(tests.Exists(*nothing) || tests.Item(*nothing) || questions.Exists(*nothing) ||
               strings.Exists(*nothing));
  EXPECT_EQ(recorder.take(), Lines());
  EXPECT_FALSE(questions.Item(*nothing));
  EXPECT_EQ(recorder.take(), Lines{std::string(violation) + ": HEDRO34 - clsHEDROTestQuestions.Item"});
}

TEST(Faults, KeepTheModesOfTheFloatingPointUnit) {
  clsHEDROTest test;
  constexpr std::uint32_t division = 4;
  const Unmasked unmasked(division);
  constexpr std::uint32_t upward = 0x4000;
  const std::uint32_t modes = Unmasked::vector_modes() | upward;
  const auto word = static_cast<std::uint16_t>(Unmasked::control_word() | upward >> 3);
  Unmasked::set(modes, word);
  const std::function<void()> deeds[] = {read_null, [] { recurse_for_ever(0); }};
  for (const auto& deed : deeds) {
    EXPECT_EQ(load(test, deed).size(), 1U);
    EXPECT_EQ(Unmasked::vector_modes(), modes);
    EXPECT_EQ(Unmasked::control_word(), word);
  }
}

TEST(Faults, OnAThreadThatWasNotStartedAreTranslatedAsWell) {
  std::thread([] {
    clsHEDROTest test;
    for (int i = 0; i < 3; ++i) EXPECT_EQ(load(test, read_null), Lines{std::string(violation) + in_load});
  }).join();
}

TEST(Filter, NamesAndNumbersAreThoseOfTheLastRecordInTheChain) {
  const std::tuple<std::uint32_t, std::int32_t, const char16_t*> rows[] = {
      {0x80000001, 10001, u"Guard Page Violation"},
      {0xC0000008, 10008, u"Invalid Handle"},
      {0xC0000025, 10037, u"Non Continuable Exception"},
      {0xC0000026, 10038, u"Invalid Disposition"},
      {0xC000008C, 10140, u"Array Bounds Exceeded"},
      {0xC000008D, 10141, u"Float Denormal Operand"},
      {0xC0000092, 10130, u"Float Stack Check"},
      {0xC0000095, 10133, u"Integer Overflow"},
      {0xC000013A, 10042, u"Control-C Exit"},
      {0xC0000001, 10001, u"Unknown (&HC0000001)"},
      {0x00001234, 10036, u"Unknown (&H00001234)"},
      {0xFFFFFFFF, 12287, u"Unknown (&HFFFFFFFF)"},
  };
  for (const auto& [code, number, name] : rows) {
    EXPECT_EQ(GetExceptionName(code), name);
    EXCEPTION_RECORD last = {.ExceptionCode = code};
    EXCEPTION_RECORD middle = {.ExceptionCode = 0xC0000005, .ExceptionRecord = &last};
    EXCEPTION_RECORD first = {.ExceptionCode = 0xC0000094, .ExceptionRecord = &middle};
    try {
      vbcsExceptionFilter({&first, nullptr});
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.number, number);
      EXPECT_EQ(failure.description, name);
      EXPECT_EQ(failure.source, u"vbcsExceptionFilter");
    }
    EXPECT_EQ(first.ExceptionRecord, &middle) << "the records of the platform are left as they are";
  }
}

}  // namespace
}  // namespace hedro34

int main(int argc, char** argv) {
  hedro34::testing::install_former_handlers();
  hedro34::Main();
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
