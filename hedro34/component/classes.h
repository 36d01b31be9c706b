// The classes that the library shows outside: the ten of the type library, and the services and default objects beside it.
#pragma once

#include "hedro34/component/member.h"

namespace hedro34 {

inline constexpr binary::GUID type_library_id = {
    0x6AAE3623, 0x6B45, 0x492C, {0xAA, 0xEE, 0x41, 0x33, 0x65, 0xFB, 0x20, 0x60}};
inline constexpr StringView type_library_name = u"HEDRO34";
inline constexpr int type_library_major = 15;
inline constexpr int type_library_minor = 0;
inline constexpr int type_library_locale = 1033;

struct Enumerator {
  StringView name;
  std::int32_t value;
  StringView line;  // what it stands for
};
struct EnumerationTable {
  StringView name;
  std::span<const Enumerator> values;
  StringView summary;
  bool flags = false;  // values may be combined
};

// The ten classes of the type library, in the order in which it lists them, and its three enumerations.
std::span<const ClassTable> library_classes() noexcept;
std::span<const EnumerationTable> library_enumerations() noexcept;

// The default template and document with their companions, the message box and the platform's services.
std::span<const ClassTable> service_classes() noexcept;

// The table of the object's class, or of a class identifier; null when there is none.
const ClassTable* table_of(const Object& object);
const ClassTable* table_of(const binary::GUID& class_id) noexcept;

}  // namespace hedro34
