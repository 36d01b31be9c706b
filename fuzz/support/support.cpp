#include "fuzz/support/support.h"

#include <cstdint>
#include <cstdlib>
#include <memory>

namespace {

struct Ends : testing::EmptyTestEventListener {
  void OnTestPartResult(const testing::TestPartResult& result) override {
    if (result.failed()) std::abort();
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  [[maybe_unused]] static const bool listening = [] {
    testing::UnitTest::GetInstance()->listeners().Append(std::make_unique<Ends>().release());
    return true;
  }();
  hedro34::fuzz::run({reinterpret_cast<const char*>(data), size});
  return 0;
}
