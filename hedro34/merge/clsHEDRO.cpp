#include "hedro34/merge/clsHEDRO.h"

#include "hedro34/merge/here.h"
#include "hedro34/platform/platform.h"

namespace hedro34 {

clsHEDRO::clsHEDRO() {
  trap(here(u"Class_Initialize"), [&] {
    Verbose = true;
    Tests = make<clsHEDROTests>();
    WENKTD = platform().document_objects->document();
  });
}

clsHEDRO::~clsHEDRO() {
  trap(here(u"Class_Terminate"), [&] {
    TemplateIn = nullptr;
    TemplateOut = nullptr;
    Tests = nullptr;
    WENKTD = nullptr;
  });
}

bool clsHEDRO::SetError(const Ref<Object>& oErr) {
  return trap<bool>(here(u"SetError"), [&](auto& result) { result = set_error_object(oErr); });
}

}  // namespace hedro34
