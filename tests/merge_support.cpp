#include "tests/merge_support.h"

#include <algorithm>
#include <sstream>

namespace hedro34::testing {

Ref<FormTemplate> form_of(const std::string& description) {
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

FormRegion& region_of(FormTemplate& form, std::size_t page, std::size_t region) {
  return *form.pages().all().at(page)->regions().all().at(region);
}

Ref<clsHEDROTest> test_of(const std::vector<Asked>& questions, StringView version) {
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

Ref<clsHEDROTestStrings> strings_of(StringView letters) {
  auto strings = make<clsHEDROTestStrings>();
  for (const char16_t letter : letters) strings->Add(StringView(&letter, 1));
  return strings;
}

std::string changed(const Json& object, const Json& of_a_new_one) {
  Json result = Json::object();
  for (const auto& [name, value] : object.members()) {
    if (!of_a_new_one.contains(name) || of_a_new_one[name] != value) result[name] = value;
  }
  return result.dump();
}

Lines lines_of(FormTemplate& form) {
  static const Json new_region = Json::parse(form_of(":-")->to_json().value())["pages"].at(0)["regions"].at(0);
  Lines lines;
  const Json whole = Json::parse(form.to_json().value());
  std::size_t page_number = 0;
  for (const Json& page : whole["pages"]) {
    ++page_number;
    for (Json region : page["regions"]) {
      const Json fields = std::exchange(region["questions"], new_region["questions"]);
      lines.push_back(std::to_string(page_number) + ' ' + changed(region, new_region));
      for (const Json& field : fields) lines.back() += ' ' + changed(field, new_region["questions"].at(0));
    }
  }
  return lines;
}

Lines lines_of(DataDocument& document) {
  const auto new_document = make<DataDocument>();
  new_document->Questions()->Add(make<DataQuestion>());
  const Json fresh = Json::parse(new_document->to_json().value());
  Json whole = Json::parse(document.to_json().value());
  const Json questions = std::exchange(whole["questions"], fresh["questions"]);
  const Json versions = std::exchange(whole["versions"], fresh["versions"]);
  Lines lines = {changed(whole, fresh)};
  for (const Json& question : questions) lines.push_back(changed(question, fresh["questions"].at(0)));
  lines.push_back(changed(versions, fresh["versions"]));
  return lines;
}

Merging::Merging(const std::string& description, const std::vector<Ref<clsHEDROTest>>& tests)
    : form(form_of(description)), old_form(form_of("old:AB")) {
  merge->TemplateIn = form;
  merge->TemplateOut = old_form;
  merge->WENKTD->Objectives()->Add(make<DataObjective>(u"old"), u"old");
  for (const auto& test : tests) merge->Tests->Add(test);
}

Lines Merging::changes() {
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

std::string Merging::of_questions(const char* member) {
  Json result = Json::array();
  const Json whole = Json::parse(document().to_json().value());
  for (const Json& question : whole["questions"]) result.push_back(question[member]);
  return result.dump();
}

}  // namespace hedro34::testing
