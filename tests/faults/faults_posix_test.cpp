// Native faults where signals tell of them: the stacks and handlers of threads, the handlers that were there before, and
// memory that ends.
#include <gtest/gtest.h>
#include <pthread.h>

#include <thread>

#include "hedro34/documents/form_template.h"
#include "hedro34/merge/clsHEDRO.h"
#include "hedro34/runtime/modStartup.h"
#include "tests/faults/provoke_posix.h"

namespace hedro34 {
namespace {

using namespace testing;

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
  std::string many_children;
  for (int i = 0; i < 40; ++i) many_children += "<title/>";
  const String path = folder.write("t.xml", "<examview><header>" + many_children +
                                                "</header><question type='essay' question-id='1'><text>Why?</text>"
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
      EXPECT_GT(allocations, 50);
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

}  // namespace
}  // namespace hedro34
