// `AddSequence`: what a further version adds, its refusals in their order and to the letter, and failures.
#include <gtest/gtest.h>

#include "tests/test_lines.h"

namespace hedro34::testing {
namespace {

using namespace test_lines;

std::string box(const std::string& title, const std::string& text) {
  return "box 48 \"" + title + "\": Operation cannot be completed. " + text;
}
std::string number_of_questions(const std::string& base, const std::string& version) {
  return box("Number of Questions",
             "The new version of the test contains a different number of questions.\r\n\r\n"
             "Number of Questions in Test: " +
                 base + "\r\nNumber of Questions in New Test Version: " + version);
}
std::string invalid(const std::string& reason, const std::string& id, const std::string& text) {
  return box("Invalid Question", reason + "\r\n\r\nQuestion Text: " + text + "\r\nQuestion ID: " + id);
}
const std::string old_exists = box("Version Exists", "The new version already exists.\r\n\r\nVersion: OLD");
const std::string missing = "The new version of the test contains a question that does not exist.";
const std::string scrambled = "Scrambled answer choices are not supported.";
const std::string sections =
    box("Scrambled Sections", "Scrambling different types of questions together is not supported.");

const Asked a{u"a", mc, 4, {1}};
const Asked b{u"b", mc, 4, {2}};
const Asked c{u"c", mc, 4, {3}};
const Asked t{u"t", tf, 2, {1}};
const Asked f{u"f", tf, 2, {2}};

struct Row {
  std::vector<Asked> base;
  std::vector<Asked> version;
  std::string expected;  // the box, or the new sequence
  const char16_t* label = u"B";
};

const Row rows[] = {
    {{a, b, c, t, f}, {c, a, b, f, t}, "sequence B: c a b f t"},
    {{}, {}, "sequence B:"},
    {{a}, {a}, "sequence A: a", u"A"},  // the base's own label, which is no sequence yet
    {{a, b}, {{u"B", mc, 7, {2}}, a}, "sequence B: b a"},
    {{{u"a", mc, 4, {3, 1}}}, {{u"a", mc, 4, {1, 3}}}, "sequence B: a"},
    {{a, t}, {{u"a", essay, 4, {1}}, {u"t", mc, 2, {1}}}, "sequence B: a t"},  // the base's types count

    {{a}, {}, old_exists, u"OLD"},  // before the questions are counted
    {{a, b}, {c}, number_of_questions("2", "1")},
    {{a, b}, {t, c}, invalid(missing, "t", "? t")},
    {{{u""}}, {{u""}}, invalid(missing, "", "? ")},
    {{a, b}, {a, {u"B", mc, 4, {3}}}, invalid(scrambled, "B", "? B")},
    {{{u"a", mc, 4, {1, 3}}}, {{u"a", mc, 4, {1}}}, invalid(scrambled, "a", "? a")},
    {{a, t}, {{u"t", tf, 2, {2}}, a}, invalid(scrambled, "t", "? t")},  // before types
    {{a, b, t, f}, {a, f, t, b}, sections},
    {{a, b, t}, {a, t, c}, sections},  // the first question that does not fit ends it
};

TEST(AddSequence, AddsTheOrderOfAVersionOrRefusesIt) {
  for (const Row& row : rows) {
    SCOPED_TRACE(row.expected);
    Recorder recorder;
    const auto base = test_of(row.base, u"A");
    add_sequence(*base, u"old", {});
    const auto version = test_of(row.version, row.label);
    const Lines version_before = lines_of(*version);
    Lines expected = lines_of(*base);
    const bool refused = row.expected.starts_with("box");
    if (!refused) expected.push_back(row.expected);
    EXPECT_EQ(base->AddSequence(version), !refused);
    EXPECT_EQ(recorder.take(), refused ? Lines{row.expected} : Lines());
    EXPECT_EQ(lines_of(*base), expected);
    EXPECT_EQ(lines_of(*version), version_before);
  }
}

TEST(AddSequence, TakesAnyNumberOfVersionsWithoutLabelAndItself) {
  Recorder recorder;
  const auto base = test_of({a, b});
  const auto unlabelled = test_of({b, a}, u"");
  for (const auto& version : {unlabelled, unlabelled, base}) EXPECT_TRUE(base->AddSequence(version));
  EXPECT_FALSE(base->AddSequence({}));
  unlabelled->Clear();  // the sequences do not need the version any more
  const Lines lines = lines_of(*base);
  EXPECT_EQ(Lines(lines.begin() + 4, lines.end()), (Lines{"sequence : b a", "sequence : b a", "sequence A: a b"}));
  EXPECT_EQ(base->Sequences->Item(u"a"), base->Sequences->Item(3));
  EXPECT_EQ(recorder.lines, Lines());
}

TEST(AddSequence, ReportsFailures) {
  Recorder recorder;
  const auto base = test_of({a, b});
  const auto version = test_of({b, a}, u"B");
  // A failure inside an operation that is called stays there: the call goes on with what it gave.
  base->Questions->Item(1)->CorrectAnswers->Add(32);
  version->Questions->Item(2)->CorrectAnswers->Add(33);
  EXPECT_TRUE(base->AddSequence(version));
  EXPECT_EQ(recorder.take(), Lines(2, reported(6, "clsHEDROTestCorrect.GetBitWiseRepresentation")));
  const Lines before = lines_of(*base);
  EXPECT_EQ(before.back(), "sequence B: b a");

  version->Version = u"C";
  version->Questions->Item(1)->CorrectAnswers = nullptr;
  EXPECT_FALSE(base->AddSequence(version));
  EXPECT_EQ(recorder.take(), Lines{reported(91, "clsHEDROTest.AddSequence")});
  EXPECT_EQ(lines_of(*base), before);
}

}  // namespace
}  // namespace hedro34::testing
