#include "hedro34/base/failure.h"

namespace hedro34 {

std::u16string_view failure_text(std::int32_t number) noexcept {
  switch (static_cast<FailureNumber>(number)) {
    case FailureNumber::InvalidCall: return u"Invalid procedure call or argument";
    case FailureNumber::Overflow: return u"Overflow";
    case FailureNumber::OutOfMemory: return u"Out of memory";
    case FailureNumber::SubscriptOutOfRange: return u"Subscript out of range";
    case FailureNumber::TypeMismatch: return u"Type mismatch";
    case FailureNumber::ObjectNotSet: return u"Object variable not set";
    case FailureNumber::CannotCreateObject: return u"Component can't create object";
    case FailureNumber::NoSuchMember: return u"Object doesn't support this property or method";
    case FailureNumber::WrongArguments: return u"Wrong number of arguments or invalid property assignment";
    case FailureNumber::DuplicateKey: return u"This key is already associated with an element of this collection";
  }
  return u"Unknown error";
}

void fail(FailureNumber number) {
  const auto value = static_cast<std::int32_t>(number);
  throw Failure(value, failure_text(value));
}

}  // namespace hedro34
