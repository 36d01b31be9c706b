// Memory that runs out on cue: while a `FailingAllocation` lives, one allocation of its thread throws std::bad_alloc.
#pragma once

#include <set>
#include <string>

#include "tests/support.h"

namespace hedro34::testing {

class FailingAllocation {
 public:
  // The `number`-th allocation from now on fails, from 1; those before and behind it succeed.
  // Or those behind it fail as well: memory is gone for good.
  explicit FailingAllocation(int number, bool for_good = false);
  ~FailingAllocation();
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;

  static bool came() noexcept;         // whether the allocation came
  static long allocations() noexcept;  // of this thread, all in all
};

// Runs `body(state)` on a new state from `prepare` once for each allocation that `body` makes, with that one failing, then
// `check(state)`. Gives the reports that came.
template <class Prepare, class Body, class Check>
std::set<std::string> fail_each_allocation(Prepare prepare, Body body, Check check) {
  std::set<std::string> reports;
  for (int number = 1;; ++number) {
    Recorder recorder;
    auto state = prepare();
    bool came = false;
    {
      const FailingAllocation failing(number);
      body(state);
      came = FailingAllocation::came();
    }
    check(state);
    for (const std::string& line : recorder.take()) reports.insert(line);
    if (!came) return reports;
  }
}

}  // namespace hedro34::testing
