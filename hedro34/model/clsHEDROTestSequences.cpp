#include "hedro34/model/clsHEDROTestSequences.h"

namespace hedro34 {

bool clsHEDROTestSequences::Add(const Ref<clsHEDROTestSequence>& oSequence) {
  return trap<bool>(here(u"Add"), [&](auto& result) {
    items_.add_under(oSequence->Answer, oSequence);
    result = true;
  });
}

bool clsHEDROTestSequences::AddDefault(const Ref<clsHEDROTestQuestions>& oQuestions, StringView sAnswer) {
  return trap<bool>(here(u"AddDefault"), [&](auto& result) {
    if (items_.count() > 0) return;
    auto sequence = make<clsHEDROTestSequence>();
    sequence->Answer = sAnswer;
    for (std::int32_t i = 1; i <= oQuestions->Count(); ++i) sequence->Order->Add(oQuestions->at(i).ID);
    Add(sequence);
    result = items_.count() == 1;
  });
}

}  // namespace hedro34
