#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <memory>
#include <system_error>

#include "hedro34/platform/system_files.h"

namespace hedro34::system {
namespace {

namespace fs = std::filesystem;

constexpr int most_links = 40;  // links that lead to links: as many as the system follows before it gives up

int descriptor(const File& file) noexcept { return static_cast<int>(file.number()); }

template <class Call>
auto uninterrupted(const Call& call) {
  auto result = call();
  while (result == -1 && errno == EINTR) result = call();
  return result;
}

// The file that `open` gives, interruptions aside. A standard stream that the caller of the program closed does not lend its
// number to a file, into which the program would then write its lines.
template <class Open>
File opened(const Open& open) {
  File file(uninterrupted(open));
  if (file && file.number() <= STDERR_FILENO) {
    file = File(::fcntl(descriptor(file), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
  }
  return file;
}

// Files that have no disk below them cannot be flushed, which is no failure.
bool flush(const File& file) {
  return uninterrupted([&] { return ::fsync(descriptor(file)); }) == 0 || errno == EINVAL || errno == ENOTSUP;
}

Status status_of(const struct stat& found) {
  if (S_ISDIR(found.st_mode)) return {FileKind::Folder};
  if (!S_ISREG(found.st_mode)) return {FileKind::Other};
  return {FileKind::Regular, static_cast<std::uint64_t>(found.st_size)};
}

}  // namespace

std::string reason(int error) { return std::system_category().message(error); }

Path to_path(StringView path) { return to_utf8(path); }

String to_text(const Path& path) { return from_utf8(path.native()); }

std::string_view never_a_file(StringView) { return {}; }

// A long text of folders with "\" is one name too long for the system.
bool names_nothing(int error) noexcept { return error == ENOENT || error == ENOTDIR || error == ENAMETOOLONG; }

std::optional<Path> behind_links(Path path) {
  for (int i = 0; i < most_links; ++i) {
    std::error_code error;
    const fs::file_type type = fs::symlink_status(path, error).type();
    if (type != fs::file_type::symlink && type != fs::file_type::none) return path;
    const Path next = type == fs::file_type::symlink ? fs::read_symlink(path, error) : Path();
    if (error) {
      errno = error.value();
      return std::nullopt;
    }
    path = path.parent_path() / next;  // an absolute `next` stands alone
  }
  return path;
}

Path resolved(const Path& path) {
  std::error_code error;
  const Path whole = fs::absolute(behind_links(path).value_or(path), error);
  const Path canonical = fs::weakly_canonical(whole, error);
  return error ? whole.lexically_normal() : canonical;
}

bool is_one_file(const Path& a, const Path& b) {
  std::error_code error;
  return fs::equivalent(a, b, error);
}

// An interrupted close is done.
bool File::close() noexcept {
  const auto number = static_cast<int>(detach());
  return number < 0 || ::close(number) == 0 || errno == EINTR;
}

FileNumber standard_input() noexcept { return STDIN_FILENO; }
FileNumber standard_output() noexcept { return STDOUT_FILENO; }

std::optional<Status> status(const Path& path) {
  struct stat found {};
  if (::stat(path.c_str(), &found) != 0) return std::nullopt;
  return status_of(found);
}

std::optional<Status> status(const File& file) {
  struct stat found {};
  if (::fstat(descriptor(file), &found) != 0) return std::nullopt;
  return status_of(found);
}

bool is_there(const Path& path) {
  struct stat found {};
  return ::lstat(path.c_str(), &found) == 0;
}

bool may_write(const Path& path) { return ::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0; }

File open_for_reading(const Path& path) {
  return opened([&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY); });
}

std::optional<std::size_t> read(FileNumber file, char* target, std::size_t size) {
  const auto count = uninterrupted([&] { return ::read(static_cast<int>(file), target, size); });
  if (count < 0) return std::nullopt;
  return static_cast<std::size_t>(count);
}

bool write_all(FileNumber file, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto written = uninterrupted([&] { return ::write(static_cast<int>(file), bytes.data(), bytes.size()); });
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

std::pair<File, String> create_spool() {
  std::error_code error;
  Path folder = fs::temp_directory_path(error);
  if (error) folder = "/tmp";
  File file = opened([&] { return ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600); });
  if (!file) {  // a file system that has none without a name
    std::string name;
    file = opened([&] { return ::mkostemp((name = folder / "hedro34-XXXXXX").data(), O_CLOEXEC); });
    if (!file) return {File(), String()};
    ::unlink(name.c_str());
  }
  return {std::move(file), from_utf8("/dev/fd/" + std::to_string(file.number()))};
}

File create(const Path& path, bool stand_in) {
  const mode_t mode = stand_in ? 0600 : 0666;
  constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW;
  return opened([&] { return ::open(path.c_str(), flags, mode); });
}

// Giving a file away fails for all but a privileged user, and is then left out.
bool take_over_permissions(const File& file, const Path&, const Path& from) {
  struct stat found {};
  if (::stat(from.c_str(), &found) != 0) return false;
  [[maybe_unused]] const int owner = ::fchown(descriptor(file), found.st_uid, found.st_gid);
  return ::fchmod(descriptor(file), found.st_mode & 0777) == 0;
}

bool try_lock(const File& file) {
  return uninterrupted([&] { return ::flock(descriptor(file), LOCK_EX | LOCK_NB); }) == 0;
}

bool is_still_at(const File& file, const Path& path) {
  struct stat opened_one {};
  struct stat there {};
  if (::fstat(descriptor(file), &opened_one) != 0 || ::lstat(path.c_str(), &there) != 0) return false;
  errno = ENOENT;
  return opened_one.st_ino == there.st_ino;
}

// The lock stays with a second descriptor; closing the first is what a file of another machine fails at.
bool finish(File& file) {
  File lock(::fcntl(descriptor(file), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
  if (!lock || !flush(file) || !file.close()) return false;
  file = std::move(lock);
  return true;
}

bool link(const Path& file, const Path& name) noexcept { return ::link(file.c_str(), name.c_str()) == 0; }
bool rename_over(const Path& file, const Path& target) noexcept { return ::rename(file.c_str(), target.c_str()) == 0; }
bool remove(const Path& file) noexcept { return ::unlink(file.c_str()) == 0; }

std::uint32_t this_process() noexcept { return static_cast<std::uint32_t>(::getpid()); }
bool is_running(std::uint32_t process) noexcept {
  return ::kill(static_cast<pid_t>(process), 0) == 0 || errno != ESRCH;
}

Folder::Folder(const Path& path) : path_(path.empty() ? Path(".") : path) {
  file_ = opened([&] { return ::open(path_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
  struct stat found {};
  if (file_ && ::fstat(descriptor(file_), &found) != 0) file_.close();  // else it counts as another folder than itself
  if (file_) identity_ = {found.st_dev, found.st_ino};
}

Folder::~Folder() {
  if (file_) ::flock(descriptor(file_), LOCK_UN);  // a child of another thread's `fork` may hold the descriptor as well
}

bool Folder::try_lock() { return system::try_lock(file_); }

void Folder::flush_names() const {
  if (file_) flush(file_);
}

// The iterators of std::filesystem end the process when they find no memory.
void Folder::each_name(const std::function<void(const std::string& name)>& visit) const {
  File listed = opened([&] { return ::openat(descriptor(file_), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
  const auto close = [](DIR* entries) { ::closedir(entries); };
  const std::unique_ptr<DIR, decltype(close)> entries(listed ? ::fdopendir(descriptor(listed)) : nullptr, close);
  if (!entries) return;
  listed.detach();
  while (const dirent* entry = ::readdir(entries.get())) visit(entry->d_name);
}

bool Folder::is_unlocked_and_own(const std::string& name) const {
  constexpr int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
  const File file(::openat(descriptor(file_), name.c_str(), flags));
  struct stat found {};
  return file && ::fstat(descriptor(file), &found) == 0 && S_ISREG(found.st_mode) && found.st_uid == ::geteuid() &&
         system::try_lock(file);
}

void Folder::remove(const std::string& name) const noexcept { ::unlinkat(descriptor(file_), name.c_str(), 0); }

}  // namespace hedro34::system
