#include <algorithm>
#include <iostream>
#include <string_view>

#include "tools/manual/manual.h"

namespace host::manual {
namespace {

void add(const CommandLine& line, const CLI::Option& given, std::vector<Option>& options,
         std::vector<Operand>& operands) {
  const Values values = line.values(given);
  if (given.get_positional()) {
    operands.push_back({given.get_name(true), given.get_items_expected_min(), given.get_items_expected_max() > 1,
                        given.get_description(), values});
    return;
  }
  Option option{"--" + given.get_lnames().front(), {}, {}, given.get_description(), given.get_required(), {}, values};
  if (!given.get_snames().empty()) option.short_name = "-" + given.get_snames().front();
  if (given.get_items_expected_max() > 0) option.value_name = given.get_type_name();
  for (const CLI::Option* other : given.get_excludes()) option.excludes.push_back("--" + other->get_lnames().front());
  std::sort(option.excludes.begin(), option.excludes.end());
  options.push_back(option);
}

}  // namespace

Program program() {
  CommandLine line;
  std::vector<Operand> none;
  Program result{line.app().get_description(), {}, {}};
  for (const CLI::Option* option : line.app().get_options({})) add(line, *option, result.options, none);
  for (CLI::App* app : line.app().get_subcommands({})) {
    Command command{app->get_name(), app->get_description(), {}, {}};
    for (const CLI::Option* option : app->get_options({})) add(line, *option, command.options, command.operands);
    result.commands.push_back(command);
  }
  return result;
}

std::string quoted(const std::string& text, const char* quote) {
  std::string result = "'";
  for (const char c : text) result += c == '\'' ? quote : std::string(1, c);
  return result + '\'';
}

}  // namespace host::manual

int main(int argc, char** argv) {
  using namespace host::manual;
  const std::string_view what = argc == 2 ? argv[1] : "";
  if (what == "man") {
    print_man(std::cout, program());
  } else if (what == "bash") {
    print_bash(std::cout, program());
  } else if (what == "zsh") {
    print_zsh(std::cout, program());
  } else if (what == "fish") {
    print_fish(std::cout, program());
  } else {
    std::cerr << "usage: hedro34_manual man|bash|zsh|fish\n";
    return 2;
  }
  return std::cout.flush() ? 0 : 1;
}
