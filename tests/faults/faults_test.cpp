// Native faults inside operations, provoked for real: one report with number, name and location, the result as it stood,
// and the library goes on. Faults outside operations belong to the handlers that were there before.
#include <gtest/gtest.h>
#include <pthread.h>
#include <xmmintrin.h>

#include <cfenv>
#include <thread>

#include "hedro34/documents/form_template.h"
#include "hedro34/merge/clsHEDRO.h"
#include "hedro34/runtime/modStartup.h"
#include "hedro34/runtime/modvbCodeShieldSupport.h"
#include "tests/faults/provoke.h"

namespace hedro34 {
namespace {

using namespace testing;

constexpr const char* in_load = ": HEDRO34 - clsHEDROTest.LoadXML";
constexpr const char* violation = "10005 Access Violation";

// Loads a file through a host that does the deed; gives the reports.
Lines load(clsHEDROTest& test, const std::function<void()>& deed) {
  const FaultingHost host(deed);
  Recorder recorder;
  const Folder folder;
  const String path = folder.write("t.xml", "<examview><question type='essay' question-id='1'/></examview>");
  const bool loaded = test.LoadXML(path);
  EXPECT_EQ(loaded, recorder.lines.empty());
  return recorder.take();
}

std::string null_outside() { return outside(read_null); }

TEST(Faults, EachKindIsReportedByItsOperationAndTheNextCallWorks) {
  ASSERT_TRUE(translates_faults());
  clsHEDROTest test;
  for (int round = 0; round < 3; ++round) {
    for (const auto& [name, fault, report] : provocations()) {
      test.Title = u"before";
      Counted::ended = 0;
      EXPECT_EQ(load(test, fault), Lines{report + std::string(in_load)}) << name;
      EXPECT_GE(Counted::ended, 1) << name << ": destructors of the frames between";
      EXPECT_EQ(test.Questions->Count(), 0) << name;
      EXPECT_EQ(test.Title.str(), u"") << name << ": what the operation had done before stands";
      EXPECT_EQ(load(test, [] {}), Lines()) << name;
      EXPECT_EQ(test.Questions->Count(), 1) << name;
      EXPECT_EQ(null_outside(), "fault at 0") << name << ": no trap is left behind";
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

// Here the stack runs full, and not in an allocation, which would keep its lock.
[[gnu::noinline]] void touch_the_next_100_kb() {
  volatile char frame[100 * 1024];
  frame[0] = 1;
  static_cast<void>(frame[0]);
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

// Runs the deed on a thread with such a stack.
void on_thread(std::size_t stack_size, void (*deed)()) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, stack_size), 0);
  const auto start = [](void* body) -> void* {
    Main();
    reinterpret_cast<void (*)()>(body)();
    return nullptr;
  };
  pthread_t thread;
  ASSERT_EQ(pthread_create(&thread, &attributes, start, reinterpret_cast<void*>(deed)), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

// A template of a host that never comes to an end of its fields.
class EndlessTemplate : public TIBTemplate {
 public:
  Ref<TIBPages> Pages() override { return {}; }
  std::int16_t PageCount() override { return 1; }
  std::int16_t QuestionCount() override { return static_cast<std::int16_t>(recurse_for_ever(0)); }
  std::int16_t GradedQuestionCount() override { return 1; }
  void Clear() override {}
  Variant QuestionNames(std::int16_t, std::int16_t, bool, const String&, bool) override { return {}; }
  Ref<TIBTemplate> Copy(bool) override { return {}; }
};

TEST(Faults, AnOverflowIsReportedByItsOperationOnASmallStackToo) {
  for (const std::size_t kilobytes : {64U, 128U, 256U}) {
    SCOPED_TRACE(kilobytes);
    on_thread(kilobytes * 1024, [] {
      Recorder recorder;
      clsHEDRO merge;
      merge.Tests->Add(make<clsHEDROTest>());
      merge.TemplateIn = make<EndlessTemplate>();
      bool answer = true;
      EXPECT_FALSE(caught([&] { answer = merge.Merge(); }));  // as a call by name does, which reports nothing itself
      EXPECT_FALSE(answer);
      EXPECT_EQ(recorder.take(), Lines{"10237 Stack Overflow: HEDRO34 - clsHEDRO.Merge"});
    });
  }
}

std::uintptr_t end_of_this_stack() {
  pthread_attr_t attributes;
  pthread_getattr_np(pthread_self(), &attributes);
  void* low = nullptr;
  std::size_t size = 0;
  pthread_attr_getstack(&attributes, &low, &size);
  pthread_attr_destroy(&attributes);
  return reinterpret_cast<std::uintptr_t>(low);
}

// Goes down until so much is left before the address, and runs the deed there.
[[gnu::noinline]] void deep_down(std::uintptr_t end, std::uintptr_t left, const std::function<void()>& deed) {
  volatile char frame[500];
  frame[0] = 0;
  if (reinterpret_cast<std::uintptr_t>(&frame) - end > left) {
    deep_down(end, left, deed);
  } else {
    deed();
  }
  frame[1] = 0;
}

TEST(Faults, AnOverflowOfAnOperationAtTheEndOfTheStackIsReported) {
  on_thread(1024 * 1024, [] {
    Recorder recorder;
    const Location inner{u"a", u"B"};
    for (std::uintptr_t left = 32; left < 80; ++left) {
      SCOPED_TRACE(left);
      deep_down(end_of_this_stack(), left * 1024,
                [&] { EXPECT_FALSE(caught([&] { trap(inner, [] { recurse_for_ever(0); }); })); });
      EXPECT_EQ(recorder.take(), Lines{"10237 Stack Overflow: HEDRO34 - a.B"});
    }
    // A large frame beyond the end leaves no more space than there is.
    trap({u"outer", u"C"},
         [&] { deep_down(end_of_this_stack(), 4 * 1024, [&] { trap(inner, touch_the_next_100_kb); }); });
    EXPECT_EQ(recorder.take(), Lines{"10237 Stack Overflow: HEDRO34 - outer.C"});
  });
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
  EXPECT_EQ(null_outside(), "fault at 0");
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
  feenableexcept(FE_DIVBYZERO);
  std::fesetround(FE_UPWARD);
  constexpr std::uint32_t flags = 0x3F;
  const std::uint32_t modes = _mm_getcsr() & ~flags;
  const std::function<void()> deeds[] = {read_null, [] { recurse_for_ever(0); }};
  for (const auto& deed : deeds) {
    EXPECT_EQ(load(test, deed).size(), 1U);
    EXPECT_EQ(_mm_getcsr() & ~flags, modes);
    EXPECT_EQ(std::fegetround(), FE_UPWARD);
    EXPECT_EQ(fegetexcept(), FE_DIVBYZERO);
  }
  std::fesetround(FE_TONEAREST);
  fedisableexcept(FE_ALL_EXCEPT);
}

TEST(Faults, OnAThreadThatWasNotStartedAreTranslatedAsWell) {
  std::thread([] {
    clsHEDROTest test;
    for (int i = 0; i < 3; ++i) EXPECT_EQ(load(test, read_null), Lines{std::string(violation) + in_load});
  }).join();
}

// Hears reports and boxes without any memory of its own.
struct Witness : MessageBox {
  struct Errors : Object {
    explicit Errors(int& count) : heard(count) {}
    Variant Call(StringView, std::span<Variant>) override {
      ++heard;
      return std::int16_t{0};
    }
    int& heard;
  };

  std::int32_t Show(StringView, std::int32_t, StringView) override {
    ++heard;
    return answer_ok;
  }
  int heard = 0;
  Ref<Object> errors = make<Errors>(heard);
};

// What a host does, with so many allocations before memory is gone for good. Gives whether they were enough.
bool load_and_merge(int allocations, const String& path, Witness& witness) {
  clsHEDRO merge;
  const auto form = make<FormTemplate>();
  const Ref<FormRegion> region = form->pages().add()->regions().add();
  region->questions().add()->SetGraded(true);
  merge.TemplateIn = form;
  merge.TemplateOut = make<FormTemplate>();
  const auto test = make<clsHEDROTest>();
  merge.Tests->Add(test);
  witness.heard = 0;

  allocations_left = allocations;
  const bool loaded = test->LoadXML(path);
  const int heard_in_load = std::exchange(witness.heard, 0);
  const bool merged = merge.Merge();
  const int heard_in_merge = std::exchange(witness.heard, 0);
  const bool enough = std::exchange(allocations_left, -1) > 0;

  EXPECT_TRUE(loaded || heard_in_load > 0) << allocations;
  EXPECT_TRUE(merged || heard_in_merge > 0) << allocations;
  EXPECT_TRUE(!enough || (loaded && merged && heard_in_load + heard_in_merge == 0));
  EXPECT_TRUE(test->LoadXML(path)) << "with memory again, after " << allocations;
  EXPECT_EQ(test->Questions->Count(), 1) << allocations;
  return enough;
}

TEST(MemoryGoneForGood, EndsEachOperationWithAReportAndNothingElse) {
  const Folder folder;
  const String path = folder.write("t.xml",
                                   "<examview><question type='essay' question-id='1'><text>Why?</text>"
                                   "</question></examview>");
  Witness witness;
  const auto former = std::exchange(platform().message_box, &witness);
  for (const bool started : {true, false}) {
    for (const bool with_object : {true, false}) {
      int allocations = 0;
      for (bool enough = false; !enough && !HasFailure(); ++allocations) {
        std::thread([&] {
          if (started) Main();
          if (with_object) set_error_object(witness.errors);
          enough = load_and_merge(allocations, path, witness);
        }).join();
      }
      EXPECT_GT(allocations, 100);
    }
  }
  // The first use of each value of a thread, when there is nothing to keep it in.
  for (const bool starts : {false, true}) {
    std::thread([&] {
      clsHEDRO merge;
      clsHEDROTest test;
      witness.heard = 0;
      allocations_left = 0;
      if (starts) Main();
      const bool taken = merge.SetError(witness.errors);
      const bool loaded = test.LoadXML(path);
      allocations_left = -1;
      EXPECT_FALSE(taken || loaded);
      EXPECT_EQ(witness.heard, 2);
      EXPECT_TRUE(merge.SetError(witness.errors)) << "with memory again";
    }).join();
  }
  platform().message_box = former;
}

TEST(FormerHandlers, GetTheFaultsOutsideOperationsAndTheSignalsThatAreSent) {
  static char* volatile low = reinterpret_cast<char*>(64);
  EXPECT_EQ(outside([] { *low = 0; }), "fault at 64");
  EXPECT_EQ(outside([] { asm volatile("divl %0" : : "r"(0), "a"(1), "d"(0)); }), "plain 8");
  Recorder recorder;
  trap({u"a", u"B"}, [] {
    former_handler.clear();
    std::raise(SIGSEGV);
    std::raise(SIGILL);  // ignored
  });
  EXPECT_EQ(former_handler, "sent by 0");
  EXPECT_EQ(recorder.take(), Lines());
}

TEST(FormerHandlersDeathTest, NoneMeansWhatTheSystemDoes) {
  const std::pair<void (*)(), int> rows[] = {
      {[] { asm volatile("ud2"); }, SIGILL},  // ignored: a fault cannot be
      {[] { asm volatile("int3"); }, SIGTRAP},
      {[] { std::raise(SIGBUS); }, SIGBUS},
      {[] {
         trap({u"a", u"B"}, [] { std::raise(SIGTRAP); });
       },
       SIGTRAP},
  };
  for (const auto& [deed, signal] : rows) EXPECT_EXIT(deed(), ::testing::KilledBySignal(signal), "");
}

TEST(StartUp, ASecondOneInstallsNothing) {
  struct sigaction hosts = {}, ours = {}, found = {};
  hosts.sa_handler = SIG_IGN;
  sigaction(SIGSEGV, &hosts, &ours);
  Main();
  std::thread([] { Main(); }).join();
  sigaction(SIGSEGV, &ours, &found);
  EXPECT_EQ(found.sa_handler, SIG_IGN) << "a handler that the host installed later stays";
}

TEST(StartUp, AnAlternateStackOfTheHostStaysOrComesBack) {
  static stack_t at_end;
  for (const std::size_t size : {std::size_t{16 * 1024}, std::size_t{128 * 1024}}) {
    std::vector<char> stack(size);
    std::thread([&] {
      struct AtEnd {  // made first, so it ends last
        bool made = true;
        ~AtEnd() { sigaltstack(nullptr, &at_end); }
      };
      static thread_local AtEnd last;
      EXPECT_TRUE(last.made);
      stack_t hosts = {};
      hosts.ss_sp = stack.data();
      hosts.ss_size = size;
      sigaltstack(&hosts, nullptr);
      Main();
      stack_t now = {};
      sigaltstack(nullptr, &now);
      EXPECT_EQ(now.ss_sp == hosts.ss_sp, size >= 64 * 1024);
      EXPECT_GE(now.ss_size, 64U * 1024);
      clsHEDROTest test;
      EXPECT_EQ(load(test, [] { recurse_for_ever(0); }).size(), 1U);
    }).join();
    EXPECT_EQ(at_end.ss_sp, stack.data());
    EXPECT_EQ(at_end.ss_size, size);
  }
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
