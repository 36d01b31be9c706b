// What the quick way takes, the exact way takes as well, and makes the same of it.
#pragma once

#include <cstdlib>
#include <string_view>

#include "hedro34/json/json_reader.h"

namespace hedro34::fuzz {

template <class Document>
void both_ways(std::string_view bytes) {
  const auto quick = make<Document>();
  if (!read_quickly(Document::json, *quick, bytes, 0)) return;
  const auto exact = make<Document>();
  if (!read_exactly(Document::json, *exact, bytes, {}) || exact->to_json() != quick->to_json()) std::abort();
}

}  // namespace hedro34::fuzz
