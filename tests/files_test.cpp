#include "hedro34/platform/files.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <string>

#include "tests/support.h"

namespace hedro34::testing {
namespace {

namespace fs = std::filesystem;

// A folder with its names as the system takes them.
class Files : public ::testing::Test {
 protected:
  std::string path(const std::string& name) const { return to_utf8(folder_.path(name)); }
  String text_path(const std::string& name) const { return folder_.path(name); }
  void write(const std::string& name, std::string_view bytes) const { folder_.write(name, bytes); }

  std::string content(const std::string& name) const { return read_file(text_path(name)).value_or("<unreadable>"); }

  // How many things are in the folder.
  std::ptrdiff_t count() const { return std::distance(fs::directory_iterator(path("")), fs::directory_iterator()); }

  // Writes and commits; the refusal's reason when that fails, else nothing.
  std::string save(const std::string& name, std::string_view bytes) const {
    forget_refusal();
    auto file = PendingFile::write(text_path(name), bytes);
    if (file && file->commit()) return {};
    EXPECT_EQ(last_refusal().kind, Refusal::Kind::Unwritable) << name;
    EXPECT_EQ(last_refusal().path, text_path(name));
    return last_refusal().reason;
  }

  static mode_t permissions(const std::string& file) {
    struct stat status {};
    return ::stat(file.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
  }

 private:
  Folder folder_;
};

// While it lives, the process is no privileged user, for whom permissions would not count.
class Unprivileged {
 public:
  Unprivileged() : former_(::geteuid()) { EXPECT_EQ(::seteuid(former_ == 0 ? 65534 : former_), 0); }
  ~Unprivileged() { EXPECT_EQ(::seteuid(former_), 0); }

 private:
  uid_t former_;
};

// While it lives, no file of this process can grow beyond a size, as on a disk that is full.
class SmallDisk {
 public:
  explicit SmallDisk(rlim_t size) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &former_);
    const rlimit limit = {size, former_.rlim_max};
    EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
  }
  ~SmallDisk() {
    ::setrlimit(RLIMIT_FSIZE, &former_);
    std::signal(SIGXFSZ, handler_);
  }

 private:
  void (*handler_)(int);
  rlimit former_{};
};

TEST_F(Files, ReadWholeFiles) {
  for (const std::size_t size : {0UL, 1UL, 4095UL, 4096UL, 4097UL, 1'000'003UL}) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 7 + i / 251);
    write("some", bytes);
    EXPECT_TRUE(read_file(text_path("some")) == bytes) << size;
    EXPECT_EQ(InputFile::open(text_path("some"))->size(), size);
  }
  const auto system_file = read_file(u"/proc/self/status");
  ASSERT_TRUE(system_file) << "a file whose size the system does not know";
  EXPECT_NE(system_file->find("VmPeak"), std::string::npos);
}

TEST_F(Files, ReadInParts) {
  write("some", "0123456789");
  auto file = InputFile::open(text_path("some"));
  ASSERT_TRUE(file);
  InputFile moved = std::move(*file);
  char buffer[8] = {};
  EXPECT_EQ(moved.read(buffer, 4), 4U);
  EXPECT_EQ(std::string(buffer, 4), "0123");
  EXPECT_EQ(moved.read(buffer, 8), 6U);
  EXPECT_EQ(std::string(buffer, 6), "456789");
  EXPECT_EQ(moved.read(buffer, 8), 0U);
}

TEST_F(Files, ReadingRefusesWhatIsNoReadableFile) {
  fs::create_directory(path("folder"));
  write("secret", "x");
  fs::permissions(path("secret"), fs::perms::none);
  fs::permissions(path(""), fs::perms::all);
  fs::create_symlink("loop", path("loop"));
  const Unprivileged unprivileged;
  const struct {
    String path;
    const char* reason;
  } rows[] = {
      {text_path("none"), "No such file or directory"},
      {text_path("none\\some"), "No such file or directory"},
      {text_path("secret/some"), "Not a directory"},
      {text_path("folder"), "Is a directory"},
      {text_path("secret"), "Permission denied"},
      {text_path("loop"), "Too many levels of symbolic links"},
      {text_path(std::string(300, 'x')), "File name too long"},
      {u"", "the path is empty"},
      {text_path("secret") + u'\0', "the path has a zero character in it"},
  };
  for (const auto& row : rows) {
    forget_refusal();
    EXPECT_FALSE(InputFile::open(row.path)) << to_utf8(row.path);
    EXPECT_EQ(last_refusal().kind, Refusal::Kind::Unreadable);
    EXPECT_EQ(last_refusal().path, row.path);
    EXPECT_EQ(last_refusal().reason, row.reason) << to_utf8(row.path);
  }
}

TEST_F(Files, WriteNothingBeforeCommit) {
  write("old", "old");
  for (const std::string name : {"old", "new"}) {
    auto file = PendingFile::write(text_path(name), "next");
    ASSERT_TRUE(file) << name;
    EXPECT_EQ(content("old"), "old");
    EXPECT_FALSE(fs::exists(path("new")));
    EXPECT_EQ(count(), 2) << "complete beside its target";
  }
  EXPECT_EQ(count(), 1) << "without a commit nothing is left behind";
  {
    auto file = PendingFile::write(text_path("old"), "next");
    PendingFile moved = std::move(*file);
    file.reset();
    EXPECT_EQ(count(), 2) << "a file that was moved from removes nothing";
    EXPECT_TRUE(moved.commit());
    EXPECT_EQ(content("old"), "next");
  }
  EXPECT_EQ(content("old"), "next");
  EXPECT_EQ(count(), 1);
}

TEST_F(Files, WriteTwoFilesTogether) {
  auto one = PendingFile::write(text_path("one"), "1");
  auto two = PendingFile::write(text_path("two"), "2");
  ASSERT_TRUE(one && two);
  EXPECT_EQ(count(), 2);
  EXPECT_TRUE(one->commit());
  EXPECT_TRUE(two->commit());
  EXPECT_EQ(content("one") + content("two"), "12");
  EXPECT_EQ(count(), 2);
}

TEST_F(Files, WritingKeepsPermissions) {
  for (const mode_t mode : {0600U, 0644U, 0666U, 0755U, 0200U}) {
    write("old", "old");
    ASSERT_EQ(::chmod(path("old").c_str(), mode), 0);
    EXPECT_EQ(save("old", "next"), "");
    EXPECT_EQ(permissions(path("old")), mode);
    fs::permissions(path("old"), fs::perms::all);
    EXPECT_EQ(content("old"), "next");
  }
  const mode_t former = ::umask(027);
  EXPECT_EQ(save("new", "next"), "");
  ::umask(former);
  EXPECT_EQ(permissions(path("new")), mode_t{0640}) << "a new file has those of any new file";
}

TEST_F(Files, WritingFollowsLinks) {
  fs::create_directory(path("folder"));
  write("folder/old", "old");
  fs::create_symlink("folder/old", path("relative"));
  fs::create_symlink(path("relative"), path("absolute"));
  fs::create_symlink("folder/new", path("dangling"));
  for (const char* name : {"relative", "absolute"}) {
    EXPECT_EQ(save(name, name), "");
    EXPECT_TRUE(fs::is_symlink(path(name)));
    EXPECT_FALSE(fs::is_symlink(path("folder/old")));
    EXPECT_EQ(content("folder/old"), name);
  }
  EXPECT_EQ(save("dangling", "new"), "");
  EXPECT_TRUE(fs::is_symlink(path("dangling")));
  EXPECT_EQ(content("folder/new"), "new");
}

TEST_F(Files, WritingTakesAPathAsItStands) {
  fs::create_directory(path("folder"));
  EXPECT_EQ(save("folder\\new", "1"), "");
  EXPECT_EQ(content("folder\\new"), "1");
  EXPECT_FALSE(fs::exists(path("folder/new")));
  const std::string longest(255, 'x');
  EXPECT_EQ(save(longest, "1"), "") << "the temporary file has a name of its own";
  const fs::path former = fs::current_path();
  fs::current_path(path("folder"));
  auto file = PendingFile::write(u"here", "2");
  EXPECT_TRUE(file && file->commit());
  fs::current_path(former);
  EXPECT_EQ(content("folder/here"), "2");
}

TEST_F(Files, WritingRefusesWhatCannotBeWritten) {
  fs::create_directory(path("folder"));
  fs::create_directory(path("locked"));
  write("locked/old", "old");
  write("fixed", "old");
  ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0666), 0);
  fs::create_symlink("loop", path("loop"));
  fs::create_symlink("folder", path("link"));
  fs::permissions(path("fixed"), fs::perms::owner_read);
  fs::permissions(path("locked"), fs::perms::owner_read | fs::perms::owner_exec | fs::perms::others_exec);
  fs::permissions(path(""), fs::perms::all);
  const struct {
    std::string name;
    const char* reason;
  } rows[] = {
      {"none/new", "the folder does not exist"},
      {"fixed/new", "Not a directory"},
      {"folder", "Is a directory"},
      {"link", "Is a directory"},
      {"new/", "Is a directory"},
      {"pipe", "not a regular file"},
      {"loop", "Too many levels of symbolic links"},
      {std::string(256, 'x'), "File name too long"},
      {"fixed", "Permission denied"},
      {"locked/new", "Permission denied"},
      {std::string("a\0b", 3), "the path has a zero character in it"},
  };
  const auto before = count();
  {
    const Unprivileged unprivileged;
    for (const auto& row : rows) EXPECT_EQ(save(row.name, "next"), row.reason) << row.name;
    EXPECT_FALSE(PendingFile::write(u"", "next"));
    EXPECT_FALSE(PendingFile::write(u"/dev/null", "next"));
    EXPECT_EQ(last_refusal().reason, "not a regular file");
  }
  fs::permissions(path("fixed"), fs::perms::all);
  fs::permissions(path("locked"), fs::perms::all);
  EXPECT_EQ(count(), before);
  EXPECT_EQ(content("fixed"), "old");
  EXPECT_EQ(content("locked/old"), "old");
}

TEST_F(Files, AFullDiskLeavesTheOldFile) {
  write("old", "old");
  const std::string bytes(100'000, 'x');
  {
    const SmallDisk disk(50'000);
    EXPECT_EQ(save("old", bytes), "File too large");
    EXPECT_EQ(save("new", bytes), "File too large");
  }
  EXPECT_EQ(content("old"), "old");
  EXPECT_EQ(count(), 1);
  EXPECT_EQ(save("old", bytes), "");
  EXPECT_EQ(content("old"), bytes);
}

TEST_F(Files, AFailedCommitLeavesTheTarget) {
  auto file = PendingFile::write(text_path("target"), "next");
  ASSERT_TRUE(file);
  fs::create_directory(path("target"));
  EXPECT_FALSE(file->commit());
  EXPECT_EQ(last_refusal().kind, Refusal::Kind::Unwritable);
  EXPECT_EQ(last_refusal().reason, "Is a directory");
  file.reset();
  EXPECT_TRUE(fs::is_directory(path("target")));
  EXPECT_EQ(count(), 1);
}

TEST_F(Files, SameFile) {
  fs::create_directories(path("folder/inner"));
  write("folder/old", "old");
  write("other", "old");
  write("odd\\name", "odd");
  fs::create_directory(path("odd"));
  write("odd/name", "odd");
  fs::create_hard_link(path("folder/old"), path("hard"));
  fs::create_symlink("folder", path("link"));
  fs::create_symlink("folder/new", path("dangling"));
  const struct {
    const char* a;
    const char* b;
    bool same;
  } rows[] = {
      {"other", "other", true},
      {"other", "./other", true},
      {"other", "folder/../other", true},
      {"other", "folder//inner/../../other", true},
      {"other", "folder/old", false},
      {"other", "Other", false},
      {"folder/old", "link/old", true},
      {"folder/old", "hard", true},
      {"folder/old", "folder\\old", true},
      {"folder/old", "link\\.\\old", true},
      {"folder/new", "link/new", true},
      {"folder/new", "folder\\new", true},
      {"folder/new", "folder/inner/../new", true},
      {"folder/new", "dangling", true},
      {"folder/new", "folder/inner/new", false},
      {"none/new", "none/./new", true},
      {"none/new", "none\\new", true},
      {"none/new", "none/other", false},
      {"odd\\name", "odd/name", false},
      {"folder\\new", "link\\new", true},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(same_file(text_path(row.a), text_path(row.b)), row.same) << row.a << " and " << row.b;
    EXPECT_EQ(same_file(text_path(row.b), text_path(row.a)), row.same) << row.b << " and " << row.a;
  }
  const fs::path former = fs::current_path();
  fs::current_path(path("folder"));
  EXPECT_TRUE(same_file(u"old", text_path("folder/old")));
  EXPECT_TRUE(same_file(u"new", text_path("folder/new")));
  EXPECT_TRUE(same_file(u".\\new", u"new"));
  fs::current_path(former);
  EXPECT_FALSE(same_file(u"", text_path("other")));
  EXPECT_FALSE(same_file(text_path("other") + u'\0', text_path("other")));
}

}  // namespace
}  // namespace hedro34::testing
