// What a person looks at: the keys of each version as the sheet shows them, and the page.
#include <gtest/gtest.h>

#include <iterator>
#include <regex>
#include <sstream>

#include "hedro34/report/Report.h"
#include "hedro34/report/html_text.h"
#include "hedro34/report/key_layout.h"
#include "hedro34/report/version_keys.h"
#include "tests/merge_support.h"

namespace hedro34::testing {
namespace {

// A document from a line such as "-AB *ABCD=2 *FGHJ=(1,4):(F,J) | A:1,2,3 B:1,3,2". Words are fields: "*" for a graded one, a
// letter for each label ("." for an empty one), the numeric key, the label key where it is not what the former makes of the
// labels. Behind the "|" stand versions with their orders.
Ref<DataDocument> document_of(const std::string& line) {
  auto document = make<DataDocument>();
  std::istringstream words(line);
  std::string word;
  while (words >> word && word != "|") {
    const auto question = document->questions().add();
    const std::size_t key = std::min(word.find('='), word.size());
    question->SetGraded(word[0] == '*');
    for (const char letter : word.substr(1, key - 1))
      question->ChoiceLabels()->Add(letter == '.' ? String() : String(1, static_cast<char16_t>(letter)));
    if (key == word.size()) continue;
    const std::size_t label_key = word.find(':');
    const std::string numeric = word.substr(key + 1, label_key == std::string::npos ? label_key : label_key - key - 1);
    question->NumericAnswerKey()->Add(from_utf8(numeric));
    std::string labels = label_key == std::string::npos ? numeric : word.substr(label_key + 1);
    if (label_key == std::string::npos) {
      for (char& c : labels) c = c >= '1' && c <= '9' ? word[static_cast<std::size_t>(c - '0')] : c;
    }
    question->AnswerKey()->Add(from_utf8(labels));
  }
  while (words >> word) {
    document->versions().version_answers().Add(from_utf8(word.substr(0, word.find(':'))));
    std::vector<std::int32_t> order;
    std::istringstream numbers(word.substr(word.find(':') + 1));
    for (std::string number; std::getline(numbers, number, ',');) order.push_back(std::stoi(number));
    document->versions().orders().Add(make<DataOrder>(std::move(order)));
  }
  return document;
}

// "A: 2 (A,C) {1 3}, 3? [5] {5}": for each graded field or one with a fault the question, the key and the choices; "?" and the
// number of the fault behind the question. "+2" behind them for two graded fields that the order does not reach.
std::string shown(const std::vector<VersionKey>& versions) {
  std::string text;
  for (const VersionKey& version : versions) {
    text += (text.empty() ? "" : " | ") + to_utf8(version.label) + ":";
    for (const KeyPlace& place : version.places) {
      if (!place.graded && place.on_sheet()) continue;
      text += " " + std::to_string(place.field) + "=" + std::to_string(place.question);
      if (!place.on_sheet()) text += "?" + std::to_string(static_cast<int>(place.fault));
      text += " " + to_utf8(place.key) + " {";
      for (const std::int32_t answer : place.answers) text += std::to_string(answer);
      text += "}";
    }
    if (version.missing > 0) text += " +" + std::to_string(version.missing);
  }
  return text;
}

struct KeyCase {
  const char* what;
  const char* document;
  const char* keys;
};

const KeyCase key_cases[] = {
    {"nothing", "", ":"},
    {"one version", "-AB *ABCD=2 *FGHJ=(1,3)", ": 2=2 B {2} 3=3 (F,H) {13}"},
    {"the document's own key as it stands", "*AB=2:(B) *AB=(2,1):(A,B)", ": 1=1 (B) {2} 2=2 (A,B) {21}"},
    {"odd and even letters", "-AB *ABCD=2 *FGHJ=(1,3) *ABCD=4 | A:1,2,3,4 B:1,3,2,4 C:1,4,3,2",
     "A: 2=2 B {2} 3=3 (F,H) {13} 4=4 D {4} | B: 2=3 (A,C) {13} 3=2 G {2} 4=4 D {4} | "
     "C: 2=4 D {4} 3=3 (F,H) {13} 4=2 B {2}"},
    {"a field with fewer choices or an empty label", "*ABCD=(2,4) *FGH=1 *AB.D=3 | A:1,2,3 B:2,1,3 C:3,2,1",
     "A: 1=1 (B,D) {24} 2=2 F {1} 3=3?1 [3] {3} | B: 1=2 A {1} 2=1?1 (G,[4]) {24} 3=3?1 [3] {3} | "
     "C: 1=3 C {3} 2=2 F {1} 3=1 (B,D) {24}"},
    {"no correct answer", "*AB=:  *AB *AB=(): *AB=():() | A:2,1,3,4", "A: 1=2  {} 2=1  {} 3=3  {} 4=4  {}"},
    {"no labels", "*=2:B *=1:A | A:1,2 B:2,1", "A: 1=1 B {2} 2=2 A {1} | B: 1=2?1 [1] {1} 2=1?1 [2] {2}"},
    {"label key alone", "*ABC=:(A,C) *FGH=:H | A:1,2 B:2,1",
     "A: 1=1 (A,C) {13} 2=2 H {3} | B: 1=2 C {3} 2=1 (F,H) {13}"},
    {"numeric key alone", "*ABC=3: *FGH=2: | A:1,2 B:2,1", "A: 1=1 C {3} 2=2 G {2} | B: 1=2 B {2} 2=1 H {3}"},
    {"numbers that are none", "*ABC=x:B *ABC=0:Z *ABC=99999999999:(A,Z)", ": 1=1 B {2} 2=2?4 Z {} 3=3?4 (A,Z) {}"},
    {"keys that disagree", "*ABC=1:B *FGH=2 | A:1,2 B:2,1", "A: 1=1?5 B {1} 2=2 G {2} | B: 1=2 B {2} 2=1?5 F {1}"},
    {"an order that names what is not there", "*AB=1 *FG=2 | A:1,2 B:3,0 C:-1,2",
     "A: 1=1 A {1} 2=2 G {2} | B: 1=0?2  {} 2=0?2  {} | C: 1=0?2  {} 2=2 G {2}"},
    {"an order that ends early or late", "*AB=1 -XY *FG=2 *FG=1 | A:1 B:1,2,3,4,5 C:2,1,3",
     "A: 1=1 A {1} +2 | B: 1=1 A {1} 3=3 G {2} 4=4 F {1} | C: 1=2?3  {} 2=1?3  {} 3=3 G {2} +1"},
    {"a label that stands twice or holds a comma", "*AAB=1 *AAB=3 *A..B=4 *AAB=:A *A,B=2",
     ": 1=1?6 A {1} 2=2 B {3} 3=3 B {4} 4=4?6 A {} 5=5?6 , {2}"},
    {"such a label at the field of a version", "*AB=1 *FF=(1,2) | A:1,2 B:2,1",
     "A: 1=1 A {1} 2=2?6 (F,F) {12} | B: 1=2 (A,B) {12} 2=1?6 F {1}"},
    {"a question twice, or where none is graded", "*AB=1 *FG=2 -XY | A:1,1,3 B:3,2,1",
     "A: 1=1?3 A {1} 2=1?3 F {1} | B: 1=3?3  {} 2=2 G {2} 3=1?3  {}"},
};

TEST(Report, KeysAreAsTheSheetOfEachVersionShowsThem) {
  for (const KeyCase& row : key_cases) {
    EXPECT_EQ(shown(document_keys(*document_of(row.document)).versions), row.keys) << row.what;
  }
}

TEST(Report, OrdersAreReadWhereEachHasAnIdentifier) {
  const auto document = document_of("*AB=1 *FG=2 | A:1,2 B:2,1");
  document->versions().version_answers().Add(u"C");
  const DocumentKeys keys = document_keys(*document);
  EXPECT_EQ(shown(keys.versions), ": 1=1 A {1} 2=2 G {2}");
  ASSERT_EQ(keys.faults.size(), 1U);
  EXPECT_TRUE(keys.faults[0].starts_with(u"The document has 2 orders of versions and 3 version identifiers:"));
}

TEST(Report, VersionsThatNoSheetTellsApartAreAFault) {
  for (const char* alike : {"*AB=1 | A:1 a:1", "*AB=1 | A:1 B:1 A:1"}) {
    const auto faults = document_keys(*document_of(alike)).faults;
    ASSERT_EQ(faults.size(), 1U) << alike;
    EXPECT_TRUE(faults[0].starts_with(u"Two versions bear the same identifier"));
  }
  EXPECT_TRUE(document_keys(*document_of("*AB=1 | A:1 B:1")).faults.empty());
  EXPECT_TRUE(document_keys(*document_of("*AB=1")).faults.empty());
}

// A key of labels alone that can be read in two ways, and one that cannot.
TEST(Report, AKeyThatIsAlsoALabelIsDoubtful) {
  const auto document = document_of("*AB=:A,B *AB=(1,2):(A,B) *AB=:(A,B)");
  for (const std::int32_t n : {1, 2}) document->Questions()->Item(n)->ChoiceLabels()->Add(u"A,B");
  EXPECT_EQ(shown(document_keys(*document).versions), ": 1=1?6 A,B {} 2=2?6 (A,B) {12} 3=3 (A,B) {12}");
}

struct TextRow {
  const char16_t* text;
  const char* on_page;
};

const TextRow text_rows[] = {
    {u"a < b & c > \"d\" 'e' ]]>", "a &lt; b &amp; c &gt; &quot;d&quot; &#39;e&#39; ]]&gt;"},
    {u"one\r\ntwo\rthree\n\nfour\tfive", "one\ntwo\nthree\n\nfour\tfive"},
    {u"\x2028\x2029", "\n\n"},
    {u"\x01\x1B\x7F\x85\x9F", "\u2401\u241B\u2421[U+0085][U+009F]"},
    {u"a\x202E\x2066z\x2069", "a<small>[U+202E]</small><small>[U+2066]</small>z<small>[U+2069]</small>"},
    {u"\x200E\x200F\x061C\x200C\x200D\xFE0F\xA0\xE9\xFFFD", "\u200E\u200F\u061C\u200C\u200D\uFE0F\u00A0\u00E9\uFFFD"},
    {u"\xAD\x200B\x2060\x180E\xFEFF\xFFFE\xFFFF",
     "<small>[U+00AD]</small><small>[U+200B]</small><small>[U+2060]</small><small>[U+180E]</small>"
     "<small>[U+FEFF]</small><small>[U+FFFE]</small><small>[U+FFFF]</small>"},
    {u"\xD83D\xDE00<\xD83D", "\U0001F600&lt;\uFFFD"},
};

TEST(Report, TextsOfFilesAreTextOnThePage) {
  for (const TextRow& row : text_rows) {
    EXPECT_EQ(HtmlText().text(row.text).str(), row.on_page);
    std::string in_attribute = row.on_page;
    for (const std::string tag : {"<small>", "</small>"}) {
      for (std::size_t at; (at = in_attribute.find(tag)) != std::string::npos;) in_attribute.erase(at, tag.size());
    }
    EXPECT_EQ(HtmlText().attribute(row.text).str(), in_attribute);
  }
  EXPECT_EQ(HtmlText().text(String(u"\0", 1)).str(), "\u2400");
}

// What is on the page from its heading on, for a person: a line for each line of the page that shows anything, without markup,
// filled bubbles in brackets.
std::string seen(const Report& report) {
  const std::string page = report.to_html();
  std::string text;
  std::string filled;
  for (std::size_t at = page.find("<body"); at < page.size(); ++at) {
    if (page[at] != '<') {
      if (page[at] != '\n' || text.empty() || text.back() != '\n') text += page[at];
      continue;
    }
    const std::size_t end = page.find('>', at);
    const std::string tag = page.substr(at, end - at + 1);
    at = end;
    if (tag == "<bdi class=\"filled\">") {
      text += '[';
      filled = "]";
    } else if (tag == "</bdi>" || tag == "</td>" || tag == "</th>" || tag == "</li>" || tag == "</dt>") {
      text += std::exchange(filled, "") + ' ';
    }
  }
  static const std::regex blanks(" +"), breaks(" ?\n[ \n]*");
  return std::regex_replace(std::regex_replace(text, blanks, " "), breaks, "\n");
}

TEST(Report, PageOfASmallMerge) {
  Merging m(
      "V:AB N:- Q1:*ABCDE Q2:*ABCDE | X#7:-,- X#7:-,-",
      {test_of({{u"a", mc, 2, {2}, {u"Add"}}, {u"b", mc, 3, {1, 3}, {u"Add", u"Carry"}}, {u"s", subjective, 0, {}}}),
       test_of({{u"b", mc, 3, {1, 3}}, {u"a", mc, 2, {2}}, {u"s", subjective, 0, {}}}, u"B")});
  const auto first = m.merge->Tests->Item(1);
  first->MultipleChoiceEvenScale = strings_of(u"FGHJ");
  first->Questions->Item(3)->SubjectivePoints = 2.5F;
  first->Sequences->AddDefault(first->Questions, u"A");
  ASSERT_TRUE(first->AddSequence(m.merge->Tests->Item(2)));
  first->add_left_out({LeftOut::What::Removed, 4, u"17", HEDROTestQuestionTypeEssay, {}});
  first->add_left_out({LeftOut::What::NotCarried, 2, u"b", mc, u"equation"});
  m.merge->SequenceQuestion = 1;
  ASSERT_TRUE(m.merge->Merge());

  const auto report = make<Report>();
  report->Document = m.merge->WENKTD;
  report->Form = m.merge->TemplateOut;
  report->Title = u"Sums";
  report->AddTest(first);
  report->AddTest(m.merge->Tests->Item(2));
  report->AddMessage(u"Box\r\nText");
  EXPECT_EQ(seen(*report), R"(
Sums
Answer sheet and keys
2 graded questions
1 subjective question
4 fields not graded
2 versions
2 objectives
2 pages
To look at first
Answer sheet
Key A
Key B
Questions
Objectives
Left out
To look at first
Questions removed: 1. See “Left out” below.
Pieces of questions not carried: 1. See “Left out” below.
Messages
Box
Text
Answer sheet
Filled bubbles are the key of version A . Fields with a broken line are not graded.
Page 1
V A B not graded
N no choices not graded
Q1 A [B] C D
Q2 [F] G [H] J
Page 2
X
X no choices not graded
X no choices not graded
X goes on here
no choices
no choices
Subjective1 2.5 points
Sums
Key of version A
Key of 2 graded fields
Field Key
Q1 B
Q2 (F,H)
Sums
Key of version B
Key of 2 graded fields, with the question of the first version that stands at each
Field Key In A
Q1 (A,C) Q2
Q2 G Q1
Questions
Q1
? a
A answer
[B] answer correct
Key B
Points 1 correct, 0 incorrect, 0 without a response
ID a
Type multiple choice
Objectives Add
Place A : Q1 , B : Q2
Q2
? b
[F] answer correct
G answer
[H] answer correct
Key (F,H)
Points 1 correct, 0 incorrect, 0 without a response
ID b
Type multiple choice
Objectives Add Carry
Place A : Q2 , B : Q1
Subjective1
? s
Points 2.5 at most, given by hand
ID s
Type subjective
Objectives
Objectives and the questions that test them
Objective Questions
Add Q1 , Q2
Carry Q2
Left out
Test 1, version A
Questions removed
Number in the file ID Type
4 17 essay
Not carried
Number in the file ID What
2 b equation
Test 2, version B
Nothing is known to be left out.
)");

  report->Form = m.merge->TemplateIn;
  const std::string of_another_form = seen(*report);
  EXPECT_NE(of_another_form.find("The form is not the one that was merged with the document: the form has 6 fields and "
                                 "the document 7. The answer sheet below is drawn from the document alone."),
            std::string::npos);
  EXPECT_EQ(of_another_form.find("Page 1"), std::string::npos);
}

struct PageRow {
  const char* document;
  std::vector<const char*> seen;
};

const PageRow page_rows[] = {
    // The first version is a mixed one.
    {"*AB=2 *FG=1 | A:2,1 B:1,2", {"Field 1\nA [B]\nKey B\n", "Field 2\n[F] G\nKey F\n"}},
    {"*AB=():() *AB=1",
     {"first\nField 1 : no answer is correct.\nAnswer", "\nField 1 no answer is correct\nField 2 A\n",
      "\nA B\nKey no answer is correct\n"}},
    {"*AB=1 *AB=2 -X *AB=1 | A:1,2,3,4 B:2 C: D:1,1,3,4",
     {"\nVersion B : the order of the version names no question for 2 graded fields.\nVersion C : the order of the "
      "version names no question for 3 graded fields.\nVersion D",
      "\nthe order of the version names no question for 2 graded fields\nKey of 1 graded field,",
      "\nPlace A : Field 1 , D : Field 1 , D : Field 2 , none in 2 versions\n"}},
};

TEST(Report, PageOfADocumentThatIsNotAsAMergeWritesIt) {
  for (const PageRow& row : page_rows) {
    const auto report = make<Report>();
    report->Document = document_of(row.document);
    for (const char* piece : row.seen)
      EXPECT_NE(seen(*report).find(piece), std::string::npos) << piece << seen(*report);
  }
}

// Names in a sentence are set apart from it, whichever way they are written, and the title holds no elements.
TEST(Report, NamesAreSetApart) {
  const auto document = document_of("*AB= *AB=1 | \u05D0:1,2 W:1,2");
  document->SetDescription(u"a\u202E");
  const auto report = make<Report>();
  report->Document = document;
  report->AddTest(make<clsHEDROTest>());
  const std::string page = report->to_html();
  for (const char* piece : {"<title>a[U+202E] –", "<h1><bdi>a<small>[U+202E]</small></bdi>",
                            "<li>Version <bdi>\u05D0</bdi>: <bdi>Field 1</bdi>: no answer is correct.</li>",
                            "<li>The document has 2 versions, but 1 test was merged"}) {
    EXPECT_NE(page.find(piece), std::string::npos) << piece;
  }
  document->versions().version_answers().Add(u"X");
  EXPECT_NE(seen(*report).find("has 2 orders of versions and 3 version identifiers"), std::string::npos);
}

// One question, whose every text would do harm as markup.
TEST(Report, NoTextIsMarkup) {
  const String harm = u"\"><b id='harm'>&";
  auto test = test_of({{u"a", mc, 2, {2}, {harm.c_str()}}}, harm);
  const auto question = test->Questions->Item(1);
  question->ID = question->QuestionText = question->Topic = question->Difficulty = question->Reference = harm;
  question->Keywords = question->Notes = question->Miscellaneous = test->Title = harm;
  question->Answers->SetItem(1, harm);
  test->MultipleChoiceOddScale->SetItem(1, harm);
  test->add_left_out({LeftOut::What::NotCarried, 1, harm, mc, harm});
  Merging m("V:AB Q1:*ABC,*DEF", {test});
  for (const auto& region : m.form->pages().all().front()->regions().all()) region->SetName(harm);
  ASSERT_TRUE(m.merge->Merge());
  m.document().versions().version_answers().Add(harm);
  const auto report = make<Report>();
  report->Document = m.merge->WENKTD;
  report->Form = m.merge->TemplateOut;
  report->AddTest(test);
  report->AddMessage(harm);
  const std::string page = report->to_html();
  EXPECT_EQ(page.find("id='harm'"), std::string::npos);
  EXPECT_EQ(page.find("<b "), std::string::npos);
  const char* const sections[] = {"<title",        "<header",    "<nav",           "id=\"look-first",
                                  "id=\"sheet",    "id=\"key-1", "id=\"questions", "id=\"objectives",
                                  "id=\"left-out", "</main"};
  for (std::size_t i = 0; i + 1 < std::size(sections); ++i) {
    const std::size_t start = page.find(sections[i]);
    const std::string section = page.substr(start, page.find(sections[i + 1], start) - start);
    EXPECT_NE(section.find("&quot;&gt;&lt;b id=&#39;harm&#39;&gt;&amp;"), std::string::npos) << section;
  }
}

TEST(Report, ObjectsOfAHostGiveTheSamePage) {
  struct Listener : CallListener {
    void called(std::string_view, std::string_view member) override {
      if (member == fails) throw Failure(1234, u"of the host");
    }
    std::string_view fails = "";
  } listener;
  ForwardingHost host(listener);
  Merging m("V:AB Q1:*ABCD,*AB | Q2:*ABCDE", {test_of({{u"a", mc, 4, {2}, {u"Add"}}, {u"b", tf, 2}})});
  m.merge->TemplateIn = host.wrap(m.form);
  ASSERT_TRUE(m.merge->Merge());
  const auto report = make<Report>();
  report->Document = m.merge->WENKTD;
  report->Form = m.merge->TemplateOut;
  const std::string page = report->to_html();
  for (const char* member : {"Questions", "QuestionText", "AsArray", "QuestionNames", "VersionMode"}) {
    listener.fails = member;
    EXPECT_EQ(failure_of([&] { report->to_html(); }), 1234) << member;
  }
  listener.fails = "";
  report->Document = unwrapped(report->Document);
  report->Form = unwrapped(report->Form);
  EXPECT_EQ(report->to_html(), page);
}

// At each call of a host in turn. The page is made of what there was at first, or it is a failure.
TEST(Report, AHostCountsAnewOrLetsGo) {
  struct Listener : CallListener {
    void called(std::string_view, std::string_view member) override {
      counts = member.ends_with("Count");
      if (++calls == at && !other) report->Document = nullptr, report->Form = nullptr;
    }
    void answers(Variant& answer) override {
      if (counts && calls == at && other) answer = *other;
    }
    Ref<Report> report = make<Report>();
    bool counts = false;
    std::int32_t calls = 0, at = 0;
    std::optional<std::int32_t> other;  // else it lets go
  } listener;
  ForwardingHost host(listener);
  Merging m("V:AB Q1:*AB,*AB", {test_of({{u"a", mc, 2, {2}, {u"Add"}}, {u"b", tf, 2}})});
  ASSERT_TRUE(m.merge->Merge());
  const auto page = [&] {
    listener.report->Document = host.wrap(unwrapped(m.merge->WENKTD));
    listener.report->Form = host.wrap(unwrapped(m.merge->TemplateOut));
    listener.calls = 0;
    return failure_of([&] { listener.report->to_html(); });
  };
  EXPECT_EQ(page(), 0);
  ASSERT_GT(listener.calls, 100);
  for (listener.at = listener.calls; listener.at > 0; --listener.at) {
    for (const std::optional<std::int32_t> other : std::initializer_list<std::optional<std::int32_t>>{{}, 0, 2, 4}) {
      listener.other = other;
      const std::int32_t failed = page();
      EXPECT_TRUE(failed == 0 || failed == (other ? 9 : 91)) << failed << " at call " << listener.at;
    }
  }
}

// More than `QuestionCount` of the region and of the form tell.
TEST(Report, AFormOfAnySizeHasAPage) {
  constexpr std::int32_t count = 32'768;
  const auto document = make<DataDocument>();
  const auto form = make<FormTemplate>();
  const auto region = form->pages().add()->regions().add();
  region->SetName(u"Region");
  for (std::int32_t i = 1; i <= count; ++i) {
    document->questions().add();
    region->questions().add()->SetName(i == count ? u"Last" : u"");
  }
  const auto report = make<Report>();
  report->Document = document;
  report->Form = form;
  const std::string page = report->to_html();
  EXPECT_NE(page.find("data-field=\"32767\"><bdi class=\"name\">Region</bdi>"), std::string::npos);
  EXPECT_NE(page.find("data-field=\"32768\"><bdi class=\"name\">Last</bdi>"), std::string::npos);
  EXPECT_EQ(page.find("The form is not"), std::string::npos);
}

TEST(Report, AKeyPrintsAsLargeAsOnePageTakes) {
  const auto layout = [](std::size_t rows, KeyRow row) { return key_layout(std::vector<KeyRow>(rows, row)); };
  const KeyLayout few = layout(20, {3, 1, 3, 0}), many = layout(1'000, {5, 7, 5, 0});
  EXPECT_TRUE(few.fits && few.columns == 1 && many.fits && many.columns > few.columns && many.points < few.points);
  EXPECT_TRUE(many.parts[0] > 5 && layout(1'000, {5, 1, 5, 0}).parts[1] >= 4);  // a letter does not touch the next name
  const KeyLayout remarked = layout(60, {4, 1, 4, 70});
  EXPECT_TRUE(remarked.fits && remarked.points >= 5 && remarked.parts[1] > 4 * remarked.parts[0]);
  EXPECT_FALSE(layout(10'000, {5, 1, 0, 0}).fits || layout(20, {3, 1'000'000, 0, 0}).fits);
}

}  // namespace
}  // namespace hedro34::testing
