// Any bytes in the file of the class registry are a registry or refused; a refused one is left alone, and of the other one all
// stays that an operation is not about. What stands in front of the first "{" are operations: a letter registers the class
// of that name under the identifier of the letter before the next digit or letter, a digit unregisters that identifier.
#include <cstddef>
#include <cstdlib>

#include "hedro34/component/class_registry.h"
#include "hedro34/component/create_object.h"
#include "hedro34/component/identifier.h"
#include "hedro34/platform/files.h"
#include "fuzz/support/support.h"
#include "tests/json.h"

namespace hedro34::fuzz {
namespace {

using testing::Json;

binary::GUID id_of(char letter) {
  return {0x01234567, 0x89AB, 0xCDEF, {1, 2, 3, 4, 5, 6, 7, static_cast<std::uint8_t>(letter)}};
}

RegisteredClass class_of(char name, char id) {
  return {String(1, static_cast<char16_t>(name)), id_of(id), u"/no/library"};
}

std::string content() { return read_file(class_registry_path()).value_or("none"); }

// The entries of a registry that was taken.
std::vector<RegisteredClass> entries() {
  const std::string bytes = content();
  std::vector<RegisteredClass> all;
  if (bytes == "none") return all;
  const Json file = Json::parse(bytes);
  if (!file.contains("classes")) return all;
  for (const Json& entry : file["classes"]) {
    all.push_back({from_utf8(entry["name"].text()), identifier_of(from_utf8(entry["class"].text())).value(),
                   from_utf8(entry["library"].text())});
  }
  return all;
}

// As class_registry.h tells it, one entry at a time.
void put(std::vector<RegisteredClass>& all, const RegisteredClass& added) {
  std::vector<RegisteredClass> after;
  bool placed = false;
  for (const RegisteredClass& each : all) {
    if (!equal_ignoring_case(each.name, added.name) && !(each.id == added.id)) {
      after.push_back(each);
    } else if (!std::exchange(placed, true)) {
      after.push_back(added);
    }
  }
  if (!placed) after.push_back(added);
  all = std::move(after);
}

void check_damaged(const std::string& bytes) {
  expect(last_file_error().kind != FileError::Kind::None, "it is said why a registry is not taken");
  const RegisteredClass one[] = {class_of('a', '1')};
  RegisteredClass found;
  binary::IDispatch* object = nullptr;
  for (const auto code :
       {register_classes(one), unregister_classes(one), find_class(u"a", found), create_object(u"a", &object)}) {
    expect(code == binary::REGDB_E_READREGDB, "a damaged registry is not used");
  }
  expect(content() == bytes, "a damaged registry is left alone");
}

void run(char operation, char id, std::vector<RegisteredClass>& expected) {
  const RegisteredClass one[] = {class_of(operation, id)};
  const bool removes = operation >= '0' && operation <= '9';
  if (removes) {
    expect(unregister_classes({one, 1}) == binary::S_OK, "a class is unregistered");
    std::erase_if(expected, [&](const auto& each) { return each.id == one[0].id; });
  } else {
    expect(register_classes(one) == binary::S_OK, "a class is registered");
    put(expected, one[0]);
  }
  expect(entries() == expected, "all else stays as it stands");
  const std::string bytes = content();
  expect((removes ? unregister_classes(one) : register_classes(one)) == binary::S_OK && content() == bytes,
         "the same once more changes nothing");
  if (removes) return;
  RegisteredClass found;
  expect(find_class(upper(one[0].name), found) == binary::S_OK && found == one[0], "what was registered is found");
  expect(registry_may_mention(one[0].name), "a registry mentions what it holds");
  binary::IDispatch* object = nullptr;
  expect(create_object(one[0].name, &object) == binary::CO_E_DLLNOTFOUND, "a library that is not there is not opened");
}

void go(std::string_view input) {
  static const bool set = ::setenv("XDG_DATA_HOME", Scratch::folder().c_str(), 1) == 0;
  const std::size_t start = std::min(input.find('{'), input.size());
  const std::string bytes(input.substr(start));
  std::filesystem::create_directory(Scratch::folder() / "hedro34");
  if (set) Scratch::write("hedro34/classes.json", bytes);

  RegisteredClass found;
  if (find_class(u"?", found) == binary::REGDB_E_READREGDB) return check_damaged(bytes);
  std::vector<RegisteredClass> expected = entries();
  for (const RegisteredClass& each : expected) {
    expect(find_class(each.name, found) == binary::S_OK && found == each, "each class of the file is found");
  }
  for (std::size_t i = 0; i < std::min<std::size_t>(start, 16); ++i) {
    const char operation = input[i];
    if (operation < ' ' || operation > '~') continue;
    const bool removes = operation >= '0' && operation <= '9';
    run(operation, removes ? operation : static_cast<char>('0' + operation % 8), expected);
  }
}

}  // namespace
}  // namespace hedro34::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  hedro34::fuzz::go({reinterpret_cast<const char*>(data), size});
  return 0;
}
