#include "hedro34/base/case_map.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <fstream>
#include <string>
#include <vector>

namespace hedro34 {
namespace {

struct CaseRow {
  const char* what;
  char16_t unit;
  char16_t upper;
  char16_t lower;
};

constexpr CaseRow rows[] = {
    {"first small letter", u'a', u'A', u'a'},
    {"last small letter", u'z', u'Z', u'z'},
    {"first capital", u'A', u'A', u'a'},
    {"last capital", u'Z', u'Z', u'z'},
    {"before the small letters", u'`', u'`', u'`'},
    {"behind the small letters", u'{', u'{', u'{'},
    {"before the capitals", u'@', u'@', u'@'},
    {"behind the capitals", u'[', u'[', u'['},
    {"NUL", 0x0000, 0x0000, 0x0000},
    {"last of ASCII", 0x007F, 0x007F, 0x007F},
    {"first beyond ASCII", 0x0080, 0x0080, 0x0080},
    {"a umlaut", 0x00E4, 0x00C4, 0x00E4},
    {"A umlaut", 0x00C4, 0x00C4, 0x00E4},
    {"multiplication sign", 0x00D7, 0x00D7, 0x00D7},
    {"division sign", 0x00F7, 0x00F7, 0x00F7},
    {"sharp s has no single capital", 0x00DF, 0x00DF, 0x00DF},
    {"capital sharp s", 0x1E9E, 0x1E9E, 0x00DF},
    {"y diaeresis leaves Latin-1", 0x00FF, 0x0178, 0x00FF},
    {"Y diaeresis", 0x0178, 0x0178, 0x00FF},
    {"micro sign", 0x00B5, 0x039C, 0x00B5},
    {"I with dot", 0x0130, 0x0130, u'i'},
    {"dotless i", 0x0131, u'I', 0x0131},
    {"long s", 0x017F, u'S', 0x017F},
    {"digraph, capital", 0x01C4, 0x01C4, 0x01C6},
    {"digraph, title", 0x01C5, 0x01C4, 0x01C6},
    {"digraph, small", 0x01C6, 0x01C4, 0x01C6},
    {"sigma", 0x03C3, 0x03A3, 0x03C3},
    {"final sigma", 0x03C2, 0x03A3, 0x03C2},
    {"capital sigma", 0x03A3, 0x03A3, 0x03C3},
    {"Cyrillic a", 0x0430, 0x0410, 0x0430},
    {"Cyrillic io", 0x0451, 0x0401, 0x0451},
    {"Georgian an", 0x10D0, 0x1C90, 0x10D0},
    {"Kelvin sign", 0x212A, 0x212A, u'k'},
    {"Roman numeral one", 0x2170, 0x2160, 0x2170},
    {"ideograph", 0x4E00, 0x4E00, 0x4E00},
    {"first surrogate", 0xD800, 0xD800, 0xD800},
    {"surrogates of a small letter", 0xDC28, 0xDC28, 0xDC28},
    {"last surrogate", 0xDFFF, 0xDFFF, 0xDFFF},
    {"full-width a", 0xFF41, 0xFF21, 0xFF41},
    {"last unit", 0xFFFF, 0xFFFF, 0xFFFF},
};

TEST(Case, MapsSingleUnits) {
  for (const auto& row : rows) {
    EXPECT_EQ(static_cast<unsigned>(upper(row.unit)), static_cast<unsigned>(row.upper)) << "upper of " << row.what;
    EXPECT_EQ(static_cast<unsigned>(lower(row.unit)), static_cast<unsigned>(row.lower)) << "lower of " << row.what;
  }
}

// Every unit against the fields of Unicode's own file, read here without the help of the script that makes the table.
TEST(Case, AgreesWithUnicodeDataInEveryUnit) {
  std::ifstream data("/usr/share/unicode/UnicodeData.txt");
  ASSERT_TRUE(data.is_open()) << "the package unicode-data is missing";
  std::vector<std::array<unsigned, 2>> expected(0x10000);
  for (unsigned unit = 0; unit < 0x10000; ++unit) expected[unit] = {unit, unit};

  for (std::string line; std::getline(data, line);) {
    std::array<std::string, 15> fields;
    std::size_t field = 0;
    for (const char c : line) {
      if (c == ';') {
        ASSERT_LT(++field, fields.size()) << line;
      } else {
        fields[field] += c;
      }
    }
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
