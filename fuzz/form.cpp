// A form that is read is written, and what was written is read and written again as it stands.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "hedro34/documents/form_template.h"
#include "fuzz/both_ways.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace hedro34;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  fuzz::both_ways<FormTemplate>(bytes);
  const auto form = make<FormTemplate>();
  if (!form->read(bytes)) return 0;
  const auto written = form->to_json();
  const auto again = make<FormTemplate>();
  if (!written || !again->read(*written) || again->to_json() != written) std::abort();
  if (again->GradedQuestionCount() != form->GradedQuestionCount()) std::abort();
  return 0;
}
