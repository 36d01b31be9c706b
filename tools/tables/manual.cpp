#include "hedro34/version.h"
#include "tools/tables/tables.h"

namespace hedro34::tables {
namespace {

// Text as the formatter takes it: its own characters escaped, names that stand in backquotes in bold.
std::string escaped(const std::string& text) {
  std::string result;
  bool in_name = false;
  for (const char c : text) {
    if (c == '`') {
      result += in_name ? "\\fR" : "\\fB";
      in_name = !in_name;
    } else if (c == '\\') {
      result += "\\e";
    } else if (c == '-') {
      result += "\\-";
    } else {
      result += c;
    }
  }
  return result;
}

std::string escaped(StringView text) { return escaped(utf8(text)); }

void print_member(std::ostream& out, const Member& member) {
  out << ".TP\n\\fB" << escaped(member.name) << "\\fR";
  for (std::size_t i = 0; i < member.count; ++i) {
    out << (i == 0 ? "(" : ", ") << "\\fI" << escaped(member.arguments[i].name) << "\\fR"
        << (i + 1u == member.count ? ")" : "");
  }
  const std::string type = type_words(member.type);
  out << "  \\(em " << kind_words(member) << (type.empty() ? "" : ", ") << escaped(type) << "\n"
      << escaped(member.line) << "\n";
  if (member.count == 0) return;
  out << ".RS\n";
  for (std::size_t i = 0; i < member.count; ++i) {
    const Argument& argument = member.arguments[i];
    out << ".TP\n\\fI" << escaped(argument.name) << "\\fR\n"
        << (argument.optional ? "optional " : "") << escaped(type_words(argument.type));
    if (argument.by_reference) out << ", by reference";
    if (const std::string value = default_words(argument); !value.empty())
      out << ", " << escaped(value) << " when left out";
    if (argument.meaning != nullptr) out << ": " << escaped(argument.meaning);
    out << "\n";
  }
  out << ".RE\n";
}

void print_class(std::ostream& out, const ClassTable& table) {
  out << ".SS " << escaped(table.name) << "\n" << escaped(table.summary);
  if (table.create != nullptr)
    out << "\nCreated as \\fB" << escaped(type_library_name) << "." << escaped(table.name) << "\\fR.";
  if (table.default_member >= 0) {
    out << "\nThe default member is \\fB" << escaped(table.members[static_cast<std::size_t>(table.default_member)].name)
        << "\\fR.";
  }
  out << "\n";
  for (const Member& member : table.members) print_member(out, member);
}

}  // namespace

void print_manual(std::ostream& out) {
  out << ".\\\" Written from the member tables of the component: hedro34_tables man\n.TH HEDRO34\\-INTERFACES 3 \"\" \"HEDRO34 "
      << version
      << "\" \"HEDRO34\"\n.SH NAME\nhedro34\\-interfaces \\- the classes of the HEDRO34 component, called by name\n"
         ".SH DESCRIPTION\nThe members of each class, in the order of its interface, with their arguments and types.\n"
         "Names are found in any case of their letters.\nPositions count from 1; characters are 16 bits wide.\n"
         "An operation of the type library reports a failure once and gives its result as it stood:\n"
         "False, 0, an empty text, reference or array.\n.SH CLASSES OF THE TYPE LIBRARY\n";
  for (const ClassTable& table : library_classes()) print_class(out, table);
  out << ".SH ENUMERATIONS\n32\\-bit integers.\n";
  for (const EnumerationTable& enumeration : library_enumerations()) {
    out << ".SS " << escaped(enumeration.name) << "\n" << escaped(enumeration.summary) << "\n";
    for (const Enumerator& value : enumeration.values) {
      out << ".TP\n\\fB" << escaped(value.name) << "\\fR = " << escaped(std::to_string(value.value)) << "\n"
          << escaped(value.line) << "\n";
    }
  }
  out << ".SH SERVICES AND DEFAULT OBJECTS\nBeside the type library.\n"
         "Where a type is one of a host's libraries, the default objects have Form in the place of TIB and Data in the place "
         "of WENKtd:\nwhat \\fBFormTemplate.Pages\\fR gives as a TIBPages is a FormPages.\n";
  for (const ClassTable& table : service_classes()) print_class(out, table);
  out << ".SH SEE ALSO\n.BR hedro34 (1)\n";
}

}  // namespace hedro34::tables
