// From the name of a class to an object: the class registry names the shared library, which is opened and asked for the class
// by its exported function `DllGetClassObject`. A library that gave one stays open for the life of the process. Where the
// system creates objects by name itself, it does all this, on a thread that the caller has prepared for it.
#pragma once

#include "hedro34/base/text.h"
#include "hedro34/component/binary.h"

namespace hedro34 {

// Creates an object of the class with this name, in any case; the caller releases it. No exception leaves. A failure leaves
// a null pointer in `object`, and its reason in `last_file_error()` where the registry or the library is at fault:
//   E_POINTER           `object` is null
//   CO_E_CLASSSTRING    no class of this name is registered
//   REGDB_E_READREGDB   the registry is damaged or unreadable
//   CO_E_DLLNOTFOUND    the system does not open the library
//   CO_E_ERRORINDLL     the library has no DllGetClassObject
//   E_UNEXPECTED        the library answered success but gave no factory or object
// and what the library's function, the factory or the system answers.
HEDRO34_API binary::HRESULT create_object(StringView name, binary::IDispatch** object) noexcept;

// As far as the class's factory, for those who create many objects: results as above.
HEDRO34_API binary::HRESULT class_factory(StringView name, binary::IClassFactory** factory) noexcept;

}  // namespace hedro34
