// The classes that this user's programs can create by name, each with its identifier and the shared library it comes from: a
// JSON file in the user's data folder, described in docs/component.md. Any number of processes may read and change it at once:
// a change is made under a lock that ends with its process, and the file is replaced whole or not at all. A system that has a
// class registry of its own is meant to use that.
//
// No exception leaves; E_OUTOFMEMORY leaves the file as it was or as it was to be. Where the file is in error,
// `last_file_error()` says why; a success leaves none there.
#pragma once

#include <span>

#include "hedro34/base/text.h"
#include "hedro34/component/binary.h"

namespace hedro34 {

struct RegisteredClass {
  String name;  // such as "HEDRO34.clsHEDRO"; not empty
  binary::GUID id{};
  String library;  // absolute path

  friend bool operator==(const RegisteredClass&, const RegisteredClass&) = default;
};

// hedro34/classes.json in $XDG_DATA_HOME, else in $HOME/.local/share, else in .local/share of the account's home folder. A
// variable that is no absolute path is passed over. Empty when there is no such folder, or its name is not UTF-8: such a
// registry can be neither read nor written.
String class_registry_path();

// Adds the classes. One with the name (in any case) or the identifier of a class that is there takes its place, and of two such
// classes the first one's; all others stay, in their order, and what is new goes to the end. Within `classes` a later one
// replaces an earlier one. A registry that says all this already is not written, so that nothing has to be writable for it.
//   REGDB_E_READREGDB   the file is damaged or unreadable, and was left alone
//   REGDB_E_WRITEREGDB  it cannot be written, or a class has no name or no absolute path; the file keeps its content
binary::HRESULT register_classes(std::span<const RegisteredClass> classes) noexcept;

// Removes the classes with these identifiers; one that is not there is no error. Results as above.
binary::HRESULT unregister_classes(std::span<const binary::GUID> ids) noexcept;

// Finds a class by its name in any case. CO_E_CLASSSTRING when there is none, REGDB_E_READREGDB for a damaged or unreadable
// file; `found` is then as it was.
binary::HRESULT find_class(StringView name, RegisteredClass& found) noexcept;

// Whether the bytes of the file hold the name, in any case, or may do so: as escapes, or in a file that cannot be read. For a
// registry that is damaged, where nobody can say what is registered: a name that is not in it never was.
bool registry_may_mention(StringView name);

}  // namespace hedro34
