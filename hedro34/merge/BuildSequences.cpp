// The versions of a test in the document: their identifiers and where each of their questions lies in the merged test.
#include <optional>
#include <vector>

#include "hedro34/merge/clsHEDRO.h"
#include "hedro34/merge/here.h"

namespace hedro34 {
namespace {

// The order of a further version, one entry for each of so many questions of the document; nothing when the version has fewer
// questions than the document has graded ones. It grows as the questions come: the host's count may be any number.
std::optional<Array<std::int32_t>> order_of(WENKtdQuestions& questions, std::int32_t count,
                                            const clsHEDROTestQuestions& version,
                                            const KeyedList<std::int32_t>& field_numbers) {
  std::vector<std::int32_t> order;
  std::int32_t rank = 0;
  std::int32_t p = 1;
  for (; p <= questions.Count(); ++p) {
    std::int32_t entry = p;
    if (questions.Item(p)->Graded()) {
      if (++rank > version.Count()) return {};
      entry = field_numbers.at(version.Item(rank)->ID.str());
    }
    if (p > count) fail(FailureNumber::SubscriptOutOfRange);
    order.push_back(entry);
  }
  if (p <= count) fail(FailureNumber::SubscriptOutOfRange);
  return Array<std::int32_t>::of(std::move(order));
}

}  // namespace

bool clsHEDRO::ValidVersionIdentifier(StringView sVersion) {
  return quietly<bool>([&](auto& result) {
    const Ref<WENKtdQuestions> questions = held(WENKTD)->Questions();
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
    const Ref<WENKtdQuestions> questions = held(WENKTD)->Questions();
    const Ref<WENKtdVersions> versions = held(WENKTD)->Versions();
    versions->Orders()->AddDefault(questions->Count());
    if (Tests->Count() > 1) {
      versions->SetSequenceQuestion(SequenceQuestion);
      const String first = Tests->Item(1)->Version;
      if (!accept(first)) return;
      versions->VersionAnswers()->Add(first);
      for (std::int32_t n = 2; n <= Tests->Count(); ++n) {
        const Ref<clsHEDROTest> test = Tests->Item(n);
        const std::int32_t count = questions->Count();
        const auto entries = order_of(*questions, count, *held(test->Questions), oFieldNumbers);
        if (!entries) return;
        const String version = test->Version;  // the host may change it meanwhile
        if (!accept(version)) return;
        versions->VersionAnswers()->Add(version);
        const Ref<WENKtdOrder> order = platform().document_objects->order(held(WENKTD));
        order->FromArray(*entries);
        versions->Orders()->Add(order);
      }
    }
    result = true;
  });
}

}  // namespace hedro34
