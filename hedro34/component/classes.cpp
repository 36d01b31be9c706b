#include "hedro34/component/classes.h"

#include <typeinfo>
#include <unordered_map>

namespace hedro34 {
namespace {

template <class Found>
const ClassTable* find(Found found) {
  for (const std::span<const ClassTable* const> classes : {library_classes(), service_classes()}) {
    for (const ClassTable* const table : classes) {
      if (found(*table)) return table;
    }
  }
  return nullptr;
}

}  // namespace

const ClassTable* table_of(const Object& object) {
  // By the address of the type: all types of the tables are the library's own, so each has one address in it.
  static const auto tables = [] {
    std::unordered_map<const std::type_info*, const ClassTable*> result;
    find([&](const ClassTable& table) {
      result.emplace(table.type, &table);
      return false;
    });
    return result;
  }();
  const auto found = tables.find(&typeid(object));
  return found == tables.end() ? nullptr : found->second;
}

const ClassTable* table_of(const binary::GUID& class_id) noexcept {
  return find([&](const ClassTable& table) { return table.class_id == class_id; });
}

const ClassTable* table_named(StringView name) noexcept {
  return find([&](const ClassTable& table) { return NameIndex::equal(table.name, name); });
}

}  // namespace hedro34
