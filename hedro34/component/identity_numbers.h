// The numbers by which objects know their identities: an object has room for 32 bits only. Each thread counts its own; a
// number that is given back is used again. Everything is constant time.
#pragma once

#include <cstdint>

namespace hedro34 {

// A number from 1 for the identity of the object.
std::uint32_t number_identity(void* identity, const void* object);

// The object's identity, which has that number on this thread; null for an object of another thread.
void* numbered_identity(std::uint32_t number, const void* object) noexcept;

// Gives the number of the object's identity back. On another thread than that of the identity it stays taken there.
void forget_identity(std::uint32_t number, const void* object) noexcept;

}  // namespace hedro34
