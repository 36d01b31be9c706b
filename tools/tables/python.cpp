#include <vector>

#include "hedro34/version.h"
#include "tools/tables/tables.h"

namespace hedro34::tables {
namespace {

// The objects that the library hands out for the interfaces of templates and documents are those of its default classes.
std::string class_name(StringView name) {
  std::string result = utf8(name);
  for (const auto& [prefix, own] : {std::pair{"TIB", "Form"}, std::pair{"WENKtd", "Data"}}) {
    if (result.starts_with(prefix)) return own + result.substr(std::string(prefix).size());
  }
  return result;
}

bool is_hosts(StringView name) { return name.starts_with(u"TIB") || name.starts_with(u"WENKtd"); }

std::string type_of(const ValueType& type, bool argument) {
  switch (type.kind) {
    case Kind::None: return "None";
    case Kind::Boolean: return "bool";
    case Kind::Int16:
    case Kind::Int32: return "int";
    case Kind::Float:
    case Kind::Double: return "float";
    case Kind::Text: return "str";
    case Kind::Value: return "Any";
    case Kind::Texts: return argument ? "list[str] | tuple[str, ...]" : "Array[str]";
    case Kind::Numbers: return argument ? "list[int] | tuple[int, ...]" : "Array[int]";
    case Kind::Enumeration: return argument ? "int" : utf8(type.name) + " | int";
    case Kind::Object:
      if (type.name.empty() || (argument && is_hosts(type.name))) return "Any";
      return class_name(type.name);
  }
  return "Any";
}

std::string argument_text(const Argument& argument) {
  std::string type = type_of(argument.type, true);
  if (argument.by_reference && argument.type.kind == Kind::Boolean) type = "ByRef[bool]";
  const bool is_path = argument.name.ends_with(u"Path") || argument.name.ends_with(u"File");
  if (argument.type.kind == Kind::Text && is_path) type = "str | PathLike[str]";
  std::string text = utf8(argument.name) + ": " + type;
  if (!argument.optional) return text;
  switch (argument.type.kind) {
    case Kind::Boolean:
      if (argument.by_reference) return text + " = MISSING";
      return text + (argument.number != 0 ? " = True" : " = False");
    case Kind::Int16:
    case Kind::Int32:
    case Kind::Enumeration: return text + " = " + std::to_string(argument.number);
    case Kind::Text: return text + " = " + quoted(text_of(argument.text));
    default: return text + " = MISSING";
  }
}

std::string arguments_of(const Member& member) {
  std::string result = "self";
  for (std::uint8_t i = 0; i < member.count; ++i) result += ", " + argument_text(member.arguments[i]);
  return result;
}

constexpr std::size_t width = 120;
constexpr std::uint16_t writes = binary::DISPATCH_PROPERTYPUT | binary::DISPATCH_PROPERTYPUTREF;

// Paragraphs as a docstring, in lines of the page's width.
void print_words(std::ostream& out, const std::string& indent, const std::vector<std::string>& lines) {
  std::string text = indent + "\"\"\"" + lines.front();
  if (lines.size() == 1) text += "\"\"\"";
  for (std::size_t i = 0;; text = indent + lines[i]) {
    while (text.size() > width) {
      const std::size_t end = text.rfind(' ', width);
      out << text.substr(0, end) << "\n";
      text = indent + text.substr(end + 1);
    }
    out << text << "\n";
    if (++i == lines.size()) break;
    if (i == 1) out << "\n";
  }
  if (lines.size() > 1) out << indent << "\"\"\"\n";
}

void print_function(std::ostream& out, const std::string& name, const Member& member, const std::string& result) {
  const std::string line = "    def " + name + "(" + arguments_of(member) + ") -> " + result + ":";
  out << "\n";
  if (line.size() <= width) {
    out << line << "\n";
  } else {
    out << "    def " << name << "(\n        self,\n";
    for (std::uint8_t i = 0; i < member.count; ++i) out << "        " << argument_text(member.arguments[i]) << ",\n";
    out << "    ) -> " << result << ":\n";
  }
  std::vector<std::string> lines = {utf8(member.line)};
  for (std::uint8_t i = 0; i < member.count; ++i) {
    const Argument& argument = member.arguments[i];
    if (argument.meaning != nullptr) lines.push_back(utf8(argument.name) + ": " + utf8(argument.meaning));
  }
  print_words(out, "        ", lines);
}

void print_property(std::ostream& out, const Member& member, const std::string& type) {
  const std::string name = utf8(member.name);
  out << "\n    @property\n    def " << name << "(self) -> " << type << ":\n";
  print_words(out, "        ", {type + ": " + utf8(member.line)});
  if ((member.kinds & writes) != 0) {
    out << "\n    @" << name << ".setter\n    def " << name << "(self, value: " << type << ") -> None: ...\n";
  }
}

// Quoted where it is a class, which may come later in the file.
std::string element_of(const Member& item) {
  const std::string type = type_of(item.type, false);
  return item.type.kind == Kind::Object && type != "Any" ? '"' + type + '"' : type;
}

void print_class(std::ostream& out, const ClassTable& table) {
  const Member* const main =
      table.default_member < 0 ? nullptr : &table.members[static_cast<std::size_t>(table.default_member)];
  const bool items = main != nullptr && main->count == 1;
  out << "\n\nclass " << utf8(table.name) << "(" << (items ? "Items[" + element_of(*main) + "]" : "Reference")
      << ", Protocol):\n";
  std::vector<std::string> words = {utf8(table.summary)};
  if (table.create != nullptr) words.push_back("Made by `hedro34.create(\"HEDRO34." + utf8(table.name) + "\")`.");
  print_words(out, "    ", words);
  for (const Member& member : table.members) {
    const bool host_object = member.type.kind == Kind::Object && is_hosts(member.type.name);
    std::string type = type_of(member.type, false);
    const std::string name = utf8(member.name);
    if ((member.kinds & binary::DISPATCH_PROPERTYGET) != 0 && member.count == 0) {
      print_property(out, member, type + (host_object ? " | Any" : ""));
      continue;
    }
    if (member.type.kind == Kind::Object && type != "Any") type += " | Any";  // empty where there is none
    print_function(out, name, member, type);
    if (items && &member == main && (member.kinds & writes) != 0) {
      out << "\n    def __setitem__(self, index: Any, value: " << type_of(main->type, true) << ") -> None: ...\n";
    }
  }
  if (main != nullptr && !items) {
    const bool gives_object = main->type.kind == Kind::Object;  // which arguments go to
    out << "\n    def __call__(self" << (gives_object ? ", *index: Any" : "") << ") -> " << type_of(main->type, false)
        << (gives_object ? " | Any" : "") << ": ...\n";
  }
}

// Python has a `None` of its own.
std::string short_name(const EnumerationTable& table, const Enumerator& value) {
  const std::string name = utf8(value.name.substr(table.name.size()));
  return name == "None" ? name + "_" : name;
}

}  // namespace

void print_python(std::ostream& out) {
  out << R"("""The classes of the library, as its member tables give them. Written by `hedro34_tables python`; not edited
by hand."""

from __future__ import annotations

from enum import IntEnum, IntFlag
from os import PathLike
from typing import Any, Literal, Protocol, overload

from ._typing import Items, Reference
from ._values import MISSING, Array, ByRef

VERSION = ")"
      << version << R"("

CLASSES: dict[str, str] = {
)";
  std::vector<const ClassTable*> creatable;
  for (const auto classes : {library_classes(), service_classes()}) {
    for (const ClassTable& table : classes) {
      if (table.create == nullptr) continue;
      creatable.push_back(&table);
      out << "    \"HEDRO34." << utf8(table.name) << "\": \"{" << identifier(table.class_id) << "}\",\n";
    }
  }
  out << "}\n";
  for (const EnumerationTable& table : library_enumerations()) {
    out << "\n\nclass " << utf8(table.name) << (table.flags ? "(IntFlag):\n" : "(IntEnum):\n");
    std::vector<std::string> words = {utf8(table.summary)};
    for (const Enumerator& value : table.values) words.push_back(short_name(table, value) + ": " + utf8(value.line));
    print_words(out, "    ", words);
    out << "\n";
    for (const Enumerator& value : table.values) {
      out << "    " << short_name(table, value) << " = " << value.value << "\n";
    }
  }
  for (const auto classes : {library_classes(), service_classes()}) {
    for (const ClassTable& table : classes) print_class(out, table);
  }
  out << "\n\nclass Create(Protocol):\n    \"\"\"`hedro34.create`, with the class of what it gives.\"\"\"\n";
  for (const ClassTable* const table : creatable) {
    const std::string name = utf8(table->name);
    out << "\n    @overload\n    def __call__(\n        self, name: Literal[\"HEDRO34." << name << "\", \"" << name
        << "\"], library: Any = ...\n    ) -> " << name << ": ...\n";
  }
  out << "\n    @overload\n    def __call__(self, name: str, library: Any = ...) -> Any: ...\n";
}

}  // namespace hedro34::tables
