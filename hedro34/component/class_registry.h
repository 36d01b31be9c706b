// The classes that this user's programs can create by name, each with its identifier and the shared library it comes from,
// described in docs/component.md: the system's own registry where it has one (class_registry_windows.cpp), else a JSON file in
// the user's data folder (class_registry_posix.cpp). Any number of processes may read and change it at once. A change is made
// whole or not at all: of the file, which is replaced, always; of the system's registry, unless that refuses to take back.
//
// No exception leaves; E_OUTOFMEMORY leaves the registry as it was or as it was to be. Where the registry is in error,
// `last_file_error()` says why; a success leaves none there.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "hedro34/base/text.h"
#include "hedro34/component/binary.h"

namespace hedro34 {

// An entry of the registry.
struct RegisteredClass {
  String name;  // such as "HEDRO34.clsHEDRO"; not empty
  binary::GUID id{};
  String library;  // absolute path

  friend bool operator==(const RegisteredClass&, const RegisteredClass&) = default;
};

// What a system's registry says of a type library, beside the classes in it. A file has no place for it.
struct RegisteredTypeLibrary {
  // An interface of it.
  struct Interface {
    String name;
    binary::GUID id{};
  };
  String name;
  binary::GUID id{};
  std::uint16_t major = 0;
  std::uint16_t minor = 0;
  std::uint32_t locale = 0;
  String path;  // absolute, of the file that holds it
  std::vector<Interface> interfaces{};
};

// Where the registry is. A file: hedro34/classes.json in $XDG_DATA_HOME, else in $HOME/.local/share, else in .local/share of
// the account's home folder. A variable that is no absolute path is passed over. Empty when there is no such folder, or its
// name is not UTF-8: such a registry can be neither read nor written.
HEDRO34_API String class_registry_path();

// Adds the classes, and the type library where one is given. A registry that says all this already is not written, so that
// nothing has to be writable for it.
// In a file, a class with the name (in any case) or the identifier of a class that is there takes its place, and of two
// such classes the first one's; all others stay, in their order, and what is new goes to the end. Within `classes` a later
// one replaces an earlier one.
// In the system's registry, they are entered for the machine, where the user may do that, else for the user.
//   REGDB_E_READREGDB   the registry is damaged or unreadable, and was left alone
//   REGDB_E_WRITEREGDB  it cannot be written, or a class has no name or no absolute path; the registry keeps its content
HEDRO34_API binary::HRESULT register_classes(std::span<const RegisteredClass> classes,
                                             const RegisteredTypeLibrary* types = nullptr) noexcept;

// Removes the classes with these identifiers, and the type library; one that is not there is no error. Results as above. From
// the system's registry all that can be removed is, for the machine and for the user, whichever file it names, but no name and
// no interface that another class or type library has taken, and nothing that the same library of another bitness still needs.
HEDRO34_API binary::HRESULT unregister_classes(std::span<const RegisteredClass> classes,
                                               const RegisteredTypeLibrary* types = nullptr) noexcept;

// Finds a class by its name in any case. CO_E_CLASSSTRING when there is none, REGDB_E_READREGDB for a damaged or unreadable
// registry; `found` is then as it was.
HEDRO34_API binary::HRESULT find_class(StringView name, RegisteredClass& found) noexcept;

// Whether the bytes of the file hold the name, in any case, or may do so: as escapes, or in a file that cannot be read. For a
// registry that is damaged, where nobody can say what is registered: a name that is not in it never was. True for a registry
// that is no file.
HEDRO34_API bool registry_may_mention(StringView name);

}  // namespace hedro34
