// A run-time failure: a number and a description, thrown where a statement cannot be carried out and caught by the trap of
// the operation that it belongs to. The library's own parts raise those of `FailureNumber`; a host's objects may throw
// others, and number and description reach the report unchanged.
#pragma once

#include <cstdint>
#include <exception>
#include <string>

#include "hedro34/base/export.h"

namespace hedro34 {

struct HEDRO34_API Failure : std::exception {
  Failure(std::int32_t failure_number, std::u16string_view failure_description,
          std::u16string_view failure_source = u"HEDRO34")
      : number(failure_number), description(failure_description), source(failure_source) {}
  const char* what() const noexcept override { return "hedro34::Failure"; }

  std::int32_t number;
  std::u16string description;
  std::u16string_view source;  // who raised it: a text that lives as long as the process
};

enum class FailureNumber : std::int32_t {
  InvalidCall = 5,
  Overflow = 6,
  OutOfMemory = 7,
  SubscriptOutOfRange = 9,
  TypeMismatch = 13,
  ObjectNotSet = 91,
  CannotCreateObject = 429,
  NoSuchMember = 438,
  WrongArguments = 450,
  DuplicateKey = 457,
};

// The standard text of a failure number; "Unknown error" for a number that is not in the enumeration.
HEDRO34_API std::u16string_view failure_text(std::int32_t number) noexcept;

// Throws the failure with its standard text.
[[noreturn]] HEDRO34_API void fail(FailureNumber number);

}  // namespace hedro34
