#include "hedro34/base/case_map.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace hedro34 {
namespace {

// Every unit against the fields of Unicode's own file, read here without the help of the script that makes the table.
TEST(Case, AgreesWithUnicodeDataInEveryUnit) {
  std::ifstream data("/usr/share/unicode/UnicodeData.txt");
  ASSERT_TRUE(data.is_open()) << "the package unicode-data is missing";
  std::vector<std::array<unsigned, 2>> expected(0x10000);
  for (unsigned unit = 0; unit < 0x10000; ++unit) expected[unit] = {unit, unit};

  for (std::string line; std::getline(data, line);) {
    std::array<std::string, 15> fields;
    std::istringstream all(line);
    for (std::string& field : fields) std::getline(all, field, ';');
    const auto unit = std::stoul(fields[0], nullptr, 16);
    if (unit > 0xFFFF) break;
    for (const std::size_t which : {0U, 1U}) {
      if (const auto& target = fields[12 + which]; !target.empty()) {
        expected[unit][which] = static_cast<unsigned>(std::stoul(target, nullptr, 16));
      }
    }
  }

  ASSERT_EQ(expected[u'a'][0], unsigned{u'A'});
  for (unsigned unit = 0; unit < 0x10000; ++unit) {
    const auto c = static_cast<char16_t>(unit);
    ASSERT_EQ(static_cast<unsigned>(upper(c)), expected[unit][0]) << "upper of unit " << std::hex << unit;
    ASSERT_EQ(static_cast<unsigned>(lower(c)), expected[unit][1]) << "lower of unit " << std::hex << unit;
  }
}

}  // namespace
}  // namespace hedro34
