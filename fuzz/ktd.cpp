// A document that is read is written, and what was written is read and written again as it stands.

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "hedro34/documents/data_document.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace hedro34;
  const auto document = make<DataDocument>();
  if (!document->read({reinterpret_cast<const char*>(data), size})) return 0;
  const auto written = document->to_json();
  const auto again = make<DataDocument>();
  if (!written || !again->read(*written) || again->to_json() != written) std::abort();
  return 0;
}
