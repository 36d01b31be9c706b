#include "hedro34/platform/files.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <vector>

#include "hedro34/platform/paths.h"

namespace hedro34 {
namespace {

using system::File;
using system::Path;
using system::reason;

constexpr std::size_t least_read = 4096;
constexpr std::size_t room_behind = 64;

// A file, or none and the reason in `errno`, which is that of the path as it stands.
File open_for_reading(StringView path) {
  File file = system::open_for_reading(system::to_path(path));
  if (!file && system::names_nothing(errno) && path.find(u'\\') != StringView::npos) {
    const int error = errno;
    file = system::open_for_reading(with_slashes(path));
    if (!file && system::names_nothing(errno)) errno = error;
  }
  return file;
}

// The forms under which a path may name a file: as it stands and, when nothing is there, with "\" read as "/".
std::vector<Path> resolved(StringView path) {
  const Path form = system::to_path(path);
  std::vector<Path> forms{system::resolved(form)};
  if (!system::status(form)) forms.push_back(system::resolved(with_slashes(path)));
  return forms;
}

}  // namespace

std::optional<InputFile> InputFile::open(StringView path) {
  const auto failed = [&](std::string_view why) {
    set_file_error(FileError::Kind::Unreadable, path, why);
    return std::nullopt;
  };
  if (const auto why = impossible(path); !why.empty()) return failed(why);

  File opened = open_for_reading(path);
  const auto status = opened ? system::status(opened) : std::nullopt;
  if (!status) return failed(reason(errno));
  if (status->kind == FileKind::Folder) return failed(reason(EISDIR));
  InputFile file(system::no_file, status->size, path);
  file.file_ = opened.detach();
  return file;
}

InputFile::InputFile(InputFile&& other) noexcept
    : file_(std::exchange(other.file_, system::no_file)), size_(other.size_), path_(std::move(other.path_)) {}

InputFile::~InputFile() { File(file_).close(); }

std::optional<std::size_t> InputFile::read(char* target, std::size_t size) {
  std::size_t done = 0;
  while (done < size) {
    const auto count = system::read(file_, target + done, size - done);
    if (!count) {
      set_file_error(FileError::Kind::Unreadable, path_, reason(errno));
      return std::nullopt;
    }
    if (*count == 0) break;
    done += *count;
  }
  return done;
}

std::optional<std::string> read_file(StringView path) {
  auto file = InputFile::open(path);
  if (!file) return std::nullopt;
  std::string content;
  // More than the system promises, so that the first read finds the end as well.
  for (std::size_t more = static_cast<std::size_t>(file->size()) + room_behind, done = 0;; more = content.size()) {
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
    set_file_error(FileError::Kind::Unreadable, name, what + reason(errno));
    return std::nullopt;
  };
  auto [spool, path] = system::create_spool();
  if (!spool) return failed("it cannot be kept in the folder for temporary files: ");
  std::array<char, 65536> buffer;
  for (;;) {
    const auto count = system::read(system::standard_input(), buffer.data(), buffer.size());
    if (!count) return failed("");
    if (*count == 0) break;
    if (!system::write_all(spool.number(), {buffer.data(), *count})) {
      return failed("it cannot be kept in the folder for temporary files: ");
    }
  }
  return SpooledInput(spool.detach(), std::move(path));
}

SpooledInput::SpooledInput(SpooledInput&& other) noexcept
    : file_(std::exchange(other.file_, system::no_file)), path_(std::move(other.path_)) {}

SpooledInput::~SpooledInput() { File(file_).close(); }

FileKind kind_of(StringView path) {
  if (!system::never_a_file(path).empty()) return FileKind::Other;
  auto status = system::status(system::to_path(path));
  if (!status) status = system::status(with_slashes(path));
  return status ? status->kind : FileKind::Nothing;
}

bool same_file(StringView a, StringView b) {
  if (a == b) return true;
  if (!impossible(a).empty() || !impossible(b).empty()) return false;
  const auto forms_of_a = resolved(a);
  const auto forms_of_b = resolved(b);
  for (const Path& form_a : forms_of_a) {
    for (const Path& form_b : forms_of_b) {
      if (form_a == form_b || system::is_one_file(form_a, form_b)) return true;
    }
  }
  return false;
}

}  // namespace hedro34
