// Any bytes in the file of the class registry are a registry or refused; a refused one is left alone, and of the other one all
// stays that an operation is not about. What stands in front of the first "{" are operations: a letter registers the class
// of that name under the identifier of the letter before the next digit or letter, a digit unregisters that identifier.
#include "hedro34/component/class_registry.h"
#include "hedro34/component/create_object.h"
#include "hedro34/component/identifier.h"
#include "hedro34/platform/files.h"
#include "fuzz/support/support.h"
#include "tests/json.h"
#include "tests/process.h"

namespace hedro34::fuzz {
namespace {

using Classes = std::vector<RegisteredClass>;

RegisteredClass class_of(char name, char id) {
  const binary::GUID guid = {0x01234567, 0x89AB, 0xCDEF, {1, 2, 3, 4, 5, 6, 7, static_cast<std::uint8_t>(id)}};
  return {String(1, static_cast<char16_t>(name)), guid, u"/no/library"};
}

std::string content() { return read_file(class_registry_path()).value_or("{}"); }

// The entries of a registry that was taken.
Classes entries() {
  Classes all;
  const Json file = Json::parse(content());
  if (!file.contains("classes")) return all;
  for (const Json& entry : file["classes"]) {
    all.push_back({from_utf8(entry["name"].text()), identifier_of(from_utf8(entry["class"].text())).value(),
                   from_utf8(entry["library"].text())});
  }
  return all;
}

// The first one with its name or identifier makes room for it, all others with them go.
void put(Classes& all, const RegisteredClass& added) {
  const auto goes = [&](const RegisteredClass& each) {
    return equal_ignoring_case(each.name, added.name) || each.id == added.id;
  };
  const auto place = std::find_if(all.begin(), all.end(), goes);
  if (place == all.end()) return all.push_back(added);
  *place = added;
  all.erase(std::remove_if(place + 1, all.end(), goes), all.end());
}

void check_damaged(const std::string& bytes) {
  EXPECT_NE(last_file_error().kind, FileError::Kind::None);
  const RegisteredClass one[] = {class_of('a', '1')};
  RegisteredClass found;
  binary::IDispatch* object = nullptr;
  for (const auto code :
       {register_classes(one), unregister_classes(one), find_class(u"a", found), create_object(u"a", &object)}) {
    EXPECT_EQ(code, binary::REGDB_E_READREGDB);
  }
  EXPECT_EQ(content(), bytes);
}

void operate(char letter, Classes& expected) {
  const bool removes = letter >= '0' && letter <= '9';
  const RegisteredClass one[] = {class_of(letter, removes ? letter : static_cast<char>('0' + letter % 8))};
  const auto change = [&] { return removes ? unregister_classes({one, 1}) : register_classes(one); };
  EXPECT_EQ(change(), binary::S_OK);
  if (removes)
    std::erase_if(expected, [&](const auto& each) { return each.id == one[0].id; });
  else
    put(expected, one[0]);
  EXPECT_TRUE(entries() == expected) << "all else stays as it stands";
  const std::string bytes = content();
  EXPECT_EQ(change(), binary::S_OK);
  EXPECT_EQ(content(), bytes) << "the same once more changes nothing";
  if (removes) return;
  RegisteredClass found;
  binary::IDispatch* object = nullptr;
  EXPECT_TRUE(find_class(upper(one[0].name), found) == binary::S_OK && found == one[0]);
  EXPECT_TRUE(registry_may_mention(one[0].name));
  EXPECT_EQ(create_object(one[0].name, &object), binary::CO_E_DLLNOTFOUND);
}

}  // namespace

void run(std::string_view input) {
  static const Folder folder;
  static const Variable data_home("XDG_DATA_HOME");
  data_home.set(to_utf8(folder.path("")).c_str());
  const std::size_t start = std::min(input.find('{'), input.size());
  const std::string bytes(input.substr(start));
  std::filesystem::create_directory(to_utf8(folder.path("hedro34")));
  folder.write("hedro34/classes.json", bytes);

  RegisteredClass found;
  if (find_class(u"?", found) == binary::REGDB_E_READREGDB) return check_damaged(bytes);
  Classes expected = entries();
  for (const RegisteredClass& each : expected) {
    EXPECT_TRUE(find_class(each.name, found) == binary::S_OK && found == each) << to_utf8(each.name);
  }
  for (const char letter : input.substr(0, std::min<std::size_t>(start, 16))) {
    if (letter >= ' ' && letter <= '~') operate(letter, expected);
  }
}

}  // namespace hedro34::fuzz
