// Type information at run time, where the system has type libraries: it comes out of the one that the component library holds
// as its resource. Without one, as in a program that the library is linked into, and on other systems, there is none.
#pragma once

#include "hedro34/component/member.h"

namespace hedro34 {

// Whether there is any for objects of this class: it is one of the type library.
bool has_type_info(const ClassTable& table);

// The type information of the class's default interface under the name of the class, counted for the caller; null when there
// is none. The members are those of the interface.
binary::ITypeInfo* type_info_of(const ClassTable& table);

// Another interface of the object than those of `IDispatch`, counted for the caller: the one that tells its class. Null for
// all else.
void* further_interface(const ClassTable& table, const binary::GUID& iid, binary::IUnknown& object);

}  // namespace hedro34
