// A whole test as lines of text, for comparisons: the test itself, its scales, then each question and each sequence. Of
// a question and of the test only the members show that have not the value of a new object.
#pragma once

#include "tests/merge_support.h"

namespace hedro34::testing::test_lines {

Json json_of(const clsHEDROTestStrings& strings);
Json json_of(const clsHEDROTestCorrect& numbers);

std::string line_of(const clsHEDROTestQuestion& question);

// The label, then the IDs in the order of their places; "?" for an entry that no question of the test has.
std::string line_of(const clsHEDROTestSequence& sequence, const clsHEDROTestQuestions& questions);

std::string scales_of(const clsHEDROTest& test);

inline constexpr const char* new_scales = R"([["A","B","C","D"],["A","B","C","D"],["T","F"],["Y","N"]])";

Lines lines_of(const clsHEDROTest& test);

// What the test left out, as "2 id essay removed; 3 id true/false: picture".
std::string left_out_of(const clsHEDROTest& test);

// Adds a sequence with this label and these IDs.
void add_sequence(clsHEDROTest& test, StringView label, const std::vector<const char16_t*>& ids);

}  // namespace hedro34::testing::test_lines
