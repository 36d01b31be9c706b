#include "hedro34/model/clsHEDROTestSequence.h"

namespace hedro34 {
namespace {

constexpr Location here(const char16_t* operation) { return {u"clsHEDROTestSequence", operation}; }

}  // namespace

clsHEDROTestSequence::clsHEDROTestSequence() {
  trap(here(u"Class_Initialize"), [&] { Order = make<clsHEDROTestSequenceOrder>(); });
}

clsHEDROTestSequence::~clsHEDROTestSequence() {
  trap(here(u"Class_Terminate"), [&] { Order = nullptr; });
}

Ref<clsHEDROTestSequence> clsHEDROTestSequence::Copy(const Ref<clsHEDROTestQuestions>& oQuestions) const {
  return trap<Ref<clsHEDROTestSequence>>(here(u"Copy"), [&](auto& result) {
    auto copy = make<clsHEDROTestSequence>();
    copy->Answer = Answer.str();
    for (std::int32_t i = 1; i <= Order->Count(); ++i) {
      copy->Order->Add(oQuestions->Item(Order->Item(i))->ID);
    }
    result = std::move(copy);
  });
}

}  // namespace hedro34
