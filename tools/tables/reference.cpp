#include "tools/tables/tables.h"

namespace hedro34::tables {
namespace {

std::string in_code(const std::string& name) { return '`' + name + '`'; }

std::string type_text(const ValueType& type) {
  return type.name.empty() ? type_words(type) : in_code(type_words(type));
}

std::string default_text(const Argument& argument) {
  const std::string words = default_words(argument);
  if (words.empty()) return "";
  return " = " + (argument.type.kind == Kind::Text ? in_code(words) : words);
}

std::string arguments_text(const Member& member) {
  std::string result;
  for (std::size_t i = 0; i < member.count; ++i) {
    const Argument& argument = member.arguments[i];
    if (i > 0) result += "; ";
    if (argument.optional) result += "optional ";
    result += in_code(utf8(argument.name)) + " " + type_text(argument.type);
    if (argument.by_reference) result += ", by reference";
    result += default_text(argument);
    if (argument.meaning != nullptr) result += " (" + utf8(argument.meaning) + ")";
  }
  return result;
}

void print_class(std::ostream& out, const ClassTable& table) {
  out << "\n### " << utf8(table.name) << "\n\n" << utf8(table.summary);
  if (table.create != nullptr) out << " Created as `" << utf8(type_library_name) << "." << utf8(table.name) << "`.";
  if (table.default_member >= 0) {
    out << " Default member: `" << utf8(table.members[static_cast<std::size_t>(table.default_member)].name) << "`.";
  }
  out << "\n\nClass {" << identifier(table.class_id) << "}, interface {" << identifier(table.interface_id)
      << "}.\n\n| Member | Kind | Type | What it does | Arguments |\n|---|---|---|---|---|\n";
  for (const Member& member : table.members) {
    out << "| `" << utf8(member.name) << "` | " << kind_words(member) << " | " << type_text(member.type) << " | "
        << utf8(member.line) << " | " << arguments_text(member) << " |\n";
  }
}

}  // namespace

std::string type_words(const ValueType& type) {
  switch (type.kind) {
    case Kind::None: return "";
    case Kind::Boolean: return "Boolean";
    case Kind::Int16: return "16-bit integer";
    case Kind::Int32: return "32-bit integer";
    case Kind::Float: return "32-bit float";
    case Kind::Double: return "64-bit float";
    case Kind::Text: return "string";
    case Kind::Value: return "variant";
    case Kind::Texts: return "array of strings";
    case Kind::Numbers: return "array of 32-bit integers";
    case Kind::Object: return type.name.empty() ? "object" : utf8(type.name);
    case Kind::Enumeration: return utf8(type.name);
  }
  return {};
}

std::string default_words(const Argument& argument) {
  if (!argument.optional || argument.by_reference) return "";
  switch (argument.type.kind) {
    case Kind::Text: return quoted(text_of(argument.text));
    case Kind::Boolean: return argument.number != 0 ? "True" : "False";
    case Kind::Value: return "";
    default: return std::to_string(argument.number);
  }
}

std::string kind_words(const Member& member) {
  if (has(member, binary::DISPATCH_METHOD)) return "method";
  if (has(member, binary::DISPATCH_PROPERTYPUT)) return "read, write";
  return has(member, binary::DISPATCH_PROPERTYPUTREF) ? "read, assign object" : "read";
}

void print_reference(std::ostream& out) {
  out << "# Interfaces\n\nThe classes that callers outside the library see, with their members in the order of the "
         "interfaces. This page is written from\nthe tables by which the calls are made (`hedro34_tables reference`); how "
         "a component is loaded and called stands in\n[component.md](component.md). Installed, it is the manual page "
         "`hedro34-interfaces`. What failures leave stands in the headers of\nthe classes. Characters are 16 bits wide; positions "
         "count from 1.\n\n## Type library\n\n`"
      << utf8(type_library_name) << "`, version " << type_library_major << "." << type_library_minor << ", locale "
      << type_library_locale << ", identifier {" << identifier(type_library_id) << "}.\n";
  for (const ClassTable& table : library_classes()) print_class(out, table);
  out << "\n## Enumerations\n\n32-bit integers.\n";
  for (const EnumerationTable& enumeration : library_enumerations()) {
    out << "\n### " << utf8(enumeration.name) << "\n\n"
        << utf8(enumeration.summary) << "\n\n| Name | Value | What it stands for |\n|---|---|---|\n";
    for (const Enumerator& value : enumeration.values)
      out << "| `" << utf8(value.name) << "` | " << value.value << " | " << utf8(value.line) << " |\n";
  }
  out << "\n## Services and default objects\n\nBeside the type library. Where a type is one of a host's libraries, the "
         "default objects have `Form` in the place of `TIB`\nand `Data` in the place of `WENKtd`: what `FormTemplate.Pages` "
         "gives as a `TIBPages` is a `FormPages`.\n";
  for (const ClassTable& table : service_classes()) print_class(out, table);
}

}  // namespace hedro34::tables
