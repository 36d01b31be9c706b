// What the tests of forms, data documents and XML share. A `Target` is a form template or a data document.
#pragma once

#include <filesystem>
#include <functional>
#include <span>

#include "hedro34/platform/files.h"
#include "tests/failing_allocation.h"
#include "tests/failing_host.h"
#include "tests/support.h"

namespace hedro34::testing {

// A file of tests/files: `full` has a value of its own in every member, `new` has the defaults.
std::string file_text(const std::string& name);

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
  EXPECT_EQ(last_file_error().path, u"") << "nothing is left of an error when none is";
  EXPECT_EQ(to_line(last_file_error()), "");
  EXPECT_EQ(read_file(other), full);
}

// Each operation with a file answers False or nothing when memory runs out in it, says so, and changes nothing.
template <class Target>
void expect_no_throw_without_memory(const std::string& full) {
  const Folder folder;
  const String path = folder.write("full", full);
  const String out = folder.write("a file whose name needs memory", "old");
  const auto target = read_of<Target>(full);
  const std::pair<std::function<bool()>, FileError::Kind> rows[] = {
      {[&] { return target->Load(path); }, FileError::Kind::NoMemory},
      {[&] { return target->read(full, path); }, FileError::Kind::NoMemory},
      {[&] { return target->to_json(out).has_value(); }, FileError::Kind::Unwritable},
      {[&] { return target->prepare(out).has_value(); }, FileError::Kind::Unwritable},
      {[&] { return target->Save(out); }, FileError::Kind::Unwritable},
  };
  for (const auto& [operation, kind] : rows) {
    for (const bool for_good : {false, true}) {
      bool came = true;
      for (int number = 1; came; ++number) {
        bool done = false;
        {
          const FailingAllocation failing(number, for_good);
          EXPECT_NO_THROW(done = operation());
          came = FailingAllocation::came();
        }
        EXPECT_EQ(last_file_error().kind, done ? FileError::Kind::None : kind);
        EXPECT_EQ(last_file_error().reason, done ? "" : "out of memory");
        EXPECT_TRUE(done || came);
        EXPECT_TRUE(done || written(*target) == full);
        const auto left = std::distance(std::filesystem::directory_iterator(to_utf8(folder.path(""))), {});
        EXPECT_EQ(left, 2) << "a temporary file is left";
      }
      EXPECT_EQ(read_file(out), &operation == &std::end(rows)[-1].first ? full : "old");
    }
  }
}

}  // namespace hedro34::testing
