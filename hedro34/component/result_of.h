// The one way from a failure into a result code: nothing is thrown through a function of the binary interface.
#pragma once

#include "hedro34/component/binary.h"
#include "hedro34/runtime/basError.h"

namespace hedro34 {

// What `body` answers; E_OUTOFMEMORY when memory ran out in it, E_UNEXPECTED when it failed otherwise.
template <class Body>
binary::HRESULT result_of(Body body) noexcept {
  binary::HRESULT result = binary::E_UNEXPECTED;
  const auto failure = caught([&] { result = body(); });
  if (!failure) return result;
  return failure->number == 7 ? binary::E_OUTOFMEMORY : binary::E_UNEXPECTED;
}

}  // namespace hedro34
