#include "hedro34/platform/system_files.h"
#include "tests/files_support.h"

#include <windows.h>
// After it.
#include <cerrno>
#include <cstdlib>

namespace hedro34::testing {
namespace {

namespace fs = std::filesystem;

struct WindowsFiles : FilesTest {
  fs::path form(const std::string& name) const { return system::to_path(text_path(name)); }
  system::File open(const std::string& name, DWORD access, DWORD share, DWORD how = OPEN_EXISTING) const {
    return system::File(reinterpret_cast<system::FileNumber>(
        ::CreateFileW(form(name).c_str(), access, share, nullptr, how, FILE_ATTRIBUTE_NORMAL, nullptr)));
  }
};

TEST_F(WindowsFiles, AnyPath) {
  const std::string part(100, 'x');
  const std::string folders[] = {"inner", "prüfung ☃ Ωж漢 😀", part, part + "\\" + part,
                                 part + "\\" + part + "/" + part};
  for (const std::string& folder : folders) {
    ASSERT_TRUE(::CreateDirectoryW(form(folder).c_str(), nullptr)) << folder;
    for (const std::string& name : {folder + "\\b", folder + "/ж 漢.ktd"}) {
      for (const char* bytes : {"first", "second\r\n\x1a"}) {
        EXPECT_EQ(save(name, bytes), "") << name;
        EXPECT_EQ(content(name), bytes) << name;
      }
      EXPECT_EQ(kind_of(text_path(name)), FileKind::Regular) << name;
      EXPECT_TRUE(same_file(text_path(name), text_path("none/../" + name))) << name;
    }
  }
  EXPECT_EQ(content("inner/b"), "second\r\n\x1a");
  EXPECT_EQ(load(part + "/" + std::string(256, 'y')), "File name too long");
  expect_same_file({{"inner/b", "INNER\\B"}, {"inner/new", "Inner\\NEW"}});
  for (auto folder = std::rbegin(folders); folder != std::rend(folders); ++folder) {  // too long for std::filesystem
    for (const char* name : {"/b", "/ж 漢.ktd"}) EXPECT_TRUE(system::remove(form(*folder + name)));
    EXPECT_TRUE(::RemoveDirectoryW(form(*folder).c_str())) << "something is left in " << *folder;
  }
}

TEST_F(WindowsFiles, RejectWhatIsNoFileOrMayNotBeReplaced) {
  for (const char* name : {"fixed", "taken", "hidden"}) folder_.write(name, "old");
  ::SetFileAttributesW(form("fixed").c_str(), FILE_ATTRIBUTE_READONLY);
  ::SetFileAttributesW(form("hidden").c_str(), FILE_ATTRIBUTE_HIDDEN);
  const auto taken = open("taken", GENERIC_READ, FILE_SHARE_READ);
  const struct {
    std::string name;
    std::string of_reading;
    std::string of_writing;
  } rows[] = {
      {"NUL", "not a regular file", "not a regular file"},
      {"con", "not a regular file", "not a regular file"},
      {"hidden:stream", "not a regular file", "not a regular file"},
      {"a*b", "no file can have this name", "no file can have this name"},
      {"fixed", "", "Permission denied"},
      {"fixed/x", "No such file or directory", "the folder does not exist"},
      {"taken", "", "another program has the file open"},
      {"hidden", "", ""},
  };
  const auto before = count();
  for (const auto& row : rows) {
    EXPECT_EQ(load(row.name), row.of_reading) << row.name;
    EXPECT_EQ(save(row.name), row.of_writing) << row.name;
    EXPECT_EQ(count(), before) << row.name;
  }
  EXPECT_EQ(content("fixed") + content("taken") + content("hidden"), "oldoldnext");
  EXPECT_TRUE(::GetFileAttributesW(form("hidden").c_str()) & FILE_ATTRIBUTE_HIDDEN);
  ::SetFileAttributesW(form("fixed").c_str(), FILE_ATTRIBUTE_NORMAL);
  for (const char* nowhere : {"NUL", "\\\\.\\NUL", "C:\\x:y"}) EXPECT_EQ(kind_of(from_utf8(nowhere)), FileKind::Other);
  const auto exclusive = open("hidden", GENERIC_READ, 0);
  EXPECT_EQ(load("hidden"), "another program has the file open");
}

TEST_F(WindowsFiles, SeveralAreTakenBackWhenOneIsOpenElsewhere) {
  for (const char* name : {"a", "taken"}) folder_.write(name, "old");
  auto files = written({"a", "new", "taken"});
  const auto taken = open("taken", GENERIC_READ, FILE_SHARE_READ);
  EXPECT_EQ(outcome(commit_together(files), FileError::Kind::Unwritable, "taken"), "another program has the file open");
  files.clear();
  EXPECT_EQ(content("a") + content("new") + content("taken"), "old<unreadable>old");
  EXPECT_EQ(count(), 2);
}

TEST_F(WindowsFiles, ALockThatThisUserMayNotHaveIsGoneWithout) {
  const fs::path lock = form(".hedro34-lock");
  folder_.write(".hedro34-lock", "left behind");
  ::SetFileAttributesW(lock.c_str(), FILE_ATTRIBUTE_READONLY);
  auto files = written({"a", "b"});
  EXPECT_TRUE(commit_together(files)) << last_file_error().reason;
  ::SetFileAttributesW(lock.c_str(), FILE_ATTRIBUTE_NORMAL);
  ::DeleteFileW(lock.c_str());
  ::CreateDirectoryW(lock.c_str(), nullptr);
  files = written({"a", "b"});
  EXPECT_TRUE(commit_together(files)) << last_file_error().reason;
  EXPECT_FALSE(system::Folder(lock.parent_path()).try_lock());
  EXPECT_EQ(errno, EACCES);
  EXPECT_TRUE(::RemoveDirectoryW(lock.c_str()));
  EXPECT_TRUE(system::Folder(lock.parent_path()).try_lock());
  EXPECT_EQ(count(), 2);
}

TEST_F(WindowsFiles, OnlyWhatNobodyWritesIsAbandoned) {
  folder_.write(".hedro34-2000000004-1.tmp", "dead");  // no process has this number
  folder_.write(".hedro34-2000000004-2.tmp", "held on another machine");
  folder_.write(".hedro34-" + std::to_string(system::this_process()) + "-1.tmp", "alive");
  const auto held = open(".hedro34-2000000004-2.tmp", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE);
  EXPECT_TRUE(system::try_lock(held));
  {
    const auto lock = open(".hedro34-lock", GENERIC_WRITE, 0, CREATE_NEW);
    remove_abandoned_files(text_path("any"));
    EXPECT_EQ(count(), 4) << "somebody renames in there";
  }
  remove_abandoned_files(text_path("any"));
  EXPECT_EQ(count(), 2);
  EXPECT_EQ(content(".hedro34-2000000004-1.tmp"), "<unreadable>");
}

TEST(WindowsDrives, TheRootIsAFolderLikeOthers) {
  const String left = u"C:\\.hedro34-2000000004-1.tmp";
  if (!system::create(system::to_path(left), false)) GTEST_SKIP() << "this user writes nothing there";
  remove_abandoned_files(u"C:\\any");
  EXPECT_EQ(kind_of(left), FileKind::Nothing);
  system::remove(system::to_path(left));
}

// HEDRO34_SMALL_DISK names a folder on a disk of less than a megabyte.
TEST_F(WindowsFiles, AFullDiskLeavesTheTarget) {
  const char* const small = std::getenv("HEDRO34_SMALL_DISK");
  if (small == nullptr || *small == 0) GTEST_SKIP() << "no small disk is named";
  const String target = from_utf8(small) + u"\\target";
  for (const auto& [bytes, why] :
       {std::pair(std::string("old"), ""), {std::string(1 << 20, 'x'), "No space left on device"}}) {
    auto file = PendingFile::write(target, bytes);
    EXPECT_EQ(file && file->commit() ? "" : last_file_error().reason, why);
  }
  EXPECT_EQ(read_file(target), "old");
  EXPECT_EQ(std::distance(fs::directory_iterator(fs::path(target).parent_path()), {}), 1);
}

TEST(Reasons, AreOneLineWhateverTheSystemSays) {
  EXPECT_EQ(system::reason(EACCES), "Permission denied");
  EXPECT_EQ(system::reason(-ERROR_ACCESS_DENIED), "Permission denied");
  const std::string why = system::reason(-ERROR_BAD_NETPATH);
  EXPECT_TRUE(!why.empty() && why.find_first_of("\r\n") == std::string::npos && why.back() != '.') << why;
  EXPECT_EQ(system::reason(-0x3FFFFFFF), "error 1073741823 of the system");
}

}  // namespace
}  // namespace hedro34::testing
