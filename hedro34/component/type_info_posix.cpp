#include "hedro34/component/type_info.h"

namespace hedro34 {

bool has_type_info(const ClassTable&) { return false; }

binary::ITypeInfo* type_info_of(const ClassTable&) { return nullptr; }

void* further_interface(const ClassTable&, const binary::GUID&, binary::IUnknown&) { return nullptr; }

}  // namespace hedro34
