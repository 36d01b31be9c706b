#include "hedro34/model/basPublic.h"

#include "hedro34/runtime/basError.h"

namespace hedro34 {

String CString(const Variant& vValue) {
  return trap<String>({u"basPublic", u"CString"}, [&](auto& result) {
    if (vValue.is<Null>() || vValue.is<Empty>() || vValue.is<Missing>()) return;
    result = to_text(vValue);
  });
}

}  // namespace hedro34
