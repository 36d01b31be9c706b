#include <dirent.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <charconv>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <memory>
#include <thread>
#include <vector>

#include "hedro34/platform/descriptor_posix.h"
#include "hedro34/platform/files.h"
#include "hedro34/platform/pending_file.h"

namespace hedro34 {
namespace {

namespace fs = std::filesystem;
using namespace posix;

constexpr std::string_view temporary_start = ".hedro34-";
constexpr std::string_view temporary_end = ".tmp";
constexpr auto longest_wait = std::chrono::seconds(5);

// Files that have no disk below them cannot be flushed, which is no failure.
bool flush(int descriptor) {
  return uninterrupted([&] { return ::fsync(descriptor); }) == 0 || errno == EINVAL || errno == ENOTSUP;
}

// True when the lock is taken; else the reason is in `errno`, EWOULDBLOCK when somebody else has it.
bool try_lock(int descriptor) {
  return uninterrupted([&] { return ::flock(descriptor, LOCK_EX | LOCK_NB); }) == 0;
}

// A name for a temporary file beside the target. It has a length of its own, since that of the target may be as long as the
// system allows.
std::string temporary_name(const fs::path& target) {
  static std::atomic<unsigned> counter = 0;
  std::string name(temporary_start);
  name += std::to_string(::getpid()) + '-' + std::to_string(++counter);
  return target.parent_path() / name.append(temporary_end);
}

// Tries names until `make` succeeds with one; the name is empty, with the reason in `errno`, when it does not.
template <class Make>
std::string made_beside(const fs::path& target, const Make& make) {
  for (int attempt = 0; attempt < 1000; ++attempt) {
    std::string name = temporary_name(target);
    if (make(name.c_str())) return name;
    if (errno != EEXIST) break;
  }
  return {};
}

// Takes the lock that says that the writer lives. False when somebody who cleans up has the new file already.
bool claim(int descriptor, const char* name) {
  if (!try_lock(descriptor)) return errno != EWOULDBLOCK;  // a file system without locks goes without
  struct stat made {};
  struct stat there {};
  return ::fstat(descriptor, &made) == 0 && ::lstat(name, &there) == 0 && made.st_ino == there.st_ino;
}

// Creates a file of a new name in the folder of `target`, readable as a new file is or, as a stand-in for an existing one,
// for its owner only.
Descriptor create_beside(const fs::path& target, bool stand_in, std::string& name) {
  const mode_t mode = stand_in ? 0600 : 0666;
  Descriptor created;
  name = made_beside(target, [&](const char* made) {
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW;
    created = opened([&] { return ::open(made, flags, mode); });
    if (!created || claim(created.number(), made)) return static_cast<bool>(created);
    created.close();
    errno = EEXIST;
    return false;
  });
  return created;
}

// Who may do what with the new file. Giving it away fails for all but a privileged user, and is then left out.
bool take_over_permissions(int descriptor, const struct stat& from) {
  [[maybe_unused]] const int owner = ::fchown(descriptor, from.st_uid, from.st_gid);
  return ::fchmod(descriptor, from.st_mode & 0777) == 0;
}

class Folder {
 public:
  explicit Folder(const std::string& file) {
    const std::string folder = fs::path(file).parent_path().string();
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
    descriptor_ = opened([&] { return ::open(folder.empty() ? "." : folder.c_str(), flags); });
    struct stat status {};
    if (!descriptor_ || ::fstat(number(), &status) != 0) return;
    device_ = status.st_dev;
    inode_ = status.st_ino;
  }
  Folder(Folder&&) = default;
  Folder& operator=(Folder&&) = default;
  ~Folder() {
    if (descriptor_) ::flock(number(), LOCK_UN);  // a child of another thread's `fork` may hold the descriptor as well
  }

  int number() const noexcept { return descriptor_.number(); }
  bool operator<(const Folder& other) const noexcept { return identity() < other.identity(); }
  bool operator==(const Folder& other) const noexcept { return identity() == other.identity(); }

  // Makes the names in it survive a loss of power. What was renamed is in place whatever becomes of this.
  void flush_names() const {
    if (descriptor_) flush(number());
  }

  // False when somebody else keeps it locked until then. A folder that cannot be locked goes without.
  bool lock(std::chrono::steady_clock::time_point until) const {
    while (descriptor_ && !try_lock(number()) && errno == EWOULDBLOCK) {
      if (std::chrono::steady_clock::now() >= until) return false;
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
  }

 private:
  std::pair<dev_t, ino_t> identity() const noexcept { return {device_, inode_}; }

  Descriptor descriptor_;
  dev_t device_ = 0;
  ino_t inode_ = 0;
};

// The process in the name of a temporary file; 0 for any other name.
pid_t writer_of(std::string_view name) {
  if (!name.starts_with(temporary_start) || !name.ends_with(temporary_end)) return 0;
  name.remove_prefix(temporary_start.size());
  pid_t process = 0;
  const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), process);
  return error == std::errc() && *end == '-' && process > 0 ? process : 0;
}

bool is_abandoned(const Folder& folder, const char* name) {
  const pid_t writer = writer_of(name);
  if (writer == 0 || ::kill(writer, 0) == 0 || errno != ESRCH) return false;
  // In another name space, or on another machine, it may live.
  constexpr int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
  const Descriptor file(::openat(folder.number(), name, flags));
  struct stat status {};
  return file && ::fstat(file.number(), &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == ::geteuid() &&
         try_lock(file.number());
}

}  // namespace

std::optional<PendingFile> PendingFile::write(StringView path, std::string_view bytes) {
  return write(path, [&](const Writer& writer) { return writer(bytes); });
}

std::optional<PendingFile> PendingFile::write(StringView path, const std::function<bool(const Writer&)>& produce) {
  const auto failed = [&](std::string_view reason) {
    set_file_error(FileError::Kind::Unwritable, path, reason);
    return std::nullopt;
  };
  if (const auto reason = impossible(path); !reason.empty()) return failed(reason);

  std::string name = to_utf8(path);
  struct stat existing {};
  if (::lstat(name.c_str(), &existing) != 0 && names_nothing(errno)) name = with_slashes(name);
  const fs::path target = behind_links(name);
  const bool exists = ::stat(target.c_str(), &existing) == 0;
  if (exists) {
    if (S_ISDIR(existing.st_mode)) return failed(system_reason(EISDIR));
    if (!S_ISREG(existing.st_mode)) return failed("not a regular file");
    if (::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) return failed(system_reason(errno));
  } else if (errno != ENOENT) {
    return failed(system_reason(errno));
  } else if (!target.has_filename()) {
    return failed(system_reason(EISDIR));
  }

  PendingFile file(target.string(), path);
  Descriptor descriptor = create_beside(target, exists, file.temporary_);
  if (!descriptor) return failed(errno == ENOENT ? "the folder does not exist" : system_reason(errno));
  if (exists && !take_over_permissions(descriptor.number(), existing)) return failed(system_reason(errno));
  int error = 0;
  const bool produced = produce([&](std::string_view bytes) {
    if (write_all(descriptor.number(), bytes)) return true;
    error = errno;
    return false;
  });
  if (error != 0) return failed(system_reason(error));
  if (!produced) return std::nullopt;
  // The lock stays with the second descriptor; closing the first is what a file of another machine fails at.
  file.lock_ = ::fcntl(descriptor.number(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  if (file.lock_ < 0 || !flush(descriptor.number()) || !descriptor.close()) return failed(system_reason(errno));
  return file;
}

PendingFile::PendingFile(std::string target, StringView path) : target_(std::move(target)), path_(path) {}

PendingFile::PendingFile(PendingFile&& other) noexcept
    : temporary_(std::exchange(other.temporary_, {})),
      target_(std::move(other.target_)),
      path_(std::move(other.path_)),
      lock_(std::exchange(other.lock_, -1)) {}

PendingFile::~PendingFile() {
  if (!temporary_.empty()) ::unlink(temporary_.c_str());
  Descriptor(lock_).close();
}

bool PendingFile::replace() noexcept {
  if (::rename(temporary_.c_str(), target_.c_str()) != 0) return false;
  temporary_.clear();
  return true;
}

bool PendingFile::commit() {
  const Folder folder(target_);
  if (replace()) return folder.flush_names(), true;
  set_file_error(FileError::Kind::Unwritable, path_, system_reason(errno));
  return false;
}

// Another link to it where the file system has links, else a copy of it, ready to take its place again.
std::optional<PendingFile> PendingFile::former(const PendingFile& file, bool& is_there) {
  struct stat status {};
  is_there = ::lstat(file.target_.c_str(), &status) == 0 || errno != ENOENT;
  if (!is_there) return std::nullopt;
  PendingFile result(file.target_, file.path_);
  result.temporary_ =
      made_beside(file.target_, [&](const char* name) { return ::link(file.target_.c_str(), name) == 0; });
  if (!result.temporary_.empty()) return result;
  const auto content = read_file(from_utf8(file.target_));
  return content ? write(file.path_, *content) : std::nullopt;
}

bool commit_together(std::span<PendingFile> files) {
  if (files.size() < 2) return files.empty() || files[0].commit();
  std::vector<Folder> folders;
  for (const PendingFile& file : files) folders.emplace_back(file.target_);
  std::sort(folders.begin(), folders.end());  // in one order for all, so that nobody waits for whoever waits for him
  folders.erase(std::unique(folders.begin(), folders.end()), folders.end());
  const auto until = std::chrono::steady_clock::now() + longest_wait;
  for (const Folder& folder : folders) {
    if (folder.lock(until)) continue;
    set_file_error(FileError::Kind::Unwritable, files[0].path_,
                   "another program keeps the folder locked; try again when it is done");
    return false;
  }

  // All memory is had before the first renaming, and the last file needs no way back.
  std::vector<std::optional<PendingFile>> formers;
  for (const PendingFile& file : files.first(files.size() - 1)) {
    bool is_there = false;
    formers.push_back(PendingFile::former(file, is_there));
    if (is_there && !formers.back()) {
      const std::string why = last_file_error().reason;
      set_file_error(FileError::Kind::Unwritable, file.path_, "its present content cannot be kept: " + why);
      return false;
    }
  }

  std::size_t done = 0;
  while (done < files.size() && files[done].replace()) ++done;
  const int error = errno;
  const PendingFile* stuck = nullptr;
  if (done < files.size()) {
    for (std::size_t i = done; i-- > 0;) {
      const bool is_back = formers[i] ? formers[i]->replace() : ::unlink(files[i].target_.c_str()) == 0;
      if (!is_back) stuck = &files[i];
    }
  }
  for (const Folder& folder : folders) folder.flush_names();
  if (done == files.size()) return true;
  std::string reason = system_reason(error);
  if (stuck != nullptr) reason += "; what is new could not be taken back: " + to_utf8(stuck->path_);
  set_file_error(FileError::Kind::Unwritable, files[done].path_, reason);
  return false;
}

void remove_abandoned_files(StringView path) noexcept {
  try {
    std::string name = to_utf8(path);
    struct stat status {};
    if (::lstat(name.c_str(), &status) != 0 && names_nothing(errno)) name = with_slashes(name);
    const fs::path target = behind_links(name);
    const Folder folder(target.string());
    if (folder.number() < 0 || !folder.lock({})) return;  // somebody renames in there
    // The iterators of std::filesystem end the process when they find no memory.
    Descriptor listed = opened([&] { return ::openat(folder.number(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
    const auto close = [](DIR* entries) { ::closedir(entries); };
    const std::unique_ptr<DIR, decltype(close)> entries(listed ? ::fdopendir(listed.number()) : nullptr, close);
    if (!entries) return;
    listed.detach();
    while (const dirent* entry = ::readdir(entries.get())) {
      if (is_abandoned(folder, entry->d_name)) ::unlinkat(folder.number(), entry->d_name, 0);
    }
  } catch (const std::exception&) {
    // It is left to a later run.
  }
}

}  // namespace hedro34
