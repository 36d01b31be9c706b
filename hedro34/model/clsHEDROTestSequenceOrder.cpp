#include "hedro34/model/clsHEDROTestSequenceOrder.h"

#include "hedro34/model/bounds.h"

namespace hedro34 {

void clsHEDROTestSequenceOrder::Add(StringView sQuestionID) {
  trap(here(u"Add"), [&] { items_.add(items_.count() + 1, sQuestionID); });
}

void clsHEDROTestSequenceOrder::Remove(const Variant& vKey) { remove_existing(vKey); }

void clsHEDROTestSequenceOrder::RemoveAll() {
  trap(here(u"RemoveAll"), [&] {
    for (std::int32_t i = items_.count(); i >= 1; --i) items_.remove(i);
  });
}

std::int32_t clsHEDROTestSequenceOrder::Item(const Variant& vKey) const { return item_or(vKey, 0); }

Array<std::int32_t> clsHEDROTestSequenceOrder::AsArray(std::int32_t lLowerBound) const {
  Array<std::int32_t> result;
  trap(here(u"AsArray"), [&] {
    Array<std::int32_t> values(lLowerBound, upper_bound(items_.count(), lLowerBound));
    for (std::int32_t i = 1; i <= items_.count(); ++i) values[std::int64_t{lLowerBound} + i - 1] = items_.at(i);
    result = std::move(values);
  });
  return result;
}

String clsHEDROTestSequenceOrder::AsString(StringView sDelimiter) const {
  String result;
  trap(here(u"AsString"), [&] {
    String text;
    for (std::int32_t i = 1; i <= items_.count(); ++i) text.append(decimal(items_.at(i))).append(sDelimiter);
    if (!text.empty()) text.resize(text.size() - sDelimiter.size());
    result = std::move(text);
  });
  return result;
}

}  // namespace hedro34
