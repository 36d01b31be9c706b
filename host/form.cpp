#include "host/form.h"

#include "hedro34/documents/form_template.h"
#include "host/outputs.h"

namespace host {
namespace {

using namespace hedro34;

Ref<FormQuestion> add_field(FormPage& page, const String& name, const std::vector<String>& labels) {
  const auto region = page.regions().add();
  region->SetName(name);
  auto field = region->questions().add();
  field->SetName(name);
  field->SetChoiceLabels(make<FormChoiceList>(labels));
  return field;
}

std::vector<String> letters(std::int32_t count) {
  std::vector<String> result;
  result.reserve(static_cast<std::size_t>(count));
  for (std::int32_t i = 0; i < count; ++i) result.emplace_back(1, static_cast<char16_t>(u'A' + i));
  return result;
}

}  // namespace

void form(const FormCommand& command) {
  const auto created = make<FormTemplate>();
  const std::vector<String> labels = letters(command.choices);
  Ref<FormPage> page;
  for (std::int32_t i = 0; i < command.questions; ++i) {
    if (i % command.per_page == 0) page = created->pages().add();
    if (i == 0 && !command.versions.empty()) add_field(*page, u"Version", command.versions);
    add_field(*page, u"Q" + decimal(i + 1), labels)->SetGraded(true);
  }
  Outputs outputs;
  outputs.add("form", *created, command.out);
  outputs.commit();
}

}  // namespace host
