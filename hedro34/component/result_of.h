// The one way from C++ into a result code: no exception passes a function of the binary interface.
#pragma once

#include <new>
#include <utility>

#include "hedro34/component/binary.h"

namespace hedro34 {

// What `body` answers; E_OUTOFMEMORY when memory ran out in it, E_UNEXPECTED when it threw anything else.
template <class Body>
binary::HRESULT result_of(Body&& body) noexcept {
  try {
    return std::forward<Body>(body)();
  } catch (const std::bad_alloc&) {
    return binary::E_OUTOFMEMORY;
  } catch (...) {
    return binary::E_UNEXPECTED;
  }
}

}  // namespace hedro34
