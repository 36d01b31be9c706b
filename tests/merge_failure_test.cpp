// A merge with a host whose objects fail, or without memory: the one report, and what stands in form and document then.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <set>

#include "tests/failing_allocation.h"
#include "tests/failing_host.h"
#include "tests/merge_support.h"

namespace hedro34::testing {
namespace {

// Two versions of a test of two graded questions and a subjective one, on a form of two pages with an ungraded field, a
// continuation, a region without choices and one graded field too many. Fields: V, Q1, T, Q3.
struct SmallMerge {
  SmallMerge() : m("V:AB Q1#7:*ABCD More#7:AB | T:*ABC Q3:*ABCD") {
    region_of(*m.form, 1, 0).SetResponseKind(3);
    const Asked a{u"a", mc, 3, {1}, {u"Area"}};
    const Asked b{u"b", tf, 2, {2}, {u"AREA", u"Volume"}};
    const Asked s{u"s", subjective, 0, {}, {u"Area"}};
    m.merge->Tests->Add(test_of({a, b, s}, u"A"));
    m.merge->Tests->Add(test_of({b, a, s}, u"B"));
    m.merge->Tests->Item(1)->MultipleChoiceOddScale = strings_of(u"WXYZ");
    m.merge->TemplateIn = host.wrap(m.merge->TemplateIn);
    m.merge->TemplateOut = host.wrap(m.merge->TemplateOut);
    m.merge->SequenceQuestion = 1;
    host.calls.clear();
  }

  // Both forms and the document.
  std::string whole() {
    return m.form->to_json().value() + m.form_out().to_json().value() + m.document().to_json().value();
  }
  // The same after a merge that goes well.
  std::string merged() {
    EXPECT_TRUE(m.merge->Merge());
    EXPECT_EQ(m.recorder.take(), Lines());
    return whole();
  }

  FailingHost host;
  Merging m;
};

const char* const header = R"({"documentKind":1,"pageCount":2,"objectives":["","Area","Volume"]})";
const Lines whole_document = {
    header,
    R"({"name":"V","choiceLabels":["A","B"],"choiceValues":["1","2"],"objectiveFlags":[false,false,false]})",
    R"({"name":"Q1","questionText":"? a","graded":true,"correctAnswerCount":1,"correctAnd":false,)"
    R"("choiceLabels":["W","X","Y"],"choiceValues":["1","2","3"],"answerKey":["W"],"numericAnswerKey":["1"],)"
    R"("objectiveFlags":[false,true,false]})",
    R"({"name":"T","questionText":"? b","graded":true,"correctAnswerCount":1,"correctAnd":false,"answerKey":["F"],)"
    R"("numericAnswerKey":["2"],"objectiveFlags":[false,true,true]})",
    R"({"name":"Q3","choiceLabels":["A","B","C","D"],"choiceValues":["1","2","3","4"],)"
    R"("objectiveFlags":[false,false,false]})",
    R"({"name":"Subjective1","questionText":"? s","subjective":true,"objectiveFlags":[false,true]})",
    R"({"sequenceQuestion":1,"versionAnswers":["A","B"],"orders":[[1,2,3,4,5],[1,3,2,4,5]]})"};

// What `TemplateOut` shows: Q3 ungraded; besides, Q1 half rewritten, then rewritten; the subjective region, too.
const std::string q1 = R"(1 {"name":"Q1","groupNumber":7} {)";
const std::string values = R"(,"choiceValues":["1","2","3","4"]})";
const std::string labels = R"("choiceLabels":["A","B","C","D"])" + values;
const Lines none = {};
const Lines ungraded = {R"(-2 {"name":"Q3"} {"graded":true,)" + labels, R"(+2 {"name":"Q3"} {)" + labels};
Lines with_q1(const std::string& after) {
  return {"-" + q1 + R"("graded":true,)" + labels, "+" + q1 + after + values, ungraded[0], ungraded[1]};
}
const Lines half = with_q1(R"("graded":true,"choiceLabels":["W","X","C",""])");
const Lines rewritten = with_q1(R"("questionText":"? a","graded":true,"choiceLabels":["W","X","Y",""])");
const Lines complete = {rewritten[0], rewritten[1], rewritten[2], rewritten[3],
                        R"(+2 {"name":"Subjective1","regionKind":2,"responseKind":3,"subjectiveRegion":true} )"
                        R"({"correctPoints":0,"subjectiveQuestion":true})"};

const std::string at_merge = "1234 The host refuses: HEDRO34 - clsHEDRO.Merge";
const std::string at_sequences = "1234 The host refuses: HEDRO34 - clsHEDRO.BuildSequences";

struct Row {
  const char* call;
  int nth;
  std::string line;
  std::optional<Lines> changes;  // of `TemplateOut`; nothing when it was not replaced
  std::string header;
  std::ptrdiff_t questions;
  std::string versions;  // without the braces
};

const char* const old_header = R"({"objectives":["old"]})";
const std::string one_order = R"("orders":[[1,2,3,4,5]])";
const std::string sequence = R"("sequenceQuestion":1,)";

const Row rows[] = {
    {"TIBTemplate.Clear", 1, at_merge, {}, old_header, 0, ""},
    {"TIBTemplate.Copy", 1, at_merge, {}, old_header, 0, ""},
    {"WENKtdDocument.Clear", 1, at_merge, none, old_header, 0, ""},
    {"WENKtdDocument.SetDocumentKind", 1, at_merge, none, R"({"pageCount":2})", 0, ""},
    {"TIBQuestion.FieldNumber", 1, at_merge, ungraded, header, 0, ""},
    {"TIBChoiceList.SetItem", 5, at_merge, half, header, 1, ""},
    {"TIBQuestion.SetChoiceValues", 1, at_merge, with_q1(R"("graded":true,"choiceLabels":["W","X","Y",""])"), header, 1,
     ""},
    {"WENKtdQuestions.Add", 2, at_merge, rewritten, header, 1, ""},
    {"TIBRegions.Add", 1, at_merge, rewritten, header, 4, ""},
    {"WENKtdQuestions.Add", 5, at_merge, complete, header, 4, ""},
    {"WENKtdOrders.AddDefault", 1, at_sequences, complete, header, 5, ""},
    {"WENKtdVersions.SetSequenceQuestion", 1, at_sequences, complete, header, 5, one_order},
    // The check of the first identifier asks the version field, then come the five of the walk, then the second check.
    {"WENKtdQuestion.Graded", 1, invalid_version, complete, header, 5, sequence + one_order},
    {"WENKtdQuestion.Graded", 7, invalid_version, complete, header, 5,
     sequence + R"("versionAnswers":["A"],)" + one_order},
    {"WENKtdOrders.Add", 1, at_sequences, complete, header, 5, sequence + R"("versionAnswers":["A","B"],)" + one_order},
};

TEST(MergeFailure, IsReportedOnceAndKeepsWhatWasDone) {
  for (const Row& row : rows) {
    SCOPED_TRACE(std::string(row.call) + " " + std::to_string(row.nth));
    SmallMerge small;
    const Ref<TIBTemplate> out = small.m.merge->TemplateOut;
    small.host.fail_at(row.call, row.nth);
    EXPECT_FALSE(small.m.merge->Merge());
    EXPECT_EQ(small.m.recorder.take(), Lines{row.line});
    EXPECT_EQ(small.m.merge->TemplateOut == out, !row.changes);
    EXPECT_EQ(row.changes ? small.m.changes() : Lines(), row.changes.value_or(Lines()));
    EXPECT_EQ(lines_of(*small.m.old_form).size(), row.call == std::string("TIBTemplate.Clear") ? 1U : 0U);
    Lines document(whole_document.begin(), whole_document.begin() + 1 + row.questions);
    document.front() = row.header;
    document.push_back('{' + row.versions + '}');
    EXPECT_EQ(lines_of(small.m.document()), document);
  }
}

// What the host hears of a subjective question, of a version field that is none, and at the end of the merge object.
TEST(MergeCalls, ComeInTheirOrder) {
  SmallMerge small;
  small.host.hears_releases = true;
  EXPECT_TRUE(small.m.merge->Merge());
  Lines& calls = small.host.calls;
  const auto start = std::find(calls.begin(), calls.end(), "TIBRegion.create");
  std::string heard;
  for (auto call = start; call != calls.end() && *call != "WENKtdDocument.Questions"; ++call) heard += *call + ' ';
  EXPECT_EQ(
      heard,
      "TIBRegion.create TIBRegion.SetValueKind TIBRegion.SetResponseKind TIBRegion.SetName "
      "TIBRegion.SetSubjectiveRegion TIBRegion.SetRegionKind TIBRegion.Questions TIBQuestions.Add "
      "TIBRegion.Questions TIBQuestions.Item TIBQuestion.SetSubjectiveQuestion "
      "TIBRegion.Questions TIBQuestions.Item TIBQuestion.SetCorrectPoints "
      "TIBTemplate.Pages TIBTemplate.PageCount TIBPages.Item TIBPage.Regions TIBRegions.Add TIBRegion.Release "
      "WENKtdQuestion.create WENKtdQuestion.SetName WENKtdQuestion.SetQuestionText WENKtdQuestion.SetSubjective "
      "WENKtdQuestion.SetDifficulty WENKtdQuestion.SetKeywords WENKtdQuestion.SetMiscellaneous "
      "WENKtdQuestion.SetNotes WENKtdQuestion.SetQuestionText WENKtdQuestion.SetReference WENKtdQuestion.SetTopic "
      "WENKtdQuestion.ObjectiveFlags WENKtdObjectiveFlags.Item WENKtdObjectiveFlag.SetValue "
      "WENKtdQuestions.Add ");
  // Two fields are copied as they are, from 1 on; the choices of one are rewritten, and its lists go back to it.
  for (const auto& [call, times] : {std::pair("TIBChoiceList.AsArray", 4),
                                    {"TIBQuestion.SetChoiceLabels", 1},
                                    {"TIBQuestion.SetChoiceValues", 1}}) {
    EXPECT_EQ(std::count(calls.begin(), calls.end(), std::string(call)), times) << call;
  }
  for (const std::int32_t no_field : {0, 9}) {
    small.m.merge->SequenceQuestion = no_field;
    EXPECT_FALSE(small.m.merge->Merge());
    EXPECT_EQ(calls.back(), "WENKtdQuestions.Count");
  }
  calls.clear();
  small.m.merge = nullptr;
  EXPECT_EQ(calls, (Lines{"TIBTemplate.Release", "TIBTemplate.Release", "WENKtdDocument.Release"}));
}

// Every single call of the merge fails in turn. Only the two checks of an identifier turn it into their refusal.
TEST(MergeFailure, OfAnyCallLeavesAMergeThatWorks) {
  const std::string expected = SmallMerge().merged();
  Lines outcomes;  // without repetition
  for (int nth = 1;; ++nth) {
    SmallMerge small;
    small.host.fail_at_call(nth);
    if (small.m.merge->Merge()) {
      EXPECT_FALSE(small.host.has_failed());
      EXPECT_EQ(lines_of(small.m.document()), whole_document);
      EXPECT_EQ(small.m.changes(), complete);
      break;
    }
    SCOPED_TRACE(std::to_string(nth) + ": " + small.host.calls.back());
    const Lines lines = small.m.recorder.take();
    ASSERT_EQ(lines.size(), 1U);
    if (outcomes.empty() || outcomes.back() != lines[0]) outcomes.push_back(lines[0]);
    ASSERT_EQ(small.merged(), expected);
  }
  EXPECT_EQ(outcomes, (Lines{at_merge, at_sequences, invalid_version, at_sequences, invalid_version, at_sequences}));
}

// At every single call of the host in turn: the inner merge is refused, the outer one ends as ever, and so does the next.
TEST(MergeFailure, OfAMergeInsideOfItLeavesTheOuterOneAsItIs) {
  const std::string expected = SmallMerge().merged();
  const std::string refused = "5 This object is in the middle of a merge: HEDRO34 - clsHEDRO.Merge";
  int nth = 1;
  for (;; ++nth) {
    SmallMerge small;
    bool inner = true;
    small.host.fail_at_call(nth);
    small.host.action = [&] { inner = small.m.merge->Merge(); };
    EXPECT_TRUE(small.m.merge->Merge());
    EXPECT_EQ(small.whole(), expected);
    if (!small.host.has_failed()) break;
    SCOPED_TRACE(nth);
    EXPECT_FALSE(inner);
    EXPECT_EQ(small.m.recorder.take(), Lines{refused});
  }
  EXPECT_GT(nth, 300);
}

TEST(MergeFailure, OfTheConstructionLeavesAnObjectWithoutDocument) {
  Recorder recorder;
  FailingHost host;
  EXPECT_EQ(make<clsHEDRO>()->WENKTD->Objectives()->Count(), 0);
  host.fail_at("WENKtdDocument.create", 1);
  const auto merge = make<clsHEDRO>();
  EXPECT_EQ(recorder.lines, Lines{"1234 The host refuses: HEDRO34 - clsHEDRO.Class_Initialize"});
  EXPECT_FALSE(merge->WENKTD);
  EXPECT_EQ(merge->Tests->Count(), 0);
  EXPECT_TRUE(merge->Verbose);
}

// An operation of the model that reports may let the merge go on; a merge that has memory works again.
TEST(MergeFailure, OfAnyAllocationLeavesAMergeThatWorks) {
  const std::string expected = SmallMerge().merged();
  bool answer = true;
  std::set<std::string> reports;
  const auto prepare = [] { return std::make_unique<SmallMerge>(); };
  const auto merge = [&](auto& small) { answer = small->m.merge->Merge(); };
  fail_each_allocation(prepare, merge, [&](auto& small) {
    const Lines lines = small->m.recorder.take();
    const bool ended = std::any_of(lines.begin(), lines.end(), [](const std::string& line) {
      return line.starts_with("box ") || line.find("clsHEDRO.") != std::string::npos;
    });
    EXPECT_EQ(answer, !ended) << ::testing::PrintToString(lines);
    EXPECT_EQ(lines.empty() ? small->whole() : expected, expected);
    reports.insert(lines.begin(), lines.end());
    EXPECT_EQ(small->merged(), expected);
  });
  for (const std::string place : {"Merge", "BuildSequences"}) {
    EXPECT_TRUE(reports.contains(reported(7, "clsHEDRO.") + place)) << place;
  }
}

}  // namespace
}  // namespace hedro34::testing
