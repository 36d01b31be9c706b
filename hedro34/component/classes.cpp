#include "hedro34/component/classes.h"

#include <array>
#include <typeinfo>

namespace hedro34 {
namespace {

template <class Found>
const ClassTable* find(Found found) {
  for (const auto classes : {library_classes(), service_classes()}) {
    for (const ClassTable& table : classes) {
      if (found(table)) return &table;
    }
  }
  return nullptr;
}

// Tables by the address of their type: all types of the tables are the library's own, so each has one address in it.
class ByType {
 public:
  ByType() {
    hedro34::find([this](const ClassTable& table) {
      std::size_t slot = slot_of(*table.type);
      while (tables_[slot] != nullptr) slot = (slot + 1) % tables_.size();
      tables_[slot] = &table;
      return false;
    });
  }

  const ClassTable* find(const std::type_info& type) const noexcept {
    std::size_t slot = slot_of(type);
    while (tables_[slot] != nullptr && tables_[slot]->type != &type) slot = (slot + 1) % tables_.size();
    return tables_[slot];
  }

 private:
  std::size_t slot_of(const std::type_info& type) const noexcept {
    return reinterpret_cast<std::uintptr_t>(&type) / alignof(std::type_info) * 0x9E3779B1u / 256 % tables_.size();
  }

  std::array<const ClassTable*, 128> tables_ = {};  // more than twice as many as there are
};

}  // namespace

const ClassTable* table_of(const Object& object) {
  static const ByType tables;
  return tables.find(typeid(object));
}

const ClassTable* table_of(const binary::GUID& class_id) noexcept {
  return find([&](const ClassTable& table) { return table.class_id == class_id; });
}

}  // namespace hedro34
