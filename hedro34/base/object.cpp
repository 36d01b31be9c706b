#include "hedro34/base/variant.h"

namespace hedro34 {

Variant Object::Call(StringView, std::span<Variant>) { fail(FailureNumber::NoSuchMember); }

void Object::end() const noexcept {
  ObjectBlock* const block = block_;
  if (block == nullptr) return std::unique_ptr<const Object>(this).reset();
  this->~Object();
  if (--block->objects == 0) std::unique_ptr<ObjectBlock>(block).reset();
}

}  // namespace hedro34
