// The text of a variant that may hold nothing.
#pragma once

#include "hedro34/base/variant.h"

namespace hedro34 {

// The empty text for null, empty and missing, else the value converted to text: "True", "12". An object or an array is a
// failure, reported at "HEDRO34 - basPublic.CString", and gives the empty text.
String CString(const Variant& vValue);

}  // namespace hedro34
