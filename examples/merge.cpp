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

// Prints and counts the failures that the library reports.
struct Errors : Object {
  int count = 0;
  Variant Call(StringView, std::span<Variant> report) override {
    ++count;
    std::cerr << "failure " << to_utf8(to_text(report[0])) << ": " << to_utf8(to_text(report[2])) << '\n';
    return std::int16_t{0};
  }
};

int main() {
  auto errors = make<Errors>();
  set_error_object(errors);
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
  if (!merge->RemoveInvalid() || !merge->Merge()) return 1;  // a message box or a failure has said why
  if (errors->count > 0) return stop("nothing is saved: a question may be missing and the keys behind it moved up");

  for (std::int32_t i = 1; i <= test->Questions->Count(); ++i) {
    const auto question = test->Questions->Item(i);
    std::cout << i << ". " << to_utf8(question->QuestionText) << "  " << to_utf8(test->CorrectAnswersAsString(i))
              << '\n';
  }
  const bool saved =
      ref_cast<FormTemplate>(merge->TemplateOut)->Save(u"biology-merged.form.json") && document->Save(u"biology.ktd");
  return saved ? 0 : stop("the results cannot be written");
}
