#include "tests/platform_support.h"

namespace hedro34::testing {

std::string repeat(std::string_view text, std::size_t times) {
  std::string result;
  for (std::size_t i = 0; i < times; ++i) result += text;
  return result;
}

std::string file_text(const std::string& name) { return read_file(source_path("tests/files/" + name)).value_or(""); }

std::int32_t failure_of(const std::function<void()>& statement) {
  try {
    statement();
  } catch (const Failure& failure) {
    return failure.number;
  }
  return 0;
}

}  // namespace hedro34::testing
