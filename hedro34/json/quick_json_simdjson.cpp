#include <simdjson.h>

#include <new>

#include "hedro34/json/json_events.h"
#include "hedro34/json/quick_json.h"

namespace hedro34 {
namespace {

namespace dom = simdjson::dom;

// Beyond what tests have. The parser takes up to fourteen times as much memory as the file.
constexpr std::size_t longest = std::size_t{1} << 24;

// The parser chooses the instructions that this processor has. Without memory that would end the process, so it is done when
// the library is loaded, among the first.
[[gnu::constructor(1000)]] void choose_implementation() {
  simdjson::get_active_implementation() = simdjson::get_available_implementations().detect_best_supported();
}

// Whether "-0" may stand there as an integer, which simdjson takes for a 0 without a sign.
bool may_have_negative_zero(std::string_view bytes) {
  constexpr std::string_view zero = "-0";
  for (auto at = bytes.find(zero); at != std::string_view::npos; at = bytes.find(zero, at + 1)) {
    const std::string_view next = bytes.substr(at + zero.size(), 1);
    if (next.empty() || std::string_view(",]} \t\r\n").find(next[0]) != std::string_view::npos) return true;
  }
  return false;
}

class QuickReader {
 public:
  QuickReader(const JsonTable& table, Object& root) : events_(table, root) {}

  // Goes no deeper than the tables do, since the events refuse what is not in them.
  bool read(dom::element value) {
    switch (value.type()) {
      case dom::element_type::OBJECT: return object(dom::object(value));
      case dom::element_type::ARRAY: return array(dom::array(value));
      case dom::element_type::STRING: return events_.string(value.get_string().value_unsafe());
      case dom::element_type::INT64: {
        const std::int64_t number = value.get_int64().value_unsafe();
        return events_.integer({number, static_cast<double>(number), true});
      }
      case dom::element_type::DOUBLE: return events_.fraction(value.get_double().value_unsafe());
      case dom::element_type::BOOL: return events_.boolean(value.get_bool().value_unsafe());
      case dom::element_type::UINT64:
      case dom::element_type::NULL_VALUE: return false;
    }
    return false;
  }

 private:
  bool object(dom::object object) {
    if (!events_.start_object()) return false;
    for (const auto& [name, value] : object) {
      if (!events_.key(name) || !read(value)) return false;
    }
    return events_.end_object();
  }

  bool array(dom::array array) {
    if (!events_.start_array()) return false;
    for (const dom::element value : array) {
      if (!read(value)) return false;
    }
    return events_.end_array();
  }

  JsonEvents events_;
};

}  // namespace

bool read_quickly(const JsonTable& table, Object& root, std::string_view bytes, std::size_t room) {
  if (bytes.size() > longest || bytes.find('\0') != std::string_view::npos || may_have_negative_zero(bytes))
    return false;
  try {
    dom::parser parser(longest);
    dom::element whole;
    const bool copied = room < simdjson::SIMDJSON_PADDING;
    if (parser.parse(bytes.data(), bytes.size(), copied).get(whole) != simdjson::SUCCESS) return false;
    return QuickReader(table, root).read(whole);
  } catch (const std::bad_alloc&) {  // the exact way needs less
    return false;
  }
}

}  // namespace hedro34
