#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

#include "hedro34/documents/form_template.h"
#include "tests/files_support.h"

namespace hedro34::testing {
namespace {

namespace fs = std::filesystem;

using PosixFiles = FilesTest;

TEST_F(PosixFiles, ReadAFileOfNoKnownSize) {
  EXPECT_NE(read_file(u"/proc/self/status")->find("VmPeak"), std::string::npos);
}

TEST_F(PosixFiles, RejectWhatCannotBeReadOrWritten) {
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
      {"secret\\x", "No such file or directory", "Not a directory"},
      {"locked/x", "No such file or directory", "Permission denied"},
      {"fixed", "", "Permission denied"},
      {"secret", "Permission denied", "Permission denied"},
      {"secret/x", "Not a directory", "Not a directory"},
      {"link", "Is a directory", "Is a directory"},
      {"loop", "Too many levels of symbolic links", "Too many levels of symbolic links"},
  };
  const auto before = count();
  const uid_t former = ::geteuid();  // a privileged user may do all
  EXPECT_EQ(::seteuid(former == 0 ? 65534 : former), 0);
  for (const auto& row : rows) {
    EXPECT_EQ(load(row.name), row.of_reading) << row.name;
    EXPECT_EQ(save(row.name), row.of_writing) << row.name;
  }
  EXPECT_EQ(save("pipe"), "not a regular file");
  EXPECT_EQ(kind_of(text_path("pipe")), FileKind::Other);
  EXPECT_EQ(::seteuid(former), 0);
  fs::permissions(path("locked"), fs::perms::all);
  EXPECT_EQ(count(), before);
  EXPECT_EQ(content("fixed"), "old");
}

TEST_F(PosixFiles, WritingKeepsPermissions) {
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

TEST_F(PosixFiles, WritingFollowsLinks) {
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
}

TEST_F(PosixFiles, AFailureLaterLeavesTheTarget) {
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
}

TEST_F(PosixFiles, SameFile) {
  for (const char* name : {"folder/inner", "odd"}) fs::create_directories(path(name));
  for (const char* name : {"folder/old", "other", "odd\\name", "odd/name"}) folder_.write(name, name);
  EXPECT_EQ(content("odd\\name"), "odd\\name") << "which is there as it stands";
  fs::create_symlink("folder", path("link"));
  fs::create_symlink("folder/new", path("dangling"));
  expect_same_file({
      {"folder/old", "link\\.\\old"},
      {"folder/new", "link\\new", "dangling"},  // not there yet
      {"odd\\name"},
      {"odd/name"},
      {"other"},
      {"Other"},
  });
}

}  // namespace
}  // namespace hedro34::testing
