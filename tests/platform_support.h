// What the tests of forms, data documents and XML share. A `Target` is a form template or a data document.
#pragma once

#include <functional>
#include <span>

#include "hedro34/platform/files.h"
#include "tests/failing_host.h"
#include "tests/support.h"

namespace hedro34::testing {

inline std::string repeat(std::string_view text, std::size_t times) {
  std::string result;
  for (std::size_t i = 0; i < times; ++i) result += text;
  return result;
}

// A file of tests/files: `full` has a value of its own in every member, `new` has the defaults.
inline std::string file_text(const std::string& name) {
  return read_file(from_utf8(HEDRO34_SOURCE_DIR "/tests/files/" + name)).value_or("");
}

template <class Target>
Ref<Target> read_of(std::string_view file) {
  auto target = make<Target>();
  EXPECT_TRUE(target->read(file)) << to_line(last_file_error());
  return target;
}

template <class Target>
std::string written(Target& target) {
  return target.to_json().value_or(to_line(last_file_error()));
}

// The number of the failure that the statement throws, 0 when it throws none.
inline std::int32_t failure_of(const std::function<void()>& statement) {
  try {
    statement();
  } catch (const Failure& failure) {
    return failure.number;
  }
  return 0;
}

struct ErrorRow {
  std::string file;
  std::string line;  // the file error behind the path
  FileError::Kind kind = FileError::Kind::Malformed;
};

template <class Target>
void expect_errors(const std::string& full, std::span<const ErrorRow> rows) {
  const auto target = read_of<Target>(full);
  for (const ErrorRow& row : rows) {
    EXPECT_FALSE(target->read(row.file, u"f")) << row.line;
    EXPECT_EQ(last_file_error().kind, row.kind) << row.line;
    EXPECT_EQ(to_line(last_file_error()), "f: " + row.line);
    EXPECT_EQ(written(*target), full) << row.line;
  }
}

// A change after which the target cannot be saved, and why.
template <class Target>
using SpoiltRow = std::pair<std::function<void(Target&)>, const char*>;

template <class Target>
void expect_files_whole_or_not_at_all(const std::string& full, std::span<const SpoiltRow<Target>> rows) {
  const Folder folder;
  const String path = folder.write("full", full);
  const String other = folder.write("other", "[]");
  const auto target = make<Target>();
  EXPECT_TRUE(target->Load(path));
  EXPECT_FALSE(target->Load(folder.path("none")));
  EXPECT_EQ(last_file_error().kind, FileError::Kind::Unreadable);
  EXPECT_FALSE(target->Load(other));
  EXPECT_EQ(to_line(last_file_error()), to_utf8(other) + ": must be an object, not a list");
  for (const auto& [spoil, line] : rows) {
    const auto spoilt = read_of<Target>(full);
    spoil(*spoilt);
    EXPECT_FALSE(spoilt->Save(path));
    EXPECT_EQ(last_file_error().kind, FileError::Kind::Unwritable);
    EXPECT_EQ(to_line(last_file_error()), to_utf8(path) + ": " + line);
    EXPECT_EQ(read_file(path), full);
  }
  EXPECT_FALSE(target->Save(folder.path("none/full")));
  EXPECT_TRUE(target->Save(other));
  EXPECT_EQ(last_file_error().kind, FileError::Kind::None);
  EXPECT_EQ(read_file(other), full);
}

}  // namespace hedro34::testing
