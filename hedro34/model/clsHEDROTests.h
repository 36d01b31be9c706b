// The tests of a merge: the test that is merged at position 1 and its further versions behind it. It differs from the other
// collections: `Add`, `Remove` and `RemoveAll` give no result, removing what is not there is a failure, and `Item` never
// reports.
#pragma once

#include "hedro34/model/clsHEDROTest.h"

namespace hedro34 {

class HEDRO34_API clsHEDROTests final : public Collection<clsHEDROTests, Ref<clsHEDROTest>> {
 public:
  static constexpr const char16_t* class_name = u"clsHEDROTests";

  std::int32_t Count() const noexcept { return items_.count(); }

  // Adds at the end, or before or behind the test that `Before` or `After` names. A `Key` in use, and an empty reference, is
  // a failure; nothing is added then.
  void Add(const Ref<clsHEDROTest>& Item, const Variant& Key = missing, const Variant& Before = missing,
           const Variant& After = missing);
  void Remove(const Variant& Index);
  void RemoveAll() { Collection::RemoveAll(); }

  Ref<clsHEDROTest> Item(const Variant& Index) const noexcept;
};

}  // namespace hedro34
