// Makes the table of a class out of its rows.
#pragma once

#include "hedro34/component/member.h"

namespace hedro34 {

template <class T>
Ref<Object> create() {
  return make<T>();
}

// The table of the class `T`; the name of its default member must be that of a row, or empty.
template <class T, std::size_t count>
constexpr ClassTable class_table(const binary::GUID& class_id, const binary::GUID& interface_id,
                                 const Member (&members)[count], StringView default_member, Ref<Object> (*creator)(),
                                 StringView summary) {
  ClassTable result{.name = type_name<T>,
                    .class_id = class_id,
                    .interface_id = interface_id,
                    .type = &typeid(T),
                    .members = members,
                    .index = NameIndex(members),
                    .create = creator,
                    .summary = summary};
  for (std::size_t i = 0; i < count; ++i) {
    if (members[i].name == default_member) result.default_member = static_cast<int>(i);
  }
  if (!default_member.empty() && result.default_member < 0) throw "no row has the name of the default member";
  return result;
}

}  // namespace hedro34
