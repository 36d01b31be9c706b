#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <system_error>
#include <vector>

#include "hedro34/platform/descriptor_posix.h"
#include "hedro34/platform/files.h"

namespace hedro34 {
namespace {

namespace fs = std::filesystem;
using namespace posix;

constexpr std::size_t least_read = 4096;

// A descriptor, or none and the reason in `errno`, which is that of the path as it stands.
Descriptor open_for_reading(const std::string& path) {
  const auto attempt = [](const std::string& form) {
    return opened([&] { return ::open(form.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY); });
  };
  Descriptor descriptor = attempt(path);
  if (!descriptor && names_nothing(errno) && path.find('\\') != std::string::npos) {
    const int error = errno;
    descriptor = attempt(with_slashes(path));
    if (!descriptor && names_nothing(errno)) errno = error;
  }
  return descriptor;
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

// A file without a name in the folder for temporary files.
Descriptor nameless_file() {
  std::error_code error;
  const fs::path folder = fs::temp_directory_path(error);
  std::string name = (error ? fs::path("/tmp") : folder) / "hedro34-XXXXXX";
  Descriptor file = opened([&] { return ::mkostemp(name.data(), O_CLOEXEC); });
  if (file) ::unlink(name.c_str());
  return file;
}

}  // namespace

std::optional<InputFile> InputFile::open(StringView path) {
  const auto failed = [&](std::string_view reason) {
    set_file_error(FileError::Kind::Unreadable, path, reason);
    return std::nullopt;
  };
  if (const auto reason = impossible(path); !reason.empty()) return failed(reason);

  Descriptor descriptor = open_for_reading(to_utf8(path));
  struct stat status {};
  if (!descriptor || ::fstat(descriptor.number(), &status) != 0) return failed(system_reason(errno));
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
  for (std::size_t more = static_cast<std::size_t>(file->size()) + 1, done = 0;; more = content.size()) {
    content.resize(done + std::max(more, least_read));
    const auto count = file->read(content.data() + done, content.size() - done);
    if (!count) return std::nullopt;
    done += *count;
    if (done < content.size()) {
      content.resize(done);
      return content;
    }
  }
}

std::optional<SpooledInput> SpooledInput::read() {
  constexpr StringView name = u"-";
  const auto failed = [&](const char* what) {
    set_file_error(FileError::Kind::Unreadable, name, what + system_reason(errno));
    return std::nullopt;
  };
  Descriptor spool = nameless_file();
  if (!spool) return failed("it cannot be kept in the folder for temporary files: ");
  std::array<char, 65536> buffer;
  for (;;) {
    const auto count = uninterrupted([&] { return ::read(STDIN_FILENO, buffer.data(), buffer.size()); });
    if (count < 0) return failed("");
    if (count == 0) break;
    if (!write_all(spool.number(), {buffer.data(), static_cast<std::size_t>(count)})) {
      return failed("it cannot be kept in the folder for temporary files: ");
    }
  }
  SpooledInput input(spool.number());
  spool.detach();
  return input;
}

SpooledInput::SpooledInput(int descriptor)
    : descriptor_(descriptor), path_(from_utf8("/dev/fd/" + std::to_string(descriptor))) {}

SpooledInput::SpooledInput(SpooledInput&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)), path_(std::move(other.path_)) {}

SpooledInput::~SpooledInput() { Descriptor(std::exchange(descriptor_, -1)).close(); }

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
