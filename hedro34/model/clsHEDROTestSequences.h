// The versions of a test, under their labels as keys: `Answer` of a sequence at the time of `Add`.
#pragma once

#include "hedro34/model/clsHEDROTestSequence.h"

namespace hedro34 {

class HEDRO34_API clsHEDROTestSequences final : public Collection<clsHEDROTestSequences, Ref<clsHEDROTestSequence>> {
 public:
  static constexpr const char16_t* class_name = u"clsHEDROTestSequences";

  // True when added. A label that is a key already, and an empty reference, is a failure.
  bool Add(const Ref<clsHEDROTestSequence>& oSequence);

  // Adds one sequence that follows the order of `oQuestions`; False, and nothing changed, when there is a sequence already.
  bool AddDefault(const Ref<clsHEDROTestQuestions>& oQuestions, StringView sAnswer = u"A");
};

}  // namespace hedro34
