// Loads a test, merges it with a form, and writes the merged form and the data document.
#include <hedro34/hedro34.h>

#include <iostream>

using namespace hedro34;

int main() {
  auto test = make<clsHEDROTest>();
  test->ImportObjectives = HEDROTestImportObjectivesLearning;
  auto form = make<FormTemplate>();
  if (!test->LoadXML(u"examples/biology.xml") || !form->Load(u"examples/biology.form.json")) {
    std::cerr << to_line(last_file_error()) << '\n';  // file, line and column or JSON pointer, reason
    return 1;
  }

  auto document = make<DataDocument>();
  auto merge = make<clsHEDRO>();
  merge->TemplateIn = form;
  merge->TemplateOut = make<FormTemplate>();
  merge->WENKTD = document;
  merge->Tests->Add(test);
  if (!merge->RemoveInvalid() || !merge->Merge()) return 1;  // a message box has said why

  for (std::int32_t i = 1; i <= test->Questions->Count(); ++i) {
    const auto question = test->Questions->Item(i);
    std::cout << i << ". " << to_utf8(question->QuestionText) << "  " << to_utf8(test->CorrectAnswersAsString(i))
              << '\n';
  }
  const bool saved =
      ref_cast<FormTemplate>(merge->TemplateOut)->Save(u"biology-merged.form.json") && document->Save(u"biology.ktd");
  if (!saved) std::cerr << to_line(last_file_error()) << '\n';
  return saved ? 0 : 1;
}
