// Comparison of the further versions of a test with the first one.
#include "hedro34/merge/clsHEDRO.h"
#include "hedro34/merge/here.h"

namespace hedro34 {
namespace {

// What is wrong with a further version; empty when it fits.
StringView difference(const clsHEDROTestQuestions& original, const clsHEDROTestQuestions& version) {
  if (version.Count() != original.Count()) {
    return u"An additional test contains a different number of questions from the original.";
  }
  for (std::int32_t i = 1; i <= original.Count(); ++i) {
    const Ref<clsHEDROTestQuestion> expected = original.Item(i);
    const Variant id = expected->ID.str();
    if (!version.Exists(id)) return u"An additional test does not contain the same set of questions.";
    const Ref<clsHEDROTestQuestion> found = version.Item(id);
    if (expected->Answers->Count() != found->Answers->Count()) {
      return u"An additional test does not contain the same number of distractors as the original.";
    }
    if (expected->CorrectAnswers->GetBitWiseRepresentation() != found->CorrectAnswers->GetBitWiseRepresentation()) {
      return u"An additional test does not contain the same correct answer to one or more questions as the original.";
    }
  }
  return {};
}

}  // namespace

bool clsHEDRO::ValidTestVersions() {
  return trap<bool>(here(u"ValidTestVersions"), [&](auto& result) {
    if (Tests->Count() > 1) {
      const Ref<clsHEDROTest> original = Tests->Item(1);
      for (std::int32_t n = 2; n <= Tests->Count(); ++n) {
        const StringView found = difference(*original->Questions, *Tests->Item(n)->Questions);
        if (found.empty()) continue;
        show_warning(u"Invalid Test Versions", String(u"An error occurred validating the additional test versions. ")
                                                   .append(found)
                                                   .append(u" Operation aborted."));
        return;
      }
    }
    result = true;
  });
}

}  // namespace hedro34
