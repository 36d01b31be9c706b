#include <iostream>
#include <string_view>

#include "hedro34/component/identifier.h"
#include "tools/tables/tables.h"

namespace hedro34::tables {

std::string identifier(const binary::GUID& id) {
  const std::string braced = utf8(identifier_text(id));
  return braced.substr(1, braced.size() - 2);
}

std::string quoted(StringView text) {
  std::string result = "\"";
  for (const char16_t unit : text) {
    if (unit == u'\t') {
      result += "\\t";
      continue;
    }
    if (unit == u'"' || unit == u'\\') result += '\\';
    append_utf8(result, StringView(&unit, 1));
  }
  return result + '"';
}

}  // namespace hedro34::tables

int main(int count, char** arguments) {
  using namespace hedro34::tables;
  const std::string_view what = count == 2 ? arguments[1] : "";
  if (what == "idl") {
    print_idl(std::cout);
  } else if (what == "reference") {
    print_reference(std::cout);
  } else if (what == "man") {
    print_manual(std::cout);
  } else if (what == "python") {
    print_python(std::cout);
  } else {
    std::cerr << "usage: hedro34_tables idl|reference|man|python\n";
    return 2;
  }
  return std::cout.flush() ? 0 : 1;
}
