#include "fuzz/support/merged.h"

#include <algorithm>
#include <set>

#include "hedro34/report/Report.h"
#include "hedro34/report/report_form.h"
#include "hedro34/report/version_keys.h"
#include "hedro34/xml/expat_document.h"

namespace hedro34::fuzz {
namespace {

using Numbers = std::vector<std::int32_t>;
using Texts = std::vector<String>;

Numbers correct_of(const clsHEDROTestQuestion& question) {
  Numbers numbers;
  for (std::int16_t i = 1; i <= question.CorrectAnswers->Count(); ++i) {
    numbers.push_back(question.CorrectAnswers->Item(i));
  }
  return numbers;
}

// "(1,3)" for 1 and 3, "2" for 2 alone.
String numeric_key(const Numbers& numbers) {
  String key;
  for (const std::int32_t number : numbers) key += (key.empty() ? u"" : u",") + decimal(number);
  return numbers.size() > 1 ? u"(" + key + u")" : key;
}

// Whether each label of the question can be told from the others in a key, and each answer has one.
bool is_plain(DataQuestion& question, const Numbers& correct) {
  const Texts labels = question.ChoiceLabels()->AsArray().elements();
  const auto count = static_cast<std::int32_t>(labels.size());
  const auto is_odd = [](const String& label) {
    return label.empty() || label.size() > 50 || label.find_first_of(u",()[] \t") != String::npos;
  };
  return std::ranges::none_of(labels, is_odd) && std::set(labels.begin(), labels.end()).size() == labels.size() &&
         std::ranges::all_of(correct, [&](auto number) { return number >= 1 && number <= count; });
}

void check_texts(DataQuestion& question, const clsHEDROTestQuestion& asked) {
  EXPECT_EQ((Texts{question.QuestionText(), question.Topic(), question.Notes(), question.Keywords(),
                   question.Difficulty(), question.Reference(), question.Miscellaneous()}),
            (Texts{asked.QuestionText, asked.Topic, asked.Notes, asked.Keywords, asked.Difficulty, asked.Reference,
                   asked.Miscellaneous}));
}

void check_objectives(DataDocument& document, DataQuestion& question, const clsHEDROTestQuestion& asked) {
  std::set<String> flagged, expected;
  const auto& flags = ref_cast<DataObjectiveFlags>(question.ObjectiveFlags())->all();
  for (std::size_t i = 0; i < flags.size(); ++i) {
    if (flags[i]) flagged.insert(upper(document.objectives().all().at(i)->name()));
  }
  for (const StringView name : all(asked.LearningObjectives)) expected.insert(upper(name));
  EXPECT_EQ(flagged, expected);
}

// The document has what the form shows.
void check_form(FormTemplate& form, DataDocument& document) {
  const auto pages = form_pages(form);
  EXPECT_EQ(form_difference(document, document.questions().Count(), pages), u"");
  for (std::size_t p = 0; p < pages.size(); ++p) {
    for (std::size_t r = 0; r < pages[p].regions.size(); ++r) {
      const auto region = form.pages().all()[p]->regions().all()[r];
      const std::int32_t response = region->ResponseKind();
      const bool has_choices = region->RegionKind() == 1 && (response == 1 || response == 4 || response == 6);
      for (const ReportField& field : pages[p].regions[r].fields) {
        if (field.number == 0 || !field.graded) continue;
        const bool shows = has_choices && !field.labels.empty() && !field.labels.front().empty();
        const bool has = document.questions().Item(field.number)->ChoiceLabels()->Count() > 0;
        EXPECT_TRUE(has ? has_choices : !shows) << field.number;
      }
    }
  }
}

// In each version a field has the key of the question that stands there in the version's own test.
void check_versions(clsHEDRO& merge, const std::vector<bool>& plain) {
  const auto tests = all(merge.Tests);
  const auto keys = document_keys(*merge.WENKTD).versions;
  ASSERT_EQ(keys.size(), tests.size());
  for (std::size_t v = 0; v < keys.size(); ++v) {
    if (tests.size() > 1) {
      EXPECT_EQ(keys[v].label, tests[v]->Version.str());
    }
    EXPECT_EQ(keys[v].missing, 0);
    std::int32_t rank = 0;
    for (const KeyPlace& place : keys[v].places) {
      if (!place.graded) continue;
      EXPECT_TRUE(place.fault != KeyFault::NoQuestion && place.fault != KeyFault::Misplaced) << place.field;
      auto answers = place.answers, correct = correct_of(*tests[v]->Questions->Item(++rank));
      std::ranges::sort(answers);
      std::ranges::sort(correct);
      const bool usual = correct.empty() || (correct.front() >= 1 && correct.back() <= 31);
      if (usual && place.fault == KeyFault::None) {
        EXPECT_EQ(answers, correct) << place.field;
      }
      if (place.question == place.field && plain[static_cast<std::size_t>(place.field - 1)]) {
        EXPECT_EQ(place.fault, KeyFault::None) << place.field;
      }
    }
  }
}

}  // namespace

void check_merged(clsHEDRO& merge) {
  const auto test = merge.Tests->Item(1);
  const auto form = ref_cast<FormTemplate>(merge.TemplateOut);
  const auto document = ref_cast<DataDocument>(merge.WENKTD);
  const std::int32_t subjective = test->Questions->TypeCount(HEDROTestQuestionTypeSubjective);
  const auto& questions = document->questions().all();
  EXPECT_EQ(form->GradedQuestionCount(), test->Questions->Count() - subjective);
  EXPECT_EQ(form->QuestionCount(), merge.TemplateIn->QuestionCount() + subjective);
  check_form(*form, *document);
  std::int32_t number = 0;
  std::vector<bool> plain(questions.size());
  for (std::size_t i = 0; i < questions.size(); ++i) {
    DataQuestion& question = *questions[i];
    if (!question.Graded() && !question.Subjective()) continue;
    const auto asked = test->Questions->Item(++number);
    check_texts(question, *asked);
    check_objectives(*document, question, *asked);
    if (question.Subjective()) continue;
    const Numbers correct = correct_of(*asked);
    EXPECT_EQ(question.NumericAnswerKey()->AsArray().elements(), Texts{numeric_key(correct)});
    EXPECT_EQ(question.CorrectAnswerCount(), static_cast<std::int32_t>(correct.size()));
    plain[i] = is_plain(question, correct);
  }
  EXPECT_EQ(number, test->Questions->Count()) << "each question has its place";
  check_versions(merge, plain);
}

void check_page(clsHEDRO& merge, const Lines& messages) {
  const auto report = make<Report>();
  report->Document = merge.WENKTD;
  report->Form = merge.TemplateOut;
  for (const auto& test : all(merge.Tests)) report->AddTest(test);
  for (const auto& message : messages) report->AddMessage(from_utf8(message));
  std::string page = report->to_html();
  for (const char* element : {"<meta ", "<col "}) {  // they have no end of their own
    for (std::size_t at = page.find(element); at != std::string::npos; at = page.find(element, at)) {
      at = page.find('>', at);
      page.insert(at, "/");
    }
  }
  EXPECT_TRUE(make<ExpatDocument>()->parse(page)) << to_line(last_file_error());
}

void check_loaded(clsHEDRO& merge, const clsHEDROTest& test) {
  const auto asked = all(merge.Tests->Item(1)->Questions), loaded = all(test.Questions);
  ASSERT_EQ(loaded.size(), asked.size());
  std::size_t number = 0;
  const auto& questions = ref_cast<DataDocument>(merge.WENKTD)->questions().all();
  for (std::size_t i = 0; i < questions.size(); ++i) {
    if (!questions[i]->Graded() && !questions[i]->Subjective()) continue;
    EXPECT_EQ(loaded[number]->ID.str(), decimal(static_cast<std::int64_t>(i + 1))) << "its field's number";
    check_texts(*questions[i], *loaded[number]);
    const Numbers correct = correct_of(*asked[number]);
    if (!questions[i]->Subjective() && is_plain(*questions[i], correct)) {
      EXPECT_EQ(correct_of(*loaded[number]), correct);
    }
    ++number;
  }
}

}  // namespace hedro34::fuzz
