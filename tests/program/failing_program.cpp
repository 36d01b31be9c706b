// Linked into the program for a test: HEDRO34_FAIL_AT=N lets its N-th allocation fail, "N-" that one and all behind it.
// HEDRO34_ALLOCATIONS names a file that takes their number at the end.
#include <cstdlib>
#include <fstream>
#include <optional>
#include <string_view>

#include "tests/failing_allocation.h"

namespace hedro34::testing {
namespace {

class Cue {
 public:
  Cue() {
    if (const char* number = std::getenv("HEDRO34_FAIL_AT")) {
      failing_.emplace(std::atoi(number), std::string_view(number).ends_with('-'));
    }
  }
  ~Cue() {
    failing_.reset();
    const long count = FailingAllocation::allocations();
    if (const char* file = std::getenv("HEDRO34_ALLOCATIONS")) std::ofstream(file) << count;
  }

 private:
  std::optional<FailingAllocation> failing_;
};

const Cue cue;

}  // namespace
}  // namespace hedro34::testing
