#include "hedro34/platform/files.h"

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <thread>

#include "hedro34/documents/form_template.h"
#include "hedro34/platform/pending_file.h"
#include "tests/support.h"

namespace hedro34::testing {
namespace {

namespace fs = std::filesystem;

struct Files : ::testing::Test {
  std::string path(const std::string& name) const { return to_utf8(folder_.path(name)); }
  String text_path(const std::string& name) const { return folder_.path(name); }
  std::string content(const std::string& name) const { return read_file(text_path(name)).value_or("<unreadable>"); }
  std::ptrdiff_t count() const { return std::distance(fs::directory_iterator(path("")), fs::directory_iterator()); }

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

  Folder folder_;
};

TEST_F(Files, ReadWholeFilesAndParts) {
  for (const std::size_t size : {0UL, 4095UL, 4096UL, 4097UL, 1'000'003UL}) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 7 + i / 251);
    folder_.write("some", bytes);
    EXPECT_TRUE(read_file(text_path("some")) == bytes) << size;
  }
  EXPECT_NE(read_file(u"/proc/self/status")->find("VmPeak"), std::string::npos) << "of a size that is not known";
  folder_.write("some", "0123456789");
  InputFile file = std::move(*InputFile::open(text_path("some")));
  char buffer[8] = {};
  EXPECT_EQ(file.read(buffer, 4), 4U);
  EXPECT_EQ(file.read(buffer, 8), 6U);
  EXPECT_EQ(std::string(buffer, 6), "456789");
  EXPECT_EQ(file.read(buffer, 8), 0U);
}

TEST_F(Files, RejectWhatCannotBeReadOrWritten) {
  fs::create_directories(path("locked/inner"));
  for (const char* name : {"fixed", "secret"}) folder_.write(name, "old");
  ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0666), 0);
  fs::create_symlink("loop", path("loop"));
  fs::create_symlink("locked/inner", path("link"));
  fs::permissions(path("secret"), fs::perms::none);
  fs::permissions(path("fixed"), fs::perms(0444));
  fs::permissions(path("locked"), fs::perms(0555));
  fs::permissions(path(""), fs::perms::all);
  const struct {
    std::string name;
    std::string of_reading;
    std::string of_writing;
  } rows[] = {
      {"none/x", "No such file or directory", "the folder does not exist"},
      {"secret\\x", "No such file or directory", "Not a directory"},
      {"x/", "No such file or directory", "Is a directory"},
      {"locked/x", "No such file or directory", "Permission denied"},
      {"fixed", "", "Permission denied"},
      {"secret", "Permission denied", "Permission denied"},
      {"secret/x", "Not a directory", "Not a directory"},
      {"link", "Is a directory", "Is a directory"},
      {"loop", "Too many levels of symbolic links", "Too many levels of symbolic links"},
      {std::string(256, 'x'), "File name too long", "File name too long"},
      {std::string("a\0b", 3), "the path has a zero character in it", "the path has a zero character in it"},
  };
  const auto before = count();
  const uid_t former = ::geteuid();  // a privileged user may do all
  EXPECT_EQ(::seteuid(former == 0 ? 65534 : former), 0);
  for (const auto& row : rows) {
    const bool opened = InputFile::open(text_path(row.name)).has_value();
    EXPECT_EQ(outcome(opened, FileError::Kind::Unreadable, row.name), row.of_reading) << row.name;
    EXPECT_EQ(save(row.name), row.of_writing) << row.name;
  }
  EXPECT_EQ(save("pipe"), "not a regular file");
  EXPECT_FALSE(InputFile::open(u"") || PendingFile::write(u"", "next"));
  EXPECT_EQ(::seteuid(former), 0);
  fs::permissions(path("locked"), fs::perms::all);
  EXPECT_EQ(count(), before);
  EXPECT_EQ(content("fixed"), "old");
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

TEST_F(Files, WritingKeepsPermissions) {
  const auto permissions = [&](const char* name) { return fs::status(path(name)).permissions(); };
  for (const auto mode : {fs::perms(0600), fs::perms(0666), fs::perms(0755)}) {
    folder_.write("old", "old");
    fs::permissions(path("old"), mode);
    EXPECT_EQ(save("old"), "");
    EXPECT_EQ(permissions("old"), mode);
  }
  const mode_t former = ::umask(027);
  EXPECT_EQ(save("new"), "");
  ::umask(former);
  EXPECT_EQ(permissions("new"), fs::perms(0640));
}

TEST_F(Files, WritingFollowsLinksAndTakesAPathAsItStands) {
  fs::create_directory(path("folder"));
  folder_.write("folder/old", "old");
  fs::create_symlink("folder/old", path("relative"));
  fs::create_symlink(path("relative"), path("absolute"));
  fs::create_symlink("folder/new", path("dangling"));
  for (const std::string name : {"relative", "absolute", "dangling"}) {
    EXPECT_EQ(save(name, name), "");
    EXPECT_TRUE(fs::is_symlink(path(name)));
    EXPECT_EQ(content(name == "dangling" ? "folder/new" : "folder/old"), name);
  }
  EXPECT_EQ(save("folder\\odd", "slashed"), "");  // names nothing as it stands
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

TEST_F(Files, AFailureLaterLeavesTheTarget) {
  folder_.write("old", "old");
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  rlimit former{};
  ::getrlimit(RLIMIT_FSIZE, &former);
  const rlimit small = {50'000, former.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);  // as on a disk that is full
  const auto form = make<FormTemplate>();
  for (int i = 0; i < 300; ++i) form->pages().add()->regions().add()->questions().add();
  for (const char* name : {"old", "new"}) {
    EXPECT_EQ(outcome(form->Save(text_path(name)), FileError::Kind::Unwritable, name), "File too large");
  }
  ::setrlimit(RLIMIT_FSIZE, &former);
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(content("old"), "old");
  EXPECT_EQ(count(), 1);
  EXPECT_TRUE(form->Save(text_path("old")) && form->Load(text_path("old")));
  EXPECT_EQ(form->PageCount(), 300);
  auto file = PendingFile::write(text_path("new"), "next");
  fs::create_directory(path("new"));
  EXPECT_EQ(outcome(file->commit(), FileError::Kind::Unwritable, "new"), "Is a directory");
  file.reset();
  EXPECT_EQ(count(), 2);
}

TEST_F(Files, SeveralAreReplacedTogetherOrNotAtAll) {
  const auto written = [&](std::initializer_list<const char*> names) {
    std::vector<PendingFile> files;
    for (const char* name : names) files.push_back(std::move(*PendingFile::write(text_path(name), name)));
    return files;
  };
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
  for (const char* name : {"folder/inner", "odd"}) fs::create_directories(path(name));
  for (const char* name : {"folder/old", "other", "odd\\name", "odd/name"}) folder_.write(name, "old");
  fs::create_hard_link(path("folder/old"), path("hard"));
  fs::create_symlink("folder", path("link"));
  fs::create_symlink("folder/new", path("dangling"));
  const std::vector<const char*> files[] = {
      {"other", "./other", "folder//inner/../.././other"},
      {"folder/old", "hard", "link\\.\\old"},
      {"folder/new", "folder\\new", "link\\new", "folder/inner/../new", "dangling"},  // not there yet
      {"none/new", "none\\.\\new"},
      {"odd\\name"},
      {"odd/name"},
      {"none/other"},
      {"Other"},
  };
  for (const auto& file : files) {
    for (const auto& other : files) {
      for (const char* a : file) {
        for (const char* b : other) EXPECT_EQ(same_file(text_path(a), text_path(b)), &file == &other) << a << " " << b;
      }
    }
  }
  EXPECT_FALSE(same_file(u"", text_path("other")));
  EXPECT_FALSE(same_file(text_path("other") + u'\0', text_path("other")));
}

}  // namespace
}  // namespace hedro34::testing
