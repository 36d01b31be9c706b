// A document that is read is written, and what was written is read and written again as it stands.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "hedro34/documents/data_document.h"
#include "fuzz/both_ways.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace hedro34;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  fuzz::both_ways<DataDocument>(bytes);
  const auto document = make<DataDocument>();
  if (!document->read(bytes)) return 0;
  const auto written = document->to_json();
  const auto again = make<DataDocument>();
  if (!written || !again->read(*written) || again->to_json() != written) std::abort();
  return 0;
}
