#include "hedro34/model/clsHEDROTestSequenceOrder.h"

namespace hedro34 {

void clsHEDROTestSequenceOrder::Add(StringView sQuestionID) {
  trap(here(u"Add"), [&] { items_.add(items_.count() + 1, sQuestionID); });
}

void clsHEDROTestSequenceOrder::RemoveAll() {
  trap(here(u"RemoveAll"), [&] {
    for (std::int32_t i = items_.count(); i >= 1; --i) items_.remove(i);
  });
}

}  // namespace hedro34
