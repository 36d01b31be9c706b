#include "hedro34/platform/platform.h"

#include "hedro34/base/failure.h"
#include "hedro34/documents/data_document.h"
#include "hedro34/documents/form_template.h"
#include "hedro34/platform/system_user.h"
#include "hedro34/xml/expat_document.h"

namespace hedro34 {
namespace {

class StandardErrorTexts : public ErrorTexts {
 public:
  String text(std::int32_t number) override { return String(failure_text(number)); }
};

}  // namespace

Platform& platform() noexcept {
  static StandardErrorTexts error_texts;
  static Platform services = {&system::default_message_box(),
                              &system::default_screen(),
                              &error_texts,
                              &expat_documents(),
                              &form_objects(),
                              &data_objects()};
  return services;
}

}  // namespace hedro34
