#include "hedro34/component/member.h"

#include <algorithm>

namespace hedro34 {

bool NameIndex::equal(StringView a, StringView b) noexcept {
  constexpr auto upper = [](char16_t unit) { return unit >= u'a' && unit <= u'z' ? unit - 32 : int{unit}; };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [&](char16_t one, char16_t other) { return upper(one) == upper(other); });
}

Incoming<bool*>::Incoming(CallArguments& arguments, std::size_t position) : given_(arguments.given[position]) {
  arguments.at = position;
  if (given_ == nullptr) return;
  const bool is_reference = (given_->vt & binary::VT_BYREF) != 0;
  const int type = given_->vt & ~binary::VT_BYREF;
  if (is_reference && type != binary::VT_BOOL && type != binary::VT_VARIANT) fail(FailureNumber::TypeMismatch);
  value_ = before_ = boolean_of(*given_);
}

void Incoming<bool*>::finish() const {
  if (given_ == nullptr || value_ == before_) return;
  if (given_->vt == (binary::VT_BYREF | binary::VT_BOOL)) {
    *given_->pboolVal = value_ ? binary::variant_true : std::int16_t{0};
  } else if (given_->vt == (binary::VT_BYREF | binary::VT_VARIANT)) {
    binary::VARIANT& variable = *given_->pvarVal;
    if ((variable.vt & binary::VT_BYREF) == 0) {
      binary::VariantClear(&variable);
      put(variable, value_);
    } else if (variable.vt == (binary::VT_BYREF | binary::VT_BOOL)) {
      *variable.pboolVal = value_ ? binary::variant_true : std::int16_t{0};
    }
  }
}

}  // namespace hedro34
