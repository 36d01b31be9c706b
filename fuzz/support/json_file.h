// What must hold of any file of JSON, whatever it is of.
#pragma once

#include "hedro34/json/json_reader.h"
#include "fuzz/support/support.h"

namespace hedro34::fuzz {

// What the quick way takes, the exact way takes as well, and makes the same of it. A document that is read is written, and what
// was written is read and written again as it stands.
template <class Document>
void both_ways(std::string_view bytes) {
  const auto quick = make<Document>();
  const auto exact = make<Document>();
  if (read_quickly(Document::json, *quick, bytes, 0)) {
    EXPECT_TRUE(read_exactly(Document::json, *exact, bytes, {}));
    EXPECT_EQ(exact->to_json(), quick->to_json());
  }
  const auto document = make<Document>();
  if (!document->read(bytes)) return;
  const auto written = document->to_json();
  const auto again = make<Document>();
  EXPECT_TRUE(written && again->read(*written));
  EXPECT_EQ(again->to_json(), written);
}

}  // namespace hedro34::fuzz
