#include "fuzz/support/merged.h"

#include <set>

#include "hedro34/report/Report.h"
#include "hedro34/report/version_keys.h"

namespace hedro34::fuzz {
namespace {

using Numbers = std::vector<std::int32_t>;

Numbers correct_of(const clsHEDROTestQuestion& question) {
  Numbers numbers;
  const std::int32_t count = question.CorrectAnswers->Count();
  for (std::int16_t i = 1; i <= count; ++i) numbers.push_back(question.CorrectAnswers->Item(i));
  return numbers;
}

Numbers sorted(Numbers numbers) {
  std::sort(numbers.begin(), numbers.end());
  return numbers;
}

// "(1,3)" for 1 and 3, "2" for 2 alone.
String numeric_key(const Numbers& numbers) {
  String key;
  for (const std::int32_t number : numbers) key += (key.empty() ? u"" : u",") + decimal(number);
  return numbers.size() > 1 ? u"(" + key + u")" : key;
}

template <class List>
std::vector<String> texts_of(const List& list) {
  return list->AsArray().elements();
}

// Whether each label of the question can be told from the others in a key, and each answer has one.
bool is_plain(DataQuestion& question, const Numbers& correct) {
  std::set<String> seen;
  for (const String& label : texts_of(question.ChoiceLabels())) {
    if (label.empty() || label.size() > 50 || label.find_first_of(u",()[] \t") != String::npos) return false;
    if (!seen.insert(label).second) return false;
  }
  return std::all_of(correct.begin(), correct.end(),
                     [&](auto number) { return number >= 1 && static_cast<std::size_t>(number) <= seen.size(); });
}

std::set<String> objectives_of(const clsHEDROTestQuestion& question) {
  std::set<String> names;
  for (const String& name : texts_of(question.LearningObjectives)) names.insert(upper(name));
  return names;
}

std::set<String> flagged(DataDocument& document, DataQuestion& question) {
  std::set<String> names;
  const auto& flags = ref_cast<DataObjectiveFlags>(question.ObjectiveFlags())->all();
  expect(flags.size() <= document.objectives().all().size(), "a flag belongs to an objective");
  for (std::size_t i = 0; i < flags.size(); ++i) {
    if (flags[i]) names.insert(upper(document.objectives().all()[i]->name()));
  }
  return names;
}

void check_texts(DataQuestion& question, const clsHEDROTestQuestion& asked) {
  expect(question.QuestionText() == asked.QuestionText.str() && question.Topic() == asked.Topic.str() &&
             question.Notes() == asked.Notes.str() && question.Keywords() == asked.Keywords.str() &&
             question.Difficulty() == asked.Difficulty.str() && question.Reference() == asked.Reference.str() &&
             question.Miscellaneous() == asked.Miscellaneous.str(),
         "a question of the document has the texts of its question");
}

// Visited fields with the kinds of their regions, as the page and the regions have them.
struct Field {
  Ref<FormQuestion> field;
  bool has_choices;
};

std::vector<Field> fields_of(FormTemplate& form) {
  std::vector<Field> fields;
  std::int16_t previous = 0;
  for (const auto& page : form.pages().all()) {
    for (const auto& region : page->regions().all()) {
      const std::int16_t group = region->GroupNumber();
      const std::int32_t response = region->ResponseKind();
      const bool choices = region->RegionKind() == 1 && (response == 1 || response == 4 || response == 6);
      if (group == 0 || group != previous) {
        for (const auto& field : region->questions().all()) fields.push_back({field, choices});
      }
      previous = group;
    }
  }
  return fields;
}

// The field shows the choices of the question of the document, and none behind them.
void check_choices(const Field& place, DataQuestion& question) {
  if (!place.has_choices)
    return expect(question.ChoiceLabels()->Count() == 0, "no choices are shown outside of choices");
  const auto shown = texts_of(question.ChoiceLabels());
  const auto labels = place.field->ChoiceLabels()->AsArray(1).elements();
  expect(labels.size() >= shown.size(), "the field has room for the choices");
  for (std::size_t i = 0; i < labels.size(); ++i) {
    expect(labels[i] == (i < shown.size() ? shown[i] : String()), "the field shows the question's choices");
  }
}

void check_versions(clsHEDRO& merge, const std::vector<bool>& plain) {
  DataDocument& document = document_of(merge);
  const auto keys = document_keys(document);
  const bool several = merge.Tests->Count() > 1;
  expect(keys.versions.size() == static_cast<std::size_t>(merge.Tests->Count()), "there is a key for each version");
  for (std::size_t v = 0; v < keys.versions.size(); ++v) {
    const auto version = merge.Tests->Item(static_cast<std::int32_t>(v + 1));
    if (several) expect(keys.versions[v].label == version->Version.str(), "a version's key bears its label");
    std::int32_t rank = 0;
    for (const KeyPlace& place : keys.versions[v].places) {
      if (!place.graded) continue;
      const auto correct = correct_of(*version->Questions->Item(++rank));
      const bool usual = std::all_of(correct.begin(), correct.end(), [](auto n) { return n >= 1 && n <= 31; });
      if (place.fault == KeyFault::None && usual) {
        expect(sorted(place.answers) == sorted(correct), "the key at a field is that of the version's own question");
      }
      const auto at = [&](std::int32_t position) {
        return static_cast<bool>(plain[static_cast<std::size_t>(position - 1)]);
      };
      if (at(place.field) && place.question == place.field) {
        expect(place.fault == KeyFault::None, "a plain key has no fault");
      }
    }
    expect(keys.versions[v].missing == 0, "no graded field is left without a key");
  }
}

}  // namespace

DataDocument& document_of(clsHEDRO& merge) { return dynamic_cast<DataDocument&>(*merge.WENKTD); }

void check_merged(clsHEDRO& merge) {
  const auto test = merge.Tests->Item(1);
  const auto form = ref_cast<FormTemplate>(merge.TemplateOut);
  DataDocument& document = document_of(merge);
  const std::int32_t subjective = test->Questions->TypeCount(HEDROTestQuestionTypeSubjective);
  const auto fields = fields_of(*form);
  const auto& questions = document.questions().all();
  expect(form->GradedQuestionCount() == test->Questions->Count() - subjective, "each graded question has a field");
  expect(fields.size() == questions.size() && form->QuestionCount() == document.questions().Count() &&
             form->QuestionCount() == merge.TemplateIn->QuestionCount() + subjective,
         "each field has a question of the document");
  std::int32_t number = 0;
  std::vector<bool> plain;
  for (std::size_t i = 0; i < questions.size(); ++i) {
    DataQuestion& question = *questions[i];
    plain.push_back(false);
    if (!question.Subjective()) expect(fields[i].field->Graded() == question.Graded(), "field and question are graded");
    if (!question.Graded() && !question.Subjective()) continue;
    const auto asked = test->Questions->Item(++number);
    check_texts(question, *asked);
    expect(flagged(document, question) == objectives_of(*asked), "a question has its objectives");
    if (question.Subjective()) continue;
    const Numbers correct = correct_of(*asked);
    expect(texts_of(question.NumericAnswerKey()) == std::vector{numeric_key(correct)}, "the key has the answers");
    expect(question.CorrectAnswerCount() == static_cast<std::int32_t>(correct.size()), "the answers are counted");
    check_choices(fields[i], question);
    plain.back() = is_plain(question, correct);
  }
  expect(number == test->Questions->Count(), "each question has its place");
  check_versions(merge, plain);
}

void check_page(clsHEDRO& merge, const std::vector<std::string>& messages) {
  static const std::set<std::string_view> tags = {
      "a",    "bdi",   "body",  "caption", "col",    "colgroup", "dd",    "div",   "dl", "dt",   "h1",
      "h2",   "h3",    "head",  "html",    "header", "li",       "main",  "nav",   "p",  "meta", "section",
      "span", "style", "table", "tbody",   "td",     "th",       "thead", "title", "tr", "ul"};
  static const std::set<std::string_view> empty = {"meta", "col"};
  const auto report = make<Report>();
  report->Document = merge.WENKTD;
  report->Form = merge.TemplateOut;
  for (std::int32_t i = 1; i <= merge.Tests->Count(); ++i) report->AddTest(merge.Tests->Item(i));
  for (const auto& message : messages) report->AddMessage(from_utf8(message));
  const std::string page = report->to_html();
  const std::string_view start = "<!DOCTYPE html>";
  expect(page.starts_with(start), "a page starts as one");
  std::vector<std::string_view> open;
  for (std::size_t at = page.find('<', start.size()); at != std::string::npos; at = page.find('<', at + 1)) {
    const bool closes = page[at + 1] == '/';
    const std::size_t from = at + (closes ? 2 : 1);
    const std::string_view tag = std::string_view(page).substr(from, page.find_first_of(" >\n", from) - from);
    expect(tags.contains(tag), "a page has only its own elements");
    if (closes) {
      expect(!open.empty() && open.back() == tag, "an element ends where it is the inner one");
      open.pop_back();
    } else if (!empty.contains(tag)) {
      open.push_back(tag);
    }
  }
  expect(open.empty(), "all elements end");
}

void check_loaded(clsHEDRO& merge, const clsHEDROTest& test) {
  const auto first = merge.Tests->Item(1);
  expect(test.Questions->Count() == first->Questions->Count(), "as many questions come back");
  std::int32_t number = 0;
  std::int32_t position = 0;
  for (const auto& question : document_of(merge).questions().all()) {
    ++position;
    if (!question->Graded() && !question->Subjective()) continue;
    const auto loaded = test.Questions->Item(++number);
    expect(loaded->ID.str() == decimal(position), "a question comes back under its field's number");
    check_texts(*question, *loaded);
    const Numbers correct = correct_of(*first->Questions->Item(number));
    if (question->Subjective() || !is_plain(*question, correct)) continue;
    expect(correct_of(*loaded) == correct, "the answers come back");
  }
}

void check_same_keys(clsHEDRO& first, clsHEDRO& second) {
  const auto& before = document_of(first).questions().all();
  const auto& after = document_of(second).questions().all();
  expect(before.size() == after.size(), "both documents have the same fields");
  const auto test = first.Tests->Item(1);
  std::int32_t number = 0;
  for (std::size_t i = 0; i < before.size(); ++i) {
    expect(before[i]->Graded() == after[i]->Graded() && before[i]->Name() == after[i]->Name(), "a field is the same");
    if (!before[i]->Graded()) continue;
    if (!is_plain(*before[i], correct_of(*test->Questions->Item(++number)))) continue;
    expect(texts_of(before[i]->NumericAnswerKey()) == texts_of(after[i]->NumericAnswerKey()), "a key is the same");
  }
}

}  // namespace hedro34::fuzz
