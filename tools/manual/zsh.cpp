#include "tools/manual/manual.h"

namespace host::manual {
namespace {

// The text with a backslash before each of these characters.
std::string guarded(const std::string& text, const char* characters) {
  std::string result;
  for (const char c : text) {
    if (std::string_view(characters).find(c) != std::string_view::npos) result += '\\';
    result += c;
  }
  return result;
}

std::string in_quotes(const std::string& text) { return quoted(text, "'\\''"); }

// What completes a value: the last part of a row of _arguments.
std::string action(const std::string& name, const Values& values) {
  std::string what = " ";
  if (!values.endings.empty() && values.endings.front().empty()) {
    what = "_files";
  } else if (values.endings.size() == 1) {
    what = "_files -g \"*" + joined(values.endings, "") + "\"";  // in parentheses one alone would be a qualifier
  } else if (!values.endings.empty()) {
    what = "_files -g \"*(" + joined(values.endings, "|") + ")\"";
  } else if (values.is_list) {
    what = "_values -s , " + name + ' ' + joined(values.names, " ");
  } else if (!values.names.empty()) {
    what = "(" + joined(values.names, " ") + ")";
  }
  return name + ':' + what;
}

std::string argument_row(const Option& option) {
  std::string excluded;
  if (!option.excludes.empty()) excluded = '(' + joined(option.excludes, " ") + ')';
  if (option.name == "--help" || option.name == "--version") excluded = "(- : *)";
  std::string text = excluded + option.name;
  if (!option.value_name.empty()) text += '=';
  text += '[' + guarded(option.help, "[]\\") + ']';
  if (!option.value_name.empty()) text += ':' + action(option.value_name, option.values);
  return in_quotes(text);
}

void print_command(std::ostream& out, const Command& command) {
  out << "        " << command.name << ")\n          _arguments";
  for (const Option& option : command.options) out << " \\\n            " << argument_row(option);
  for (const Operand& operand : command.operands) {
    out << " \\\n            " << in_quotes((operand.repeats ? "*:" : ":") + action(operand.name, operand.values));
  }
  out << "\n          ;;\n";
}

}  // namespace

void print_zsh(std::ostream& out, const Program& program) {
  out << "#compdef hedro34\n# Completions of hedro34 for zsh, written by its build from the list that --help prints.\n\n"
         "_hedro34() {\n  local curcontext=\"$curcontext\" state line ret=1\n  local -A opt_args\n  local -a commands\n"
         "  commands=(\n";
  for (const Command& command : program.commands) {
    out << "    " << in_quotes(command.name + ':' + guarded(command.help, ":\\")) << "\n";
  }
  out << "  )\n  _arguments -C";
  for (const Option& option : program.options) out << " \\\n    " << argument_row(option);
  out << " \\\n    '1: :->command' \\\n    '*:: :->words' && ret=0\n  case $state in\n"
         "    command) _describe -t commands command commands && ret=0 ;;\n    words)\n      curcontext=\"${curcontext%:*:*}:hedro34-$words[1]:\"\n"
         "      case $words[1] in\n";
  for (const Command& command : program.commands) print_command(out, command);
  out << "      esac && ret=0\n      ;;\n  esac\n  return ret\n}\n\n"
         "if [[ $funcstack[1] == _hedro34 ]]; then\n  _hedro34 \"$@\"\nelse\n  compdef _hedro34 hedro34\nfi\n";
}

}  // namespace host::manual
