#include "hedro34/model/clsHEDROTests.h"

namespace hedro34 {
namespace {

constexpr Location here(const char16_t* operation) { return {u"clsHEDROTests", operation}; }

}  // namespace

clsHEDROTests::~clsHEDROTests() {
  trap(here(u"Class_Terminate"), [&] { items_ = {}; });
}

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

void clsHEDROTests::RemoveAll() {
  trap(here(u"RemoveAll"), [&] {
    for (std::int32_t i = items_.count(); i >= 1; --i) Remove(i);
  });
}

Ref<clsHEDROTest> clsHEDROTests::Item(const Variant& Index) const noexcept {
  Ref<clsHEDROTest> result;
  quietly([&] {
    if (const Ref<clsHEDROTest>* found = items_.find(Index)) result = *found;
  });
  return result;
}

bool clsHEDROTests::Exists(const Variant& Index) const noexcept {
  bool result = false;
  quietly([&] { result = items_.find(Index) != nullptr; });
  return result;
}

}  // namespace hedro34
