// Several versions of a test: their comparison, and what a merge writes about them into the document.
#include <gtest/gtest.h>

#include "tests/merge_support.h"

namespace hedro34::testing {
namespace {

// Tests from a line such as "A: a b312 s | B: b a", each with its version in front. A question is its ID ("-" for none)
// with the number of its answers and the correct ones, 4 and 1 when left out. "s" is a subjective question.
std::vector<Ref<clsHEDROTest>> tests_of(const std::string& line) {
  std::vector<Ref<clsHEDROTest>> tests;
  std::istringstream versions(line);
  for (std::string version; std::getline(versions, version, '|');) {
    std::istringstream words(version.substr(version.find(':') + 1));
    std::istringstream(version) >> version;
    tests.push_back(test_of({}, from_utf8(version.substr(0, version.find(':')))));
    for (std::string word; words >> word;) {
      auto question = make<clsHEDROTestQuestion>();
      question->ID = from_utf8(word[0] == '-' ? "" : word.substr(0, 1));
      question->QuestionType = word[0] == 's' ? subjective : mc;
      if (word.size() == 1) word += "41";
      for (char n = '0'; n < word[1]; ++n) question->Answers->Add(u"answer");
      for (const char n : word.substr(2)) question->CorrectAnswers->Add(static_cast<std::int16_t>(n - '0'));
      tests.back()->Questions->Add(question);
    }
  }
  return tests;
}

std::string versions_of(Merging& m) {
  const Json versions = Json::parse(m.document().to_json().value())["versions"];
  return versions["sequenceQuestion"].dump() + ' ' + versions["versionAnswers"].dump() + ' ' +
         versions["orders"].dump();
}

const std::string unknown_id = reported(5, "clsHEDRO.BuildSequences");
const std::string merged = "merged";

struct Row {
  const char* form;
  std::int32_t sequence_question;
  const char* tests;
  std::string end;
  const char* versions;  // sequence question, identifiers, orders
};

const Row rows[] = {
    {"V:AB Q:*ABCD", 99, "other: a", merged, "0 [] [[1,2]]"},
    {"V:AB Q1:*ABCD Q2:*ABCD Q3:*ABCD Q4:*ABCD", 1, "A: a b c d | B: d c b a", merged,
     R"(1 ["A","B"] [[1,2,3,4,5],[1,5,4,3,2]])"},
    {"Q1:*ABCD Q2:*ABCD | Q3:*ABCD V:XYZ", 4, "Z: a b c | Y: c a b | X: b c a", merged,
     R"(4 ["Z","Y","X"] [[1,2,3,4],[3,1,2,4],[2,3,1,4]])"},
    {"N:AB Q1#7:*ABCD Q1#7:*ABCD V:AB Q2:*ABCD", 3, "A: a b s | B: b a s", merged,
     R"(3 ["A","B"] [[1,2,3,4,5],[1,4,3,2,5]])"},
    // The case of labels and IDs plays no part; questions beyond the graded fields are not looked at.
    {"V:AB Q1:*ABCD Q2:*ABCD", 1, "a: a b | B: B A c", merged, R"(1 ["a","B"] [[1,2,3],[1,3,2]])"},
    // Lowered by the field that stops being graded.
    {"Q1:*ABCD Q2:*ABCD V:AB", 4, "A: a | B: a", merged, R"(3 ["A","B"] [[1,2,3],[1,2,3]])"},
    {"V:AB Q:*ABCD", 0, "A: a | B: a", invalid_version, "0 [] [[1,2]]"},
    {"V:AB Q:*ABCD", 3, "A: a | B: a", invalid_version, "3 [] [[1,2]]"},
    {"V:AB Q:*AB", 2, "A: a21 | B: a21", invalid_version, "2 [] [[1,2]]"},
    {"V:- Q:*ABCD", 1, "A: a | B: a", invalid_version, "1 [] [[1,2]]"},
    {"V:ABC Q:*ABCD", 1, "A: a | B: a | AB: a | C: a", invalid_version, R"(1 ["A","B"] [[1,2],[1,2]])"},
    // The questions come before the identifier.
    {"V:AB Q1:*ABCD Q2:*ABCD", 1, "A: a b | C: b", "silent", R"(1 ["A"] [[1,2,3]])"},
    {"V:AB Q1:*ABCD Q2:*ABCD", 1, "A: a b | C: a c", unknown_id, R"(1 ["A"] [[1,2,3]])"},
    {"V:AB Q1:*ABCD", 1, "A: - | B: -", unknown_id, R"(1 ["A"] [[1,2]])"},
};

TEST(BuildSequences, WritesOneOrderForEachVersion) {
  for (const bool verbose : {true, false}) {
    for (const Row& row : rows) {
      SCOPED_TRACE(row.tests + std::string(" on ") + row.form);
      Merging m(row.form, tests_of(row.tests));
      m.merge->SequenceQuestion = row.sequence_question;
      m.merge->Verbose = verbose;
      EXPECT_EQ(m.merge->Merge(), row.end == merged);
      const bool shown = row.end == unknown_id || (row.end == invalid_version && verbose);
      EXPECT_EQ(m.recorder.take(), shown ? Lines{row.end} : Lines());
      EXPECT_EQ(versions_of(m), row.versions);
    }
  }
}

// Asked for the length of an order, it answers one question less or more than it has.
struct Miscounting : CallListener {
  void called(std::string_view interface, std::string_view member) override {
    nth += counts = interface == "WENKtdQuestions" && member == "Count";
  }
  void answers(Variant& answer) override {
    if (counts && nth == 3) answer = to_int32(answer) + more;
  }
  std::int32_t more = 0;
  bool counts = false;
  int nth = 0;
};

TEST(BuildSequences, FailsWhereTheHostMiscounts) {
  for (const std::int32_t more : {-1, 1}) {
    Miscounting listener;
    listener.more = more;
    const ForwardingHost host(listener);
    Merging m("V:AB Q:*ABCD", tests_of("A: a | B: a"));
    m.merge->SequenceQuestion = 1;
    EXPECT_FALSE(m.merge->Merge());
    EXPECT_EQ(m.recorder.take(), Lines{reported(9, "clsHEDRO.BuildSequences")});
  }
}

TEST(ValidTestVersions, ComparesEachVersionWithTheFirst) {
  const std::string start =
      R"(box 48 "Invalid Test Versions": An error occurred validating the additional test versions. )";
  const auto box = [&](const std::string& text) {
    return start + "An additional test " + text + " Operation aborted.";
  };
  const std::string number = box("contains a different number of questions from the original.");
  const std::string ids = box("does not contain the same set of questions.");
  const std::string distractors = box("does not contain the same number of distractors as the original.");
  const std::string answer = box("does not contain the same correct answer to one or more questions as the original.");
  const std::pair<const char*, std::string> comparisons[] = {
      {"", ""},
      {"A: a", ""},
      {"A: a b32 c | B: C a B32 | C: b32 c a", ""},
      {"A: a413 | B: a431", ""},
      {"A: a b | B: a", number},
      {"A: a b | B: a c", ids},
      {"A: - | B: -", ids},
      {"A: a4 | B: a5", distractors},
      {"A: a42 | B: a43", answer},
      {"A: a42 | B: a53", distractors},              // the answers are counted first
      {"A: a42 b c31 | B: c41 d a43", answer},       // in the order of the first test
      {"A: a | B: a | C: a31 | D: b", distractors},  // the first difference ends it
  };
  for (const bool verbose : {true, false}) {  // which plays no part
    for (const auto& [tests, difference] : comparisons) {
      SCOPED_TRACE(tests);
      Recorder recorder;
      const auto merge = make<clsHEDRO>();
      merge->Verbose = verbose;
      for (const auto& test : tests_of(tests)) merge->Tests->Add(test);
      EXPECT_EQ(merge->ValidTestVersions(), difference.empty());
      EXPECT_EQ(recorder.take(), difference.empty() ? Lines() : Lines{difference});
    }
  }
}

TEST(ValidTestVersions, ReportsEmptyReferences) {
  Merging m("", tests_of("A: a | B: a"));
  m.merge->Tests->Item(2)->Questions = nullptr;
  EXPECT_FALSE(m.merge->ValidTestVersions());
  EXPECT_EQ(m.recorder.lines, Lines{reported(91, "clsHEDRO.ValidTestVersions")});
}

}  // namespace
}  // namespace hedro34::testing
