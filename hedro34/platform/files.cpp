#include "hedro34/platform/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <vector>

namespace hedro34 {
namespace {

namespace fs = std::filesystem;

constexpr int most_links = 40;  // the system's own patience with links that lead to links
constexpr std::size_t least_read = 4096;

class Descriptor {
 public:
  explicit Descriptor(int number) noexcept : number_(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { close(); }

  int number() const noexcept { return number_; }
  int detach() noexcept { return std::exchange(number_, -1); }
  // False when the system reports a failure only now, as it may for files of another machine. An interrupted close is done.
  bool close() noexcept {
    const int number = detach();
    return number < 0 || ::close(number) == 0 || errno == EINTR;
  }

 private:
  int number_;
};

std::string system_reason(int error) { return std::system_category().message(error); }

// Why no file can have this path; empty when one can.
std::string_view impossible(StringView path) noexcept {
  if (path.empty()) return "the path is empty";
  if (path.find(u'\0') != StringView::npos) return "the path has a zero character in it";
  return {};
}

template <class Call>
auto uninterrupted(const Call& call) {
  auto result = call();
  while (result == -1 && errno == EINTR) result = call();
  return result;
}

// True when the system's answer to a path is that there is nothing under it. A long text of folders with "\" is one name
// too long for the system.
bool names_nothing(int error) noexcept { return error == ENOENT || error == ENOTDIR || error == ENAMETOOLONG; }

std::string with_slashes(std::string path) {
  std::replace(path.begin(), path.end(), '\\', '/');
  return path;
}

// A descriptor, or -1 and the reason in `errno`, which is that of the path as it stands.
int open_for_reading(const std::string& path) {
  const auto attempt = [](const std::string& form) {
    return uninterrupted([&] { return ::open(form.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY); });
  };
  int descriptor = attempt(path);
  if (descriptor < 0 && names_nothing(errno) && path.find('\\') != std::string::npos) {
    const int error = errno;
    descriptor = attempt(with_slashes(path));
    if (descriptor < 0 && names_nothing(errno)) errno = error;
  }
  return descriptor;
}

// The path behind the links that its last name stands for, whether a file is there or not.
fs::path behind_links(fs::path path) {
  std::error_code error;
  for (int i = 0; i < most_links && fs::is_symlink(fs::symlink_status(path, error)); ++i) {
    const fs::path next = fs::read_symlink(path, error);
    if (error) break;
    path = path.parent_path() / next;  // an absolute `next` stands alone
  }
  return path;
}

bool write_all(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto written = uninterrupted([&] { return ::write(descriptor, bytes.data(), bytes.size()); });
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

// Files that have no disk below them cannot be flushed, which is no failure.
bool flush(int descriptor) {
  return uninterrupted([&] { return ::fsync(descriptor); }) == 0 || errno == EINVAL || errno == ENOTSUP;
}

// Creates a file of a new name in the folder of `target`, readable as a new file is or, as a stand-in for an existing one,
// for its owner only. The name has a length of its own, since that of the target may be as long as the system allows.
int create_beside(const fs::path& target, bool stand_in, std::string& name) {
  static std::atomic<unsigned> counter = 0;
  for (int attempt = 0; attempt < 1000; ++attempt) {
    name =
        (target.parent_path() / (".hedro34-" + std::to_string(::getpid()) + "-" + std::to_string(++counter) + ".tmp"));
    const mode_t mode = stand_in ? 0600 : 0666;
    const int descriptor =
        uninterrupted([&] { return ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, mode); });
    if (descriptor >= 0) return descriptor;
    if (errno != EEXIST) break;
  }
  name.clear();
  return -1;
}

// Who may do what with the new file. Giving it away fails for all but a privileged user, and is then left out.
bool take_over_permissions(int descriptor, const struct stat& from) {
  [[maybe_unused]] const int owner = ::fchown(descriptor, from.st_uid, from.st_gid);
  return ::fchmod(descriptor, from.st_mode & 0777) == 0;
}

// The absolute forms under which a path may name a file, without ".", ".." and links: as it stands and, when nothing is
// there, with "\" read as "/".
std::vector<fs::path> resolved(const std::string& path) {
  const auto resolve = [](const std::string& form) {
    std::error_code error;
    const fs::path whole = fs::absolute(behind_links(form), error);
    const fs::path canonical = fs::weakly_canonical(whole, error);
    return error ? whole.lexically_normal() : canonical;
  };
  std::vector<fs::path> forms{resolve(path)};
  std::error_code error;
  if (!fs::exists(path, error)) forms.push_back(resolve(with_slashes(path)));
  return forms;
}

}  // namespace

std::optional<InputFile> InputFile::open(StringView path) {
  const auto failed = [&](std::string_view reason) {
    set_file_error(FileError::Kind::Unreadable, path, std::string(reason));
    return std::nullopt;
  };
  if (const auto reason = impossible(path); !reason.empty()) return failed(reason);

  Descriptor descriptor(open_for_reading(to_utf8(path)));
  struct stat status {};
  if (descriptor.number() < 0 || ::fstat(descriptor.number(), &status) != 0) return failed(system_reason(errno));
  if (S_ISDIR(status.st_mode)) return failed(system_reason(EISDIR));
  InputFile file(-1, S_ISREG(status.st_mode) ? static_cast<std::uint64_t>(status.st_size) : 0, path);
  file.descriptor_ = descriptor.detach();
  return file;
}

InputFile::InputFile(InputFile&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)), size_(other.size_), path_(std::move(other.path_)) {}

InputFile::~InputFile() { Descriptor(std::exchange(descriptor_, -1)).close(); }

std::optional<std::size_t> InputFile::read(char* target, std::size_t size) {
  std::size_t done = 0;
  while (done < size) {
    const auto count = uninterrupted([&] { return ::read(descriptor_, target + done, size - done); });
    if (count < 0) {
      set_file_error(FileError::Kind::Unreadable, path_, system_reason(errno));
      return std::nullopt;
    }
    if (count == 0) break;
    done += static_cast<std::size_t>(count);
  }
  return done;
}

std::optional<std::string> read_file(StringView path) {
  auto file = InputFile::open(path);
  if (!file) return std::nullopt;
  std::string content;
  // One byte more than the system promises, so that the first read finds the end as well.
  for (std::size_t room = static_cast<std::size_t>(file->size()) + 1, done = 0;; room = content.size()) {
    content.resize(done + std::max(room, least_read));
    const auto count = file->read(content.data() + done, content.size() - done);
    if (!count) return std::nullopt;
    done += *count;
    if (done < content.size()) {
      content.resize(done);
      return content;
    }
  }
}

std::optional<PendingFile> PendingFile::write(StringView path, std::string_view bytes) {
  return write(path, [&](const Writer& writer) { return writer(bytes); });
}

std::optional<PendingFile> PendingFile::write(StringView path, const std::function<bool(const Writer&)>& produce) {
  const auto failed = [&](std::string_view reason) {
    set_file_error(FileError::Kind::Unwritable, path, std::string(reason));
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
  Descriptor descriptor(create_beside(target, exists, file.temporary_));
  if (descriptor.number() < 0) return failed(errno == ENOENT ? "the folder does not exist" : system_reason(errno));
  if (exists && !take_over_permissions(descriptor.number(), existing)) return failed(system_reason(errno));
  int error = 0;
  const bool produced = produce([&](std::string_view bytes) {
    if (write_all(descriptor.number(), bytes)) return true;
    error = errno;
    return false;
  });
  if (error != 0) return failed(system_reason(error));
  if (!produced) return std::nullopt;
  if (!flush(descriptor.number()) || !descriptor.close()) return failed(system_reason(errno));
  return file;
}

PendingFile::PendingFile(PendingFile&& other) noexcept
    : temporary_(std::exchange(other.temporary_, {})),
      target_(std::move(other.target_)),
      path_(std::move(other.path_)) {}

PendingFile::~PendingFile() {
  if (!temporary_.empty()) ::unlink(temporary_.c_str());
}

bool PendingFile::commit() {
  if (::rename(temporary_.c_str(), target_.c_str()) != 0) {
    set_file_error(FileError::Kind::Unwritable, path_, system_reason(errno));
    return false;
  }
  temporary_.clear();
  // The new file is in place whatever becomes of this: it only makes the name survive a loss of power.
  const std::string folder = fs::path(target_).parent_path().string();
  const Descriptor descriptor(::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (descriptor.number() >= 0) flush(descriptor.number());
  return true;
}

bool same_file(StringView a, StringView b) {
  if (a == b) return true;
  if (!impossible(a).empty() || !impossible(b).empty()) return false;
  const auto forms_of_a = resolved(to_utf8(a));
  const auto forms_of_b = resolved(to_utf8(b));
  for (const fs::path& form_a : forms_of_a) {
    for (const fs::path& form_b : forms_of_b) {
      std::error_code error;
      if (form_a == form_b || fs::equivalent(form_a, form_b, error)) return true;
    }
  }
  return false;
}

}  // namespace hedro34
