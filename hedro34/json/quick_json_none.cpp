#include "hedro34/json/quick_json.h"

namespace hedro34 {

bool read_quickly(const JsonTable&, Object&, std::string_view, std::size_t) { return false; }

}  // namespace hedro34
