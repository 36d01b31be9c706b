#include "hedro34/base/variant.h"

namespace hedro34 {

Variant Object::Call(StringView, std::span<Variant>) { fail(FailureNumber::NoSuchMember); }

}  // namespace hedro34
