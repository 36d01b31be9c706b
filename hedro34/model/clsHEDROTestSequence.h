// One version of a test: the label by which it is known and the order of its questions.
#pragma once

#include "hedro34/model/clsHEDROTestQuestions.h"
#include "hedro34/model/clsHEDROTestSequenceOrder.h"

namespace hedro34 {

class HEDRO34_API clsHEDROTestSequence final : public Object {
 public:
  clsHEDROTestSequence();
  ~clsHEDROTestSequence() override;

  Ref<clsHEDROTestSequenceOrder> Order;  // the questions of this version in their order
  Text<50> Answer;                       // the label of the version; its key in a test's sequences

  // A new sequence with the same label. Its order holds, for each entry, the ID of the question of `oQuestions` at the
  // position that the entry's value names: the order of `oQuestions`, not the order of this sequence. An empty reference
  // after a failure, such as a value without a question.
  Ref<clsHEDROTestSequence> Copy(const Ref<clsHEDROTestQuestions>& oQuestions) const;
};

}  // namespace hedro34
