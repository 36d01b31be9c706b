// What a person looks at: the keys of each version as the sheet shows them, and the page.
#include <gtest/gtest.h>

#include <sstream>

#include "hedro34/documents/data_document.h"
#include "hedro34/report/version_keys.h"
#include "tests/support.h"

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
// number of the fault behind the question.
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
  }
  return text;
}

struct KeyRow {
  const char* what;
  const char* document;
  const char* keys;
};

const KeyRow key_rows[] = {
    {"nothing", "", ":"},
    {"one version", "-AB *ABCD=2 *FGHJ=(1,3)", ": 2=2 B {2} 3=3 (F,H) {13}"},
    {"the document's own key as it stands", "*AB=2:(B) *AB=(2,1):(A,B)", ": 1=1 (B) {2} 2=2 (A,B) {21}"},
    {"odd and even letters", "-AB *ABCD=2 *FGHJ=(1,3) *ABCD=4 | A:1,2,3,4 B:1,3,2,4 C:1,4,3,2",
     "A: 2=2 B {2} 3=3 (F,H) {13} 4=4 D {4} | B: 2=3 (A,C) {13} 3=2 G {2} 4=4 D {4} | "
     "C: 2=4 D {4} 3=3 (F,H) {13} 4=2 B {2}"},
    {"a field with fewer choices or an empty label", "*ABCD=(2,4) *FGH=1 *AB.D=3 | A:1,2,3 B:2,1,3 C:3,2,1",
     "A: 1=1 (B,D) {24} 2=2 F {1} 3=3?1 [3] {3} | B: 1=2 A {1} 2=1?1 (G,[4]) {24} 3=3?1 [3] {3} | "
     "C: 1=3 C {3} 2=2 F {1} 3=1 (B,D) {24}"},
    {"no correct answer", "*AB=:  *AB | A:2,1", "A: 1=2  {} 2=1  {}"},
    {"no labels", "*=2:B *=1:A | A:1,2 B:2,1", "A: 1=1 B {2} 2=2 A {1} | B: 1=2?1 [1] {1} 2=1?1 [2] {2}"},
    {"label key alone", "*ABC=:(A,C) *FGH=:H | A:1,2 B:2,1",
     "A: 1=1 (A,C) {13} 2=2 H {3} | B: 1=2 C {3} 2=1 (F,H) {13}"},
    {"numeric key alone", "*ABC=3: *FGH=2: | A:1,2 B:2,1", "A: 1=1 C {3} 2=2 G {2} | B: 1=2 B {2} 2=1 H {3}"},
    {"numbers that are none", "*ABC=x:B *ABC=0:Z *ABC=99999999999:(A,Z)", ": 1=1 B {2} 2=2?4 Z {} 3=3?4 (A,Z) {}"},
    {"keys that disagree", "*ABC=1:B *FGH=2 | A:1,2 B:2,1", "A: 1=1?5 B {1} 2=2 G {2} | B: 1=2 B {2} 2=1?5 F {1}"},
    {"an order that names what is not there", "*AB=1 *FG=2 | A:1,2 B:3,0 C:-1,2",
     "A: 1=1 A {1} 2=2 G {2} | B: 1=0?2  {} 2=0?2  {} | C: 1=0?2  {} 2=2 G {2}"},
    {"an order that ends early or late", "*AB=1 -XY *FG=2 | A:1 B:1,2,3,4",
     "A: 1=1 A {1} 3=0?2  {} | B: 1=1 A {1} 3=3 G {2}"},
    {"a question twice, or where none is graded", "*AB=1 *FG=2 -XY | A:1,1,3 B:3,2,1",
     "A: 1=1?3 A {1} 2=1?3 F {1} | B: 1=3?3  {} 2=2 G {2} 3=1?3  {}"},
};

TEST(Report, KeysAreAsTheSheetOfEachVersionShowsThem) {
  for (const KeyRow& row : key_rows) {
    EXPECT_EQ(shown(version_keys(*document_of(row.document))), row.keys) << row.what;
  }
}

TEST(Report, OrdersAreReadWhereEachHasAnIdentifier) {
  const auto document = document_of("*AB=1 *FG=2 | A:1,2 B:2,1");
  document->versions().version_answers().Add(u"C");
  EXPECT_EQ(shown(version_keys(*document)), ": 1=1 A {1} 2=2 G {2}");
}

}  // namespace
}  // namespace hedro34::testing
