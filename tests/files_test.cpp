#include <filesystem>
#include <thread>

#include "tests/files_support.h"

namespace hedro34::testing {
namespace {

namespace fs = std::filesystem;

using Files = FilesTest;

TEST_F(Files, ReadWholeFilesAndParts) {
  for (const std::size_t size : {0U, 4095U, 4096U, 4097U, 1'000'003U}) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 7 + i / 251);
    folder_.write("some", bytes);
    EXPECT_TRUE(read_file(text_path("some")) == bytes) << size;
  }
  folder_.write("some", "0123456789");
  InputFile file = std::move(*InputFile::open(text_path("some")));
  char buffer[8] = {};
  EXPECT_EQ(file.read(buffer, 4), 4U);
  EXPECT_EQ(file.read(buffer, 8), 6U);
  EXPECT_EQ(std::string(buffer, 6), "456789");
  EXPECT_EQ(file.read(buffer, 8), 0U);
}

TEST_F(Files, RejectWhatCannotBeReadOrWritten) {
  fs::create_directory(path("folder"));
  const struct {
    std::string name;
    std::string of_reading;
    std::string of_writing;
  } rows[] = {
      {"none", "No such file or directory", ""},
      {"none/x", "No such file or directory", "the folder does not exist"},
      {"x/", "No such file or directory", "Is a directory"},
      {"folder", "Is a directory", "Is a directory"},
      {"folder/.", "Is a directory", "Is a directory"},
      {std::string(256, 'x'), "File name too long", "File name too long"},
      {std::string("a\0b", 3), "the path has a zero character in it", "the path has a zero character in it"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(load(row.name), row.of_reading) << row.name;
    EXPECT_EQ(save(row.name), row.of_writing) << row.name;
    fs::remove(path("none"));
    EXPECT_EQ(count(), 1) << row.name;
  }
  EXPECT_FALSE(InputFile::open(u"") || PendingFile::write(u"", "next"));
  EXPECT_EQ(last_file_error().reason, "the path is empty");
}

TEST_F(Files, WriteNothingBeforeCommit) {
  folder_.write("old", "old");
  for (const std::string name : {"old", "new"}) {
    const auto file = PendingFile::write(text_path(name), "next");
    EXPECT_TRUE(file) << name;
    EXPECT_EQ(content("old"), "old");
    EXPECT_FALSE(fs::exists(path("new")));
    EXPECT_EQ(count(), 2) << "complete beside its target";
  }
  EXPECT_EQ(count(), 1) << "without a commit nothing is left behind";
  auto file = PendingFile::write(text_path("old"), "next");
  auto beside = PendingFile::write(text_path("new"), "beside");
  PendingFile moved = std::move(*file);
  file.reset();
  EXPECT_EQ(count(), 3) << "a file that was moved from removes nothing";
  EXPECT_TRUE(moved.commit());
  EXPECT_TRUE(beside->commit());
  EXPECT_EQ(content("old") + content("new"), "nextbeside");
}

TEST_F(Files, WritingTakesAPathAsItStands) {
  fs::create_directory(path("folder"));
  EXPECT_EQ(save("folder\\odd", "slashed"), "");  // names nothing as it stands, or a file in the folder
  EXPECT_EQ(content("folder/odd"), "slashed");
  EXPECT_EQ(save(std::string(255, 'x')), "") << "the temporary file has a name of its own";
  const fs::path former = fs::current_path();
  fs::current_path(path("folder"));
  auto file = PendingFile::write(u"here", "2");
  EXPECT_TRUE(file && file->commit());
  EXPECT_TRUE(same_file(u"here", text_path("folder/here")));
  EXPECT_EQ(read_file(u"here"), "2");
  fs::current_path(former);
}

TEST_F(Files, AFolderThatComesBetweenLeavesNothing) {
  auto file = PendingFile::write(text_path("new"), "next");
  fs::create_directory(path("new"));
  EXPECT_EQ(outcome(file->commit(), FileError::Kind::Unwritable, "new"), "Is a directory");
  file.reset();
  EXPECT_EQ(count(), 1);
}

TEST_F(Files, SeveralAreReplacedTogetherOrNotAtAll) {
  fs::create_directory(path("folder"));
  folder_.write("old", "former");
  folder_.write("folder/old", "former");
  fs::create_hard_link(path("old"), path("link"));
  for (const char* stuck : {"new", "old", "folder/new"}) {
    auto files = written({"old", "new", "folder/old", "folder/new"});
    fs::remove(path(stuck));
    fs::create_directory(path(stuck));
    const std::string reason = outcome(commit_together(files), FileError::Kind::Unwritable, stuck);
    EXPECT_TRUE(reason.ends_with("Is a directory")) << reason;
    files.clear();
    fs::remove(path(stuck));
    if (stuck == std::string("old")) fs::create_hard_link(path("link"), path("old"));
    EXPECT_EQ(content("old") + content("folder/old") + content("new"), "formerformer<unreadable>") << stuck;
    EXPECT_TRUE(fs::equivalent(path("old"), path("link"))) << "not a copy of it";
    EXPECT_EQ(count(), 3) << "folder, link and old, and nothing beside them";
  }
  {
    auto files = written({"old", "new", "folder/old", "folder/new"});
    EXPECT_TRUE(commit_together(files));
  }
  EXPECT_EQ(content("old") + content("new") + content("folder/old") + content("folder/new"),
            "oldnewfolder/oldfolder/new");
  EXPECT_EQ(count(), 4);
  EXPECT_TRUE(commit_together({}));
}

// Two folders in either order, so that a lock in the order of the files would never end.
TEST_F(Files, PairsOfTwoWritersDoNotMix) {
  fs::create_directory(path("folder"));
  const auto write = [&](const char* first, const char* second, const std::string& bytes) {
    for (int i = 0; i < 60; ++i) {
      std::vector<PendingFile> files;
      for (const char* name : {first, second}) {
        files.push_back(std::move(*PendingFile::write(text_path(name), bytes + std::to_string(i))));
      }
      EXPECT_TRUE(commit_together(files));
    }
  };
  std::thread other([&] { write("folder/b", "a", "other"); });
  write("a", "folder/b", "one");
  other.join();
  EXPECT_EQ(content("a"), content("folder/b"));
}

TEST_F(Files, SameFile) {
  fs::create_directories(path("folder/inner"));
  for (const char* name : {"folder/old", "other"}) folder_.write(name, "old");
  fs::create_hard_link(path("folder/old"), path("hard"));
  expect_same_file({
      {"other", "./other", "folder//inner/../.././other"},
      {"folder/old", "hard"},
      {"folder/new", "folder\\new", "folder/inner/../new"},  // not there yet
      {"none/new", "none\\.\\new"},
      {"none/other"},
  });
  EXPECT_FALSE(same_file(u"", text_path("other")));
  EXPECT_FALSE(same_file(text_path("other") + u'\0', text_path("other")));
}

TEST_F(Files, Kinds) {
  fs::create_directory(path("folder"));
  folder_.write("folder/file", "old");
  const std::pair<const char*, FileKind> rows[] = {
      {"folder", FileKind::Folder}, {"folder\\file", FileKind::Regular}, {"folder/none", FileKind::Nothing}};
  for (const auto& [name, kind] : rows) EXPECT_EQ(kind_of(text_path(name)), kind) << name;
  EXPECT_EQ(kind_of(u""), FileKind::Nothing);
}

}  // namespace
}  // namespace hedro34::testing
