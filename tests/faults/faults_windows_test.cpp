// Native faults where the system calls handlers of frames: a host's own come before the library's guards.
#include <gtest/gtest.h>

#include <csetjmp>

#include "hedro34/component/held.h"
#include "hedro34/merge/clsHEDRO.h"
#include "tests/faults/provoke_windows.h"

#include <windows.h>

namespace hedro34 {
namespace {

using namespace testing;

TEST(Guards, AreAllThatTheLibraryInstalls) { EXPECT_TRUE(has_filter_of_host()); }

TEST(Guards, LetAHostLookIntoItsOwnFaults) {
  clsHEDROTest test;
  for (const bool twice : {false, true}) {
    EXPECT_EQ(load(test, [&] { EXPECT_EQ(in_host_frame(read_null, twice), STATUS_ACCESS_VIOLATION); }), Lines());
  }
  EXPECT_EQ(load(test,
                 [] {
                   EXPECT_TRUE(IsBadReadPtr(reinterpret_cast<const void*>(16), 4));
                   EXPECT_TRUE(IsBadStringPtrA(reinterpret_cast<const char*>(16), 4));
                 }),
            Lines());
}

#ifdef __i386__
TEST(Guards, LeaveAHostsFrameWithoutTables) {
  for (int round = 0; round < 2; ++round) {
    for (void (*const deed)() : {static_cast<void (*)()>(nullptr), read_null}) {
      Recorder recorder;
      int result = 0;
      Counted::ended = 0;
      trap({u"a", u"B"}, [&] {
        result = 1;
        in_bare_frame(deed);
        result = 2;
      });
      EXPECT_EQ(result, 1);
      trap({u"a", u"B"}, [&] {
        const Counted counted;
        result = 3;
        const HostCall call;
        call.make([&] { in_bare_frame(deed); });
        result = 4;
      });
      EXPECT_EQ(result, 3);
      EXPECT_EQ(Counted::ended, 1) << "the frames outside the call of the host have ended";
      EXPECT_EQ(recorder.take().size(), 2U);
      trap({u"a", u"B"}, [] {
        const Counted counted;
        read_null();
      });
      EXPECT_EQ(recorder.take(), Lines{"10005 Access Violation: HEDRO34 - a.B"});
    }
  }
}
#endif

TEST(Guards, AreGoneAfterALongJump) {
  static std::jmp_buf way_out;
  static constexpr auto jump = [] { std::longjmp(way_out, 1); };
  static constexpr void (*ways[])() = {jump, jump, [] {
                                         HostCall::set_faults_are_failures(false);
                                         const HostCall call;
                                         HostCall::set_faults_are_failures(true);
                                         call.make(jump);
                                       }};
  static std::size_t way = 0;
  for (way = 0; way < std::size(ways); ++way) {
    if (setjmp(way_out) == 0) trap({u"a", u"B"}, ways[way]);
    EXPECT_TRUE(null_reaches_former_handler());
    Recorder recorder;
    trap({u"a", u"B"}, read_null);
    EXPECT_EQ(recorder.take(), Lines{"10005 Access Violation: HEDRO34 - a.B"});
  }
}

// What an application raises for itself, as the C++ of other compilers does, is nobody else's.
template <DWORD code>
void raise_in_operation() {
  trap({u"a", u"B"}, [] { RaiseException(code, 0, 0, nullptr); });
}

TEST(Guards, LetAnApplicationsOwnExceptionsPass) {
  Recorder recorder;
  EXPECT_EQ(in_host_frame(raise_in_operation<0xE06D7363>), 0xE06D7363);
  EXPECT_EQ(in_host_frame(raise_in_operation<0xE0000001>), 0xE0000001);
  in_host_frame(raise_in_operation<0x406D1388>);  // the name of a thread, for a debugger
  EXPECT_EQ(recorder.take(), Lines());
  trap({u"a", u"B"}, read_null);
  EXPECT_EQ(recorder.take(), Lines{"10005 Access Violation: HEDRO34 - a.B"});
}

}  // namespace
}  // namespace hedro34
