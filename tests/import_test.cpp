// Loading of ExamView files: the file as a whole, the scales, and failures on the way. Questions and rich text stand in
// import_question_test.cpp.
#include <gtest/gtest.h>

#include "hedro34/documents/data_document.h"
#include "hedro34/platform/file_error.h"
#include "tests/failing_allocation.h"
#include "tests/import_support.h"

namespace hedro34::testing::examview {
namespace {

const std::string true_false = "<question question-id='q' type='tf'/>";
const std::string true_false_line = R"({"id":"q","type":1,"answers":["True","False"]})";
const std::string partial = "<info><points scoring-method='RightLessWrong'>1</points></info>";

std::string file(const std::string& content) { return "<examview>" + content + "</examview>"; }

std::string letters(const std::string& value) { return "<mc-choice-sequence value='" + value + "'/>"; }

// A question of no type with so many choices without text.
std::string with_choices(std::size_t count, const std::string& id = "c") {
  return "<question question-id='" + id + "'><choices>" + repeat("<choice-a/>", count) + "</choices></question>";
}

TEST(LoadXML, RejectsAFileThatIsNoTestSilently) {
  const std::string inside = "<header><title>T</title></header>" + true_false;
  for (const std::string& xml : {std::string(), "<examview>" + inside, "<ExamView>" + inside + "</ExamView>",
                                 "<e:examview>" + inside + "</e:examview>", "<test>" + file(inside) + "</test>",
                                 file("<Question/><questions/><e:question/>")}) {
    EXPECT_EQ(Import().load(xml), Lines{"False {}"}) << xml;
  }
  Import import;
  EXPECT_EQ(import.load(file("<header><title>T</title></header>")), Lines{R"(False {"title":"T"})"});
  EXPECT_EQ(import.load_path(import.folder.path("none.xml")), Lines{"False {}"});
}

TEST(LoadXML, TakesAPathThatTheTestItselfHolds) {
  Import import;
  import.test->Notes = import.folder.write("test.xml", file("<header><title>T</title></header>" + true_false));
  EXPECT_EQ(import.load_path(import.test->Notes), (Lines{R"(True {"title":"T"})", true_false_line}));
  import.test->Notes = import.folder.write("none.xml", "<test/>");
  EXPECT_EQ(import.load_path(import.test->Notes), Lines{"False {}"});
  EXPECT_EQ(last_file_error().path, import.folder.path("none.xml"));
  EXPECT_EQ(last_file_error().reason, "no ExamView file: the root element is not \"examview\"");
}

TEST(LoadXML, ReadsTheFirstHeader) {
  const std::pair<std::string, std::string> rows[] = {
      {"<header><VERSION>V</VERSION><tItLe>T</tItLe></header>", R"({"title":"T","version":"V"})"},
      {"<header><titles>1</titles><e:title>2</e:title>title<part><title>T</title></part></header>", "{}"},
      {"<header><title>1</title><version>V</version><Title>2</Title><version/></header>", R"({"title":"2"})"},
      {"<header><title> a  <b>b\nc</b></title></header>", R"({"title":" a  b\nc"})"},
      {"<a><header><title>T</title></header></a><header><version>V</version></header>", R"({"title":"T"})"},
      {"<Header><title>T</title></Header>", "{}"},
  };
  for (const auto& [content, test] : rows) {
    EXPECT_EQ(Import().load(file(content + true_false)), (Lines{"True " + test, true_false_line})) << content;
  }
}

TEST(LoadXML, AsksOnceAboutPartialCredit) {
  const std::string asking = "<question question-id='1'>" + partial + "</question>";
  const std::string all = file("<header><title>T</title></header>" + asking + "<question>" + partial + "</question>");
  const std::string set = R"("importObjectives":15,"state":"CA"})";
  const Lines silent = {R"(True {"title":"T",)" + set, R"({"id":"1"})", "{}"};
  const Lines asked = {silent[0], silent[1], silent[2], partial_box};
  const struct {
    bool verbose;
    std::int32_t answer;
    Lines lines;
  } rows[] = {
      {true, answer_ok, asked},
      {true, 7, asked},
      {true, answer_cancel, {R"(False cancelled {"source":-1,)" + set, partial_box}},
      {false, answer_cancel, silent},
  };
  for (const auto& row : rows) {
    Import import;
    import.verbose = row.verbose;
    import.recorder.answer = row.answer;
    import.test->ImportObjectives = static_cast<HEDROTestImportObjectives>(15);
    import.test->StateAbbreviation = u"CA";
    EXPECT_EQ(import.load(all), row.lines) << row.answer;
    EXPECT_EQ(import.scales(), &row == &rows[2] ? "ABCD ABCD" : " ") << "trimmed, unless it was cancelled";
  }

  Import import;  // questions that are left out count, those of an earlier load do not
  EXPECT_EQ(import.questions("<question question-id='1'/>" + asking), (Lines{R"({"id":"1"})", duplicate, partial_box}));
  EXPECT_EQ(import.questions("<question>" + partial + "<info><points>1e39</points></info></question>"),
            (Lines{reported(6, "clsHEDROTest.AddXMLQuestion"), partial_box}));
  EXPECT_EQ(import.questions(true_false), Lines{true_false_line});

  bool cancelled = true;
  EXPECT_TRUE(import.test->LoadXML(import.folder.write("test.xml", file(true_false)), false, &cancelled));
  EXPECT_TRUE(cancelled) << "it is never set to False";
  import.recorder.answer = answer_cancel;
  EXPECT_FALSE(import.test->LoadXML(import.folder.write("test.xml", all))) << "without a variable";
}

TEST(LoadXML, ASecondLoadStartsFromTheScalesOfTheFirst) {
  Import import;
  clsHEDROTest& test = *import.test;
  test.Notes = test.CreatedBy = test.TeacherID = test.ID = test.Description = u"x";
  test.UserDefined = true;
  test.Source = HEDROTestSourceTypeKTD;
  const auto load = [&](const std::string& content) {
    const std::string first = import.load(file(content)).front();
    return first + " " + import.scales();
  };
  const std::string both = letters("abcdef_ghijkl");
  EXPECT_EQ(load("<header><title>T</title></header>" + both + with_choices(3)), R"(True {"title":"T"} ABC GHI)");
  test.Sequences->AddDefault(test.Questions, u"A");
  EXPECT_EQ(load(with_choices(9)), "True {} ABC GHI");
  EXPECT_EQ(test.Sequences->Count(), 0);
  EXPECT_EQ(load(both), "False {}  ");
  EXPECT_EQ(load(with_choices(2)), "True {}  ");
  EXPECT_EQ(load(both + with_choices(2)), "True {} AB GH");
}

TEST(LoadXML, TakesTheScalesFromTheFile) {
  const std::string usual = "ABCD ABCD";
  const std::string eight = "ABCDEFGH ABCDEFGH";
  const std::string other = "FGHIJ FGHIJ";
  const struct {
    std::string element;
    std::string scales;
    std::string odd_only;
  } rows[] = {
      {"", usual, usual},
      {letters("abcdE"), eight, eight},
      {letters("ABCDE_abcde"), eight, eight},
      {letters("ABCDE_FGHIJ"), "ABCDE FGHIJ", eight},
      {letters("ABCDE_FGHI"), usual, eight},
      {letters("fghij"), other, other},
      {letters("FGHIJ_ABCDE"), "FGHIJ ABCDE", other},
      {letters("FGHI_JKLM"), usual, usual},
      {letters("_FGHIJ"), usual, usual},
      {letters("ABCDEF_GHIJK_"), "ABCDEF GHIJK_", "ABCDEF ABCDEF"},
      {"<a><mc-choice-sequence x='FGHIJ' value='KLMNO'/></a>" + letters("PQRST"), other, other},
      {"<mc-choice-sequence>FGHIJ</mc-choice-sequence>" + letters("KLMNO"), usual, usual},
      {"<MC-choice-sequence value='FGHIJ'/>", usual, usual},
  };
  for (const auto& row : rows) {
    for (const bool odd_only : {false, true}) {
      Import import;
      import.odd_distractors_only = odd_only;
      EXPECT_EQ(import.questions(row.element + with_choices(9)).size(), 1U) << row.element;
      EXPECT_EQ(import.scales(), odd_only ? row.odd_only : row.scales) << row.element;
    }
  }
}

TEST(LoadXML, CutsTheScalesToTheLongestAnswers) {
  const std::pair<std::string, std::string> rows[] = {
      {with_choices(3, "1") + true_false, R"([["F","G","H"],["N","O","P"])"},
      {true_false + with_choices(3, "1") + with_choices(2, "2"), R"([["F","G","H"],["N","O","P"])"},
      {true_false + with_choices(5, "q"), R"([["F","G"],["N","O"])"},  // an ID again, which drops the question
  };
  for (const auto& [content, scales] : rows) {
    Import import;
    import.questions(letters("fghijklm_nopqrstu") + content);
    EXPECT_EQ(scales_of(*import.test), scales + R"(,["T","F"],["Y","N"]])") << content;
  }
}

TEST(LoadXML, AFailureLeavesWhatWasRead) {
  const std::string content = "<header><version>V</version><title>T</title></header>" + letters("fghij") + true_false +
                              "<question>" + partial + "</question>";
  const std::string report = rejected + "LoadXML";
  const std::string header = R"( {"title":"T","version":"V"})";
  const std::pair<String, Lines> rows[] = {
      {u"document", {"False {}", reported(429, "clsHEDROTest.LoadXML")}},
      {u"not async", {"False {}", report}},
      {u"header", {"False {}", report}},
      {u"question", {"False" + header, report}},
      {u"mc-choice-sequence", {"False" + header, true_false_line, "{}", report}},
  };
  BrittleDocuments documents;
  for (const auto& [failing, lines] : rows) {
    Import import;
    EXPECT_FALSE(make<DataDocument>()->Load(u""));  // the reason is another file's
    import.test->Title = u"before";
    documents.failing = failing;
    EXPECT_EQ(import.load(file(content)), lines) << to_utf8(failing);
    EXPECT_EQ(import.scales(), "ABCD ABCD") << "not trimmed";
    EXPECT_EQ(last_file_error().kind, FileError::Kind::None);
  }
  documents.failing.clear();
  Import import;
  EXPECT_EQ(import.load(file("<header><version>V</version><title fails='nodeTypedValue'/></header>")),
            (Lines{R"(False {"version":"V"})", report}));
  documents.failing = u"nextNode";
  EXPECT_EQ(import.load(file(letters("fghij") + true_false)), (Lines{"True {}", true_false_line}));
  documents.failing.clear();
  EXPECT_EQ(import.load(file("<mc-choice-sequence fails='attributes'/>" + true_false)),
            (Lines{"True {}", true_false_line, rejected + "PopulateMultipleChoiceScales"}));
  import.test->MultipleChoiceOddScale = nullptr;
  EXPECT_FALSE(import.test->LoadXML(import.folder.write("test.xml", file(letters("fghij") + with_choices(1)))));
  EXPECT_EQ(import.recorder.take(), (Lines{reported(91, "clsHEDROTest.PopulateMultipleChoiceScales"),
                                           reported(91, "clsHEDROTest.TrimScales")}));
  EXPECT_EQ(import.test->MultipleChoiceEvenScale->AsString(u""), u"A") << "the even scale is cut first";
}

TEST(LoadXML, SurvivesMemoryThatRunsOut) {
  const Folder folder;
  const String path = folder.write(
      "test.xml",
      file("<header><title>T</title></header><mc-choice-sequence value='fghij'/><question type='mc' "
           "bank-id='a bank that needs memory'><text><para>a<b>  text</b></para><img/></text><choices><choice-a>"
           "a choice that needs memory</choice-a></choices><answer>A,B,C,D,E,F</answer><info><notes>notes that need "
           "memory</notes><text-objective>o|p</text-objective></info></question>" +
           true_false + "<question/>"));
  const auto prepare = [] {
    auto test = make<clsHEDROTest>();
    test->ImportObjectives = HEDROTestImportObjectivesLearning;
    return test;
  };
  const auto load = [&](const Ref<clsHEDROTest>& test) { test->LoadXML(path); };
  const auto check = [&](const Ref<clsHEDROTest>& test) {
    Import again;
    again.test = test;
    ASSERT_EQ(again.load_path(path),
              (Lines{R"(True {"title":"T","importObjectives":1})",
                     R"({"id":"a bank that needs memory","type":3,"text":"a text","answers":["a choice that needs )"
                     R"(memory"],"correct":[1,2,3,4,5,6],"notes":"notes that need memory","objectives":["o","p"]})",
                     true_false_line, "{}"}));
    EXPECT_EQ(left_out_of(*test), "1 a bank that needs memory multiple choice: picture");
  };
  std::set<std::string> expected = {reported(91, "clsHEDROTest.AddXMLQuestion"),
                                    "7 Out of memory: clsHEDROTestCorrect.Add"};
  for (const char* place :
       {".LoadXML", ".AddXMLQuestion", ".NodeText", ".PopulateMultipleChoiceScales", "Question.Class_Initialize",
        "Questions.Add", "Strings.AddDelimitedString", "Strings.Add"}) {
    expected.insert(reported(7, "clsHEDROTest") + std::string(place));
  }
  EXPECT_EQ(fail_each_allocation(prepare, load, check), expected);
}

}  // namespace
}  // namespace hedro34::testing::examview
