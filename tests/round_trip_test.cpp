// The way round: a test that was merged comes back from the saved document, merges again with the same form, and gives
// the same document but for the members that docs/round-trip.md lists. What differs is written out here per sample.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

#include "hedro34/import/BuildTestFromKTD.h"
#include "tests/merge_support.h"

namespace hedro34::testing {
namespace {

// A merge object for the form, with a document of its own.
Ref<clsHEDRO> merge_with(const Ref<FormTemplate>& form, std::int32_t sequence_question) {
  auto merge = make<clsHEDRO>();
  merge->TemplateIn = form;
  merge->TemplateOut = make<FormTemplate>();
  merge->SequenceQuestion = sequence_question;
  return merge;
}

// Merges, saves the document, loads it as a test and merges that; each place of the second document that has another
// value than in the first, with that value, or without one where the place is gone.
Lines differences(clsHEDRO& first, const Ref<FormTemplate>& form) {
  EXPECT_TRUE(first.Merge());
  auto& document = dynamic_cast<DataDocument&>(*first.WENKTD);
  const Folder folder;
  String path = folder.path("saved.ktd");
  EXPECT_TRUE(document.Save(path));
  std::replace(path.begin(), path.end(), u'/', u'\\');
  const auto loaded = make<clsHEDROTest>();
  EXPECT_TRUE(loaded->LoadKTD(path));
  EXPECT_EQ(loaded->Title.str(), u"saved");

  const auto second = merge_with(form, first.SequenceQuestion);
  second->Tests->Add(loaded);
  EXPECT_TRUE(second->Merge());
  const Json before = Json::parse(document.to_json().value());
  const Json after = Json::parse(dynamic_cast<DataDocument&>(*second->WENKTD).to_json().value());
  Lines lines;
  for (const Json& change : Json::diff(before, after)) {
    lines.push_back(change["path"].text().substr(1));
    if (change.contains("value")) lines.back() += ": " + change["value"].dump();
  }
  return lines;
}

struct Settings {
  int objectives;
  const char16_t* state;
  std::int32_t max_questions;
  std::int32_t sequence_question;
};

struct Sample {
  std::string form;
  std::vector<std::string> tests;
  Settings settings;
  Lines differences;
};

const Sample samples[] = {
    {"examples/biology",
     {"examples/biology"},
     {15, u"CA", 0, 0},
     // Q1, the first one at an odd place, has four labels, Q7 five.
     {R"(questions/11/choiceLabels/4: "")", "questions/14/multiplesAllowed: 0", "questions/15/multiplesAllowed: 0",
      "questions/16/multiplesAllowed: 0"}},
    {"examples/mixed",
     {"examples/mixed"},
     {HEDROTestImportObjectivesLearning, u"", 0, 0},
     {"questions/3/multiplesAllowed: 0", R"(questions/3/choiceLabels/4: "")", "questions/11/multiplesAllowed: 0"}},
    {"examples/versions/unit",
     {"examples/versions/unit-a", "examples/versions/unit-b", "examples/versions/unit-c", "examples/versions/unit-d"},
     {HEDROTestImportObjectivesLearning, u"", 0, 1},
     {"questions/8/multiplesAllowed: 0", "versions/sequenceQuestion: 0", "versions/versionAnswers/3",
      "versions/versionAnswers/2", "versions/versionAnswers/1", "versions/versionAnswers/0", "versions/orders/3",
      "versions/orders/2", "versions/orders/1"}},
    {"tests/whole/plain",
     {"tests/whole/plain"},
     {HEDROTestImportObjectivesNone, u"", 0, 0},
     {"questions/5/multiplesAllowed: 0", R"(questions/5/choiceLabels/4: "")"}},
    {"tests/whole/full",
     {"tests/whole/full"},
     {15, u"WI", 8, 13},
     {"questions/3/multiplesAllowed: 0", R"(questions/3/choiceLabels/4: "")", "questions/3/objectiveFlags/0: false",
      // The next two stand in no choice region, so they have no labels in the document.
      "questions/7/correctAnswerCount: 0", R"(questions/7/answerKey/0: "")", R"(questions/7/numericAnswerKey/0: "")",
      "questions/8/correctAnswerCount: 0", R"(questions/8/answerKey/0: "")", R"(questions/8/numericAnswerKey/0: "")",
      R"(questions/9/choiceLabels/3: "")", R"(questions/9/choiceLabels/4: "")", R"(questions/9/answerKey/0: "")"}},
};

TEST(RoundTrip, GivesTheSameDocumentOfEverySampleAgain) {
  for (const Sample& sample : samples) {
    SCOPED_TRACE(sample.form);
    Recorder recorder;
    const auto form = make<FormTemplate>();
    ASSERT_TRUE(form->Load(source_path(sample.form + ".form.json")));
    const auto merge = merge_with(form, sample.settings.sequence_question);
    for (const std::string& name : sample.tests) {
      const auto test = make<clsHEDROTest>();
      test->ImportObjectives = static_cast<HEDROTestImportObjectives>(sample.settings.objectives);
      test->StateAbbreviation = sample.settings.state;
      EXPECT_TRUE(test->LoadXML(source_path(name + ".xml")));
      merge->Tests->Add(test);
    }
    EXPECT_TRUE(merge->RemoveInvalid(sample.settings.max_questions));
    recorder.take();  // what the samples make the library say is told elsewhere
    const auto first = merge->Tests->Item(1);
    if (sample.tests.size() > 1) first->Sequences->AddDefault(first->Questions, first->Version);
    for (std::int32_t i = 2; i <= merge->Tests->Count(); ++i) EXPECT_TRUE(first->AddSequence(merge->Tests->Item(i)));
    EXPECT_THAT(differences(*merge, form), ::testing::UnorderedElementsAreArray(sample.differences));
    EXPECT_EQ(recorder.lines, Lines());
  }
}

// What no sample has: tests that a host made by itself.
struct SmallRow {
  std::vector<Asked> questions;
  const char16_t* true_false;  // the scale
  const char* form;
  Lines differences;
};

const SmallRow small_rows[] = {
    // Points of subjective questions stand in the form only.
    {{{u"q1", mc, 3, {2}, {u"Area"}},
      {u"q2", tf, 2},
      {u"s1", subjective, 0, {}, {u"Mass", u"Area"}},
      {u"s2", subjective}},
     u"TF",
     "V:AB Q1:*ABC | Q2:*AB S:AB",
     {}},
    // By its labels the last one comes back as multiple choice, with those of the first of these.
    {{{u"q1", mc, 3, {1}}, {u"q2", yn, 2, {1}}, {u"q3", tf, 2, {2}}},
     u"RW",
     "V:AB Q1:*ABC Q2:*ABC Q3:*ABC",
     {R"(questions/3/choiceLabels/0: "A")", R"(questions/3/choiceLabels/1: "B")", R"(questions/3/answerKey/0: "B")"}},
    // Objectives that differ by blanks only.
    {{{u"q", mc, 3, {1}, {u" Area", u"Area"}}},
     u"TF",
     "Q1:*ABC",
     {R"(objectives/1: "Area")", "objectives/2", "questions/0/objectiveFlags/2"}},
};

TEST(RoundTrip, LosesWhatADocumentDoesNotHold) {
  for (const SmallRow& row : small_rows) {
    SCOPED_TRACE(row.form);
    Recorder recorder;
    const auto form = form_of(row.form);
    const auto merge = merge_with(form, 0);
    const auto test = test_of(row.questions);
    test->TrueFalseScale = strings_of(row.true_false);
    merge->Tests->Add(test);
    EXPECT_THAT(differences(*merge, form), ::testing::UnorderedElementsAreArray(row.differences));
    EXPECT_EQ(recorder.lines, Lines());
  }
}

// --- shuffled versions ---

// "(1,3)" for more than one answer, "2" for one.
std::string key_of(const clsHEDROTestQuestion& question) {
  std::string key;
  for (std::int16_t i = 1; i <= question.CorrectAnswers->Count(); ++i) {
    key += (i > 1 ? "," : "") + std::to_string(question.CorrectAnswers->Item(i));
  }
  return question.CorrectAnswers->Count() > 1 ? '(' + key + ')' : key;
}

// Tests of random size, shuffled into versions within their types and merged with random forms: by the orders of the
// document, the key of every version is that of the first test in the order of the version.
class Shuffle {
 public:
  explicit Shuffle(std::uint32_t seed) : dice_(seed) {
    for (const HEDROTestQuestionType type : {mc, tf, yn, subjective}) {
      const std::size_t count = type == subjective ? below(3) : below(9) + (type == mc ? 1 : 0);
      for (std::size_t i = 0; i < count; ++i) add_question(type);
      if (type != subjective) graded_ends_.push_back(questions_.size());
    }
    for (std::size_t n = 0, versions = 2 + below(4); n < versions; ++n) add_version(n);
    merge_->TemplateIn = form_of(form());
    merge_->TemplateOut = make<FormTemplate>();
    merge_->WENKTD = document_;
  }

  void merge_and_compare() {
    Recorder recorder;
    const auto base = merge_->Tests->Item(1);
    const auto versions = static_cast<std::size_t>(merge_->Tests->Count());
    EXPECT_TRUE(merge_->ValidTestVersions());
    EXPECT_TRUE(base->Sequences->AddDefault(base->Questions, base->Version));
    for (std::int32_t n = 2; n <= merge_->Tests->Count(); ++n) EXPECT_TRUE(base->AddSequence(merge_->Tests->Item(n)));
    base->MultipleChoiceOddScale = strings_of(u"ABCDEFGH");
    base->MultipleChoiceEvenScale = strings_of(u"FGHIJKLM");
    EXPECT_TRUE(merge_->Merge());
    const auto loaded = make<clsHEDROTest>();
    EXPECT_TRUE(BuildTestFromKTD(loaded.get(), document_.get()));
    const Json written = Json::parse(document_->to_json().value());
    ASSERT_EQ(written["versions"]["orders"].size(), versions);
    for (std::size_t n = 0; n < versions; ++n) {
      const auto version = merge_->Tests->Item(static_cast<std::int32_t>(n) + 1);
      EXPECT_EQ(written["versions"]["versionAnswers"].at(n), to_utf8(version->Version));
      compare(*version, written["versions"]["orders"].at(n), written["questions"], *loaded);
    }
    EXPECT_EQ(recorder.take(), Lines());
  }

 private:
  std::size_t below(std::size_t count) { return dice_() % count; }

  void add_question(HEDROTestQuestionType type) {
    auto question = make<clsHEDROTestQuestion>();
    question->ID = u"id" + decimal(static_cast<std::int64_t>(questions_.size()));
    question->QuestionText = u"text of " + question->ID.str();
    question->QuestionType = type;
    if (type != subjective) {
      std::vector<std::int16_t> numbers(type == mc ? 2 + below(7) : 2);
      std::iota(numbers.begin(), numbers.end(), std::int16_t{1});
      for (std::size_t i = 0; i < numbers.size(); ++i) question->Answers->Add(u"answer");
      std::shuffle(numbers.begin(), numbers.end(), dice_);
      numbers.resize(type == mc ? 1 + below(numbers.size()) : 1);
      for (const std::int16_t number : numbers) question->CorrectAnswers->Add(number);
    }
    questions_.push_back(question);
  }

  // The first version keeps the order, others shuffle every block of graded questions.
  void add_version(std::size_t number) {
    auto order = questions_;
    auto first = order.begin();
    for (const std::size_t end : graded_ends_) {
      const auto last = order.begin() + static_cast<std::ptrdiff_t>(end);
      if (number > 0) std::shuffle(first, last, dice_);
      first = last;
    }
    const auto test = make<clsHEDROTest>();
    test->Version = String(1, static_cast<char16_t>(u'A' + number));
    for (const auto& question : order) test->Questions->Add(question->Copy());
    merge_->Tests->Add(test);
  }

  // Graded fields for the questions and up to three more, the version field before one of these, others between.
  std::string form() {
    std::string words;
    const std::size_t graded = graded_ends_.back();
    const std::size_t version_place = below(graded);
    for (std::size_t i = 0, all = graded + below(4); i < all; ++i) {
      while (below(4) == 0) words += below(2) == 0 ? "| " : "Other:XYZ ";
      if (i == version_place) {
        words += "V:ABCDE ";
        merge_->SequenceQuestion = static_cast<std::int32_t>(std::count(words.begin(), words.end(), ':'));
      }
      words += "Q:*ABCDEFGH ";
    }
    return words;
  }

  void compare(const clsHEDROTest& version, const Json& order, const Json& questions, const clsHEDROTest& loaded) {
    SCOPED_TRACE("version " + to_utf8(version.Version));
    ASSERT_EQ(order.size(), questions.size());
    const auto sequence = loaded.Sequences->Item(version.Version.str());
    ASSERT_TRUE(sequence);
    std::vector<std::size_t> positions;
    for (const Json& entry : order) positions.push_back(static_cast<std::size_t>(entry.integer()));
    std::int32_t rank = 0;
    std::int32_t place = 0;
    for (std::size_t p = 0; p < positions.size(); ++p) {
      const std::size_t entry = positions[p];
      const Json& question = questions.at(entry - 1);
      const String id = decimal(static_cast<std::int64_t>(entry));
      if (questions.at(p)["graded"] == true) {
        const auto asked = version.Questions->Item(++rank);
        EXPECT_EQ(question["questionText"], to_utf8(asked->QuestionText));
        EXPECT_EQ(question["numericAnswerKey"], Json::array({key_of(*asked)}));
        EXPECT_EQ(key_of(*loaded.Questions->Item(id)), key_of(*asked));
      } else {
        EXPECT_EQ(entry, p + 1);
      }
      if (questions.at(p)["graded"] == true || questions.at(p)["subjective"] == true) {
        EXPECT_EQ(sequence->Order->Item(id), ++place);
      }
    }
    EXPECT_EQ(static_cast<std::size_t>(rank), graded_ends_.back());
    EXPECT_EQ(sequence->Order->Count(), place);
  }

  std::mt19937 dice_;
  std::vector<Ref<clsHEDROTestQuestion>> questions_;
  std::vector<std::size_t> graded_ends_;  // of each type's block
  Ref<DataDocument> document_ = make<DataDocument>();
  Ref<clsHEDRO> merge_ = make<clsHEDRO>();
};

TEST(ShuffledVersions, PermutesTheKey) {
  for (std::uint32_t seed = 1; seed <= 60 && !HasFailure(); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Shuffle(seed).merge_and_compare();
  }
}

}  // namespace
}  // namespace hedro34::testing
