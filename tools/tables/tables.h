// What the member tables of the component say, as text for others: the interface definition of the type library, the
// reference page, the manual page, and the types of the Python client.
#pragma once

#include <ostream>
#include <string>

#include "hedro34/component/classes.h"

namespace hedro34::tables {

void print_idl(std::ostream& out);
void print_reference(std::ostream& out);
void print_manual(std::ostream& out);
void print_python(std::ostream& out);

// A type, an argument's default ("= True", empty for none) and the kind of a member, in the words of the two pages.
std::string type_words(const ValueType& type);
std::string default_words(const Argument& argument);
std::string kind_words(const Member& member);

inline std::string utf8(StringView text) { return to_utf8(text); }

// "1A11377D-4B0A-4D1C-958B-625FA5F427D6"
std::string identifier(const binary::GUID& id);

// The text in quotes, with escapes that the definition language, Python and the reference share.
std::string quoted(StringView text);

inline bool has(const Member& member, std::uint16_t kind) { return (member.kinds & kind) != 0; }
inline bool starts_with(StringView text, StringView start) { return text.substr(0, start.size()) == start; }

}  // namespace hedro34::tables
