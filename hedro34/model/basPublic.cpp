#include "hedro34/model/basPublic.h"

#include "hedro34/runtime/basError.h"

namespace hedro34 {

String CString(const Variant& vValue) {
  String result;
  trap({u"basPublic", u"CString"}, [&] {
    if (vValue.is<Null>() || vValue.is<Empty>() || vValue.is<Missing>()) return;
    result = to_text(vValue);
  });
  return result;
}

}  // namespace hedro34
