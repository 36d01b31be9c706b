// A form that is read is written, and what was written is read and written again as it stands.

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "hedro34/documents/form_template.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace hedro34;
  const auto form = make<FormTemplate>();
  if (!form->read({reinterpret_cast<const char*>(data), size})) return 0;
  const auto written = form->to_json();
  const auto again = make<FormTemplate>();
  if (!written || !again->read(*written) || again->to_json() != written) std::abort();
  if (again->GradedQuestionCount() != form->GradedQuestionCount()) std::abort();
  return 0;
}
