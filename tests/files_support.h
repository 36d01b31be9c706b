// What the tests of files share: a folder for each test, and what became of an operation as a text.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "hedro34/platform/files.h"
#include "hedro34/platform/pending_file.h"
#include "tests/support.h"

namespace hedro34::testing {

struct FilesTest : ::testing::Test {
  std::string path(const std::string& name) const { return to_utf8(folder_.path(name)); }
  String text_path(const std::string& name) const { return folder_.path(name); }
  std::string content(const std::string& name) const { return read_file(text_path(name)).value_or("<unreadable>"); }
  std::ptrdiff_t count() const {
    return std::distance(std::filesystem::directory_iterator(path("")), std::filesystem::directory_iterator());
  }

  // Nothing when it is done, else the reason of the file error.
  std::string outcome(bool done, FileError::Kind kind, const std::string& name) const {
    if (done) return {};
    EXPECT_EQ(last_file_error().kind, kind) << name;
    EXPECT_EQ(last_file_error().path, text_path(name));
    return last_file_error().reason;
  }
  std::string save(const std::string& name, std::string_view bytes = "next") const {
    auto file = PendingFile::write(text_path(name), bytes);
    return outcome(file && file->commit(), FileError::Kind::Unwritable, name);
  }

  std::string load(const std::string& name) const {
    return outcome(InputFile::open(text_path(name)).has_value(), FileError::Kind::Unreadable, name);
  }
  // Files that are complete beside their targets; each has its name as content.
  std::vector<PendingFile> written(std::initializer_list<const char*> names) const {
    std::vector<PendingFile> files;
    for (const char* name : names) files.push_back(std::move(*PendingFile::write(text_path(name), name)));
    return files;
  }
  // Each list has all the names of one file.
  void expect_same_file(const std::vector<std::vector<const char*>>& files) const {
    for (const auto& file : files) {
      for (const auto& other : files) {
        for (const char* a : file) {
          for (const char* b : other) {
            EXPECT_EQ(same_file(text_path(a), text_path(b)), &file == &other) << a << " " << b;
          }
        }
      }
    }
  }

  Folder folder_;
};

}  // namespace hedro34::testing
