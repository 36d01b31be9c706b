// The versions of a test in the document: their identifiers and where each of their questions lies in the merged test.
#include "hedro34/merge/clsHEDRO.h"
#include "hedro34/merge/here.h"

namespace hedro34 {
namespace {

// The order of a further version, one entry for each question of the document; nothing when the version has fewer questions
// than the document has graded ones.
bool order_of(WENKtdQuestions& questions, const clsHEDROTestQuestions& version,
              const KeyedList<std::int32_t>& field_numbers, Array<std::int32_t>& order) {
  std::int32_t rank = 0;
  for (std::int32_t p = 1; p <= questions.Count(); ++p) {
    if (!questions.Item(p)->Graded()) {
      order[p] = p;
      continue;
    }
    if (++rank > version.Count()) return false;
    order[p] = field_numbers.at(version.Item(rank)->ID.str());
  }
  return true;
}

}  // namespace

bool clsHEDRO::ValidVersionIdentifier(StringView sVersion) {
  return quietly<bool>([&](auto& result) {
    const Ref<WENKtdQuestions> questions = WENKTD->Questions();
    if (SequenceQuestion > questions->Count() || SequenceQuestion < 1) return;
    const Ref<WENKtdQuestion> question = questions->Item(SequenceQuestion);
    if (question->Graded()) return;
    const Ref<WENKtdStrings> labels = question->ChoiceLabels();
    for (std::int32_t i = 1; !result && i <= labels->Count(); ++i) {
      result = equal_ignoring_case(labels->Item(i), sVersion);
    }
  });
}

bool clsHEDRO::BuildSequences(const KeyedList<std::int32_t>& oFieldNumbers) {
  return trap<bool>(here(u"BuildSequences"), [&](auto& result) {
    const auto accept = [&](StringView version) {
      if (ValidVersionIdentifier(version)) return true;
      if (Verbose) {
        show_warning(u"Invalid Version Identifier",
                     u"An error occured creating multiple versions of the test. The selected field that contains the "
                     u"version identifier does not match the specified XML files. Operation aborted.");
      }
      return false;
    };
    const Ref<WENKtdQuestions> questions = WENKTD->Questions();
    const Ref<WENKtdVersions> versions = WENKTD->Versions();
    versions->Orders()->AddDefault(questions->Count());
    if (Tests->Count() > 1) {
      versions->SetSequenceQuestion(SequenceQuestion);
      const String first = Tests->Item(1)->Version;
      if (!accept(first)) return;
      versions->VersionAnswers()->Add(first);
      for (std::int32_t n = 2; n <= Tests->Count(); ++n) {
        const Ref<clsHEDROTest> test = Tests->Item(n);
        Array<std::int32_t> entries(1, questions->Count());
        if (!order_of(*questions, *test->Questions, oFieldNumbers, entries)) return;
        if (!accept(test->Version)) return;
        versions->VersionAnswers()->Add(test->Version);
        const Ref<WENKtdOrder> order = platform().document_objects->order(WENKTD);
        order->FromArray(entries);
        versions->Orders()->Add(order);
      }
    }
    result = true;
  });
}

}  // namespace hedro34
