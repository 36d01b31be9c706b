#include "hedro34/component/class_registry.h"

#include <dlfcn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include "hedro34/component/create_object.h"
#include "hedro34/component/identifier.h"
#include "hedro34/component/own_library.h"
#include "hedro34/platform/files.h"
#include "tests/failing_allocation.h"
#include "tests/json.h"
#include "tests/process.h"
#include "tests/support.h"

namespace hedro34::testing {
namespace {

namespace fs = std::filesystem;
using namespace binary;

constexpr GUID id_of(std::uint32_t number) { return {number, 0xABCD, 0x00EF, {1, 2, 3, 4, 5, 6, 7, 0xF8}}; }

RegisteredClass a_class(StringView name, std::uint32_t number, StringView library = u"/lib") {
  return {String(name), id_of(number), String(library)};
}

struct ClassRegistry : ::testing::Test {
  ClassRegistry() { data_home_.set(data("").c_str()); }

  std::string data(const std::string& name) const { return to_utf8(folder_.path("data" + name)); }
  static HRESULT add(const std::vector<RegisteredClass>& classes) { return register_classes(classes); }
  static HRESULT remove(std::initializer_list<std::uint32_t> numbers) {
    std::vector<RegisteredClass> classes;
    for (const std::uint32_t number : numbers) classes.push_back(a_class({}, number));
    return unregister_classes(classes);
  }
  void write(const std::string& bytes) const {
    fs::create_directories(data("/hedro34"));
    folder_.write("data/hedro34/classes.json", bytes);
  }
  std::string content() const { return read_file(path_).value_or("<none>"); }

  // Names, each with the number of its identifier, in order.
  std::string entries() const {
    std::string list;
    const Json file = Json::parse(content());
    for (const Json& entry : file["classes"]) list += entry["name"].text() + entry["class"].text()[8] + ' ';
    return list;
  }

  Folder folder_;
  Variable data_home_{"XDG_DATA_HOME"};
  Variable home_{"HOME"};
  String path_ = folder_.path("data/hedro34/classes.json");
};

TEST_F(ClassRegistry, StandsInTheUsersDataFolder) {
  EXPECT_EQ(class_registry_path(), path_);
  home_.set("/home/me");
  for (const char* passed_over : {"", "relative/data", static_cast<const char*>(nullptr)}) {
    data_home_.set(passed_over);
    EXPECT_EQ(class_registry_path(), u"/home/me/.local/share/hedro34/classes.json");
  }
  home_.set(nullptr);
  EXPECT_TRUE(class_registry_path().ends_with(u"/.local/share/hedro34/classes.json"));
  EXPECT_TRUE(class_registry_path().starts_with(u"/"));
  home_.set("/home/\xE9");  // not UTF-8, so nobody else's folder may be taken for it
  EXPECT_EQ(class_registry_path(), u"");
  EXPECT_EQ(add({a_class(u"a", 1)}), REGDB_E_READREGDB);
}

TEST_F(ClassRegistry, IsWrittenAndReadBack) {
  RegisteredClass found = a_class(u"untouched", 9);
  EXPECT_EQ(find_class(u"a", found), CO_E_CLASSSTRING);
  EXPECT_EQ(remove({1}), S_OK);
  EXPECT_EQ(found, a_class(u"untouched", 9));
  EXPECT_FALSE(fs::exists(data(""))) << "nothing is made where there is nothing to say";

  const RegisteredClass accented = a_class(u"Été.\"x\"", 0x1A11377D, u"/usr/lib/ö \\.so");
  EXPECT_EQ(add({accented}), S_OK);
  EXPECT_EQ(last_file_error().kind, FileError::Kind::None);
  const std::string text = R"({
  "format": "hedro34-classes",
  "version": 1,
  "classes": [
    {
      "name": "Été.\"x\"",
      "class": "{1A11377D-ABCD-00EF-0102-0304050607F8}",
      "library": "/usr/lib/ö \\.so"
    }
  ]
}
)";
  EXPECT_EQ(content(), text);
  EXPECT_EQ(fs::status(data("")).permissions(), fs::perms(0700));
  std::string small = text;
  small.replace(small.find("1A11377D-ABCD-00EF"), 18, "1a11377d-aBcD-00ef");
  write(small);
  EXPECT_EQ(find_class(u"éTÉ.\"X\"", found), S_OK);
  EXPECT_EQ(found, accented);
  EXPECT_EQ(remove({0x1A11377D}), S_OK);
  EXPECT_EQ(entries(), "");
  EXPECT_EQ(find_class(accented.name, found), CO_E_CLASSSTRING);
}

TEST_F(ClassRegistry, ReplacesByNameAndByIdentifierAndKeepsTheRest) {
  const struct {
    std::vector<RegisteredClass> added;
    const char* entries;
  } rows[] = {
      {{a_class(u"a", 1), a_class(u"b", 2), a_class(u"c", 3), a_class(u"d", 4)}, "a1 b2 c3 d4 "},
      {{}, "a1 b2 c3 d4 "},
      {{a_class(u"B", 5), a_class(u"e", 6)}, "a1 B5 c3 d4 e6 "},
      {{a_class(u"f", 3)}, "a1 B5 f3 d4 e6 "},
      {{a_class(u"d", 1)}, "d1 B5 f3 e6 "},
      {{a_class(u"b", 6)}, "d1 b6 f3 "},
      {{a_class(u"g", 7), a_class(u"G", 8), a_class(u"h", 8)}, "d1 b6 f3 h8 "},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(add(row.added), S_OK);
    EXPECT_EQ(entries(), row.entries);
  }
  EXPECT_EQ(remove({6, 9, 1}), S_OK);
  EXPECT_EQ(entries(), "f3 h8 ");
}

TEST_F(ClassRegistry, LeavesADamagedFileAlone) {
  const std::string good = R"({"format": "hedro34-classes", "version": 1, "classes": [
{"name": "a", "class": "{01234567-89AB-CDEF-0123-456789ABCDEF}", "library": "/a"},
{"name": "b", "class": "{01234567-89AB-CDEF-0123-456789ABCDEE}", "library": "/b"}]})";
  const struct {
    std::string part, spoilt, line;
  } rows[] = {
      {good, "", "line 1, column 1: not JSON: unexpected end of input; expected '[', '{', or a literal"},
      {"}]}", "}]", "line 3, column 83: not JSON: unexpected end of input; expected '}'"},
      {good, "[]", "must be an object, not a list"},
      {"hedro34-classes", "hedro34-form", "/format: must be \"hedro34-classes\""},
      {"\"version\": 1, ", "", "/version: this member is missing"},
      {"\"name\": \"a\", ", "", "/classes/0/name: must be there and not be empty"},
      {"/b", "b.so", "/classes/1/library: must be an absolute path"},
      {"/b", "/b\\u0000", "/classes/1/library: must be an absolute path"},
      {"EE}", "EE", "/classes/1/class: must be an identifier in braces"},
      {"EE}", "GG}", "/classes/1/class: must be an identifier in braces"},
      {"-0123", "+0123", "/classes/0/class: must be an identifier in braces"},
      {"EE}", "ef}", "/classes/1/class: this identifier stands there twice"},
      {"\"b\"", "\"A\"", "/classes/1/name: this name stands there twice"},
      {"\"a\"", "7", "/classes/0/name: must be a string, not a number"},
  };
  for (const auto& [part, spoilt, line] : rows) {
    std::string bytes = good;
    bytes.replace(bytes.find(part), part.size(), spoilt);
    write(bytes);
    RegisteredClass found;
    IDispatch* object = nullptr;
    const HRESULT results[] = {add({a_class(u"z", 1)}), remove({1}), create_object(u"a", &object),
                               find_class(u"a", found)};
    for (const HRESULT result : results) EXPECT_EQ(result, REGDB_E_READREGDB) << line;
    EXPECT_EQ(to_line(last_file_error()), to_utf8(path_) + ": " + line);
    EXPECT_EQ(content(), bytes);
  }
}

TEST_F(ClassRegistry, SaysWhyItCannotBeWritten) {
  EXPECT_EQ(add({a_class(u"a", 1)}), S_OK);
  const std::string before = content();
  EXPECT_EQ(add({a_class(u"b", 2), a_class(u"", 3)}), REGDB_E_WRITEREGDB);
  EXPECT_EQ(last_file_error().pointer, "/classes/2/name");
  EXPECT_EQ(add({a_class(u"b", 2, u"lib.so")}), REGDB_E_WRITEREGDB);
  EXPECT_EQ(last_file_error().pointer, "/classes/1/library");

  fs::permissions(to_utf8(folder_.path("")), fs::perms::all);
  for (const char* file : {"/hedro34/classes.json", "/hedro34/classes.lock"})
    fs::permissions(data(file), fs::perms::all);
  for (const char* folder : {"/hedro34", ""}) fs::permissions(data(folder), fs::perms(0555));
  const uid_t former = ::geteuid();  // a privileged user may do all
  EXPECT_EQ(::seteuid(former == 0 ? 65534 : former), 0);
  EXPECT_EQ(add({a_class(u"b", 2)}), REGDB_E_WRITEREGDB);
  EXPECT_EQ(to_line(last_file_error()), to_utf8(path_) + ": Permission denied");
  EXPECT_EQ(remove({1}), REGDB_E_WRITEREGDB);
  EXPECT_EQ(add({a_class(u"a", 1)}), S_OK) << "it says so already";
  data_home_.set(data("/new").c_str());
  EXPECT_EQ(add({a_class(u"b", 2)}), REGDB_E_WRITEREGDB);
  EXPECT_EQ(last_file_error().reason, "Permission denied");
  EXPECT_EQ(::seteuid(former), 0);
  for (const char* folder : {"", "/hedro34"}) fs::permissions(data(folder), fs::perms::all);
  EXPECT_EQ(content(), before);
}

TEST_F(ClassRegistry, IsOldOrNewWhenMemoryRunsOut) {
  EXPECT_EQ(add({a_class(u"a", 1)}), S_OK);
  const std::string before = content();
  const std::vector added{a_class(u"b", 2)};
  int failures = 0;
  for (bool came = true; came;) {
    write(before);
    HRESULT result = S_OK;
    {
      const FailingAllocation failing(++failures);
      result = register_classes(added);
      came = FailingAllocation::came();
    }
    EXPECT_TRUE(result == S_OK || (came && result == E_OUTOFMEMORY)) << failures;
    EXPECT_TRUE((content() == before && result != S_OK) || entries() == "a1 b2 ") << failures << content();
  }
  EXPECT_GT(failures, 20);
  const auto files = fs::directory_iterator(data("/hedro34"));
  EXPECT_EQ(std::distance(fs::begin(files), fs::end(files)), 2) << "the registry and its lock";
}

TEST_F(ClassRegistry, IsWholeAndCompleteWhenProcessesChangeItAtOnce) {
  constexpr std::uint32_t processes = 6, classes = 8;
  for (std::uint32_t process = 0; process < processes; ++process) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child != 0) continue;
    for (std::uint32_t i = process * classes; i < (process + 1) * classes; ++i) {
      const String name = u"class " + decimal(i);
      if (register_classes(std::vector{a_class(name, i)}) != S_OK) ::_exit(1);
      if (i % 2 == 1 && remove({i}) != S_OK) ::_exit(2);
    }
    ::_exit(0);
  }
  RegisteredClass found;
  for (std::uint32_t ended = 0; ended < processes;) {
    EXPECT_EQ(find_class(u"none", found), CO_E_CLASSSTRING) << to_line(last_file_error());
    int status = 0;
    if (::waitpid(-1, &status, WNOHANG) <= 0) continue;
    EXPECT_EQ(status, 0);
    ++ended;
  }
  for (std::uint32_t i = 0; i < processes * classes; ++i) {
    EXPECT_EQ(find_class(u"class " + decimal(i), found), i % 2 == 0 ? S_OK : CO_E_CLASSSTRING) << i;
  }
}

TEST_F(ClassRegistry, LeadsFromANameToAnObject) {
  const String component = from_utf8(fs::canonical(HEDRO34_TEST_COMPONENT).string());
  const String system = path_of_library(::dlsym(RTLD_DEFAULT, "getpid"));
  EXPECT_NE(system, u"");
  folder_.write("text.so", "text");
  const struct {
    RegisteredClass registered;
    HRESULT result;
    const char* reason = "";
  } rows[] = {
      {a_class(u"Test.Thing", 1, component), S_OK},
      {a_class(u"Test.NoFactory", 0, component), E_UNEXPECTED},
      {a_class(u"Test.Refusing", 2, component), CLASS_E_NOAGGREGATION},
      {a_class(u"Test.NoObject", 3, component), E_UNEXPECTED},
      {a_class(u"Test.Throwing", 4, component), E_UNEXPECTED},
      {a_class(u"Test.Unknown", 5, component), CLASS_E_CLASSNOTAVAILABLE},
      {a_class(u"Test.NoLibrary", 6, folder_.path("none.so")), CO_E_DLLNOTFOUND, "cannot open shared object file"},
      {a_class(u"Test.Text", 7, folder_.path("text.so")), CO_E_DLLNOTFOUND, "file too short"},
      {a_class(u"Test.NoExport", 8, system), CO_E_ERRORINDLL, "it has no DllGetClassObject"},
  };
  for (const auto& row : rows) ASSERT_EQ(add({row.registered}), S_OK);

  void* const library = ::dlopen(HEDRO34_TEST_COMPONENT, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(library, nullptr);
  auto* const can_unload = reinterpret_cast<HRESULT (*)()>(::dlsym(library, "DllCanUnloadNow"));
  EXPECT_EQ(path_of_library(reinterpret_cast<const void*>(can_unload)), component);
  for (const auto& row : rows) {
    const std::string name = to_utf8(row.registered.name);
    auto* object = static_cast<IDispatch*>(library);  // anything but null
    EXPECT_EQ(create_object(upper(row.registered.name), &object), row.result) << name;
    EXPECT_EQ(object != nullptr, row.result == S_OK) << name;
    EXPECT_EQ(can_unload(), object == nullptr ? S_OK : S_FALSE) << name;
    EXPECT_EQ(last_file_error().kind != FileError::Kind::None, *row.reason != '\0') << name;
    if (*row.reason != '\0') {
      EXPECT_EQ(last_file_error().path, row.registered.library);
      EXPECT_TRUE(last_file_error().reason.starts_with(row.reason)) << last_file_error().reason;
    }
    if (object == nullptr) continue;
    EXPECT_EQ(object->Invoke(1, IID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr),
              DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(object->Release(), 0U);
    EXPECT_EQ(can_unload(), S_OK) << "factory and object are gone";
  }
  EXPECT_EQ(create_object(u"Test.Thing", nullptr), E_POINTER);
  ::dlclose(library);
}

TEST(PathOfLibrary, IsAbsoluteForTheProgramToo) {
  static const int in_the_program = 0;
  const int on_the_stack = 0;
  EXPECT_EQ(path_of_library(&in_the_program), from_utf8(fs::read_symlink("/proc/self/exe").string()));
  EXPECT_EQ(path_of_library(&on_the_stack), u"");
}

}  // namespace
}  // namespace hedro34::testing
