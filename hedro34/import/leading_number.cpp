#include "hedro34/import/leading_number.h"

#include <algorithm>
#include <limits>
#include <string>

#include "hedro34/base/from_decimal.h"

namespace hedro34 {
namespace {

// The characters of a text without its blanks; 0 at the end and for a unit that is no ASCII character.
class Scanner {
 public:
  explicit Scanner(StringView text) : text_(text) { skip(); }

  char peek() const noexcept { return at_ < text_.size() && text_[at_] < 128 ? static_cast<char>(text_[at_]) : '\0'; }
  char take() noexcept {
    const char taken = peek();
    ++at_;
    skip();
    return taken;
  }

 private:
  void skip() noexcept {
    while (at_ < text_.size() && text_[at_] == u' ') ++at_;
  }

  StringView text_;
  std::size_t at_ = 0;
};

bool is_digit(char c) noexcept { return c >= '0' && c <= '9'; }
bool is_sign(char c) noexcept { return c == '+' || c == '-'; }

std::string digits(Scanner& scanner) {
  std::string result;
  while (is_digit(scanner.peek())) result.push_back(scanner.take());
  return result;
}

// "e", a sign and digits, where they stand next; nothing where they do not.
std::string exponent(Scanner scanner) {
  const char mark = scanner.take();
  if (mark != 'e' && mark != 'E') return {};
  std::string result = "e";
  if (is_sign(scanner.peek())) result.push_back(scanner.take());
  const std::string power = digits(scanner);
  return power.empty() ? power : result + power;
}

// The value of a number that 64 bits do not hold: its power of ten says whether it is too large or too small.
double beyond_range(const std::string& whole, const std::string& fraction, const std::string& power) {
  const auto zeros = [](const std::string& text) -> std::int64_t {
    const std::size_t count = text.find_first_not_of('0');
    return count == std::string::npos ? -1 : static_cast<std::int64_t>(count);
  };
  std::int64_t exponent = 0;
  if (!power.empty()) {
    const std::size_t digits_at = power.find_first_of("0123456789");
    constexpr std::size_t enough = 12;
    const std::string kept = power.substr(std::min(power.find_first_not_of('0', digits_at), power.size() - 1));
    exponent = std::stoll(kept.substr(0, enough));
    if (power.find('-') != std::string::npos) exponent = -exponent;
  }
  const std::int64_t magnitude =
      zeros(whole) >= 0 ? static_cast<std::int64_t>(whole.size()) - zeros(whole) : -zeros(fraction);
  return magnitude + exponent > 0 ? std::numeric_limits<double>::infinity() : 0;
}

}  // namespace

double leading_number(StringView text) {
  Scanner scanner(text);
  const char sign = is_sign(scanner.peek()) ? scanner.take() : '+';
  const std::string whole = digits(scanner);
  std::string fraction;
  if (scanner.peek() == '.') {
    scanner.take();
    fraction = digits(scanner);
  }
  if (whole.empty() && fraction.empty()) return 0;
  const std::string power = exponent(scanner);
  const std::string number = (whole.empty() ? "0" : whole) + "." + (fraction.empty() ? "0" : fraction) + power;
  double value = 0;
  const auto [end, error] = from_decimal(number.data(), number.data() + number.size(), value);
  if (error == std::errc::result_out_of_range) value = beyond_range(whole, fraction, power);
  return sign == '-' ? -value : value;
}

}  // namespace hedro34
