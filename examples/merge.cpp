// Loads a test, merges it with a form, and writes the merged form and the data document.
#include <hedro34/hedro34.h>

#include <iostream>

using namespace hedro34;

// The file, line and column or JSON pointer, and the reason; or `otherwise`, when no file is at fault.
int stop(const char* otherwise) {
  const std::string why = to_line(last_file_error());
  std::cerr << (why.empty() ? otherwise : why) << '\n';
  return 1;
}

int main() {
  auto test = make<clsHEDROTest>();
  test->ImportObjectives = HEDROTestImportObjectivesLearning;
  if (!test->LoadXML(u"examples/biology.xml")) return stop("the file gives no question, or the user chose Cancel");
  auto form = make<FormTemplate>();
  if (!form->Load(u"examples/biology.form.json")) return stop("the form cannot be read");

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
  return saved ? 0 : stop("the results cannot be written");
}
