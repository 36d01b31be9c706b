// `BuildTestFromKTD`, the conversion of a data document into a test, and `LoadKTD` around it.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <optional>
#include <tuple>

#include "hedro34/import/BuildTestFromKTD.h"
#include "tests/failing_allocation.h"
#include "tests/failing_host.h"
#include "tests/test_lines.h"

namespace hedro34::testing {
namespace {

using namespace test_lines;

// A document with these members; all others have their defaults.
Ref<DataDocument> document_of(const Json& members) {
  Json whole = {{"format", "hedro34-ktd"}, {"version", 1}};
  whole.update(members);
  auto document = make<DataDocument>();
  EXPECT_TRUE(document->read(whole.dump())) << whole;
  return document;
}

Json graded(const Json& labels, const Json& key = Json::array()) {
  return {{"graded", true}, {"choiceLabels", labels}, {"answerKey", key}};
}

// One word for each question: "." is neither graded nor subjective, "S" subjective, "?" graded without choices; any
// other one is graded and has a label for each letter.
Json questions_of(const std::string& words) {
  Json questions = Json::array();
  std::istringstream all(words);
  for (std::string word; all >> word;) {
    if (word == "." || word == "S") {
      questions.push_back({{"subjective", word == "S"}});
    } else {
      questions.push_back(graded(word == "?" ? Json::array() : json_of(*strings_of(from_utf8(word)))));
    }
  }
  return questions;
}

// The test that becomes of the document, which a listener may stand before, without a report.
Ref<clsHEDROTest> built_from(DataDocument& document, CallListener* listener = nullptr) {
  Recorder recorder;
  auto test = make<clsHEDROTest>();
  Ref<WENKtdDocument> given(&document);
  std::optional<ForwardingHost> host;
  if (listener != nullptr) given = host.emplace(*listener).wrap(given);
  EXPECT_TRUE(BuildTestFromKTD(test.get(), given.get()));
  EXPECT_EQ(recorder.lines, Lines());
  return test;
}
Ref<clsHEDROTest> built_from(const Json& members) { return built_from(*document_of(members)); }

TEST(BuildTestFromKTD, TakesEveryMember) {
  const Json question = {{"questionText", "Which?"},   {"correctAnd", false},     {"correctPoints", 0.1},
                         {"incorrectPoints", 0.2},     {"noResponsePoints", 0.3}, {"subjectivePoints", 0.1},
                         {"difficulty", "hard"},       {"reference", "page"},     {"topic", "topic"},
                         {"keywords", "words"},        {"miscellaneous", "more"}, {"notes", "note"},
                         {"choiceLabels", {"A", "B"}}, {"answerKey", {"B"}},      {"objectiveFlags", {true, true}}};
  Json first = question;
  first["graded"] = true;
  Json last = first;  // subjective all the same: it has points instead of a key
  last["subjective"] = true;
  const auto test = built_from({{"description", "About"},
                                {"notes", "Notes"},
                                {"objectives", {"", "Area"}},
                                {"questions", {{{"name", "Name"}}, first, last}}});
  const std::string points = R"("and":false,"points":[0.10000000149011612,0.20000000298023224,0.30000001192092896],)";
  const std::string rest =
      R"("difficulty":"hard","reference":"page","topic":"topic","keywords":"words","miscellaneous":"more",)"
      R"("notes":"note","objectives":["Area"]})";
  EXPECT_EQ(lines_of(*test),
            (Lines{R"({"description":"About","notes":"Notes","source":1,"userDefined":true})",
                   R"([["A","B"],["A","B","C","D"],["T","F"],["Y","N"]])",
                   R"({"id":"2","type":3,"text":"Which?","answers":["A","B"],"correct":[2],)" + points + rest,
                   R"({"id":"3","type":12,"text":"Which?","answers":["A","B"],)" + points +
                       R"("subjectivePoints":0.10000000149011612,)" + rest,
                   "sequence A: 2 3"}));
}

TEST(BuildTestFromKTD, ReadsAnswerKeysAndDerivesTypes) {
  const Json letters = {"A", "B", "C", "D"};
  const std::string b50(50, 'b');
  Json many = {"C1", "C1"};  // C1, C1, C3 to C20
  Json sixteen;
  for (int i = 3; i <= 20; ++i) {
    many.push_back("C" + std::to_string(i));
    if (i == 16) sixteen = many;
  }
  struct Row {
    Json labels;
    Json key;
    std::vector<std::int16_t> expected;
    HEDROTestQuestionType type = mc;
  };
  const Row rows[] = {
      {letters, {"(A,C)"}, {1, 3}},
      {letters, {"C,A"}, {3, 1}},
      {letters, {"(A,C"}, {3}},
      {letters, {"A,C)"}, {1}},
      {letters, {"A, C"}, {1}},
      {letters, {"a,B"}, {2}},
      {letters, {"B,A,B"}, {2, 1}},
      {letters, Json::array(), {}},
      {letters, {"", "A"}, {}},            // entry 1 alone counts
      {{"A", "A", "B"}, {"A,B"}, {1, 3}},  // the first of equal labels
      {many, {"C2,C20,C1,C3"}, {20, 1, 3}},
      {sixteen, {"C16,C17,C1"}, {16, 1}},
      {{"()", "B", "C"}, {"()"}, {}},
      {{"A", "", ""}, {"(A,)"}, {1, 2}},
      {{"A", "", ""}, {""}, {}},
      {{b50 + "x", b50 + "y"}, {b50 + "," + b50 + "y"}, {1}},  // answers are cut to 50 characters, the key is not
      {Json::array(), {"A"}, {}, HEDROTestQuestionTypeUnknown},
      {{"Y"}, {"Y"}, {1}},
      {{"Yes", "No"}, {"No"}, {2}, yn},
      {{"y", "n"}, {"Y"}, {}, yn},
      {{"True", "False"}, {"True"}, {1}, tf},
      {{"t", "F"}, {"F"}, {2}, tf},
      {{"Y", "F"}, {"Y"}, {1}},
      {{"T", "F", "N"}, {"N"}, {3}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.labels.dump() + row.key.dump());
    const auto question = built_from({{"questions", {graded(row.labels, row.key)}}})->Questions->Item(1);
    EXPECT_EQ(json_of(*question->CorrectAnswers), Json(row.expected));
    EXPECT_EQ(question->QuestionType, row.type);
  }
}

// IDs are positions of the document, subjective questions stay at the end only, and the first multiple-choice questions
// at an odd and at an even place of what remains fill the scales.
TEST(BuildTestFromKTD, ScreensQuestionsAndFillsTheScales) {
  const std::string rest = R"(,["T","F"],["Y","N"]])";
  const std::string none = new_scales;
  const std::string odd = R"([["F","G"],["A","B","C","D"])" + rest;
  const std::string even = R"([["A","B","C","D"],["F","G"])" + rest;
  const std::string both = R"([["F","G"],["H","I","J"])" + rest;
  const std::array<std::string, 4> rows[] = {
      {". .", "", none, ""},
      {". . FG . HIJ AB", " 3 5 6", both, ""},
      {"TF FG YN ABC S", " 1 2 3 4 5", even, ""},
      {"TF YN FG YN HIJ", " 1 2 3 4 5", odd, ""},
      // A field that is no question ends no run.
      {"S S FG S HIJ S . S .", " 3 5 6 8", both,
       "1 1 subjective removed; 2 2 subjective removed; 4 4 subjective removed"},
      {". S ?", " 3", none, "2 2 subjective removed"},  // a graded question without choices does
  };
  for (const auto& [questions, ids, scales, removed] : rows) {
    const auto test = built_from({{"questions", questions_of(questions)}});
    const Lines lines = lines_of(*test);
    EXPECT_EQ(left_out_of(*test), removed) << questions;
    EXPECT_EQ(lines.back(), "sequence A:" + ids) << questions;
    EXPECT_EQ(lines.size(), 3 + std::count(ids.begin(), ids.end(), ' ')) << questions;
    EXPECT_EQ(lines[1], scales) << questions;
  }
}

TEST(BuildTestFromKTD, TakesTheObjectivesWhoseFlagIsSet) {
  const std::string a50(50, 'a');
  struct Row {
    Json objectives;
    Json flags;
    Json expected;
  };
  const Row rows[] = {
      {{"", "Area", "Volume", "Mass"}, {false, true}, {"Area"}},
      {{"Default", "Area"}, {true, false}, Json::array()},
      {{"", "C", "A", "B"}, {true, true, false, true}, {"C", "B"}},
      {{"", "  Area of it ", "\tArea\n"}, {false, true, true}, {"Area of it", "\tArea\n"}},
      {{"", "Area", " AREA", "area "}, {true, true, true, true}, {"Area"}},
      {{"", a50 + "b", a50 + "c"}, {false, true, true}, {a50, a50}},  // cut behind the comparison
      {{"", "", "  "}, {false, true, true}, {"", ""}},                // an empty text is no key
  };
  for (const Row& row : rows) {
    Json question = graded({"A"});
    question["objectiveFlags"] = row.flags;
    const auto test = built_from({{"objectives", row.objectives}, {"questions", {question}}});
    EXPECT_EQ(json_of(*test->Questions->Item(1)->LearningObjectives), row.expected) << row.objectives;
  }
}

TEST(BuildTestFromKTD, ReadsTheOrdersOfTheVersions) {
  struct Row {
    Json orders;
    Json identifiers;
    Lines sequences;
    std::string report;
  };
  const Row rows[] = {
      {{{3, 2}, {2, 3}}, {"X"}, {"A: 2 3 5 6"}, ""},  // no versions without an identifier for each
      {{{1, 2, 3, 4, 5, 6}, {1, 5, 2, 4, 3, 6}}, {"X", "Y"}, {"X: 2 3 5 6", "Y: 5 2 3 6"}, ""},
      {{{0, -2, 3, 7, 1, 2147483647, 4, 2}}, {"X"}, {"X: 3 2"}, ""},
      {{Json::array()}, {"X"}, {"X:"}, ""},
      {{{3, 3, 2}}, {"X"}, {"X: 3 2"}, "clsHEDROTestSequenceOrder.Add"},
      {{{3, 2}, {2, 3}, {5}}, {"x", "X", "Y"}, {"x: 3 2", "Y: 5"}, "clsHEDROTestSequences.Add"},
      {{{3, 2}, {2, 3}}, {"", ""}, {": 3 2", ": 2 3"}, ""},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.orders.dump());
    Recorder recorder;
    const auto test = make<clsHEDROTest>();
    const auto document = document_of({{"questions", questions_of(". AB AB S AB S")},
                                       {"versions", {{"orders", row.orders}, {"versionAnswers", row.identifiers}}}});
    EXPECT_TRUE(BuildTestFromKTD(test.get(), document.get()));
    Lines expected;
    for (const std::string& sequence : row.sequences) expected.push_back("sequence " + sequence);
    const Lines lines = lines_of(*test);
    EXPECT_EQ(Lines(lines.begin() + 6, lines.end()), expected);
    EXPECT_EQ(recorder.lines, row.report.empty() ? Lines() : Lines{reported(457, row.report)});
  }
}

// A host whose document answers what the default one never does.
struct OtherAnswers : CallListener {
  void called(std::string_view, std::string_view member) override {
    called_last = member;
    of_the_key |= member == "AnswerKey";
    asks_for_flags |= member == "ObjectiveFlags";
  }
  void answers(Variant& answer) override {
    if (called_last == "Count" && std::exchange(of_the_key, false) && keys) answer = *keys;
    if (called_last == "Value") answer = flags.at(asked++);
    if (called_last == "VersionMode") answer = mode;
  }

  std::vector<Variant> flags;
  std::size_t asked = 0;
  std::int32_t mode = 0;
  std::optional<std::int32_t> keys;  // their count
  std::string_view called_last;
  bool of_the_key = false;
  bool asks_for_flags = false;
};

TEST(BuildTestFromKTD, TakesTheFlagsAndTheVersionModeOfAnyHost) {
  Json question = graded({"A"});
  question["objectiveFlags"] = {true, true, true, true, true};
  const auto document = document_of({{"objectives", {"", "Null", "True", "Number", "Empty"}},
                                     {"questions", {question}},
                                     {"versions", {{"orders", {{1}}}, {"versionAnswers", {"X"}}}}});
  for (const std::int32_t mode : {-2, 0, 1, 2, 3}) {
    OtherAnswers answers;
    answers.flags = {Null(), true, -1, Variant()};
    answers.mode = mode;
    const auto test = built_from(*document, &answers);
    EXPECT_EQ(json_of(*test->Questions->Item(1)->LearningObjectives), Json({"True", "Number"}));
    EXPECT_EQ(lines_of(*test).back(), mode == 2 ? "sequence X: 1" : "sequence A: 1") << mode;
  }
}

TEST(BuildTestFromKTD, TakesTheCountOfAnyKeyAndNoFlagWithoutNeed) {
  const std::tuple<std::optional<std::int32_t>, Json, Json> rows[] = {
      {{}, {"", "Area"}, {1}}, {{}, {""}, {1}}, {0, {""}, Json::array()}, {-1, {""}, Json::array()}};
  for (const auto& [keys, objectives, correct] : rows) {
    OtherAnswers answers;
    answers.keys = keys;
    answers.flags = {false};
    const auto document = document_of({{"objectives", objectives}, {"questions", {graded({"A"}, {"A"})}}});
    EXPECT_EQ(json_of(*built_from(*document, &answers)->Questions->Item(1)->CorrectAnswers), correct);
    EXPECT_EQ(answers.asks_for_flags, objectives.size() > 1);
  }
}

TEST(BuildTestFromKTD, IsFalseForNothing) {
  Recorder recorder;
  const auto test = make<clsHEDROTest>();
  EXPECT_FALSE(BuildTestFromKTD(test.get(), nullptr));
  EXPECT_FALSE(BuildTestFromKTD(nullptr, document_of(Json::object()).get()));
  EXPECT_EQ(lines_of(*test), (Lines{"{}", new_scales}));
  EXPECT_EQ(recorder.lines, Lines());
}

// --- LoadKTD ---

// A test with something in every member that a load changes.
Ref<clsHEDROTest> former_test() {
  auto test = test_of({{u"q1"}, {u"q2"}}, u"version");
  test->Title = u"title";
  test->Notes = u"notes";
  test->ImportObjectives = HEDROTestImportObjectivesLocal;
  test->StateAbbreviation = u"WI";
  test->MultipleChoiceOddScale = strings_of(u"FGHIJK");
  test->MultipleChoiceEvenScale = strings_of(u"LMNOPQ");
  add_sequence(*test, u"B", {u"q2", u"q1"});
  return test;
}

// A folder that is the present one, so that whole paths are the test's own.
struct PresentFolder : Folder {
  PresentFolder() { std::filesystem::current_path(to_utf8(path(""))); }
  ~PresentFolder() { std::filesystem::current_path(former); }
  std::filesystem::path former = std::filesystem::current_path();
};

TEST(LoadKTD, TakesTheTitleFromThePath) {
  const PresentFolder folder;
  std::filesystem::create_directory("tests");
  std::filesystem::create_directory("te.sts");
  const std::pair<const char16_t*, const char16_t*> rows[] = {
      {u"tests\\unit1.dat", u"unit1"},  {u"tests\\unit1", u"unit1"}, {u"tests\\unit.1.dat", u"unit.1"},
      {u"te.sts\\unit1.ktd", u"unit1"}, {u"tests\\.ktd", u""},       {u"unit1.ktd", u""},
      {u"tests/unit1.ktd", u""},        {u"te.sts\\unit1", u""},
  };
  for (const auto& [path, title] : rows) {
    SCOPED_TRACE(to_utf8(path));
    Recorder recorder;
    ASSERT_TRUE(document_of({{"questions", questions_of("ABC")}})->Save(path));
    const auto test = make<clsHEDROTest>();
    test->Title = u"former";
    test->Notes = path;                                     // lost on the way, but the path is taken by value
    const bool cut = path != StringView(u"te.sts\\unit1");  // the last period stands before the last "\"
    EXPECT_EQ(test->LoadKTD(test->Notes), cut);
    EXPECT_EQ(test->Title.str(), title);
    EXPECT_EQ(test->MultipleChoiceEvenScale->Count(), cut ? 3 : 4);  // not trimmed then
    EXPECT_EQ(recorder.lines, cut ? Lines() : Lines{reported(5, "clsHEDROTest.LoadKTD")});
    EXPECT_EQ(test->Questions->Count(), 1);
  }
}

TEST(LoadKTD, ReplacesWhatATestHeldButForScalesAndImportSettings) {
  const PresentFolder folder;
  Recorder recorder;
  const auto test = former_test();
  const Lines before = lines_of(*test);
  folder.write("broken.ktd", "{}");
  EXPECT_FALSE(test->LoadKTD(u".\\broken.ktd"));
  EXPECT_FALSE(test->LoadKTD(u".\\missing.ktd"));
  EXPECT_EQ(lines_of(*test), before);

  ASSERT_TRUE(document_of({{"description", "d"}, {"questions", questions_of(". TF ABC")}})->Save(u"unit1.ktd"));
  for (int time = 0; time < 2; ++time) {
    EXPECT_TRUE(test->LoadKTD(u".\\unit1.ktd"));
    EXPECT_EQ(
        lines_of(*test),
        (Lines{R"({"title":"unit1","description":"d","source":1,"userDefined":true,"importObjectives":2,"state":"WI"})",
               R"([["F","G","H"],["A","B","C"],["T","F"],["Y","N"]])",  // the odd one of before, cut
               R"({"id":"2","type":1,"answers":["T","F"]})", R"({"id":"3","type":3,"answers":["A","B","C"]})",
               "sequence A: 2 3"}));
  }
  ASSERT_TRUE(document_of({{"notes", "n"}, {"questions", questions_of(". .")}})->Save(u"none.ktd"));
  EXPECT_FALSE(test->LoadKTD(u".\\none.ktd"));
  EXPECT_EQ(lines_of(*test),
            (Lines{R"({"title":"none","notes":"n","source":1,"userDefined":true,"importObjectives":2,"state":"WI"})",
                   R"([[],[],["T","F"],["Y","N"]])", "sequence A:"}));
  EXPECT_EQ(recorder.take(), Lines());

  ASSERT_TRUE(document_of({{"questions", questions_of("AB")}})->Save(u"one.ktd"));
  test->MultipleChoiceEvenScale = nullptr;
  EXPECT_FALSE(test->LoadKTD(u".\\one.ktd"));
  EXPECT_EQ(recorder.lines, Lines{reported(91, "clsHEDROTest.TrimScales")});
}

// Each call to the document fails once: one report, False, and never more than the whole test.
TEST(LoadKTD, ReportsAFailingDocument) {
  const PresentFolder folder;
  Json question = graded({"A", "B"}, {"(A,B)"});
  question["objectiveFlags"] = {false, true, true};
  ASSERT_TRUE(document_of({{"objectives", {"", "Area", "Volume"}},
                           {"questions", {{{"name", "Name"}}, question, {{"subjective", true}}}},
                           {"versions", {{"orders", {{1, 2, 3}, {3, 2, 1}}}, {"versionAnswers", {"A", "B"}}}}})
                  ->Save(u"unit1.ktd"));
  Recorder recorder;
  FailingHost host;
  const auto whole = former_test();
  ASSERT_TRUE(whole->LoadKTD(u".\\unit1.ktd"));
  const Lines all = lines_of(*whole);
  EXPECT_EQ(Lines(all.begin() + 2, all.end()),
            (Lines{R"({"id":"2","type":3,"answers":["A","B"],"correct":[1,2],"objectives":["Area","Volume"]})",
                   R"({"id":"3","type":12})", "sequence A: 2 3", "sequence B: 3 2"}));
  const Lines calls = host.calls;
  for (std::size_t n = 0; n < calls.size(); ++n) {
    SCOPED_TRACE(calls[n]);
    const auto test = former_test();
    const Lines before = lines_of(*test);
    EXPECT_FALSE(make<clsHEDROTest>()->LoadXML(u"another file"));
    host.fail_at_call(static_cast<int>(n) + 1);
    EXPECT_FALSE(test->LoadKTD(u".\\unit1.ktd"));
    ASSERT_TRUE(host.has_failed());
    EXPECT_EQ(last_file_error().kind, FileError::Kind::None) << "of the file before";
    const Lines lines = lines_of(*test);
    if (n < 2) {  // the document is created and loaded
      EXPECT_EQ(recorder.take(), Lines{"1234 The host refuses: HEDRO34 - clsHEDROTest.LoadKTD"});
      EXPECT_EQ(lines, before);
      continue;
    }
    EXPECT_EQ(recorder.take(), Lines{"1234 The host refuses: HEDRO34 - basPublic.BuildTestFromKTD"});
    EXPECT_EQ(test->Title.str(), u"");
    EXPECT_EQ(lines[1], before[1]);  // scales come last
    EXPECT_TRUE(std::equal(lines.begin() + 2, lines.end(), all.begin() + 2, all.begin() + std::ssize(lines)));
  }
}

// Makes documents and keeps them, or their questions.
class KeepingFactory final : public DocumentFactory {
 public:
  explicit KeepingFactory(bool whole) : whole_(whole) { platform().document_objects = this; }
  ~KeepingFactory() override { platform().document_objects = &former_; }

  Ref<WENKtdDocument> document() override {
    const auto made = make<DataDocument>();
    if (whole_) {
      document_ = made;
    } else {
      questions_ = made->Questions();
    }
    return made;
  }
  Ref<WENKtdQuestion> question(const Ref<WENKtdDocument>& of) override { return former_.question(of); }
  Ref<WENKtdObjective> objective(const Ref<WENKtdDocument>& of) override { return former_.objective(of); }
  Ref<WENKtdOrder> order(const Ref<WENKtdDocument>& of) override { return former_.order(of); }

  std::int32_t kept() { return whole_ ? document_->Questions()->Count() : questions_->Count(); }

 private:
  DocumentFactory& former_ = *platform().document_objects;
  bool whole_;
  Ref<WENKtdDocument> document_;
  Ref<WENKtdQuestions> questions_;
};

TEST(LoadKTD, LeavesADocumentWholeThatAnotherHolds) {
  const Folder folder;
  const String path = folder.path("unit.ktd");
  ASSERT_TRUE(document_of({{"questions", questions_of("AB ABC S")}})->Save(path));
  for (const bool whole : {true, false}) {
    KeepingFactory factory(whole);
    EXPECT_TRUE(make<clsHEDROTest>()->LoadKTD(path));
    EXPECT_EQ(factory.kept(), 3) << whole;
  }
}

TEST(LoadKTD, ReportsMemoryThatRunsOut) {
  const Folder folder;
  const String path = folder.path("unit.ktd");
  ASSERT_TRUE(document_of({{"questions", {graded({"A", "B"}, {"A"}), {{"subjective", true}}}}})->Save(path));
  std::size_t failed = 0, heard = 0;
  for (bool came = true; came;) {
    Recorder recorder;
    const auto test = make<clsHEDROTest>();
    bool loaded = false;
    {
      const FailingAllocation failing(static_cast<int>(failed + 1));
      loaded = test->LoadKTD(path);
      came = FailingAllocation::came();
    }
    failed += came ? 1 : 0;
    const bool silent = recorder.take().empty();
    EXPECT_TRUE(silent ? loaded : came) << failed;  // the file itself is sound
    for (std::int32_t i = 1; i <= test->Questions->Count(); ++i) EXPECT_TRUE(test->Questions->Item(i)->Answers);
    heard += silent ? 0 : 1;
  }
  EXPECT_GT(failed, 20U);
  EXPECT_GT(heard, 10U);  // where one parser has no memory the other one reads the file
}

}  // namespace
}  // namespace hedro34::testing
