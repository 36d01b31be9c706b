#include "tools/manual/manual.h"

namespace host::manual {
namespace {

std::string in_quotes(const std::string& text) { return quoted(text, "\\'"); }

// The command whose output are the values, or the values themselves; empty where only the user knows.
std::string completion(const Values& values) {
  if (!values.endings.empty()) {
    return values.endings.front().empty() ? "(__hedro34_files)"
                                          : "(__hedro34_files " + joined(values.endings, " ") + ")";
  }
  if (values.is_list) return "(__fish_append , " + joined(values.names, " ") + ")";
  return joined(values.names, " ");
}

void print_option(std::ostream& out, const std::string& condition, const Option& option) {
  out << "complete -c hedro34 -n " << in_quotes(condition) << " -l " << option.name.substr(2);
  if (!option.value_name.empty()) out << " -x";
  const std::string values = completion(option.values);
  if (!values.empty()) out << " -a " << in_quotes(values);
  out << " -d " << in_quotes(option.help) << "\n";
}

constexpr const char* functions =
    R"(# Completions of hedro34 for fish, written by its build from the list that --help prints.

function __hedro34_files --description 'Folders, and files that end as said; all files where none does'
    set -l typed (string replace -r -- '^--[a-z-]+=' '' (commandline -ct))
    set -l all (complete -C "'' $typed" | string replace -r '\t.*' '')
    set -l ends (string join '|' (string escape --style=regex -- $argv))
    if set -q argv[1]; and string match -qir -- "($ends)\$" $all
        string match -ir -- "^.*(?:/|$ends)\$" $all
    else
        printf '%s\n' $all
    end
end

function __hedro34_command --description 'Whether this is the command, or there is none yet'
    set -l words (commandline -opc)
    set -e words[1]
    set -l given (string match -v -- '-*' $words)
    test "$given[1]" = "$argv[1]"
end

complete -c hedro34 -f
)";

}  // namespace

void print_fish(std::ostream& out, const Program& program) {
  out << functions;
  const std::string none = "__hedro34_command";
  for (const Command& command : program.commands) {
    out << "complete -c hedro34 -n " << none << " -a " << command.name << " -d " << in_quotes(command.help) << "\n";
  }
  for (const Option& option : program.options) print_option(out, none, option);
  for (const Command& command : program.commands) {
    const std::string condition = none + ' ' + command.name;
    for (const Option& option : command.options) print_option(out, condition, option);
    for (const Operand& operand : command.operands) {
      out << "complete -c hedro34 -n " << in_quotes(condition) << " -a " << in_quotes(completion(operand.values))
          << "\n";
    }
  }
}

}  // namespace host::manual
