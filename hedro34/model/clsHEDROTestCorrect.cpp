#include "hedro34/model/clsHEDROTestCorrect.h"

#include <cmath>

namespace hedro34 {

bool clsHEDROTestCorrect::Add(std::int16_t Item, const Variant& Before, const Variant& After) {
  constexpr Location here = {class_name, u"Add", false};  // this one is reported without the library's name
  return trap<bool>(here, [&](auto& result) {
    const Variant key = decimal(Item);
    if (Exists(key)) return;
    items_.add(Item, key, Before, After);
    result = true;
  });
}

std::int16_t clsHEDROTestCorrect::Item(std::int16_t Index) const { return item_or(std::int32_t{Index}, -1); }

Ref<clsHEDROTestCorrect> clsHEDROTestCorrect::Copy() const {
  return trap<Ref<clsHEDROTestCorrect>>(here(u"Copy"), [&](auto& result) {
    auto copy = make<clsHEDROTestCorrect>();
    for (std::int32_t i = 1; i <= items_.count(); ++i) copy->Add(items_.at(i));
    result = std::move(copy);
  });
}

std::int32_t clsHEDROTestCorrect::GetBitWiseRepresentation() const {
  return trap<std::int32_t>(here(u"GetBitWiseRepresentation"), [&](auto& result) { add_bits(result); });
}

std::int32_t clsHEDROTestCorrect::bits() const noexcept {
  return quietly<std::int32_t>([&](auto& result) { add_bits(result); });
}

void clsHEDROTestCorrect::add_bits(std::int32_t& sum) const {
  for (std::int32_t i = 1; i <= items_.count(); ++i) sum = to_int32(sum + std::exp2(items_.at(i) - 1));
}

void clsHEDROTestCorrect::ConvertBitWiseRepresentation(std::int32_t BitWiseValue) {
  trap(here(u"ConvertBitWiseRepresentation"), [&] {
    RemoveAll();
    for (std::int16_t k = 0; k <= 30; ++k) {
      const auto number = static_cast<std::int16_t>(k + 1);
      if ((BitWiseValue >> k) & 1) items_.add_under(decimal(number), number);
    }
  });
}

}  // namespace hedro34
