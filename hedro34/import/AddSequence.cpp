// Recording of a further version of a test.
#include "hedro34/model/clsHEDROTest.h"
#include "hedro34/platform/message_box.h"
#include "hedro34/platform/platform.h"

namespace hedro34 {
namespace {

bool refuse(StringView title, const String& text) {
  platform().message_box->Show(u"Operation cannot be completed. " + text, box_exclamation, title);
  return false;
}

bool refuse_question(const String& reason, const clsHEDROTestQuestion& question) {
  return refuse(u"Invalid Question", reason + u"\r\n\r\nQuestion Text: " + question.QuestionText.str() +
                                         u"\r\nQuestion ID: " + question.ID.str());
}

// Whether the base has this question of the version, under the same key and among questions of the same type.
bool fits(const clsHEDROTestQuestions& base, const clsHEDROTestQuestion& question, std::int32_t position) {
  const Variant id = question.ID.str();
  if (!base.Exists(id)) {
    return refuse_question(u"The new version of the test contains a question that does not exist.", question);
  }
  const Ref<clsHEDROTestQuestion> original = base.Item(id);
  if (original->CorrectAnswers->GetBitWiseRepresentation() != question.CorrectAnswers->GetBitWiseRepresentation()) {
    return refuse_question(u"Scrambled answer choices are not supported.", question);
  }
  if (original->QuestionType != base.Item(position)->QuestionType) {
    return refuse(u"Scrambled Sections", u"Scrambling different types of questions together is not supported.");
  }
  return true;
}

}  // namespace

bool clsHEDROTest::AddSequence(const Ref<clsHEDROTest>& oTestVersion) {
  return trap<bool>({u"clsHEDROTest", u"AddSequence"}, [&](auto& result) {
    if (!oTestVersion) return;
    if (Sequences->Exists(oTestVersion->Version)) {
      refuse(u"Version Exists", u"The new version already exists.\r\n\r\nVersion: " + oTestVersion->Version.str());
      return;
    }
    const std::int32_t count = oTestVersion->Questions->Count();
    if (Questions->Count() != count) {
      refuse(
          u"Number of Questions",
          u"The new version of the test contains a different number of questions.\r\n\r\nNumber of Questions in Test: " +
              decimal(Questions->Count()) + u"\r\nNumber of Questions in New Test Version: " + decimal(count));
      return;
    }
    const auto sequence = make<clsHEDROTestSequence>();
    sequence->Answer = oTestVersion->Version;
    for (std::int32_t i = 1; i <= count; ++i) {
      const Ref<clsHEDROTestQuestion> question = oTestVersion->Questions->Item(i);
      if (!fits(*Questions, *question, i)) return;
      sequence->Order->Add(question->ID);
    }
    result = Sequences->Add(sequence);
  });
}

}  // namespace hedro34
