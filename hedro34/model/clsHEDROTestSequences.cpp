#include "hedro34/model/clsHEDROTestSequences.h"

namespace hedro34 {

bool clsHEDROTestSequences::Add(const Ref<clsHEDROTestSequence>& oSequence) {
  bool result = false;
  trap(here(u"Add"), [&] {
    items_.add(oSequence, oSequence->Answer.str());
    result = true;
  });
  return result;
}

bool clsHEDROTestSequences::AddDefault(const Ref<clsHEDROTestQuestions>& oQuestions, StringView sAnswer) {
  bool result = false;
  trap(here(u"AddDefault"), [&] {
    if (items_.count() > 0) return;
    auto sequence = make<clsHEDROTestSequence>();
    sequence->Answer = sAnswer;
    for (std::int32_t i = 1; i <= oQuestions->Count(); ++i) sequence->Order->Add(oQuestions->Item(i)->ID);
    Add(sequence);
    result = items_.count() == 1;
  });
  return result;
}

bool clsHEDROTestSequences::Remove(const Variant& vKey) { return remove_existing(vKey); }

bool clsHEDROTestSequences::RemoveAll() { return remove_all(); }

Ref<clsHEDROTestSequence> clsHEDROTestSequences::Item(const Variant& vKey) const { return item_or(vKey, {}); }

}  // namespace hedro34
