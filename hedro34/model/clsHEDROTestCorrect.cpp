#include "hedro34/model/clsHEDROTestCorrect.h"

#include <cmath>

namespace hedro34 {

bool clsHEDROTestCorrect::Add(std::int16_t Item, const Variant& Before, const Variant& After) {
  bool result = false;
  constexpr Location here = {class_name, u"Add", false};  // this one is reported without the library's name
  trap(here, [&] {
    const Variant key = decimal(Item);
    if (Exists(key)) return;
    items_.add(Item, key, Before, After);
    result = true;
  });
  return result;
}

bool clsHEDROTestCorrect::Remove(const Variant& Index) { return remove_existing(Index); }

bool clsHEDROTestCorrect::RemoveAll() { return remove_all(); }

std::int16_t clsHEDROTestCorrect::Item(std::int16_t Index) const { return item_or(Index, -1); }

Ref<clsHEDROTestCorrect> clsHEDROTestCorrect::Copy() const {
  Ref<clsHEDROTestCorrect> result;
  trap(here(u"Copy"), [&] {
    auto copy = make<clsHEDROTestCorrect>();
    for (std::int32_t i = 1; i <= items_.count(); ++i) copy->Add(items_.at(i));
    result = std::move(copy);
  });
  return result;
}

std::int32_t clsHEDROTestCorrect::GetBitWiseRepresentation() const {
  std::int32_t result = 0;
  trap(here(u"GetBitWiseRepresentation"), [&] {
    for (std::int32_t i = 1; i <= items_.count(); ++i) result = to_int32(result + std::exp2(items_.at(i) - 1));
  });
  return result;
}

void clsHEDROTestCorrect::ConvertBitWiseRepresentation(std::int32_t BitWiseValue) {
  trap(here(u"ConvertBitWiseRepresentation"), [&] {
    RemoveAll();
    for (std::int16_t k = 0; k <= 30; ++k) {
      const auto number = static_cast<std::int16_t>(k + 1);
      if ((BitWiseValue >> k) & 1) items_.add(number, decimal(number));
    }
  });
}

}  // namespace hedro34
