// An object that is never destroyed: what must still be there when a thread or the process ends, in whatever order
// its parts go.
//
//   Given& given() {
//     static Given& it = immortal<Given>();
//     return it;
//   }
#pragma once

#include <memory>
#include <utility>

namespace hedro34 {

template <class T, class... Arguments>
T& immortal(Arguments&&... arguments) {
  return *std::make_unique<T>(std::forward<Arguments>(arguments)...).release();
}

}  // namespace hedro34
