#include "hedro34/base/from_decimal.h"

#include <cstdint>

namespace hedro34 {
namespace {

#if defined(__i386__)

// The fractions of the x87 unit have 53 bits while it lives.
class DoubleFractions {
 public:
  DoubleFractions() noexcept {
    asm volatile("fnstcw %0" : "=m"(former_));
    constexpr std::uint16_t fraction = 0x300;
    constexpr std::uint16_t of_53_bits = 0x200;
    const auto control = static_cast<std::uint16_t>((former_ & ~fraction) | of_53_bits);
    asm volatile("fldcw %0" : : "m"(control));
  }
  DoubleFractions(const DoubleFractions&) = delete;
  DoubleFractions& operator=(const DoubleFractions&) = delete;
  ~DoubleFractions() { asm volatile("fldcw %0" : : "m"(former_)); }

 private:
  std::uint16_t former_ = 0;
};

#else

struct DoubleFractions {};

#endif

}  // namespace

std::from_chars_result from_decimal(const char* first, const char* last, double& value) noexcept {
  [[maybe_unused]] const DoubleFractions held{};
  return std::from_chars(first, last, value);
}

}  // namespace hedro34
