#include "hedro34/model/clsHEDROTests.h"

namespace hedro34 {

void clsHEDROTests::Add(const Ref<clsHEDROTest>& Item, const Variant& Key, const Variant& Before,
                        const Variant& After) {
  trap(here(u"Add"), [&] {
    if (!Item) fail(FailureNumber::ObjectNotSet);
    items_.add(Item, Key, Before, After);
  });
}

void clsHEDROTests::Remove(const Variant& Index) {
  trap(here(u"Remove"), [&] { items_.remove(Index); });
}

Ref<clsHEDROTest> clsHEDROTests::Item(const Variant& Index) const noexcept {
  return quietly<Ref<clsHEDROTest>>([&](auto& result) {
    if (const std::int32_t position = items_.find_position(Index)) result = items_.at(position);
  });
}

}  // namespace hedro34
