// What files.cpp and pending_file.cpp ask of the system: one source for each system answers it. What a load and a save promise
// is not decided here. A function that answers False or nothing leaves why in `errno`, as a number of <cerrno> or, where none
// fits, one of the system's own; `reason` has the words of both.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "hedro34/platform/files.h"

namespace hedro34::system {

// The same for the common cases whatever the system; one line, UTF-8.
std::string reason(int error);

using Path = std::filesystem::path;  // as the system takes it

Path to_path(StringView path);
String to_text(const Path& path);

// Why a path names something that is never a file here, whatever stands under it; empty otherwise.
std::string_view never_a_file(StringView path);

// True when `errno` says of a path that there is nothing under it.
bool names_nothing(int error) noexcept;

// The path behind the links that its last name stands for, whether a file is there or not. Nothing when that cannot be told; on
// Windows the path itself then.
std::optional<Path> behind_links(Path path);

// The absolute form without ".", ".." and links, whether a file is there or not. Two paths with equal forms name one file.
Path resolved(const Path& path);
bool is_one_file(const Path& a, const Path& b);  // under two names; False where either is not there

using FileNumber = std::intptr_t;  // a descriptor or a handle
inline constexpr FileNumber no_file = -1;

// An open file, closed at the end of its life.
class File {
 public:
  explicit File(FileNumber number = no_file) noexcept : number_(number) {}
  File(File&& other) noexcept : number_(other.detach()) {}
  File& operator=(File&& other) noexcept {
    close();
    number_ = other.detach();
    return *this;
  }
  ~File() { close(); }

  explicit operator bool() const noexcept { return number_ != no_file; }
  FileNumber number() const noexcept { return number_; }
  FileNumber detach() noexcept { return std::exchange(number_, no_file); }
  bool close() noexcept;  // False when the system reports a failure of writing only now

 private:
  FileNumber number_;
};

FileNumber standard_input() noexcept;
FileNumber standard_output() noexcept;

struct Status {
  FileKind kind = FileKind::Other;
  std::uint64_t size = 0;  // bytes of a regular file
};
std::optional<Status> status(const Path& path);  // of what links lead to
std::optional<Status> status(const File& file);
bool is_there(const Path& path);   // be it a link that leads nowhere
bool may_write(const Path& path);  // a regular file

File open_for_reading(const Path& path);  // a folder as well, whose status then tells it
std::optional<std::size_t> read(FileNumber file, char* target, std::size_t size);  // what is there now; 0: the end
bool write_all(FileNumber file, std::string_view bytes);                           // False when it does not take all

// A file for reading and writing that vanishes when it is closed or the process ends, and the path under which this process
// can open it until then. The path has no "\" in it.
std::pair<File, String> create_spool();

// A new file. Where it is a stand-in for another one, nobody else may open it yet.
File create(const Path& path, bool stand_in);
bool take_over_permissions(const File& file, const Path& path, const Path& from);

// An exclusive lock on an open file, held until it is closed. False, and EWOULDBLOCK, when somebody else has it.
bool try_lock(const File& file);
bool is_still_at(const File& file, const Path& path);  // False, and ENOENT, when it is not

// Flushes a file that was written and closes it for writing; it goes on holding its lock.
bool finish(File& file);

bool link(const Path& file, const Path& name) noexcept;
bool rename_over(const Path& file, const Path& target) noexcept;
bool remove(const Path& file) noexcept;

std::uint32_t this_process() noexcept;
bool is_running(std::uint32_t process) noexcept;  // True where it cannot be told

// A folder, open for as long as this lives. One that cannot be opened is false, and locking and flushing it do nothing.
class Folder {
 public:
  explicit Folder(const Path& path);
  Folder(Folder&&) = default;
  Folder& operator=(Folder&&) = default;
  ~Folder();  // gives the lock back

  explicit operator bool() const noexcept { return static_cast<bool>(file_); }
  bool operator<(const Folder& other) const noexcept { return identity_ < other.identity_; }
  bool operator==(const Folder& other) const noexcept { return identity_ == other.identity_; }

  // False, and EWOULDBLOCK, when somebody else has the lock; the lock leaves no file behind. False with another number when it
  // cannot be had at all, as where a file that stands for it was left that this user may not open.
  bool try_lock();
  void flush_names() const;  // makes the names in it survive a loss of power

  void each_name(const std::function<void(const std::string& name)>& visit) const;
  bool is_unlocked_and_own(const std::string& name) const;  // a regular file of this user, on which nobody holds a lock
  void remove(const std::string& name) const noexcept;

 private:
  Path path_;
  File file_;
  File lock_;  // where the lock is a file of its own
  std::pair<std::uint64_t, std::uint64_t> identity_;
};

}  // namespace hedro34::system
