#include "hedro34/component/class_registry.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "hedro34/base/ref.h"
#include "hedro34/base/text_hash.h"
#include "hedro34/component/identifier.h"
#include "hedro34/component/result_of.h"
#include "hedro34/json/json_reader.h"
#include "hedro34/json/json_writer.h"
#include "hedro34/platform/files.h"

namespace hedro34 {
namespace {

namespace fs = std::filesystem;

// A text as it reads when it was written to a file.
String as_in_file(StringView text) { return from_utf8(to_utf8(text)); }

struct Entry final : Object {
  Entry() = default;
  explicit Entry(const RegisteredClass& held)
      : name(as_in_file(held.name)), id(identifier_text(held.id)), library(as_in_file(held.library)) {}

  bool says_the_same(const Entry& other) const {
    return name == other.name && id == other.id && library == other.library;
  }

  // Brings the identifier into its one form as well.
  static std::optional<JsonError> check(Object& object) {
    auto& entry = static_cast<Entry&>(object);
    if (entry.name.empty()) return JsonError{"/name", "must be there and not be empty"};
    const auto known = identifier_of(entry.id);
    if (!known) return JsonError{"/class", "must be an identifier in braces"};
    entry.id = identifier_text(*known);
    if (!entry.library.starts_with(u'/') || entry.library.find(u'\0') != String::npos) {
      return JsonError{"/library", "must be an absolute path"};
    }
    return std::nullopt;
  }

  String name;
  String id;
  String library;
};

constexpr JsonRow entry_rows[] = {
    json_row<&Entry::name>("name"),
    json_row<&Entry::id>("class"),
    json_row<&Entry::library>("library"),
};
constexpr JsonTable entry_table{entry_rows, &Entry::check};

struct Registry final : Object {
  static auto& of(Object& object) { return static_cast<Registry&>(object).entries; }

  static std::optional<JsonError> check(Object& object) {
    std::unordered_set<StringView, IgnoringCase, IgnoringCase> names;
    std::unordered_set<StringView, TextHash> ids;
    for (std::size_t i = 0; i < of(object).size(); ++i) {
      const Entry& entry = *of(object)[i];
      const auto error = [&](const char* member, const char* reason) {
        return JsonError{"/classes/" + std::to_string(i) + member, reason};
      };
      if (!names.insert(entry.name).second) return error("/name", "this name stands there twice");
      if (!ids.insert(entry.id).second) return error("/class", "this identifier stands there twice");
    }
    return std::nullopt;
  }

  std::vector<Ref<Entry>> entries;
};

constexpr JsonRow registry_rows[] = {
    {"format", JsonFixed("hedro34-classes")},
    {"version", JsonFixed(1)},
    {"classes",
     JsonObjects{[](Object& object) -> Object& { return *Registry::of(object).emplace_back(make<Entry>()); },
                 [](Object& object) { return Registry::of(object).size(); },
                 [](Object& object, std::size_t i) -> Object& { return *Registry::of(object)[i]; }, &entry_table}},
};
constexpr JsonTable registry_table{registry_rows, &Registry::check};

// The file's content, which is empty when there is no file. An empty reference and a file error when it cannot be read.
Ref<Registry> load(const String& path) {
  clear_file_error();
  auto registry = make<Registry>();
  auto bytes = read_file(path);
  if (!bytes && !path.empty()) {
    struct stat status {};
    if (::stat(to_utf8(path).c_str(), &status) != 0) {
      const int error = errno;
      clear_file_error();
      if (error == ENOENT) return registry;
      set_file_error(FileError::Kind::Unreadable, path, std::system_category().message(error));
      return nullptr;
    }
    clear_file_error();
    bytes = read_file(path);  // it may have come between the two looks
  }
  return bytes && read_exactly(registry_table, *registry, *bytes, path) ? registry : nullptr;
}

bool cannot_write(const String& path, int error) {
  set_file_error(FileError::Kind::Unwritable, path, std::system_category().message(error));
  return false;
}

// The right to change the registry, for one thread of one process at a time. The file that stands for it is never removed:
// somebody may be waiting for it.
class Lock {
 public:
  Lock() = default;
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;
  ~Lock() {
    if (descriptor_ < 0) return;
    ::flock(descriptor_, LOCK_UN);  // a child of another thread's `fork` may hold the descriptor as well
    ::close(descriptor_);
  }

  // Waits for it, and makes the folders on the way there. False and a file error when the system does not let it.
  bool take(const String& registry) {
    const fs::path beside = to_utf8(registry);
    fs::path folder;
    for (const fs::path& part : beside.parent_path()) {
      folder /= part;
      std::error_code ignored;
      if (fs::is_directory(folder, ignored)) continue;
      if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) return cannot_write(registry, errno);
    }
    const fs::path name = folder / "classes.lock";
    do {
      descriptor_ = ::open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOCTTY, 0600);
    } while (descriptor_ < 0 && errno == EINTR);
    if (descriptor_ < 0) return cannot_write(registry, errno);
    while (::flock(descriptor_, LOCK_EX) != 0) {
      if (errno != EINTR) return cannot_write(registry, errno);
    }
    return true;
  }

 private:
  int descriptor_ = -1;
};

// Changes the registry by `edit`, which answers whether there was something to change.
template <class Edit>
binary::HRESULT change(const Edit& edit) {
  const String path = class_registry_path();
  auto registry = load(path);
  if (!registry) return binary::REGDB_E_READREGDB;
  if (!edit(*registry)) return binary::S_OK;

  Lock lock;
  if (!lock.take(path)) return binary::REGDB_E_WRITEREGDB;
  registry = load(path);  // another process may have been faster
  if (!registry) return binary::REGDB_E_READREGDB;
  if (!edit(*registry)) return binary::S_OK;
  return save_json(registry_table, *registry, path) ? binary::S_OK : binary::REGDB_E_WRITEREGDB;
}

bool put(Registry& registry, std::span<const RegisteredClass> classes) {
  auto& entries = registry.entries;
  const auto before = entries;
  std::unordered_map<StringView, std::size_t, IgnoringCase, IgnoringCase> names;
  std::unordered_map<StringView, std::size_t, TextHash> ids;
  const auto index = [&](std::size_t i) {
    names.emplace(entries[i]->name, i);
    ids.emplace(entries[i]->id, i);
  };
  for (std::size_t i = 0; i < entries.size(); ++i) index(i);

  for (const RegisteredClass& added : classes) {
    auto entry = make<Entry>(added);
    std::size_t position = entries.size();
    const auto replace = [&](const auto& found, const auto& end) {
      if (found == end) return;
      const std::size_t at = found->second;
      const Ref<Entry> old = std::exchange(entries[at], nullptr);
      names.erase(old->name);
      ids.erase(old->id);
      position = std::min(position, at);
    };
    replace(names.find(entry->name), names.end());
    replace(ids.find(entry->id), ids.end());
    if (position == entries.size()) entries.emplace_back();
    entries[position] = std::move(entry);
    index(position);
  }
  std::erase(entries, nullptr);
  return !std::equal(entries.begin(), entries.end(), before.begin(), before.end(),
                     [](const auto& a, const auto& b) { return a->says_the_same(*b); });
}

bool is_absolute(const char* path) noexcept { return path != nullptr && path[0] == '/'; }

std::string home_of_account() {
  std::vector<char> buffer(1024);
  struct passwd account {};
  struct passwd* found = nullptr;
  while (::getpwuid_r(::geteuid(), &account, buffer.data(), buffer.size(), &found) == ERANGE) {
    buffer.resize(2 * buffer.size());
  }
  return found != nullptr && is_absolute(account.pw_dir) ? account.pw_dir : "";
}

}  // namespace

String class_registry_path() {
  std::string folder;
  if (const char* data = std::getenv("XDG_DATA_HOME"); is_absolute(data)) {
    folder = data;
  } else {
    const char* home = std::getenv("HOME");
    folder = is_absolute(home) ? home : home_of_account();
    if (folder.empty()) return {};
    folder += "/.local/share";
  }
  String path = from_utf8(folder + "/hedro34/classes.json");
  return to_utf8(path) == folder + "/hedro34/classes.json" ? path : String();
}

binary::HRESULT register_classes(std::span<const RegisteredClass> classes, const RegisteredTypeLibrary*) noexcept {
  return result_of([&] { return change([&](Registry& registry) { return put(registry, classes); }); });
}

binary::HRESULT unregister_classes(std::span<const RegisteredClass> classes, const RegisteredTypeLibrary*) noexcept {
  return result_of([&] {
    std::unordered_set<String> gone;
    for (const RegisteredClass& held : classes) gone.insert(identifier_text(held.id));
    return change([&](Registry& registry) {
      return std::erase_if(registry.entries, [&](const auto& entry) { return gone.contains(entry->id); }) > 0;
    });
  });
}

binary::HRESULT find_class(StringView name, RegisteredClass& found) noexcept {
  return result_of([&] {
    const auto registry = load(class_registry_path());
    if (!registry) return binary::REGDB_E_READREGDB;
    for (const auto& entry : registry->entries) {
      if (!equal_ignoring_case(entry->name, name)) continue;
      found = {std::move(entry->name), *identifier_of(entry->id), std::move(entry->library)};
      return binary::S_OK;
    }
    return binary::CO_E_CLASSSTRING;
  });
}

bool registry_may_mention(StringView name) {
  auto bytes = read_file(class_registry_path());
  if (!bytes) return true;
  std::erase(*bytes, '\0');  // of a file in 16-bit units
  return bytes->find("\\u") != std::string::npos || upper(from_utf8(*bytes)).find(upper(name)) != String::npos;
}

}  // namespace hedro34
