#include "tests/platform_support.h"

namespace hedro34::testing {

std::string file_text(const std::string& name) { return read_file(source_path("tests/files/" + name)).value_or(""); }

}  // namespace hedro34::testing
