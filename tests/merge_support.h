// What the tests of a merge share: short descriptions of forms and tests, forms and documents as lines of text, and one
// merge with a recorder around it.
#pragma once

#include <nlohmann/json.hpp>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "hedro34/documents/data_document.h"
#include "hedro34/documents/form_template.h"
#include "hedro34/merge/clsHEDRO.h"
#include "bench/forwarding_host.h"
#include "tests/support.h"

namespace hedro34::testing {

using Json = nlohmann::ordered_json;

inline constexpr HEDROTestQuestionType tf = HEDROTestQuestionTypeTrueFalse;
inline constexpr HEDROTestQuestionType yn = HEDROTestQuestionTypeYesNo;
inline constexpr HEDROTestQuestionType mc = HEDROTestQuestionTypeMultipleChoice;
inline constexpr HEDROTestQuestionType essay = HEDROTestQuestionTypeEssay;
inline constexpr HEDROTestQuestionType subjective = HEDROTestQuestionTypeSubjective;

inline constexpr const char* invalid_version =
    "box 48 \"Invalid Version Identifier\": An error occured creating multiple versions of the test. The selected "
    "field that contains the version identifier does not match the specified XML files. Operation aborted.";

// A form from a line such as "V:AB Q1#7:*ABC,*- | Q2:*AB". Words are regions, "#" precedes a group number, ":" the
// fields, "*" for a graded one and one letter for each label, "-" for none. "|" starts a page.
inline Ref<FormTemplate> form_of(const std::string& description) {
  auto form = make<FormTemplate>();
  Ref<FormPage> page = form->pages().add();
  std::istringstream words(description);
  for (std::string word; words >> word;) {
    if (word == "|") {
      page = form->pages().add();
      continue;
    }
    const auto colon = word.find(':');
    const std::string head = word.substr(0, colon);
    const auto group = head.find('#');
    const Ref<FormRegion> region = page->regions().add();
    region->SetName(from_utf8(head.substr(0, group)));
    if (group != std::string::npos)
      region->SetGroupNumber(static_cast<std::int16_t>(std::stoi(head.substr(group + 1))));
    std::istringstream fields(word.substr(colon + 1));
    for (std::string letters; std::getline(fields, letters, ',');) {
      const Ref<FormQuestion> field = region->questions().add();
      std::vector<String> labels;
      for (const char letter : letters) {
        if (letter == '*') field->SetGraded(true);
        if (letter != '*' && letter != '-') labels.emplace_back(1, static_cast<char16_t>(letter));
      }
      field->SetChoiceLabels(make<FormChoiceList>(std::move(labels)));
    }
  }
  return form;
}

// Page and region from 0.
inline FormRegion& region_of(FormTemplate& form, std::size_t page, std::size_t region) {
  return *form.pages().all().at(page)->regions().all().at(region);
}

// A question with the text "? " and its ID, and answers that nobody looks at.
struct Asked {
  const char16_t* id;
  HEDROTestQuestionType type = mc;
  int answers = 4;
  std::vector<std::int16_t> correct = {1};
  std::vector<const char16_t*> objectives = {};
};

inline Ref<clsHEDROTest> test_of(const std::vector<Asked>& questions, StringView version = u"A") {
  auto test = make<clsHEDROTest>();
  test->Version = version;
  for (const Asked& asked : questions) {
    auto question = make<clsHEDROTestQuestion>();
    question->ID = asked.id;
    question->QuestionType = asked.type;
    question->QuestionText = String(u"? ") + asked.id;
    for (int i = 0; i < asked.answers; ++i) question->Answers->Add(u"answer");
    for (const std::int16_t number : asked.correct) question->CorrectAnswers->Add(number);
    for (const char16_t* objective : asked.objectives) question->LearningObjectives->Add(objective);
    test->Questions->Add(question);
  }
  return test;
}

inline Ref<clsHEDROTestStrings> strings_of(StringView letters) {
  auto strings = make<clsHEDROTestStrings>();
  for (const char16_t letter : letters) strings->Add(StringView(&letter, 1));
  return strings;
}

// The members of a JSON object that differ from those of a new one.
inline std::string changed(const Json& object, const Json& of_a_new_one) {
  Json result = Json::object();
  for (const auto& [name, value] : object.items()) {
    if (!of_a_new_one.contains(name) || of_a_new_one[name] != value) result[name] = value;
  }
  return result.dump();
}

// A line for each region: the page's number from 1, the region, then its fields.
inline Lines lines_of(FormTemplate& form) {
  static const Json new_region = Json::parse(form_of(":-")->to_json().value())["pages"][0]["regions"][0];
  Lines lines;
  const Json whole = Json::parse(form.to_json().value());
  std::size_t page_number = 0;
  for (const Json& page : whole["pages"]) {
    ++page_number;
    for (Json region : page["regions"]) {
      const Json fields = std::exchange(region["questions"], new_region["questions"]);
      lines.push_back(std::to_string(page_number) + ' ' + changed(region, new_region));
      for (const Json& field : fields) lines.back() += ' ' + changed(field, new_region["questions"][0]);
    }
  }
  return lines;
}

// A line for the document itself, one for each question, one for the versions.
inline Lines lines_of(DataDocument& document) {
  const auto new_document = make<DataDocument>();
  new_document->Questions()->Add(make<DataQuestion>());
  const Json fresh = Json::parse(new_document->to_json().value());
  Json whole = Json::parse(document.to_json().value());
  const Json questions = std::exchange(whole["questions"], fresh["questions"]);
  const Json versions = std::exchange(whole["versions"], fresh["versions"]);
  Lines lines = {changed(whole, fresh)};
  for (const Json& question : questions) lines.push_back(changed(question, fresh["questions"][0]));
  lines.push_back(changed(versions, fresh["versions"]));
  return lines;
}

// One merge object, ready to merge the tests with the form, and all that it shows and reports. `TemplateOut` holds a
// form of one region "old", the document the objective "old", so that it shows whether they were touched.
struct Merging {
  explicit Merging(const std::string& description, const std::vector<Ref<clsHEDROTest>>& tests = {})
      : form(form_of(description)), old_form(form_of("old:AB")) {
    merge->TemplateIn = form;
    merge->TemplateOut = old_form;
    merge->WENKTD->Objectives()->Add(make<DataObjective>(u"old"), u"old");
    for (const auto& test : tests) merge->Tests->Add(test);
  }

  DataDocument& document() { return dynamic_cast<DataDocument&>(*unwrapped(merge->WENKTD)); }
  FormTemplate& form_out() { return dynamic_cast<FormTemplate&>(*unwrapped(merge->TemplateOut)); }

  // How `TemplateOut` differs from the form that went in: "-" before a line of the form, "+" before a line of its own.
  Lines changes() {
    const Lines before = lines_of(*form);
    const Lines after = lines_of(form_out());
    Lines result;
    for (std::size_t i = 0; i < std::max(before.size(), after.size()); ++i) {
      if (i < before.size() && i < after.size() && before[i] == after[i]) continue;
      if (i < before.size()) result.push_back("-" + before[i]);
      if (i < after.size()) result.push_back("+" + after[i]);
    }
    return result;
  }

  // One member of all questions of the document, as a JSON array.
  std::string of_questions(const char* member) {
    Json result = Json::array();
    const Json whole = Json::parse(document().to_json().value());
    for (const Json& question : whole["questions"]) result.push_back(question[member]);
    return result.dump();
  }

  Recorder recorder;
  Ref<FormTemplate> form;
  Ref<FormTemplate> old_form;
  Ref<clsHEDRO> merge = make<clsHEDRO>();
};

}  // namespace hedro34::testing
