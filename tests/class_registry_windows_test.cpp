// The system's registry: for the machine or the user, whole or not at all, and nothing of anybody else's.
#include "hedro34/component/class_registry.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include "hedro34/component/create_object.h"
#include "hedro34/component/own_library.h"
#include "hedro34/platform/file_error.h"
#include "tests/process.h"
#include "tests/support.h"

#include <objbase.h>
#include <sddl.h>

namespace hedro34::testing {
namespace {

namespace fs = std::filesystem;

const wchar_t* wide(const String& text) { return reinterpret_cast<const wchar_t*>(text.c_str()); }

constexpr binary::GUID id_of(std::uint32_t number) { return {number, 0xABCD, 0x00EF, {1, 2, 3, 4, 5, 6, 7, 0xF8}}; }

const std::vector<RegisteredClass> classes = {{u"Test.A", id_of(0xA), u"C:\\Школа\\x.dll"},
                                              {u"Test.B", id_of(0xB), u"C:\\Школа\\x.dll"}};
const RegisteredTypeLibrary types = {u"Test", id_of(0x7), 15, 0, 1033, u"C:\\Школа\\x.dll", {{u"_A", id_of(0x1A)}}};

constexpr const char* width = sizeof(void*) == 8 ? "win64" : "win32";
constexpr const char* other_width = sizeof(void*) == 8 ? "win32" : "win64";

void set(HKEY parent, const String& key, const String& text) {
  HKEY made = nullptr;
  ASSERT_EQ(::RegCreateKeyExW(parent, wide(key), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &made, nullptr), 0);
  ::RegSetValueExW(made, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                   static_cast<DWORD>(2 * text.size() + 2));
  ::RegCloseKey(made);
}

// A key with all below it: "A=text", the values of a key behind it as "A@name=text", keys in a key as "A\B=text".
void list(HKEY key, const std::string& path, Lines& lines) {
  wchar_t name[256];
  char16_t text[256];
  DWORD length = 256, size = sizeof text;
  for (DWORD i = 0; ::RegEnumValueW(key, i, name, &length, nullptr, nullptr, reinterpret_cast<BYTE*>(text), &size) == 0;
       ++i, length = 256, size = sizeof text) {
    const std::string value = to_utf8(StringView(reinterpret_cast<char16_t*>(name), length));
    lines.push_back(path + (value.empty() ? "" : "@" + value) + "=" + to_utf8(StringView(text, size / 2 - 1)));
  }
  length = 256;
  for (DWORD i = 0; ::RegEnumKeyExW(key, i, name, &length, nullptr, nullptr, nullptr, nullptr) == 0;
       ++i, length = 256) {
    HKEY child = nullptr;
    if (::RegOpenKeyExW(key, name, 0, KEY_READ, &child) != 0) continue;
    const std::string at = to_utf8(StringView(reinterpret_cast<char16_t*>(name), length));
    list(child, path.empty() ? at : path + "\\" + at, lines);
    ::RegCloseKey(child);
  }
}

// Two keys that stand for the machine's and the user's part of the registry in this process.
struct SystemRegistry : ::testing::Test {
  SystemRegistry() {
    ::RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\HEDRO34 tests");
    for (HKEY* const place : {&machine, &user}) {
      const wchar_t* const name =
          place == &machine ? L"Software\\HEDRO34 tests\\machine" : L"Software\\HEDRO34 tests\\user";
      ::RegCreateKeyExW(HKEY_CURRENT_USER, name, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, place, nullptr);
      ::RegCreateKeyExW(*place, L"Software\\Classes", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &classes_of(*place),
                        nullptr);
    }
    ::RegOverridePredefKey(HKEY_LOCAL_MACHINE, machine);
    ::RegOverridePredefKey(HKEY_CURRENT_USER, user);
  }
  ~SystemRegistry() override {
    ::RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    ::RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    for (HKEY key : {machine, user, machine_classes, user_classes}) ::RegCloseKey(key);
    ::RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\HEDRO34 tests");
  }

  HKEY& classes_of(HKEY place) { return place == machine ? machine_classes : user_classes; }
  Lines content(HKEY place) {
    Lines lines;
    list(classes_of(place), "", lines);
    std::sort(lines.begin(), lines.end());
    return lines;
  }

  HKEY machine = nullptr, user = nullptr, machine_classes = nullptr, user_classes = nullptr;
};

// Nobody may change the key while it lives.
class Protected {
 public:
  explicit Protected(HKEY parent, const wchar_t* name = L"") {
    ::RegCreateKeyExW(parent, name, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key_, nullptr);
    give("D:(D;;KWDTWDWO;;;WD)(A;;KR;;;WD)");
  }
  ~Protected() {
    give("D:(A;OICI;KA;;;WD)");
    ::RegCloseKey(key_);
  }

 private:
  void give(const char* rights) {
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    ASSERT_TRUE(::ConvertStringSecurityDescriptorToSecurityDescriptorA(rights, SDDL_REVISION_1, &descriptor, nullptr));
    EXPECT_EQ(::RegSetKeySecurity(key_, DACL_SECURITY_INFORMATION, descriptor), 0);
    ::LocalFree(descriptor);
  }

  HKEY key_ = nullptr;
};

Lines all_entries() {
  const std::string a = "{0000000A-ABCD-00EF-0102-0304050607F8}", b = "{0000000B-ABCD-00EF-0102-0304050607F8}";
  const std::string i = "{0000001A-ABCD-00EF-0102-0304050607F8}", t = "{00000007-ABCD-00EF-0102-0304050607F8}";
  Lines lines;
  for (const auto& [id, name] : {std::pair(a, "Test.A"), std::pair(b, "Test.B")}) {
    const std::string key = "CLSID\\" + id;
    for (const std::string& line :
         {key + "=" + name, key + "\\InprocServer32=C:\\Школа\\x.dll",
          key + "\\InprocServer32@ThreadingModel=Apartment", key + "\\ProgID=" + name, key + "\\TypeLib=" + t,
          key + "\\Version=15.0", name + ("=" + std::string(name)), name + ("\\CLSID=" + id)}) {
      lines.push_back(line);
    }
  }
  for (const std::string& line :
       {"Interface\\" + i + "=_A", "Interface\\" + i + "\\ProxyStubClsid32={00020420-0000-0000-C000-000000000046}",
        "Interface\\" + i + "\\TypeLib=" + t, "Interface\\" + i + "\\TypeLib@Version=f.0", "TypeLib\\" + t + "=",
        "TypeLib\\" + t + "\\f.0=Test",
        "TypeLib\\" + t + "\\f.0\\409=", "TypeLib\\" + t + "\\f.0\\409\\" + width + "=C:\\Школа\\x.dll",
        "TypeLib\\" + t + "\\f.0\\FLAGS=0", "TypeLib\\" + t + "\\f.0\\HELPDIR=C:\\Школа"}) {
    lines.push_back(line);
  }
  std::sort(lines.begin(), lines.end());
  return lines;
}

TEST_F(SystemRegistry, IsWrittenForTheMachineOrElseForTheUser) {
  {
    const Protected key(machine_classes);
    EXPECT_EQ(register_classes(classes, &types), S_OK);
    EXPECT_EQ(last_file_error().kind, FileError::Kind::None);
    EXPECT_EQ(content(machine), Lines());
    EXPECT_EQ(content(user), all_entries());
  }
  EXPECT_EQ(register_classes(classes, &types), S_OK);
  EXPECT_EQ(content(machine), all_entries());
  EXPECT_EQ(content(user), Lines()) << "it would hide what the machine has";
  {
    const Protected key(machine_classes);
    EXPECT_EQ(register_classes(std::span(classes).first(1)), S_OK);
  }
  EXPECT_EQ(unregister_classes(classes, &types), S_OK);
  EXPECT_EQ(content(machine), Lines());
  EXPECT_EQ(content(user), Lines());
  EXPECT_EQ(unregister_classes(classes, &types), S_OK);
}

TEST_F(SystemRegistry, IsAsItWasWhenAChangeFailsHalfway) {
  const Protected key(machine_classes);
  EXPECT_EQ(register_classes(std::span(classes).first(1)), S_OK);
  set(user_classes, u"Test.B", u"of somebody");
  auto moved = classes;
  for (RegisteredClass& held : moved) held.library = u"D:\\y.dll";
  Lines before;
  {
    const Protected proxy(user_classes, L"Interface\\{0000001A-ABCD-00EF-0102-0304050607F8}\\ProxyStubClsid32");
    before = content(user);
    EXPECT_EQ(register_classes(moved, &types), REGDB_E_WRITEREGDB);
    EXPECT_EQ(to_line(last_file_error()),
              "HKEY_CURRENT_USER\\Software\\Classes\\Interface\\{0000001A-ABCD-00EF-0102-0304050607F8}"
              "\\ProxyStubClsid32: Permission denied");
    EXPECT_EQ(content(user), before);
  }
  const std::pair<RegisteredClass, const char*> rows[] = {
      {{u"", id_of(1), u"C:\\x.dll"}, ": a class needs a name without a backslash"},
      {{u"a\\b", id_of(1), u"C:\\x.dll"}, "a\\b: a class needs a name without a backslash"},
      {{u"a", id_of(1), u"x.dll"}, "a: a class needs the absolute path of its library"},
      {{u"a", id_of(1), u""}, "a: a class needs the absolute path of its library"},
  };
  for (const auto& [held, line] : rows) {
    EXPECT_EQ(register_classes(std::vector{classes[1], held}), REGDB_E_WRITEREGDB);
    EXPECT_EQ(to_line(last_file_error()), line);
    EXPECT_EQ(content(user), before);
  }
}

TEST_F(SystemRegistry, NeedsNoRightForWhatItSaysAlready) {
  EXPECT_EQ(register_classes(classes, &types), S_OK);
  const Protected key(machine_classes, L"CLSID\\{0000000A-ABCD-00EF-0102-0304050607F8}\\InprocServer32");
  EXPECT_EQ(register_classes(classes, &types), S_OK);
  EXPECT_EQ(content(user), Lines());
}

TEST_F(SystemRegistry, LosesWhatMayBeTakenBackThoughNotAll) {
  EXPECT_EQ(register_classes(classes, &types), S_OK);
  const std::string key = "CLSID\\{0000000A-ABCD-00EF-0102-0304050607F8}";
  {
    const Protected key_of_a(machine_classes, wide(from_utf8(key)));
    EXPECT_EQ(unregister_classes(classes, &types), REGDB_E_WRITEREGDB);
  }
  EXPECT_EQ(to_line(last_file_error()), "HKEY_LOCAL_MACHINE\\Software\\Classes\\" + key + ": Permission denied");
  Lines left =
      all_entries();  // one view of all keys here: what stays of a class is what another width needs, with its name
  std::erase_if(left, [&](const std::string& line) { return !line.starts_with(key) && !line.starts_with("Test.A"); });
  EXPECT_EQ(content(machine), left);
}

TEST_F(SystemRegistry, KeepsWhatIsSomebodyElses) {
  EXPECT_EQ(register_classes(classes, &types), S_OK);
  set(machine_classes, u"Test.A\\CLSID", u"{0000000C-ABCD-00EF-0102-0304050607F8}");
  set(machine_classes, u"Interface\\{0000001A-ABCD-00EF-0102-0304050607F8}\\TypeLib", u"other");
  const String version = u"TypeLib\\{00000007-ABCD-00EF-0102-0304050607F8}\\f.0\\409\\";
  set(machine_classes, version + from_utf8(other_width), u"C:\\other.dll");
  EXPECT_EQ(unregister_classes(classes, &types), S_OK);
  Lines names;
  for (const std::string& line : content(machine)) names.push_back(line.substr(0, line.find('\\')));
  EXPECT_EQ(names, (Lines{"Interface", "Interface", "Interface", "Interface", "Test.A=Test.A", "Test.A", "TypeLib",
                          "TypeLib", "TypeLib", "TypeLib", "TypeLib", "TypeLib"}));
  set(machine_classes, u"TypeLib\\{00000007-ABCD-00EF-0102-0304050607F8}\\10.0\\0\\win32", u"C:\\other.dll");
  ::RegDeleteKeyW(machine_classes, wide(version + from_utf8(other_width)));
  EXPECT_EQ(unregister_classes({}, &types), S_OK);
  const Lines left = content(machine);
  EXPECT_EQ(left.back(), "TypeLib\\{00000007-ABCD-00EF-0102-0304050607F8}\\10.0\\0\\win32=C:\\other.dll");
  EXPECT_EQ(std::count_if(left.begin(), left.end(), [](auto& line) { return line.find("\\f.0") != line.npos; }), 0);
}

// In the registry itself: the system's own functions read there, and only there do keys have two views.
struct RealRegistry : ::testing::Test {
  RealRegistry() { ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
  ~RealRegistry() override {
    unregister_classes(classes, &types);
    ::CoUninitialize();
  }
};

TEST_F(RealRegistry, KeepsANameThatTheOtherWidthNeeds) {
  constexpr REGSAM other = sizeof(void*) == 8 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
  const String key = u"Software\\Classes\\CLSID\\{0000000A-ABCD-00EF-0102-0304050607F8}";
  EXPECT_EQ(register_classes(classes), S_OK);
  HKEY made = nullptr;
  DWORD disposition = 0;
  ASSERT_EQ(
      ::RegCreateKeyExW(HKEY_LOCAL_MACHINE, wide(key), 0, nullptr, 0, KEY_READ | other, nullptr, &made, &disposition),
      0);
  ::RegCloseKey(made);
  if (disposition != REG_CREATED_NEW_KEY) GTEST_SKIP() << "one view of all keys";
  RegisteredClass found;
  EXPECT_EQ(unregister_classes(classes), S_OK);
  EXPECT_EQ(find_class(u"Test.A", found), S_OK);
  EXPECT_EQ(found.id, id_of(0xA));
  EXPECT_EQ(found.library, u"") << "its own view is empty";
  EXPECT_EQ(find_class(u"Test.B", found), CO_E_CLASSSTRING);
  ::RegDeleteKeyExW(HKEY_LOCAL_MACHINE, wide(key), other, 0);
  EXPECT_EQ(unregister_classes(classes), S_OK);
  EXPECT_EQ(find_class(u"Test.A", found), CO_E_CLASSSTRING);
}

TEST_F(RealRegistry, LeadsFromANameToAnObject) {
  const Folder folder;
  const String component = folder.path("Пример 漢字.dll");
  fs::copy_file(HEDRO34_TEST_COMPONENT, fs::path(std::u16string(component)));
  const String loaded = path_of_library(address_in(component, "DllCanUnloadNow"));
  EXPECT_TRUE(fs::equivalent(fs::path(std::u16string(loaded)), fs::path(std::u16string(component))));
  const struct {
    std::uint32_t kind;
    String library;
    HRESULT result;
    bool file_at_fault = false;
  } rows[] = {
      {1, loaded, S_OK},
      {2, loaded, CLASS_E_NOAGGREGATION},
      {3, loaded, E_UNEXPECTED},
      {4, loaded, E_UNEXPECTED},
      {6, u"C:\\none\\none.dll", HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND), true},
  };
  for (const auto& row : rows) {
    // It throws; in 32 bits each library finds its own handlers only.
    if (row.kind == 4 && sizeof(void*) == 4) continue;
    RegisteredClass entered{u"HEDRO34Test.Thing", id_of(row.kind), row.library};
    EXPECT_EQ(register_classes(std::span(&entered, 1)), S_OK);
    auto* object = reinterpret_cast<binary::IDispatch*>(&entered);
    const HRESULT result = create_object(u"hedro34TEST.thing", &object);
    EXPECT_EQ(object != nullptr, row.result == S_OK) << row.kind;
    if (row.file_at_fault) {
      EXPECT_LT(result, 0);
      EXPECT_EQ(last_file_error().path, row.library);
    } else {
      EXPECT_EQ(result, row.result) << row.kind;
    }
    EXPECT_EQ(object != nullptr ? object->Release() : 0, 0u);
    EXPECT_EQ(unregister_classes(std::span(&entered, 1)), S_OK);
  }
  binary::IDispatch* object = nullptr;
  EXPECT_EQ(create_object(u"HEDRO34Test.Thing", &object), CO_E_CLASSSTRING);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(last_file_error().kind, FileError::Kind::None);
  EXPECT_EQ(create_object(StringView(u"a\0b", 3), &object), CO_E_CLASSSTRING);
  EXPECT_EQ(create_object(u"x", nullptr), E_POINTER);
  ::CoFreeUnusedLibrariesEx(0, 0);
  ::FreeLibrary(::GetModuleHandleW(wide(loaded)));  // or its file could not be removed
  EXPECT_EQ(::GetModuleHandleW(wide(loaded)), nullptr);
}

}  // namespace
}  // namespace hedro34::testing
