// Reads a JSON file by its table, in one pass over the bytes and without a tree. An error is: what is not JSON, an unknown
// member, a member that stands twice, a value of the wrong type (an integer may stand for a float, not the reverse; null is
// never right), an integer beyond the width of its member, a fixed member that is missing or has another value, and what
// the check of a table finds.
#pragma once

#include <string_view>

#include "hedro34/json/json_table.h"
#include "hedro34/json/quick_json.h"
#include "hedro34/platform/file_error.h"

namespace hedro34 {

// Fills `root`, a new object that nobody else uses yet. False when the bytes are in error: `last_file_error()` names `path`, the
// line and column or the pointer, and the reason. `root` is then half filled and to be dropped.
bool read_exactly(const JsonTable& table, Object& root, std::string_view bytes, StringView path);

// A new object as the bytes say; empty when they are in error, which `last_file_error()` then names as above. `room` bytes
// behind them may be read as well.
template <class Root>
Ref<Root> read_json(const JsonTable& table, std::string_view bytes, StringView path, std::size_t room = 0) {
  clear_file_error();
  if (auto root = make<Root>(); read_quickly(table, *root, bytes, room)) return root;
  auto root = make<Root>();
  return read_exactly(table, *root, bytes, path) ? root : nullptr;
}

}  // namespace hedro34
