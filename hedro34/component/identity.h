// How an object of the library looks from outside: one identity for each object that is held there, which answers calls by
// name out of the table of the object's class. It holds the object, and goes when the last outside reference goes; the same
// object has the same identity as long as one is there. Everything belongs to the thread of the object.
#pragma once

#include "hedro34/component/held.h"

namespace hedro34 {

// The object for callers outside: its identity or, for an object of the host that the library holds, the host's own. The
// empty reference gives none. Failure 13 for an object of no class in the tables.
HEDRO34_API Held<binary::IDispatch> identity_of(const Ref<Object>& object);

// The same, counted for the caller; null for the empty reference.
HEDRO34_API binary::IDispatch* counted_identity_of(const Ref<Object>& object);

// The object behind an identity of this library; empty for any other object.
HEDRO34_API Ref<Object> own_object(binary::IUnknown* object);

// What keeps the library loaded: identities, class factories and locks, counted over all threads. An object that only the
// library itself still holds, such as one given to `SetError`, does not count; one given to `RegisterClass` does.
class HEDRO34_API Alive {
 public:
  Alive() noexcept;
  Alive(const Alive&) = delete;
  Alive& operator=(const Alive&) = delete;
  ~Alive();

  static std::int64_t count() noexcept;
  static void lock(bool on) noexcept;  // one lock more or one less; one less than none changes nothing
};

}  // namespace hedro34
