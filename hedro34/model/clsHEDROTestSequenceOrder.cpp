#include "hedro34/model/clsHEDROTestSequenceOrder.h"

namespace hedro34 {

void clsHEDROTestSequenceOrder::Add(StringView sQuestionID) {
  trap(here(u"Add"), [&] { items_.add_under(sQuestionID, items_.count() + 1); });
}

void clsHEDROTestSequenceOrder::RemoveAll() {
  trap(here(u"RemoveAll"), [&] { items_.clear(); });
}

}  // namespace hedro34
