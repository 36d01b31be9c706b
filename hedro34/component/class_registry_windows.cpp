#include "hedro34/component/class_registry.h"

#include "hedro34/component/held.h"
#include "hedro34/component/identifier.h"
#include "hedro34/component/result_of.h"
#include "hedro34/component/system_text_windows.h"
#include "hedro34/platform/file_error.h"

#include <objbase.h>

#include <memory>
#include <optional>

namespace hedro34 {
namespace {

struct CloseKey {
  void operator()(HKEY key) const noexcept { ::RegCloseKey(key); }
};
using Key = std::unique_ptr<std::remove_pointer_t<HKEY>, CloseKey>;

// The two places of classes. What stands in the second one hides what stands in the first.
enum class Place { Machine, User };

HKEY root(Place place) noexcept { return place == Place::Machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER; }

// The view of programs whose pointers have another size, of keys that have two.
constexpr REGSAM other_view = sizeof(void*) == 8 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;

// A value as text under the key of all classes; an empty name is the default value.
struct Value {
  String key;
  String name;
  String text;
};

String path_of(const String& key) { return u"Software\\Classes\\" + key; }

LSTATUS open(Place place, const String& key, REGSAM rights, Key& opened) {
  HKEY found = nullptr;
  const LSTATUS status = ::RegOpenKeyExW(root(place), wide(path_of(key)), 0, rights, &found);
  opened.reset(found);
  return status;
}

bool is_there(Place place, const String& key, REGSAM view = 0) {
  Key opened;
  return open(place, key, KEY_QUERY_VALUE | view, opened) == ERROR_SUCCESS;
}

// A value as it stands there, of any type.
struct Content {
  DWORD type = REG_SZ;
  std::vector<BYTE> bytes{};

  friend bool operator==(const Content&, const Content&) = default;
};

Content content_of(const String& text) {
  const auto* const bytes = reinterpret_cast<const BYTE*>(text.c_str());
  return {REG_SZ, std::vector<BYTE>(bytes, bytes + 2 * (text.size() + 1))};
}

std::optional<Content> read(HKEY key, const String& name) {
  Content content;
  DWORD size = 600;  // more than most, since each question is a way to the system and back
  LSTATUS status = ERROR_SUCCESS;
  do {
    content.bytes.resize(size);
    status = ::RegQueryValueExW(key, wide(name), nullptr, &content.type, content.bytes.data(), &size);
  } while (status == ERROR_MORE_DATA);
  if (status != ERROR_SUCCESS) return std::nullopt;
  content.bytes.resize(size);
  return content;
}

std::optional<String> text_at(Place place, const String& key) {
  Key opened;
  if (open(place, key, KEY_QUERY_VALUE, opened) != ERROR_SUCCESS) return std::nullopt;
  const auto content = read(opened.get(), {});
  if (!content || content->type != REG_SZ) return std::nullopt;
  String text(reinterpret_cast<const char16_t*>(content->bytes.data()), content->bytes.size() / 2);
  if (const auto end = text.find(u'\0'); end != String::npos) text.resize(end);
  return text;
}

LSTATUS cannot_change(Place place, const String& key, LSTATUS status) {
  const String at = place == Place::Machine ? u"HKEY_LOCAL_MACHINE" : u"HKEY_CURRENT_USER";
  set_file_error(FileError::Kind::Unwritable, at + u"\\" + path_of(key), system_words(status));
  return status;
}

// What is written into one place, and taken back in the end unless it is kept.
class Changes {
 public:
  explicit Changes(Place place) : place_(place) {}
  Changes(const Changes&) = delete;
  Changes& operator=(const Changes&) = delete;
  ~Changes() {
    for (auto step = done_.rbegin(); step != done_.rend(); ++step) quietly([&] { take_back(*step); });
  }

  void keep() noexcept { done_.clear(); }

  LSTATUS write(const Value& value) {
    const Content content = content_of(value.text);
    done_.push_back({value.key, value.name, std::nullopt, Step::Nothing});
    Step& step = done_.back();
    LSTATUS status = ERROR_SUCCESS;
    DWORD disposition = REG_OPENED_EXISTING_KEY;
    if (!key_ || name_of_key_ != value.key) {
      HKEY made = nullptr;
      status = ::RegCreateKeyExW(root(place_), wide(path_of(value.key)), 0, nullptr, 0, KEY_QUERY_VALUE | KEY_SET_VALUE,
                                 nullptr, &made, &disposition);
      key_.reset(made);
      name_of_key_ = value.key;
    }
    if (Key key; status == ERROR_ACCESS_DENIED && open(place_, value.key, KEY_QUERY_VALUE, key) == ERROR_SUCCESS) {
      return read(key.get(), value.name) == content ? ERROR_SUCCESS : cannot_change(place_, value.key, status);
    }
    if (status != ERROR_SUCCESS) return cannot_change(place_, value.key, status);
    if (disposition == REG_CREATED_NEW_KEY) {
      step.undo = Step::DeleteKey;
    } else {
      step.former = read(key_.get(), value.name);
      if (step.former == content) return ERROR_SUCCESS;
      step.undo = Step::PutValueBack;
    }
    status = ::RegSetValueExW(key_.get(), wide(value.name), 0, content.type, content.bytes.data(),
                              static_cast<DWORD>(content.bytes.size()));
    return status == ERROR_SUCCESS ? status : cannot_change(place_, value.key, status);
  }

 private:
  struct Step {
    enum Undo { Nothing, DeleteKey, PutValueBack };
    String key;
    String name;
    std::optional<Content> former;  // nothing: no such value was there
    Undo undo;
  };

  void take_back(const Step& step) const {
    Key key;
    if (step.undo == Step::DeleteKey) {
      ::RegDeleteKeyW(root(place_), wide(path_of(step.key)));
    } else if (step.undo == Step::PutValueBack && open(place_, step.key, KEY_SET_VALUE, key) == ERROR_SUCCESS) {
      if (!step.former) {
        ::RegDeleteValueW(key.get(), wide(step.name));
      } else {
        ::RegSetValueExW(key.get(), wide(step.name), 0, step.former->type, step.former->bytes.data(),
                         static_cast<DWORD>(step.former->bytes.size()));
      }
    }
  }

  const Place place_;
  std::vector<Step> done_;
  Key key_;  // of the last value, since the next one often stands there too
  String name_of_key_;
};

String hexadecimal(std::uint32_t number) {
  String text;
  do {
    text.insert(text.begin(), u"0123456789abcdef"[number & 15]);
    number >>= 4;
  } while (number != 0);
  return text;
}

String class_key(const binary::GUID& id) { return u"CLSID\\" + identifier_text(id); }
String interface_key(const binary::GUID& id) { return u"Interface\\" + identifier_text(id); }

// A type library's versions are written in hexadecimal digits.
String version_of(const RegisteredTypeLibrary& types) {
  return hexadecimal(types.major) + u"." + hexadecimal(types.minor);
}

// The keys of a type library, the outer ones first.
struct TypeLibraryKeys {
  explicit TypeLibraryKeys(const RegisteredTypeLibrary& types)
      : library(u"TypeLib\\" + identifier_text(types.id)),
        version(library + u"\\" + version_of(types)),
        locale(version + u"\\" + hexadecimal(types.locale)),
        own(locale + (sizeof(void*) == 8 ? u"\\win64" : u"\\win32")) {}
  String library, version, locale, own;
};

// All that is to be said, keys behind the keys that they stand in.
std::vector<Value> values_of(std::span<const RegisteredClass> classes, const RegisteredTypeLibrary* types) {
  std::vector<Value> values;
  for (const RegisteredClass& held : classes) {
    const String key = class_key(held.id);
    const String id = identifier_text(held.id);
    values.push_back({key, {}, held.name});
    values.push_back({key + u"\\InprocServer32", {}, held.library});
    values.push_back({key + u"\\InprocServer32", u"ThreadingModel", u"Apartment"});
    values.push_back({key + u"\\ProgID", {}, held.name});
    if (types != nullptr) {
      values.push_back({key + u"\\TypeLib", {}, identifier_text(types->id)});
      values.push_back({key + u"\\Version", {}, decimal(types->major) + u"." + decimal(types->minor)});
    }
    values.push_back({held.name, {}, held.name});
    values.push_back({held.name + u"\\CLSID", {}, id});
  }
  if (types == nullptr) return values;
  const TypeLibraryKeys keys(*types);
  values.push_back({keys.library, {}, {}});
  values.push_back({keys.version, {}, types->name});
  values.push_back({keys.locale, {}, {}});
  values.push_back({keys.own, {}, types->path});
  values.push_back({keys.version + u"\\FLAGS", {}, u"0"});
  values.push_back({keys.version + u"\\HELPDIR", {}, types->path.substr(0, types->path.find_last_of(u'\\'))});
  for (const auto& shown : types->interfaces) {
    const String key = interface_key(shown.id);
    values.push_back({key, {}, shown.name});
    // The system's own marshalling of calls by name.
    values.push_back({key + u"\\ProxyStubClsid32", {}, u"{00020420-0000-0000-C000-000000000046}"});
    values.push_back({key + u"\\TypeLib", {}, identifier_text(types->id)});
    values.push_back({key + u"\\TypeLib", u"Version", version_of(*types)});
  }
  return values;
}

// Why the registry cannot take a class, as the reason of a file error.
const char* objection(const RegisteredClass& held) noexcept {
  const String& path = held.library;
  if (held.name.empty() || held.name.find_first_of(StringView(u"\\\0", 2)) != String::npos) {
    return "a class needs a name without a backslash";
  }
  const bool absolute = path.starts_with(u"\\\\") || path.find(u":\\") == 1;
  return absolute && path.find(u'\0') == String::npos ? nullptr : "a class needs the absolute path of its library";
}

// The first thing that went wrong in a row of steps that all have to be tried.
class First {
 public:
  void operator()(Place place, const String& key, LSTATUS status) {
    if (status == ERROR_SUCCESS || status == ERROR_FILE_NOT_FOUND || status_ != ERROR_SUCCESS) return;
    status_ = cannot_change(place, key, status);
  }
  LSTATUS status() const noexcept { return status_; }

 private:
  LSTATUS status_ = ERROR_SUCCESS;
};

void remove_tree(Place place, const String& key, First& first) {
  Key opened;
  LSTATUS status = open(place, key, DELETE | KEY_READ | KEY_SET_VALUE, opened);
  if (status == ERROR_SUCCESS) status = ::RegDeleteTreeW(opened.get(), nullptr);
  if (status == ERROR_SUCCESS) status = ::RegDeleteKeyW(root(place), wide(path_of(key)));
  first(place, key, status);
}

bool has_subkeys_but(Place place, const String& key, std::initializer_list<StringView> passed_over) {
  Key opened;
  if (open(place, key, KEY_READ, opened) != ERROR_SUCCESS) return false;
  wchar_t name[256];
  for (DWORD i = 0, length = 256;
       ::RegEnumKeyExW(opened.get(), i, name, &length, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
       ++i, length = 256) {
    const StringView found(reinterpret_cast<const char16_t*>(name), length);
    bool counts = true;
    for (const StringView known : passed_over) counts = counts && !equal_ignoring_case(found, known);
    if (counts) return true;
  }
  return false;
}

bool names(const std::optional<String>& text, const binary::GUID& id) {
  const auto named = text ? identifier_of(*text) : std::nullopt;
  return named && *named == id;
}

void remove(Place place, std::span<const RegisteredClass> classes, const RegisteredTypeLibrary* types, First& first) {
  for (const RegisteredClass& held : classes) {
    remove_tree(place, class_key(held.id), first);
    // Names are one set for programs of both sizes, and may have gone over to another class.
    const bool needed = is_there(place, class_key(held.id), other_view);
    if (!needed && names(text_at(place, held.name + u"\\CLSID"), held.id)) remove_tree(place, held.name, first);
  }
  if (types == nullptr) return;
  for (const auto& shown : types->interfaces) {
    const String key = interface_key(shown.id);
    if (names(text_at(place, key + u"\\TypeLib"), types->id)) remove_tree(place, key, first);
  }
  const TypeLibraryKeys keys(*types);
  remove_tree(place, keys.own, first);
  if (has_subkeys_but(place, keys.locale, {})) return;
  remove_tree(place, keys.locale, first);
  if (has_subkeys_but(place, keys.version, {u"FLAGS", u"HELPDIR"})) return;
  remove_tree(place, keys.version, first);
  if (!has_subkeys_but(place, keys.library, {})) remove_tree(place, keys.library, first);
}

binary::HRESULT code_of(LSTATUS status) noexcept {
  return status == ERROR_SUCCESS                                            ? S_OK
         : status == ERROR_OUTOFMEMORY || status == ERROR_NOT_ENOUGH_MEMORY ? E_OUTOFMEMORY
                                                                            : REGDB_E_WRITEREGDB;
}

LSTATUS write_all(Place place, const std::vector<Value>& values, std::span<const RegisteredClass> classes,
                  const RegisteredTypeLibrary* types) {
  Changes changes(place);
  for (const Value& value : values) {
    if (const LSTATUS status = changes.write(value); status != ERROR_SUCCESS) return status;
  }
  if (place == Place::Machine) {  // what the user has would hide it
    First first;
    remove(Place::User, classes, types, first);
    if (first.status() != ERROR_SUCCESS) return first.status();
  }
  changes.keep();
  return ERROR_SUCCESS;
}

}  // namespace

String class_registry_path() { return u"HKEY_CLASSES_ROOT"; }

binary::HRESULT register_classes(std::span<const RegisteredClass> classes,
                                 const RegisteredTypeLibrary* types) noexcept {
  return result_of([&] {
    clear_file_error();
    for (const RegisteredClass& held : classes) {
      const char* const reason = objection(held);
      if (reason == nullptr) continue;
      set_file_error(FileError::Kind::Unwritable, held.name, reason);
      return binary::HRESULT{REGDB_E_WRITEREGDB};
    }
    const std::vector<Value> values = values_of(classes, types);
    LSTATUS status = write_all(Place::Machine, values, classes, types);
    if (status == ERROR_ACCESS_DENIED) {
      clear_file_error();
      status = write_all(Place::User, values, classes, types);
    }
    return code_of(status);
  });
}

binary::HRESULT unregister_classes(std::span<const RegisteredClass> classes,
                                   const RegisteredTypeLibrary* types) noexcept {
  return result_of([&] {
    clear_file_error();
    First first;
    for (const Place place : {Place::User, Place::Machine}) remove(place, classes, types, first);
    return code_of(first.status());
  });
}

binary::HRESULT find_class(StringView name, RegisteredClass& found) noexcept {
  return result_of([&]() -> binary::HRESULT {
    clear_file_error();
    CLSID id{};
    if (name.find(u'\0') != StringView::npos) return CO_E_CLASSSTRING;
    const HRESULT result = ::CLSIDFromProgID(wide(String(name)), &id);
    if (FAILED(result)) return result;
    RegisteredClass held{String(name), std::bit_cast<binary::GUID>(id), {}};
    const String key = class_key(held.id) + u"\\InprocServer32";
    for (const Place place : {Place::User, Place::Machine}) {
      if (const auto path = text_at(place, key); path && held.library.empty()) held.library = *path;
    }
    found = std::move(held);
    return S_OK;
  });
}

bool registry_may_mention(StringView) { return true; }

}  // namespace hedro34
