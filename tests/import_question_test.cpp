// What is read of one `question` of an ExamView file: attributes, choices, answer and the metadata in `info`, and how
// rich text becomes one line of plain text.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <ctime>
#include <limits>
#include <optional>

#include "tests/import_support.h"

namespace hedro34::testing::examview {
namespace {

const Json nothing = Json::array();

std::string question(const std::string& content, const std::string& attributes = "") {
  return "<question " + attributes + ">" + content + "</question>";
}

std::string with_info(const std::string& content) { return question("<info>" + content + "</info>"); }

// The only question of a file, and no failure.
Ref<clsHEDROTestQuestion> read(const std::string& xml, int flags = 0, StringView state = u"CA") {
  Import import;
  import.test->ImportObjectives = static_cast<HEDROTestImportObjectives>(flags);
  import.test->StateAbbreviation = state;
  EXPECT_EQ(import.questions(xml).size(), 1U) << xml;
  return import.test->Questions->Item(1);
}

TEST(AddXMLQuestion, ReadsItsParts) {
  const std::pair<std::string, Lines> rows[] = {
      {"<question bank-id='7' question-id='12' type='es'/>", {R"({"id":"127","type":10})"}},
      {"<question bank-id=' a' question-id=' 1 ' type='tf '/>", {R"({"id":" 1  a"})"}},
      {"<question Question-ID='1' BANK-ID='2' Type='tf' e:type='tf'/>", {"{}"}},
      {"<question question-id='12' bank-id='7'/><question question-id='1' bank-id='27'/><question question-id='1'/>",
       {R"({"id":"127"})", R"({"id":"1"})", duplicate}},
      {"<part><question question-id='1'><part><question question-id='2'/></part></question></part><question/>",
       {R"({"id":"1"})", R"({"id":"2"})", "{}"}},
      {question("<aNSWER>b</aNSWER><TEXT> t </TEXT><Choices><Choice-A>  a  </Choice-A></Choices>"),
       {R"({"text":"t","answers":["a"],"correct":[2]})"}},
      {question("text<texts>1</texts><e:text>2</e:text><part><text>3</text></part><choice>4</choice>"), {"{}"}},
      {question("<text>1</text><text/>"), {"{}"}},
      {question("<choices><b>1</b></choices><choices><b>2</b></choices>", "type='tf'"),
       {R"({"type":1,"answers":["True","False","1","2"]})"}},
      {question("<choices>a<x>b</x>\n <!-- c --> <![CDATA[d]]></choices>", "type='yn'"),
       {R"({"type":2,"answers":["Yes","No","a","","d"]})"}},
      {question("<choices><choice-b>  " + repeat("x", 49) + " 2</choice-b></choices>"),
       {R"({"answers":[")" + repeat("x", 49) + R"( "]})"}},
      {question("<answer>C,B</answer><answer>A,C</answer>"), {R"({"correct":[3,2,1]})"}},
      {question("<bi-display-mode/><bi-display-mode Value='tf'>tf</bi-display-mode>", "type='bi'"), {R"({"type":14})"}},
      {question("<answer>T</answer><BI-Display-Mode value='TF'/><answer>T</answer><bi-display-mode value='yn'/>",
                "type='bi'"),
       {R"({"type":2,"correct":[20,1]})"}},
      {question("<bi-display-mode value='mc'/><answer>T</answer>", "type='tf'"),
       {R"({"type":3,"answers":["True","False"],"correct":[20]})"}},
      {with_info("<difficulty>d</difficulty><KEYWORDS>k</KEYWORDS><miscellaneous>m</miscellaneous><notes>n</notes>"
                 "<reference>r</reference></info><INFO><topic>s</topic><Topic>t</Topic></INFO><info>"),
       {R"({"difficulty":"d","reference":"r","topic":"t","keywords":"k","miscellaneous":"m","notes":"n"})"}},
      {with_info("<notes>  a   <b>b\n</b> <other>c </other></notes>"), {R"({"notes":"  a   b\nc "})"}},
      {with_info("topic<topics>1</topics><e:topic>2</e:topic><info><topic>3</topic></info>"), {"{}"}},
      {with_info("<points>2</points><POINTS>3</POINTS>") + "<question/>", {R"({"points":[3.0,0.0,0.0]})", "{}"}},
      {with_info(
           "<POINTS x='' scoring-method='RIGHTLESSWRONG'>1</POINTS><points scoring-method='RightOnly'>1</points>"),
       {"{}", partial_box}},
      {with_info("<points scoring-method='RightLessWrong '>1</points>"), {"{}"}},
  };
  for (const auto& [xml, lines] : rows) EXPECT_EQ(Import().questions(xml), lines) << xml;
}

TEST(AddXMLQuestion, ReadsTheAnswerByTheType) {
  const struct {
    std::string type;
    std::string answer;
    Json correct;
  } rows[] = {{"tf", "true", {1}},           {"tf", "F", {2}},           {"tf", "", nothing},
              {"tf", " T", nothing},         {"tf", "Y", nothing},       {"yn", "yes", {1}},
              {"mc", " b , d ", {2, 4}},     {"mc", "AB;D", {1}},        {"yn", "no", {2}},
              {"yn", "O", nothing},          {"mc", ",B,, ,A,", {2, 1}}, {"mc", "<b>B</b>,<i>D</i>", {2, 4}},
              {"nr", "@,_,-3", {0, 31, -19}}};
  for (const auto& row : rows) {
    const std::string xml = question("<answer>" + row.answer + "</answer>", "type='" + row.type + "'");
    EXPECT_EQ(json_of(*read(xml)->CorrectAnswers), row.correct) << xml;
  }
}

TEST(AddXMLQuestion, AFailureDropsTheQuestionAndNoOther) {
  for (const std::string& failing :
       {question("", "fails='attributes'"), question("", "fails='childNodes'"),
        question("<text>t</text><text>t</text>", "fails='item'"), question("<other fails='nodeName'/>"),
        question("<choices fails='childNodes'/>"), question("<answer fails='nodeTypedValue'>A</answer>"),
        with_info("<points fails='attributes'>1</points>"), with_info("<text-objective fails='nodeTypedValue'/>"),
        with_info("<state-objective fails='attributes'/>")}) {
    Import import;
    import.test->ImportObjectives = static_cast<HEDROTestImportObjectives>(15);
    BrittleDocuments documents;
    EXPECT_EQ(import.questions("<question question-id='1'/>" + failing + "<question question-id='3'/>"),
              (Lines{R"({"id":"1"})", R"({"id":"3"})", rejected + "AddXMLQuestion"}))
        << failing;
  }
}

TEST(Info, ReadsPoints) {
  const std::string zeros = repeat("0", 400);
  const std::pair<float, std::vector<std::string>> rows[] = {
      {0.0F, {"1e-00000000000000400", zeros + "1e-500", "0." + zeros + zeros + "1e400"}},
      {0.0F, {"", "word 5", ".", "--1", "e5", "\uFF15", "1e-99999999999999999999", "0e99999999999999999999"}},
      {1.0F, {"1,5", "1e-", "1\u0132", zeros + "1", "0." + zeros + "1e401", "1" + zeros + "e-400"}},
      {1.0F, {"1.000000059604644775390626"}},  // halfway to the next 32-bit float, once it has 64 bits
      {1.5F, {" 1 . 5", "15e-1", "1.5.3", "1.5each", "+.15 E + 1"}},
      {-2.0F, {"-2.", "- 2", "-.2e1"}},
      {std::numeric_limits<float>::max(), {"3.4028235e38"}},
  };
  for (const auto& [points, texts] : rows) {
    for (const std::string& text : texts) {
      EXPECT_EQ(read(with_info("<points>" + text + "</points>"))->CorrectPoints, points) << text;
    }
  }
  for (const std::string& text : {std::string("-1e39"), std::string("1e99999999999999999999"), "1" + zeros + "e-9",
                                  "0." + zeros + "1e999", "1" + zeros + "e0:"}) {
    EXPECT_EQ(Import().questions(with_info("<points>" + text + "</points>")),
              Lines{reported(6, "clsHEDROTest.AddXMLQuestion")});
  }
}

TEST(Info, ReadsObjectivesByFlagAndState) {
  const std::string x50 = repeat("x", 50);
  const std::string kinds =
      "<local-standard>C</local-standard><Text-Objective>L</Text-Objective><National-STANDARD>N</National-STANDARD>"
      "<state-OBJECTIVE>S</state-OBJECTIVE><objective>X</objective>";
  const auto learning = [](const std::string& text) { return "<text-objective>" + text + "</text-objective>"; };
  const auto of_state = [](const std::string& text) { return "<state-objective " + text + ">a</state-objective>"; };
  const struct {
    int flags;
    const char16_t* state;
    std::string content;  // of `info`
    Json objectives;
  } rows[] = {
      {0, u"CA", kinds, nothing},
      {1, u"CA", kinds, {"L"}},
      {2, u"CA", kinds, {"C"}},
      {4, u"CA", kinds, {"S"}},
      {8, u"CA", kinds, {"N"}},
      {15, u"CA", kinds, {"C", "L", "N", "S"}},
      {4, u"CA", of_state("STATE='ca'"), {"a"}},
      {4, u"CA", of_state("state='TX'"), nothing},
      {4, u"CA", of_state("state='CA '"), nothing},
      {4, u"CA", of_state("x='CA'"), nothing},
      {4, u"CA", of_state("e:state='CA'"), nothing},
      {4, u"CA", of_state("x='1'") + of_state("state='TX'") + of_state("x='2'") + "<x state='CA'/>", nothing},
      {4, u"CA", of_state("x='1' state='TX' State='CA'"), {"a"}},
      {4, u"", of_state("state=''"), {"a"}},
      {4, u"", of_state(""), {"a"}},
      {1, u"", learning("a, b,c"), {"a", "b", "c"}},
      {1, u"", learning("a|b, c |d,"), {"a", "b, c", "d,"}},
      {1, u"", learning("  a  b  |\tc\t"), {"a  b", "\tc\t"}},
      {1, u"", learning("<![CDATA[ ]]>"), {""}},
      {1, u"", learning(",a,,<b>b</b>,"), {"", "a", "", "b", ""}},
      {9, u"", learning("a,b,A") + "<national-standard>B|c</national-standard>" + learning("d"), {"a", "b", "c", "d"}},
      {1, u"", learning("  " + x50 + "1," + x50 + "2," + x50 + "1," + x50), {x50, x50, x50}},
  };
  for (const bool host : {false, true}) {
    std::optional<BrittleDocuments> documents;
    if (host) documents.emplace();
    for (const auto& row : rows) {
      EXPECT_EQ(json_of(*read(with_info(row.content), row.flags, row.state)->LearningObjectives), row.objectives)
          << host << row.flags << row.content;
    }
  }
  const BrittleDocuments documents;
  const auto any_state = read(with_info(of_state("state='TX' fails='no attributes'")), 4);
  EXPECT_EQ(to_utf8(any_state->LearningObjectives->AsString()), "a");
}

// What a question with this content loses.
std::string lost(const std::string& content, const std::string& type = "mc") {
  Import import;
  import.test->ImportObjectives = HEDROTestImportObjectivesLearning;
  import.questions(question(content, "question-id='q' type='" + type + "'"));
  std::string text;
  for (const LeftOut& each : import.test->left_out()) {
    EXPECT_TRUE(each.what == LeftOut::What::NotCarried && each.number == 1 && each.id == u"q") << content;
    text += (text.empty() ? "" : ", ") + to_utf8(each.part);
  }
  return text;
}

TEST(NotCarried, NamesWhatTheTextsCannotHold) {
  const std::string x50 = repeat("x", 50), x255 = repeat("x", 255);
  const std::pair<std::string, std::string> rows[] = {
      {"<text>a<b>b</b><i/><br/><x><y/></x><z><![CDATA[ \n]]></z></text>", ""},
      {"<text>a<equation/></text>", "equation"},
      {"<text><equation><m>x</m></equation><b><e:Equation/></b></text>", "2 equations"},
      {"<text><e:IMG src='a'/><font><Figure>text</Figure></font><graphic/></text>", "3 pictures"},
      {"<text><object> <wrap><pict/></wrap><equation/></object></text>", "picture"},
      {"<text><object><m><equation/><img/></m></object></text>", "equation"},
      {"<text><table><tr>x<list>y</list></tr><img/></table><Table>z</Table><e:table><![CDATA[z]]></e:table></text>",
       "2 elements \"table\", element \"Table\""},
      {"<choices><choice-i>nine</choice-i><choice-j/><choice-a>a<image/></choice-a></choices>",
       "element \"choice-i\", picture"},
      {"<choices><choice-a>" + x50 + "</choice-a> <choice-b> " + x50 + "<sup>2</sup> </choice-b></choices>",
       "choice 2 after 50 characters"},
      {"text<rationale>why</rationale><hint/><x:picture/><part><equation/></part><text>t</text><info><x>y</x></info>",
       "element \"rationale\", picture, equation"},
      {"<info><difficulty>" + x255 + "</difficulty><Topic>" + x255 + "y</Topic><topic>" + x255 + "z</topic><notes>" +
           x255 + "y</notes><text-objective>" + x50 + "," + x50 + "1, " + x50 + "2," + x50 +
           "1</text-objective></info>",
       "topic after 255 characters, 2 objectives after 50 characters"},
      {"<info><keywords>" + x255 + "y</keywords><miscellaneous>" + x255 + "y</miscellaneous><local-standard>" + x50 +
           "y</local-standard></info>",
       "keywords after 255 characters, miscellaneous after 255 characters"},
      {"<answer>A<img/></answer><e:text>t</e:text>", "element \"text\""},
      {"<question type='es' question-id='r'>a question of its own</question>", ""},
  };
  for (const auto& [content, parts] : rows) EXPECT_EQ(lost(content), parts) << content;
  EXPECT_EQ(lost("<choices>" + x50 + "y</choices>", "tf"), "choice 3 after 50 characters");

  // Of a host's own document no more is asked than the import asks anyway: here whether an element has children.
  BrittleDocuments documents;
  EXPECT_EQ(lost("<text><object><pict/></object><x/><equation/><img/></text><picture/><rationale>why</rationale>"),
            "element \"object\", equation, 2 pictures");
  EXPECT_EQ(lost("<text fails='own nodes'><object><equation/></object></text>"), "equation");
}

TEST(NotCarried, IsNotedOfQuestionsInTheTestByTheirNumberInTheFile) {
  const std::string picture = "<text><img/></text>";
  BrittleDocuments documents;
  Import import;
  const auto with_id = [](const std::string& id) { return "question-id='" + id + "' type='es'"; };
  import.questions(question(picture, with_id("a") + " fails='childNodes'") + question(picture, with_id("b")) +
                   question(picture, with_id("B")) + question("", with_id("c")) + question(picture, with_id("d")));
  EXPECT_EQ(left_out_of(*import.test), "1 a essay removed; 2 b essay: picture; 3 B essay removed; 5 d essay: picture");
  EXPECT_EQ(import.test->Questions->Item(u"c")->number_in_file, 4);
  const std::string x49 = repeat("x", 49);
  import.questions("<question fails='attributes'/>" + question("", "question-id='" + x49 + "' bank-id='yz' type='tf'") +
                   question(picture, with_id(x49 + "z0") + " fails='childNodes'"));
  EXPECT_EQ(left_out_of(*import.test),
            "1  unknown type removed; 2 " + x49 + "y true/false: ID after 50 characters; 3 " + x49 + "z essay removed");
  import.load("<examview/>");
  EXPECT_EQ(left_out_of(*import.test), "");
}

// --- rich text

std::string flat_text(const std::string& content) {
  return to_utf8(read(question("<text>" + content + "</text>"))->QuestionText.str());
}

// The answer that one child of `choices` gives.
std::string flat_choice(const std::string& child) {
  return to_utf8(read(question("<choices>" + child + "</choices>"))->Answers->AsString(u"]["));
}

TEST(NodeText, KnowsItsVocabulary) {
  const struct {
    std::vector<std::string> elements;  // with their attributes
    const char* text;                   // with children
    bool is_text;                       // whether its value is read when it has no children
  } rows[] = {
      {{"text"}, "p q r s", false},
      {{"PARA", "b", "i", "u"}, "p q r s", true},
      {{"sup", "e:Variable data='Text'"}, "pqrs", true},
      {{"font", "variable", "variable data='text '", "variable Data='text'", "choice-a", "choice-b", "choice-c",
        "choice-d", "choice-e", "choice-f", "choice-g", "CHOICE-H"},
       "pqrs",
       false},
      {{"choice-i", "sub", "bb", "b:e", "equation"}, "s", false},
  };
  for (const auto& row : rows) {
    for (const std::string& element : row.elements) {
      const std::string inside = "<" + element + ">p<sup>q</sup>r</" + element.substr(0, element.find(' ')) + ">s";
      EXPECT_EQ(flat_choice("<choice-a>" + inside + "</choice-a>"), row.text) << element;
      BrittleDocuments documents;
      const Lines alone = Import().questions(question("<choices><" + element + " fails='nodeTypedValue'/></choices>"));
      EXPECT_EQ(alone.back() == rejected + "NodeText", row.is_text) << element;
    }
  }
}

TEST(NodeText, JoinsAndCleansText) {
  const std::pair<const char*, const char*> rows[] = {
      {"<choice-a>x<b>2</b><sup>3</sup><i>y</i>z</choice-a>", "x2 3y z"},
      {"<font>x<text><b/>a</text>y</font>", "x a y"},
      {"<font>a<b/>b</font>", "ab"},
      {"<font>a<b><![CDATA[]]></b>b</font>", "a b"},  // a child, though an empty one
      {"<font>a<Equation/>b</font>", "aequationb"},
      {"<font>a<equation><![CDATA[]]></equation>b</font>", "ab"},
      {"<font>a<!-- c -->b<?p i?>c<![CDATA[<y> & ]]>&lt;\U0001F600</font>", "abc<y> & <\U0001F600"},
      {"a     b  c         d", "a  b c   d"},
      {"<text>a<b/><b/><b/>c</text>", "a c"},                 // four blanks meet
      {"<font>a        <sup>        b</sup></font>", "a b"},  // two and one, once each side is clean
      {"<text><b>a     \n</b>         b         </text>", "a  b"},
      {"one\r\ntwo\n\nthree&#10;", "onetwothree"},
      {"a\n", "a"},
      {"one \n two", "one  two"},  // the line feed goes behind the blanks
      {"<choice-a>one \n \n \n \n two</choice-a>", "one  two"},
      {"<text>one\n<b>\ntwo</b></text>", "one two"},
      {"one&#13;&#9;two&#160; &#160; \t", "one\r\ttwo\u00A0 \u00A0 \t"},
  };
  for (const auto& [xml, text] : rows) EXPECT_EQ(flat_choice(xml), text) << xml;
}

// A run of blanks between two letters, and how many are left of it in one, two and three nested nodes.
TEST(NodeText, QuartersRunsOfBlanksAtEachLevel) {
  const std::array<std::size_t, 4> rows[] = {{1, 1, 1, 1},  {4, 1, 1, 1},  {5, 2, 1, 1},   {8, 2, 1, 1},  {9, 3, 1, 1},
                                             {16, 4, 1, 1}, {17, 5, 2, 1}, {64, 16, 4, 1}, {65, 17, 5, 2}};
  const auto run = [](std::size_t blanks) { return "a" + repeat(" ", blanks) + "b"; };
  for (const auto& [blanks, one_level, two_levels, three_levels] : rows) {
    EXPECT_EQ(flat_choice(run(blanks)), run(one_level)) << blanks;
    EXPECT_EQ(flat_choice("<choice-a>" + run(blanks) + "</choice-a>"), run(two_levels)) << blanks;
    EXPECT_EQ(flat_choice("<choice-a><font>" + run(blanks) + "</font></choice-a>"), run(three_levels)) << blanks;
  }
  EXPECT_EQ(flat_choice("<choice-a>a  b \n c</choice-a>"), "a b c");
}

TEST(NodeText, ReadsDeepAndLongTextInOneWalk) {
  EXPECT_EQ(flat_text(repeat("<b>x", 990) + repeat("</b>", 990)), repeat("x ", 989) + "x");
  EXPECT_EQ(flat_text(repeat("<b>x</b>", 20'000)), repeat("x ", 19'999) + "x");
  const std::string words = repeat("word ", 100'000);
  const auto cost = [&](std::size_t depth) {
    std::clock_t least = std::numeric_limits<std::clock_t>::max();
    for (int i = 0; i < 3; ++i) {
      const std::clock_t before = std::clock();
      flat_text(repeat("<b>", depth) + words + repeat("</b>", depth));
      least = std::min(least, std::clock() - before);
    }
    return static_cast<double>(least);
  };
  EXPECT_LT(cost(900), 20 * cost(0));
}

TEST(NodeText, AFailureEmptiesItsLevelOnly) {
  const std::pair<std::string, std::string> rows[] = {
      {"a<font>b<sup fails='baseName'>c</sup>d</font>e", "a bd e"},
      {"a<font>b<sup fails='childNodes'>c</sup>d</font>e", "a bd e"},
      {"a<font fails='item'>b<sup>c</sup>d</font>e", "a e"},
      {"<font>a<variable fails='attributes' data='text'/>b</font>", "ab"},
      {"<font>a<i><b fails='baseName'/></i>b</font>", "a b"},  // the blank behind it stays
  };
  BrittleDocuments documents;
  for (const auto& [content, text] : rows) {
    EXPECT_EQ(Import().questions(question("<text>" + content + "</text><answer>B</answer>")),
              (Lines{R"({"text":")" + text + R"(","correct":[2]})", rejected + "NodeText"}));
  }
}

}  // namespace
}  // namespace hedro34::testing::examview
