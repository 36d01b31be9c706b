#include "hedro34/report/report_data.h"

#include <algorithm>

#include "hedro34/documents/data_document.h"

namespace hedro34 {
namespace {

constexpr std::size_t most_named = 12;  // fields that one notice names

// Where a member of a question that may be empty has its name on the page.
struct Detail {
  const char* name;
  String (WENKtdQuestion::*read)();
};

constexpr Detail details[] = {
    {"Topic", &WENKtdQuestion::Topic},         {"Difficulty", &WENKtdQuestion::Difficulty},
    {"Reference", &WENKtdQuestion::Reference}, {"Keywords", &WENKtdQuestion::Keywords},
    {"Notes", &WENKtdQuestion::Notes},         {"Miscellaneous", &WENKtdQuestion::Miscellaneous},
};

bool is_set(const Variant& flag) { return !flag.is<Null>() && to_boolean(flag); }

std::vector<std::int32_t> objectives_of(WENKtdQuestion& question, std::int32_t count) {
  std::vector<std::int32_t> result;
  const Ref<WENKtdObjectiveFlags> flags = question.ObjectiveFlags();
  if (auto* own = dynamic_cast<DataObjectiveFlags*>(flags.get())) {
    const std::vector<bool>& all = own->all();
    for (std::int32_t j = 1; j <= count && static_cast<std::size_t>(j) <= all.size(); ++j) {
      if (all[static_cast<std::size_t>(j - 1)]) result.push_back(j);
    }
    return result;
  }
  for (std::int32_t j = 1; j <= count; ++j) {
    if (is_set(flags->Item(j)->Value())) result.push_back(j);
  }
  return result;
}

String own_name(WENKtdQuestion& question) {
  auto* own = dynamic_cast<DataQuestion*>(&question);
  return own == nullptr ? String() : own->Name();
}

template <class Count>
String counted(Count count, StringView one, StringView many) {
  return decimal(static_cast<std::int64_t>(count)).append(count == 1 ? one : many);
}

}  // namespace

ReportData::ReportData(WENKtdDocument& document, TIBTemplate* form, const std::vector<Ref<clsHEDROTest>>& of_tests)
    : tests(of_tests), description(document.Description()) {
  DocumentKeys keys = document_keys(document);
  own_keys = std::move(keys.own);
  versions = std::move(keys.versions);
  read_objectives(document);
  read_questions(document);
  if (form != nullptr) read_form(document, *form);
  for (std::size_t i = 0; i < questions.size(); ++i) {
    if (questions[i].name.empty()) questions[i].name = u"Field " + decimal(static_cast<std::int64_t>(i + 1));
  }
  find_asked();
  note_left_out();
  note_versions(keys.faults);
  for (const VersionKey& version : versions) note_keys(version);
}

void ReportData::read_objectives(WENKtdDocument& document) {
  const Ref<WENKtdObjectives> held = document.Objectives();
  const std::int32_t count = held->Count();
  for (std::int32_t j = 1; j <= count; ++j) objectives.push_back(held->Item(j)->Name());
}

void ReportData::read_questions(WENKtdDocument& document) {
  const Ref<WENKtdQuestions> held = document.Questions();
  // As many as there are keys, whatever a host counts now.
  for (std::int32_t n = 1; static_cast<std::size_t>(n) <= own_keys.size(); ++n) {
    const Ref<WENKtdQuestion> source = held->Item(n);
    ReportQuestion& question = questions.emplace_back();
    question.name = own_name(*source);
    question.text = source->QuestionText();
    question.labels = source->ChoiceLabels()->AsArray().elements();
    question.graded = source->Graded();
    question.subjective = source->Subjective();
    question.correct_points = source->CorrectPoints();
    question.incorrect_points = source->IncorrectPoints();
    question.no_response_points = source->NoResponsePoints();
    question.subjective_points = source->SubjectivePoints();
    for (const Detail& detail : details) {
      String value = ((*source).*detail.read)();
      if (!value.empty()) question.details.emplace_back(detail.name, std::move(value));
    }
    if (!objectives.empty()) question.objectives = objectives_of(*source, static_cast<std::int32_t>(objectives.size()));
    graded += question.graded ? 1 : 0;
    subjective += question.subjective && !question.graded ? 1 : 0;
  }
}

void ReportData::read_form(WENKtdDocument& document, TIBTemplate& form) {
  pages = form_pages(form);
  const auto count = static_cast<std::int32_t>(questions.size());
  if (const String difference = form_difference(document, count, pages); !difference.empty()) {
    pages.clear();
    note(u"The form is not the one that was merged with the document: " + difference +
         u". The answer sheet below is drawn from the document alone.");
    return;
  }
  const std::vector<String> names = field_names(form, pages);
  for (std::size_t i = 0; i < std::min(names.size(), questions.size()); ++i) {
    if (questions[i].name.empty()) questions[i].name = names[i];
  }
  for (const ReportPage& page : pages) {
    for (const ReportRegion& region : page.regions) {
      for (const ReportField& field : region.fields) {
        if (field.number == 0) continue;
        // A merge gives the points of a subjective question to its field.
        ReportQuestion& question = questions[static_cast<std::size_t>(field.number - 1)];
        if (question.subjective && question.subjective_points == 0) question.subjective_points = field.correct_points;
      }
    }
  }
}

// The n-th graded question of the document is the n-th one of the first test, and the subjective ones come behind them.
void ReportData::find_asked() {
  if (tests.empty()) return;
  const Ref<clsHEDROTestQuestions> of_test = tests.front()->Questions;
  if (of_test->Count() != graded + subjective) return;
  std::int32_t next_graded = 0;
  std::int32_t next_subjective = graded;
  for (ReportQuestion& question : questions) {
    if (!question.graded && !question.subjective) continue;
    const Ref<clsHEDROTestQuestion> found = of_test->Item(question.graded ? ++next_graded : ++next_subjective);
    if (found->QuestionText != StringView(question.text)) continue;
    question.asked = found;
    if (question.subjective && !question.graded) question.subjective_points = found->SubjectivePoints;
  }
}

void ReportData::note_left_out() {
  std::int64_t removed = 0;
  std::int64_t not_carried = 0;
  for (const auto& test : tests) {
    for (const LeftOut& lost : test->left_out()) ++(lost.what == LeftOut::What::Removed ? removed : not_carried);
  }
  if (removed > 0) note(u"Questions removed: " + decimal(removed) + u". See “Left out” below.");
  if (not_carried > 0) {
    note(u"Pieces of questions not carried: " + decimal(not_carried) + u". See “Left out” below.");
  }
}

void ReportData::note_versions(const std::vector<String>& faults) {
  if (!tests.empty() && tests.size() != versions.size()) {
    note(u"The document has " + counted(versions.size(), u" version", u" versions") + u", but " +
         counted(tests.size(), u" test was", u" tests were") + u" merged: a merge that did not run to its end?");
  }
  for (const String& fault : faults) note(fault);
}

void ReportData::note_keys(const VersionKey& version) {
  const auto begin = [&]() -> Notice& {
    Notice& notice = notices.emplace_back();
    if (!version.label.empty()) notice.say(u"Version ").name(version.label).say(u": ");
    return notice;
  };
  const auto note_places = [&](StringView what, auto is_meant) {
    std::vector<const KeyPlace*> named;
    std::size_t count = 0;
    for (const KeyPlace& place : version.places) {
      if (is_meant(place) && ++count <= most_named) named.push_back(&place);
    }
    if (count == 0) return;
    Notice& notice = begin();
    for (std::size_t i = 0; i < named.size(); ++i) {
      if (i > 0) notice.say(u", ");
      notice.name(question(named[i]->field).name);
    }
    if (count > most_named) notice.say(u" and " + decimal(static_cast<std::int64_t>(count - most_named)) + u" more");
    notice.say(u": " + String(what) + u".");
  };
  for (const KeyFault fault : {KeyFault::NoLabel, KeyFault::NoQuestion, KeyFault::Misplaced, KeyFault::Unreadable,
                               KeyFault::Disagrees, KeyFault::Ambiguous}) {
    note_places(words_of(fault), [&](const KeyPlace& place) { return place.fault == fault; });
  }
  note_places(u"no answer is correct",
              [](const KeyPlace& place) { return place.graded && place.on_sheet() && place.key.empty(); });
  if (version.missing > 0) begin().say(words_on_missing(version.missing) + u".");
}

}  // namespace hedro34
