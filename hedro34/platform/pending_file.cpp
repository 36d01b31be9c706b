#include "hedro34/platform/pending_file.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <mutex>
#include <thread>
#include <vector>

#include "hedro34/base/immortal.h"
#include "hedro34/platform/abandoned_files.h"
#include "hedro34/platform/paths.h"

namespace hedro34 {
namespace {

using system::File;
using system::Folder;
using system::Path;
using system::reason;

constexpr std::string_view temporary_start = ".hedro34-";
constexpr std::string_view temporary_end = ".tmp";
constexpr auto longest_wait = std::chrono::seconds(5);

// A name for a temporary file beside the target. It has a length of its own, since that of the target may be as long as the
// system allows.
Path temporary_name(const Path& target) {
  static std::atomic<unsigned> counter = 0;
  std::string name(temporary_start);
  name += std::to_string(system::this_process()) + '-' + std::to_string(++counter);
  return target.parent_path() / name.append(temporary_end);
}

// Tries names until `make` succeeds with one; the name is empty, with the reason in `errno`, when it does not.
template <class Make>
Path made_beside(const Path& target, const Make& make) {
  for (int attempt = 0; attempt < 1000; ++attempt) {
    Path name = temporary_name(target);
    if (make(name)) return name;
    if (errno != EEXIST) break;
  }
  return {};
}

// Takes the lock that says that the writer lives. False with EEXIST when somebody who cleans up has the new file already.
bool claim(const File& file, const Path& name) {
  const bool locked = system::try_lock(file);
  if (!locked && errno != EWOULDBLOCK) return true;  // a file system without locks goes without
  if (locked && system::is_still_at(file, name)) return true;
  if (!locked || errno == ENOENT) errno = EEXIST;
  return false;
}

// Creates a file of a new name in the folder of `target`, readable as a new file is or, as a stand-in for an existing one,
// for its owner only.
File create_beside(const Path& target, bool stand_in, Path& name) {
  File created;
  name = made_beside(target, [&](const Path& made) {
    created = system::create(made, stand_in);
    if (!created || claim(created, made)) return static_cast<bool>(created);
    const int error = errno;
    created.close();
    if (error != EEXIST) system::remove(made);
    errno = error;
    return false;
  });
  return created;
}

// False when somebody else keeps it locked until then. A folder that cannot be locked goes without.
bool lock(Folder& folder, std::chrono::steady_clock::time_point until) {
  while (folder && !folder.try_lock() && errno == EWOULDBLOCK) {
    if (std::chrono::steady_clock::now() >= until) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return true;
}

// The process in the name of a temporary file; 0 for any other name.
std::uint32_t writer_of(std::string_view name) {
  if (!name.starts_with(temporary_start) || !name.ends_with(temporary_end)) return 0;
  name.remove_prefix(temporary_start.size());
  std::int32_t process = 0;
  const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), process);
  return error == std::errc() && *end == '-' && process > 0 ? static_cast<std::uint32_t>(process) : 0;
}

// In another name space, or on another machine, a process may live that is none here: then it holds the lock.
bool is_abandoned(const Folder& folder, const std::string& name) {
  const std::uint32_t writer = writer_of(name);
  return writer != 0 && !system::is_running(writer) && folder.is_unlocked_and_own(name);
}

// The path as it stands or, when nothing is there, with "\" read as "/"; links are followed. Nothing, with the reason in
// `errno`, when they cannot be.
std::optional<Path> target_of(StringView path) {
  Path form = system::to_path(path);
  if (!system::is_there(form) && system::names_nothing(errno)) form = with_slashes(path);
  return system::behind_links(std::move(form));
}

// The last folders, as they were named.
class LookedThrough {
 public:
  bool is_new(StringView folder) {
    const std::lock_guard lock(mutex_);
    if (std::find(folders_.begin(), folders_.end(), folder) != folders_.end()) return false;
    if (folders_.size() == most) folders_.erase(folders_.begin());
    folders_.emplace_back(folder);
    return true;
  }

 private:
  static constexpr std::size_t most = 16;
  std::mutex mutex_;
  std::vector<String> folders_;
};

}  // namespace

struct PendingFile::Parts {
  Parts(Path at, StringView as_given) : target(std::move(at)), path(as_given) {}
  Parts(const Parts&) = delete;
  Parts& operator=(const Parts&) = delete;
  ~Parts() {
    if (!temporary.empty()) system::remove(temporary);
  }

  bool replace() noexcept {  // the renaming alone; the reason is in `errno`
    if (!system::rename_over(temporary, target)) return false;
    temporary.clear();
    file.close();
    return true;
  }

  Path temporary;  // empty when there is nothing to remove
  Path target;
  String path;
  File file;  // holds a lock on the temporary file, the sign that its writer lives
};

std::optional<PendingFile> PendingFile::write(StringView path, std::string_view bytes) {
  return write(path, [&](const Writer& writer) { return writer(bytes); });
}

std::optional<PendingFile> PendingFile::write(StringView path, const std::function<bool(const Writer&)>& produce) {
  const auto failed = [&](std::string_view why) {
    set_file_error(FileError::Kind::Unwritable, path, why);
    return std::nullopt;
  };
  if (const auto why = impossible(path); !why.empty()) return failed(why);

  auto behind = target_of(path);
  if (!behind) return failed(reason(errno));
  auto parts = std::make_unique<Parts>(std::move(*behind), path);
  const Path& target = parts->target;
  const auto existing = system::status(target);
  if (existing) {
    if (existing->kind == FileKind::Folder) return failed(reason(EISDIR));
    if (existing->kind != FileKind::Regular) return failed("not a regular file");
    if (!system::may_write(target)) return failed(reason(errno));
  } else if (errno != ENOENT) {
    return failed(reason(errno));
  } else if (!target.has_filename()) {
    return failed(reason(EISDIR));
  }

  File& file = parts->file = create_beside(target, existing.has_value(), parts->temporary);
  if (!file) return failed(errno == ENOENT ? "the folder does not exist" : reason(errno));
  if (existing && !system::take_over_permissions(file, parts->temporary, target)) return failed(reason(errno));
  int error = 0;
  const bool produced = produce([&](std::string_view bytes) {
    if (system::write_all(file.number(), bytes)) return true;
    error = errno;
    return false;
  });
  if (error != 0) return failed(reason(error));
  if (!produced) return std::nullopt;
  if (!system::finish(file)) return failed(reason(errno));
  return PendingFile(std::move(parts));
}

PendingFile::PendingFile(std::unique_ptr<Parts> parts) noexcept : parts_(std::move(parts)) {}
PendingFile::PendingFile(PendingFile&& other) noexcept = default;
PendingFile::~PendingFile() = default;

bool PendingFile::commit() {
  const Folder folder(parts_->target.parent_path());
  if (parts_->replace()) return folder.flush_names(), true;
  set_file_error(FileError::Kind::Unwritable, parts_->path, reason(errno));
  return false;
}

// Another link to it where the file system has links, else a copy of it, ready to take its place again.
std::optional<PendingFile> PendingFile::former(const Parts& file, bool& is_there) {
  is_there = system::is_there(file.target);
  if (!is_there) {
    if (errno == ENOENT) return std::nullopt;
    set_file_error(FileError::Kind::Unwritable, file.path, reason(errno));
    is_there = true;  // for all that can be told
    return std::nullopt;
  }
  auto parts = std::make_unique<Parts>(file.target, file.path);
  parts->temporary = made_beside(file.target, [&](const Path& name) { return system::link(file.target, name); });
  if (!parts->temporary.empty()) return PendingFile(std::move(parts));
  const auto content = read_file(system::to_text(file.target));
  return content ? write(file.path, *content) : std::nullopt;
}

bool commit_together(std::span<PendingFile> files) {
  if (files.size() < 2) return files.empty() || files[0].commit();
  std::vector<Folder> folders;
  for (const PendingFile& file : files) folders.emplace_back(file.parts_->target.parent_path());
  std::sort(folders.begin(), folders.end());  // in one order for all, so that nobody waits for whoever waits for him
  folders.erase(std::unique(folders.begin(), folders.end()), folders.end());
  const auto until = std::chrono::steady_clock::now() + longest_wait;
  for (Folder& folder : folders) {
    if (lock(folder, until)) continue;
    set_file_error(FileError::Kind::Unwritable, files[0].parts_->path,
                   "another program keeps the folder locked; try again when it is done");
    return false;
  }

  // All memory is had before the first renaming, and the last file needs no way back.
  std::vector<std::optional<PendingFile>> formers;
  for (const PendingFile& file : files.first(files.size() - 1)) {
    bool is_there = false;
    formers.push_back(PendingFile::former(*file.parts_, is_there));
    if (is_there && !formers.back()) {
      const std::string why = last_file_error().reason;
      set_file_error(FileError::Kind::Unwritable, file.parts_->path, "its present content cannot be kept: " + why);
      return false;
    }
  }

  std::size_t done = 0;
  while (done < files.size() && files[done].parts_->replace()) ++done;
  const int error = errno;
  const PendingFile* stuck = nullptr;
  if (done < files.size()) {
    for (std::size_t i = done; i-- > 0;) {
      const bool is_back = formers[i] ? formers[i]->parts_->replace() : system::remove(files[i].parts_->target);
      if (!is_back) stuck = &files[i];
    }
  }
  for (const Folder& folder : folders) folder.flush_names();
  if (done == files.size()) return true;
  std::string why = reason(error);
  if (stuck != nullptr) why += "; what is new could not be taken back: " + to_utf8(stuck->parts_->path);
  set_file_error(FileError::Kind::Unwritable, files[done].parts_->path, why);
  return false;
}

void remove_abandoned_files(StringView path) noexcept {
  try {
    if (!impossible(path).empty()) return;
    const auto target = target_of(path);
    if (!target) return;
    Folder folder(target->parent_path());
    if (!folder || !lock(folder, {})) return;  // somebody renames in there
    folder.each_name([&](const std::string& name) {
      if (is_abandoned(folder, name)) folder.remove(name);
    });
  } catch (const std::exception&) {
    // It is left to a later run.
  }
}

void remove_abandoned_files_once(StringView path) noexcept {
  try {
    static LookedThrough& folders = immortal<LookedThrough>();
    if (folders.is_new(path.substr(0, path.find_last_of(u"/\\") + 1))) remove_abandoned_files(path);
  } catch (const std::exception&) {
    // As above.
  }
}

}  // namespace hedro34
