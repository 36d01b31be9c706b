#include <array>
#include <set>
#include <string_view>
#include <utility>

#include "hedro34/version.h"
#include "host/stop.h"
#include "tools/manual/manual.h"

namespace host::manual {
namespace {

constexpr std::array<std::pair<const char*, const char*>, 7> examples = {{
    {"What is in a test, with all its objectives:", "hedro34 show --objectives all --state CA biology.xml"},
    {"One test on a form:",
     "hedro34 merge --form blank.form.json --form-out sheet.form.json \\\n"
     "        --document-out biology.ktd --report biology.html biology.xml"},
    {"Whether the versions of a test can go together:", "hedro34 compare unit-a.xml unit-b.xml unit-c.xml"},
    {"They do, on a form whose first field takes the version:",
     "hedro34 merge --sequence-question 1 --form versions.form.json \\\n"
     "        --form-out unit.form.json --document-out unit.ktd \\\n"
     "        unit-a.xml unit-b.xml unit-c.xml"},
    {"The keys of all versions, and as a table for a spreadsheet:",
     "hedro34 show unit.ktd\nhedro34 show --csv unit.ktd >unit.csv"},
    {"The page of a merge, to print:", "hedro34 report --form unit.form.json --out unit.html unit.ktd"},
    {"A new form with 50 fields and one for the version, looked at:",
     "hedro34 form --questions 50 --versions A,B --out - | hedro34 show -"},
}};

// Text as the formatter takes it.
std::string escaped(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (c == '\\') {
      result += "\\e";
    } else if (c == '-') {
      result += "\\-";
    } else if (c == '\'' && result.empty()) {
      result += "\\(aq";
    } else {
      result += c;
    }
  }
  return result.starts_with('.') ? "\\&" + result : result;
}

void print_synopsis(std::ostream& out, const Command& command) {
  std::set<std::string> printed;
  out << ".SY \"hedro34 " << command.name << "\"\n";
  for (const Option& option : command.options) {
    if (option.name == "--help") continue;
    if (option.required) {
      out << ".B " << escaped(option.name) << "\n.I " << escaped(option.value_name) << "\n";
    } else if (!option.excludes.empty()) {
      // Those that exclude each other stand together, where the first of them is.
      if (!printed.insert(option.name).second) continue;
      printed.insert(option.excludes.begin(), option.excludes.end());
      out << ".RB [ " << escaped(option.name);
      for (const std::string& other : option.excludes) out << " \" | \" " << escaped(other);
      out << " ]\n";
    } else if (option.value_name.empty()) {
      out << ".RB [ " << escaped(option.name) << " ]\n";
    } else {
      out << ".RB [ " << escaped(option.name) << "\\~\\c\n.IR " << escaped(option.value_name) << " ]\n";
    }
  }
  for (const Operand& operand : command.operands) {
    for (int i = 0; i < operand.at_least; ++i) out << ".I " << escaped(operand.name) << "\n";
    if (operand.repeats) out << ".RI [ " << escaped(operand.name) << " \\~.\\|.\\|.]\n";
  }
  out << ".YS\n";
}

void print_option(std::ostream& out, const Option& option) {
  out << ".TP\n";
  if (!option.short_name.empty()) out << "\\fB" << escaped(option.short_name) << "\\fR, ";
  out << "\\fB" << escaped(option.name) << "\\fR";
  if (!option.value_name.empty()) out << " \\fI" << escaped(option.value_name) << "\\fR";
  out << "\n" << escaped(option.help) << (option.required ? " (needed)" : "") << ".\n";
}

void print_command(std::ostream& out, const Command& command) {
  out << ".SS hedro34 " << command.name << "\n" << escaped(command.help) << ".\n";
  for (const Operand& operand : command.operands) {
    out << ".TP\n\\fI" << escaped(operand.name) << "\\fR\n" << escaped(operand.help) << ".\n";
  }
  for (const Option& option : command.options) {
    if (option.name != "--help") print_option(out, option);
  }
}

}  // namespace

void print_man(std::ostream& out, const Program& program) {
  out << ".\\\" Written from the program's list of commands and options: hedro34_manual man\n.TH HEDRO34 1 \"\" \"HEDRO34 "
      << hedro34::version
      << "\" \"HEDRO34\"\n.SH NAME\nhedro34 \\- reads, shows, compares and merges tests\n.SH SYNOPSIS\n";
  for (const Command& command : program.commands) print_synopsis(out, command);
  out << ".SY hedro34\n";
  for (const Option& option : program.options) out << ".RB [ " << escaped(option.name) << " ]\n";
  out << ".YS\n.SH DESCRIPTION\n"
      << escaped(program.help) << ".\n"
      << escaped(standard_streams)
      << "\n.SH COMMANDS\nOptions and names may stand in any order behind the command.\nBehind \\fB\\-\\-\\fR everything is a name.\n";
  for (const Command& command : program.commands) print_command(out, command);
  out << ".SH OPTIONS\n";
  for (const Option& option : program.options) print_option(out, option);
  out << ".SH EXIT STATUS\n";
  for (const auto& [code, meaning] : exit_codes) {
    out << ".TP\n\\fB" << static_cast<int>(code) << "\\fR\n" << escaped(meaning) << "\n";
  }
  out << ".SH EXAMPLES\n";
  for (const auto& [what, command] : examples) {
    out << ".PP\n" << escaped(what) << "\n.PP\n.EX\n";
    std::string_view left = command;
    for (std::size_t end = 0; end != std::string_view::npos;
         left.remove_prefix(end == std::string_view::npos ? 0 : end + 1)) {
      end = left.find('\n');
      out << ".RS\n" << escaped(left.substr(0, end)) << "\n.RE\n";
    }
    out << ".EE\n";
  }
  out << ".SH SEE ALSO\n.BR hedro34\\-interfaces (3)\n";
}

}  // namespace host::manual
