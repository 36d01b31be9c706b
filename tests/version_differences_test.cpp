// `VersionComparison` against `ValidTestVersions` and `AddSequence`: it finds a difference when they refuse, and the right one.
#include "hedro34/merge/version_differences.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <tuple>

#include "tests/merge_support.h"

namespace hedro34::testing {
namespace {

// As "key 5 q5 B C": the kind, the question's number and ID, then what the first test and what this one has.
Lines shown(const std::vector<VersionDifference>& differences) {
  Lines lines;
  for (const VersionDifference& each : differences) {
    lines.push_back(to_utf8(String(name_of(each.kind)) + u" " + decimal(each.number) + u" " + each.id + u" " +
                            each.first + u" " + each.here));
  }
  return lines;
}

struct Pair {
  Ref<clsHEDROTest> first;
  Ref<clsHEDROTest> version;

  // Whether a merge takes the version, and that it shows one box when not, in the validation or behind it.
  bool taken(bool passes_validation) const {
    Recorder recorder;
    const auto merge = make<clsHEDRO>();
    merge->Tests->Add(first);
    merge->Tests->Add(version);
    first->Sequences->AddDefault(first->Questions, first->Version);
    const bool is_valid = merge->ValidTestVersions();
    EXPECT_EQ(is_valid, passes_validation);
    const bool result = is_valid && first->AddSequence(version);
    EXPECT_EQ(recorder.take().size(), result ? 0U : 1U);
    return result;
  }
};

struct Change {
  std::vector<Asked>& version;
  std::mt19937& random;
  Lines expected = {};
  String label = u"B";

  std::size_t any() { return random() % version.size(); }
  static std::string at(std::size_t i) { return ' ' + std::to_string(i + 1) + ' '; }
};

std::string id_of(const Asked& question) { return to_utf8(question.id); }

// Nine questions, multiple choice and then true/false, in versions that shuffle each block; one thing is changed in one place.
TEST(VersionComparison, NamesTheOneThingThatWasChanged) {
  const std::vector<Asked> original = {{u"q1", mc, 4, {1}}, {u"q2", mc, 4, {2}},    {u"q3", mc, 3, {3}},
                                       {u"q4", mc, 4, {4}}, {u"q5", mc, 4, {1, 3}}, {u"q6", mc, 3, {}},
                                       {u"q7", tf, 2, {1}}, {u"q8", tf, 2, {2}},    {u"q9", tf, 2, {2}}};
  const auto original_at = [&](const Asked& question) {
    return static_cast<std::size_t>(std::find_if(original.begin(), original.end(),
                                                 [&](const Asked& each) { return id_of(each) == id_of(question); }) -
                                    original.begin());
  };
  const auto is_choice = [](const Asked& question) { return question.type == mc; };
  const std::function<void(Change&)> changes[] = {
      [](Change&) {},
      [&](Change& c) {
        const std::size_t i = c.any();
        const std::string id = id_of(c.version[i]);
        c.expected = {"count 0  9 8",
                      "missing" + Change::at(original_at(c.version[i])) + id + ' ' + id.substr(1) + ' '};
        c.version.erase(c.version.begin() + static_cast<std::ptrdiff_t>(i));
      },
      [](Change& c) {
        const std::size_t i = c.random() % (c.version.size() + 1);
        c.expected = {"count 0  9 10", "new" + Change::at(i) + "new  " + std::to_string(i + 1)};
        c.version.insert(c.version.begin() + static_cast<std::ptrdiff_t>(i), {u"new", tf, 2, {1}});
      },
      [&](Change& c) {
        const std::size_t i = c.any();
        const std::string id = id_of(c.version[i]);
        c.expected = {"missing" + Change::at(original_at(c.version[i])) + id + ' ' + id.substr(1) + ' ',
                      "new" + Change::at(i) + "other  " + std::to_string(i + 1)};
        c.version[i].id = u"other";
      },
      [](Change& c) {
        const std::size_t i = c.any();
        const int answers = c.version[i].answers;
        const int here = c.random() % 2 == 0 ? answers + 1 : answers - 1;
        c.version[i].answers = here;
        c.expected = {"answers" + Change::at(i) + id_of(c.version[i]) + ' ' + std::to_string(answers) + ' ' +
                      std::to_string(here)};
      },
      [&](Change& c) {
        const std::size_t i = c.random() % 2 == 0 ? 0 : c.version.size() - 1;
        Asked& question = c.version[i];
        const std::int16_t key = question.correct == std::vector<std::int16_t>{2} ? 1 : 2;
        const std::string letters = is_choice(question) ? "ABCD" : "TF";
        std::string before;
        for (const std::int16_t number : question.correct) {
          before += (before.empty() ? "" : ",") + std::string(1, letters[static_cast<std::size_t>(number - 1)]);
        }
        if (question.correct.size() > 1) before = '(' + before + ')';
        question.correct = {key};
        c.expected = {"key" + Change::at(i) + id_of(question) + ' ' + before + ' ' +
                      letters[static_cast<std::size_t>(key - 1)]};
      },
      [](Change& c) {
        const std::size_t i = c.random() % 6;
        const std::size_t j = 6 + c.random() % 3;
        std::swap(c.version[i], c.version[j]);
        c.expected = {"type" + Change::at(i) + id_of(c.version[i]) + " multiple choice true/false",
                      "type" + Change::at(j) + id_of(c.version[j]) + " true/false multiple choice"};
      },
      [](Change& c) {
        c.label = u"a";
        c.expected = {"label 0  A a"};
      },
      [](Change& c) { c.version[c.any()].type = yn; },  // the types of the first test count
  };
  std::mt19937 random(34);
  for (int round = 0; round < 400; ++round) {
    std::vector<Asked> version = original;
    for (std::size_t i = version.size() - 1; i > 0; --i) {
      const std::size_t least = i < 6 ? 0 : 6;
      std::swap(version[i], version[least + random() % (i - least + 1)]);
    }
    Change change{version, random};
    const std::size_t number = static_cast<std::size_t>(round) % std::size(changes);
    changes[number](change);
    const Pair pair = {test_of(original, u"A"), test_of(version, change.label)};
    SCOPED_TRACE("change " + std::to_string(number) + " in round " + std::to_string(round));
    const std::vector<VersionDifference> found = VersionComparison(pair.first).next(*pair.version);
    EXPECT_EQ(shown(found), change.expected);
    EXPECT_EQ(found.empty(), pair.taken(std::none_of(found.begin(), found.end(), [](const VersionDifference& each) {
      return refuses_validation(each.kind);
    })));
  }
}

TEST(VersionComparison, TellsKeysAndLabels) {
  const auto first = test_of({{u"q", mc, 3, {1}}, {u"r", mc, 3, {1}}, {u"s", mc, 3, {9}}, {u"", mc}}, u"A");
  first->MultipleChoiceEvenScale = strings_of(u"FGH");
  first->Questions->Item(1)->number_in_file = 11;
  const auto version = test_of({{u"R", mc, 4, {2}}, {u"S", mc, 3, {1, 2}}, {u"Q", mc, 3, {32, 33, 2}}, {u"", mc}}, u"");
  version->MultipleChoiceOddScale = strings_of(u"XFZ");
  version->MultipleChoiceEvenScale = strings_of(u"AB");
  version->Questions->Item(2)->number_in_file = 1;
  version->Questions->Item(3)->number_in_file = 30;
  const Recorder recorder;
  VersionComparison comparison(first);
  const Lines expected = {"key 30 q A (,,F)",                     // numbers beyond 31 do not count, and are no failure
                          "answers 1 r 3 4",                      // by the keys, in any case of their letters
                          "key 1 r [1] [2]",                      // both would be F
                          "key 1 s [9] ([1],[2])",                // 9 has no letter
                          "missing 4  4 ",         "new 4   4"};  // without an ID nothing is found
  EXPECT_EQ(shown(comparison.next(*version)), expected);
  EXPECT_EQ(shown(comparison.next(*version)), expected);  // an empty label is none
  EXPECT_EQ(recorder.lines, Lines());

  // By its key the renamed one is there all the same; types are not looked at.
  const auto renamed = test_of({{u"b", tf}, {u"a"}, {u"c"}}, u"B");
  renamed->Questions->Item(3)->ID = u"x";
  EXPECT_EQ(shown(VersionComparison(test_of({{u"a"}, {u"b", tf}, {u"c"}}, u"A")).next(*renamed)), Lines{"new 3 x  3"});

  // Nor are they where one is missing, whatever the others are called.
  const auto missing_one = test_of({{u"b", tf}, {u"a"}, {u"x"}}, u"B");
  missing_one->Questions->Item(3)->ID = u"a";
  EXPECT_EQ(shown(VersionComparison(test_of({{u"a"}, {u"b", tf}, {u"c"}}, u"A")).next(*missing_one)),
            Lines{"missing 3 c 3 "});

  const auto none = test_of({}, u"A");
  none->Sequences->AddDefault(none->Questions, u"Old");  // in place of its own label
  const auto further = make<clsHEDROTestSequence>();
  further->Answer = u"Other";
  none->Sequences->Add(further);
  VersionComparison labels(none);
  for (const auto& [label, test, used] : {std::tuple(u"A", 0, u""), std::tuple(u"B", 0, u""), std::tuple(u"b", 3, u"B"),
                                          std::tuple(u"OLD", 1, u"Old"), std::tuple(u"other", 1, u"Other")}) {
    const auto found = labels.next(*test_of({}, label));
    EXPECT_EQ(found.empty(), test == 0);
    for (const VersionDifference& each : found) {
      EXPECT_EQ((std::pair(each.first, each.test)), (std::pair(String(used), test)));
    }
  }
  none->Questions = nullptr;
  labels.next(*none);
  none->Sequences = nullptr;
  const VersionComparison of_nothing(none);
  EXPECT_EQ(recorder.lines,
            (Lines{reported(91, "VersionComparison.next"), reported(91, "VersionComparison.VersionComparison")}));
}

}  // namespace
}  // namespace hedro34::testing
