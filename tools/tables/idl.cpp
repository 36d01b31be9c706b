#include "tools/tables/tables.h"

namespace hedro34::tables {
namespace {

std::string type_text(const ValueType& type) {
  switch (type.kind) {
    case Kind::None: return "void";
    case Kind::Boolean: return "VARIANT_BOOL";
    case Kind::Int16: return "short";
    case Kind::Int32: return "long";
    case Kind::Float: return "float";
    case Kind::Double: return "double";
    case Kind::Text: return "BSTR";
    case Kind::Value: return "VARIANT";
    case Kind::Object: return starts_with(type.name, u"cls") ? "_" + utf8(type.name) + "*" : "IDispatch*";
    case Kind::Texts: return "SAFEARRAY(BSTR)";
    case Kind::Numbers: return "SAFEARRAY(long)";
    case Kind::Enumeration: return utf8(type.name);
  }
  return {};
}

std::string argument_text(const Argument& argument) {
  std::string result = argument.by_reference ? "[in, out" : "[in";
  if (argument.optional) {
    result += ", optional";
    if (argument.type.kind == Kind::Text) {
      result += ", defaultvalue(" + quoted(text_of(argument.text)) + ")";
    } else if (argument.type.kind != Kind::Value) {
      result += ", defaultvalue(" + std::to_string(argument.number) + ")";
    }
  }
  return result + "] " + type_text(argument.type) + (argument.by_reference ? "* " : " ") + utf8(argument.name);
}

void print_member(std::ostream& out, binary::DISPID id, const Member& member) {
  std::string arguments;
  for (std::size_t i = 0; i < member.count; ++i) {
    arguments += (i > 0 ? ", " : "") + argument_text(member.arguments[i]);
  }
  const std::string start = "      [id(" + std::to_string(id) + ")";
  const std::string name = " " + utf8(member.name) + "(";
  const std::string value =
      arguments + (member.count > 0 ? ", " : "") + "[in] " + type_text(member.type) + " " + utf8(member.put_name);
  if (has(member, binary::DISPATCH_METHOD))
    out << start << "] " << type_text(member.type) << name << arguments << ");\n";
  if (has(member, binary::DISPATCH_PROPERTYGET)) {
    out << start << ", propget] " << type_text(member.type) << name << arguments << ");\n";
  }
  if (has(member, binary::DISPATCH_PROPERTYPUT)) out << start << ", propput] void" << name << value << ");\n";
  if (has(member, binary::DISPATCH_PROPERTYPUTREF)) out << start << ", propputref] void" << name << value << ");\n";
}

void print_class(std::ostream& out, const ClassTable& table) {
  const std::string name = utf8(table.name);
  out << "\n  [uuid(" << identifier(table.interface_id) << ")]\n  dispinterface _" << name
      << "\n  {\n    properties:\n    methods:\n";
  for (std::size_t i = 0; i < table.members.size(); ++i) {
    print_member(out, table.id_of(static_cast<int>(i)), table.members[i]);
  }
  out << "  };\n\n  [uuid(" << identifier(table.class_id) << ")" << (table.create == nullptr ? ", noncreatable" : "")
      << ", helpstring(" << quoted(table.summary) << ")]\n  coclass " << name << "\n  {\n    [default] dispinterface _"
      << name << ";\n  };\n";
}

}  // namespace

void print_idl(std::ostream& out) {
  out << "// Written from the member tables of the component: hedro34_tables idl > hedro34/component/HEDRO34.idl\n\nimport \"oaidl.idl\";\n\n[uuid("
      << identifier(type_library_id) << "), version(" << type_library_major << "." << type_library_minor << "), lcid("
      << type_library_locale << ")]\nlibrary " << utf8(type_library_name) << "\n{\n  importlib(\"stdole2.tlb\");\n\n";
  for (const ClassTable& table : library_classes()) out << "  dispinterface _" << utf8(table.name) << ";\n";
  for (const EnumerationTable& enumeration : library_enumerations()) {
    out << "\n  typedef enum " << utf8(enumeration.name) << "\n  {\n";
    for (const Enumerator& value : enumeration.values) {
      out << "    " << utf8(value.name) << " = " << value.value
          << (&value == &enumeration.values.back() ? "\n" : ",\n");
    }
    out << "  } " << utf8(enumeration.name) << ";\n";
  }
  for (const ClassTable& table : library_classes()) print_class(out, table);
  out << "};\n";
}

}  // namespace hedro34::tables
