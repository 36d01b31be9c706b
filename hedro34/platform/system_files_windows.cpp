#include "hedro34/platform/system_files.h"

#include <windows.h>
// After it.
#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <memory>

namespace hedro34::system {
namespace {

constexpr DWORD share_all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr std::size_t longest_name = 255;
constexpr std::wstring_view unparsed = LR"(\\?\)";  // a path behind it is taken as it is, and may be longer than 260
constexpr DWORD one_call = 1U << 30;                // bytes

struct Words {
  int number;
  const char* words;
  std::array<DWORD, 5> errors;  // the system's
};
constexpr Words common[] = {
    {ENOENT,
     "No such file or directory",
     {ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND, ERROR_INVALID_DRIVE, ERROR_BAD_PATHNAME}},
    {EISDIR, "Is a directory", {}},
    {ENOTDIR, "Not a directory", {ERROR_DIRECTORY}},
    {EACCES, "Permission denied", {ERROR_ACCESS_DENIED, ERROR_PRIVILEGE_NOT_HELD}},
    {ETXTBSY,
     "another program has the file open",
     {ERROR_SHARING_VIOLATION, ERROR_LOCK_VIOLATION, ERROR_USER_MAPPED_FILE}},
    {EROFS, "Read-only file system", {ERROR_WRITE_PROTECT}},
    {ENOSPC, "No space left on device", {ERROR_DISK_FULL, ERROR_HANDLE_DISK_FULL}},
    {EFBIG, "File too large", {ERROR_FILE_TOO_LARGE}},
    {ENAMETOOLONG, "File name too long", {ERROR_FILENAME_EXCED_RANGE, ERROR_BUFFER_OVERFLOW}},
    {EINVAL, "no file can have this name", {ERROR_INVALID_NAME}},
    {EEXIST, "File exists", {ERROR_FILE_EXISTS, ERROR_ALREADY_EXISTS}},
    {EMFILE, "Too many open files", {ERROR_TOO_MANY_OPEN_FILES}},
    {ENOMEM, "Cannot allocate memory", {ERROR_NOT_ENOUGH_MEMORY, ERROR_OUTOFMEMORY, ERROR_COMMITMENT_LIMIT}},
    {EPIPE, "Broken pipe", {ERROR_BROKEN_PIPE, ERROR_NO_DATA, ERROR_PIPE_NOT_CONNECTED}},
    {EBADF, "Bad file descriptor", {ERROR_INVALID_HANDLE}},
};

int number_of(DWORD error) noexcept {
  for (const Words& row : common) {
    for (const DWORD one : row.errors) {
      if (error == one && one != ERROR_SUCCESS) return row.number;
    }
  }
  return -static_cast<int>(error);
}

bool failed(DWORD error = ::GetLastError()) noexcept {
  errno = number_of(error);
  return false;
}

// The system does not say which of the two is wrong with a name.
bool failed(const Path& path) noexcept {
  failed();
  std::size_t length = 0;
  for (const wchar_t unit : path.native()) {
    length = unit == L'\\' ? 0 : length + 1;
    if (length > longest_name) errno = ENAMETOOLONG;
  }
  return false;
}

HANDLE handle(FileNumber number) noexcept {
  return reinterpret_cast<HANDLE>(number);  // NOLINT(performance-no-int-to-ptr): what the system calls a handle
}
HANDLE handle(const File& file) noexcept { return handle(file.number()); }

File opened(const Path& path, DWORD access, DWORD share, DWORD how, DWORD flags) noexcept {
  return File(reinterpret_cast<FileNumber>(::CreateFileW(path.c_str(), access, share, nullptr, how, flags, nullptr)));
}

// Whatever is there, for looking at it.
File looked_at(const Path& path, DWORD access = FILE_READ_ATTRIBUTES, DWORD flags = 0) noexcept {
  return opened(path, access, share_all, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | flags);
}

// What a function of the system writes that is asked for the size first.
template <class Call>
std::wstring text_of(const Call& call) {
  std::wstring text;
  for (DWORD size = MAX_PATH;;) {
    text.resize(size);
    const DWORD length = call(text.data(), size);
    if (length == 0) return {};
    text.resize(std::min(length, size));
    if (length < size) return text;
    size = length + 1;
  }
}

std::wstring wide(StringView text) { return {text.begin(), text.end()}; }
String units(std::wstring_view text) { return {text.begin(), text.end()}; }

// The absolute path without "." and "..", with "\" between folders; devices as "\\.\NAME".
std::wstring whole(StringView path) {
  std::wstring given = wide(path);
  if (given.starts_with(unparsed)) return given;
  const std::wstring full =
      text_of([&](wchar_t* text, DWORD size) { return ::GetFullPathNameW(given.c_str(), size, text, nullptr); });
  return full.empty() ? given : full;
}

bool is_device(std::wstring_view whole_path) { return whole_path.starts_with(LR"(\\.\)"); }

std::optional<BY_HANDLE_FILE_INFORMATION> information(const File& file) noexcept {
  BY_HANDLE_FILE_INFORMATION found{};
  if (file && ::GetFileInformationByHandle(handle(file), &found) != 0) return found;
  failed();
  return std::nullopt;
}

using Identity = std::pair<std::uint64_t, std::uint64_t>;

std::uint64_t joined(DWORD high, DWORD low) noexcept { return std::uint64_t{high} << 32 | low; }

std::optional<Identity> identity(const File& file) noexcept {
  const auto found = information(file);
  if (!found) return std::nullopt;
  return Identity{found->dwVolumeSerialNumber, joined(found->nFileIndexHigh, found->nFileIndexLow)};
}

std::wstring final_name(const File& file) {
  return text_of([&](wchar_t* text, DWORD size) { return ::GetFinalPathNameByHandleW(handle(file), text, size, 0); });
}

bool is_link(const Path& path) noexcept {
  WIN32_FIND_DATAW found{};
  const HANDLE search = ::FindFirstFileW(path.c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return false;
  ::FindClose(search);
  return (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 && found.dwReserved0 == IO_REPARSE_TAG_SYMLINK;
}

// Who may do what with a file, as the system keeps it; nothing on a file system that knows no rights.
bool take_over_rights(const Path& path, const Path& from) {
  const File source = looked_at(from, READ_CONTROL);
  DWORD size = 0;
  constexpr SECURITY_INFORMATION rights = DACL_SECURITY_INFORMATION;
  if (!source || ::GetKernelObjectSecurity(handle(source), rights, nullptr, 0, &size) != 0 || size == 0) return true;
  const auto bytes = std::make_unique<std::byte[]>(size);
  auto* const found = reinterpret_cast<PSECURITY_DESCRIPTOR>(bytes.get());
  if (::GetKernelObjectSecurity(handle(source), rights, found, size, &size) == 0) return true;
  SECURITY_DESCRIPTOR_CONTROL control = 0;
  DWORD revision = 0;
  if (::GetSecurityDescriptorControl(found, &control, &revision) != 0 && (control & SE_DACL_AUTO_INHERITED) != 0) {
    ::SetSecurityDescriptorControl(found, SE_DACL_AUTO_INHERIT_REQ, SE_DACL_AUTO_INHERIT_REQ);
  }
  const File target = looked_at(path, WRITE_DAC);
  if (target && ::SetKernelObjectSecurity(handle(target), rights, found) != 0) return true;
  switch (::GetLastError()) {
    case ERROR_NOT_SUPPORTED:
    case ERROR_INVALID_FUNCTION:
    case ERROR_CALL_NOT_IMPLEMENTED: return true;
    default: return failed();
  }
}

// In place of what stands there though others have that open, where the system can do so.
DWORD rename_as_posix(const Path& file, const Path& target) noexcept try {
  constexpr DWORD replace_open_ones = 1 | 2;  // FILE_RENAME_FLAG_REPLACE_IF_EXISTS, FILE_RENAME_FLAG_POSIX_SEMANTICS
  constexpr auto rename_with_flags = static_cast<FILE_INFO_BY_HANDLE_CLASS>(22);  // FileRenameInfoEx
  const std::size_t name_size = target.native().size() * sizeof(wchar_t);
  const std::size_t size = sizeof(FILE_RENAME_INFO) + name_size;
  const auto bytes = std::make_unique<std::byte[]>(size);
  const File renamed = looked_at(file, DELETE);
  if (!renamed) return ERROR_NOT_SUPPORTED;
  auto* const how = reinterpret_cast<FILE_RENAME_INFO*>(bytes.get());
  how->Flags = replace_open_ones;
  how->FileNameLength = static_cast<DWORD>(name_size);
  std::memcpy(how->FileName, target.c_str(), name_size);
  if (::SetFileInformationByHandle(handle(renamed), rename_with_flags, how, static_cast<DWORD>(size)) != 0) return 0;
  return ::GetLastError();
} catch (const std::bad_alloc&) {
  return ERROR_NOT_SUPPORTED;  // the other way needs no memory of ours
}

bool is_unknown_call(DWORD error) noexcept {
  return error == ERROR_NOT_SUPPORTED || error == ERROR_INVALID_PARAMETER || error == ERROR_INVALID_FUNCTION ||
         error == ERROR_CALL_NOT_IMPLEMENTED || error == ERROR_INVALID_LEVEL;
}

}  // namespace

std::string reason(int error) {
  if (error < 0) error = number_of(static_cast<DWORD>(-error));
  for (const Words& row : common) {
    if (error == row.number) return row.words;
  }
  if (error == EWOULDBLOCK) return reason(ETXTBSY);
  std::wstring words(512, L'\0');
  const DWORD number = static_cast<DWORD>(-error);
  constexpr DWORD flags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK;
  words.resize(::FormatMessageW(flags, nullptr, number, 0, words.data(), static_cast<DWORD>(words.size()), nullptr));
  while (!words.empty() && (words.back() <= L' ' || words.back() == L'.')) words.pop_back();
  std::replace_if(
      words.begin(), words.end(), [](wchar_t unit) { return unit < L' '; }, L' ');
  return words.empty() ? "error " + std::to_string(number) + " of the system" : to_utf8(units(words));
}

Path to_path(StringView path) {
  std::wstring full = whole(path);
  if (full.starts_with(unparsed) || is_device(full)) return full;
  if (full.starts_with(LR"(\\)")) return LR"(\\?\UNC)" + full.substr(1);
  return std::wstring(unparsed) + full;
}

String to_text(const Path& path) { return units(path.native()); }

std::string_view never_a_file(StringView path) {
  std::wstring full = whole(path);
  if (full.starts_with(unparsed)) full.erase(0, unparsed.size());
  constexpr std::size_t behind_drive = 2;
  const bool is_stream = full.find(L':', behind_drive) != std::wstring::npos;
  return is_device(full) || is_stream ? "not a regular file" : std::string_view();
}

bool names_nothing(int error) noexcept { return error == ENOENT; }

std::optional<Path> behind_links(Path path) {
  if (!is_link(path)) return path;
  const File file = looked_at(path);
  return file ? Path(final_name(file)) : path;
}

// In capital letters: names here differ by more than those.
Path resolved(const Path& path) {
  const std::wstring& full = path.native();
  for (std::size_t end = full.size();;) {
    // With the separator: "C:" without one is a drive, and no folder.
    const File there = looked_at(full.substr(0, end + 1));
    const std::wstring name = there ? final_name(there) : std::wstring();
    const std::size_t separator = end == 0 ? std::wstring::npos : full.rfind(L'\\', end - 1);
    if (!name.empty() || separator == std::wstring::npos) {
      return wide(
          upper(units(name.empty() ? full : name.substr(0, name.find_last_not_of(L'\\') + 1) + full.substr(end))));
    }
    end = separator;
  }
}

bool is_one_file(const Path& a, const Path& b) {
  const auto identity_of_a = identity(looked_at(a));
  return identity_of_a && identity_of_a == identity(looked_at(b));
}

bool File::close() noexcept { return !*this || ::CloseHandle(handle(detach())) != 0; }

FileNumber standard_input() noexcept {
  const HANDLE stream = ::GetStdHandle(STD_INPUT_HANDLE);
  return stream == nullptr ? no_file : reinterpret_cast<FileNumber>(stream);
}

FileNumber standard_output() noexcept {
  const HANDLE stream = ::GetStdHandle(STD_OUTPUT_HANDLE);
  return stream == nullptr ? no_file : reinterpret_cast<FileNumber>(stream);
}

std::optional<Status> status(const File& file) {
  if (::GetFileType(handle(file)) != FILE_TYPE_DISK) return Status{FileKind::Other};
  const auto found = information(file);
  if (!found) return std::nullopt;
  if ((found->dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return Status{FileKind::Folder};
  return Status{FileKind::Regular, joined(found->nFileSizeHigh, found->nFileSizeLow)};
}

std::optional<Status> status(const Path& path) {
  const File file = looked_at(path);
  if (file) return status(file);
  failed(path);
  // What a link leads to has to be there, since only the system reads links.
  if (errno == ENOENT && is_there(path)) errno = -ERROR_CANT_RESOLVE_FILENAME;
  return std::nullopt;
}

bool is_there(const Path& path) {
  return ::GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES || failed(path);
}

// Whether others who have it open let it be replaced shows when it is.
bool may_write(const Path& path) {
  const DWORD attributes = ::GetFileAttributesW(path.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
    return failed(ERROR_ACCESS_DENIED);
  }
  return looked_at(path, FILE_WRITE_DATA) || ::GetLastError() == ERROR_SHARING_VIOLATION || failed(path);
}

File open_for_reading(const Path& path) {
  File file = looked_at(path, GENERIC_READ, FILE_FLAG_SEQUENTIAL_SCAN);
  if (!file) failed(path);
  return file;
}

std::optional<std::size_t> read(FileNumber file, char* target, std::size_t size) {
  DWORD count = 0;
  if (::ReadFile(handle(file), target, static_cast<DWORD>(std::min<std::size_t>(size, one_call)), &count, nullptr) !=
      0) {
    return count;
  }
  const DWORD error = ::GetLastError();
  if (error == ERROR_BROKEN_PIPE || error == ERROR_HANDLE_EOF) return 0;
  failed(error);
  return std::nullopt;
}

bool write_all(FileNumber file, std::string_view bytes) {
  while (!bytes.empty()) {
    DWORD written = 0;
    const auto size = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), one_call));
    if (::WriteFile(handle(file), bytes.data(), size, &written, nullptr) == 0) return failed();
    if (written == 0) return failed(ERROR_DISK_FULL);
    bytes.remove_prefix(written);
  }
  return true;
}

std::pair<File, String> create_spool() {
  static std::atomic<unsigned> counter = 0;
  const std::wstring folder = text_of([](wchar_t* text, DWORD size) { return ::GetTempPathW(size, text); });
  for (;;) {
    const std::string name = "hedro34-" + std::to_string(this_process()) + '-' + std::to_string(++counter);
    String path = units(folder) + from_utf8(name);
    File file = opened(to_path(path), GENERIC_READ | GENERIC_WRITE | DELETE, share_all, CREATE_NEW,
                       FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE);
    if (!file && ::GetLastError() == ERROR_FILE_EXISTS) continue;
    if (!file) failed();
    std::replace(path.begin(), path.end(), u'\\', u'/');
    return {std::move(file), std::move(path)};
  }
}

// A new file has the rights that its folder hands down; those of the one that it stands in for come before its content.
File create(const Path& path, bool) {
  File file = opened(path, GENERIC_READ | GENERIC_WRITE, share_all, CREATE_NEW, FILE_ATTRIBUTE_NORMAL);
  if (!file) failed(path);
  return file;
}

bool take_over_permissions(const File& file, const Path& path, const Path& from) {
  constexpr DWORD kept = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
  const DWORD attributes = ::GetFileAttributesW(from.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & kept) != 0) {
    FILE_BASIC_INFO change{};
    change.FileAttributes = (attributes & kept) | FILE_ATTRIBUTE_ARCHIVE;
    ::SetFileInformationByHandle(handle(file), FileBasicInfo, &change, sizeof change);
  }
  return take_over_rights(path, from);
}

// A byte that no file is long enough to have: others who read or write the file do not meet the lock.
bool try_lock(const File& file) {
  OVERLAPPED place{};
  place.OffsetHigh = 0x40000000;
  constexpr DWORD flags = LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY;
  if (::LockFileEx(handle(file), flags, 0, 1, 0, &place) != 0) return true;
  const DWORD error = ::GetLastError();
  if (error != ERROR_LOCK_VIOLATION && error != ERROR_IO_PENDING) return failed(error);
  errno = EWOULDBLOCK;
  return false;
}

// Nobody takes a name away from a process that runs, and of one on another machine a name is in use as long as it is locked.
bool is_still_at(const File&, const Path&) { return true; }

bool finish(File& file) { return ::FlushFileBuffers(handle(file)) != 0 || failed(); }

bool link(const Path& file, const Path& name) noexcept {
  return ::CreateHardLinkW(name.c_str(), file.c_str(), nullptr) != 0 || failed(name);
}

bool rename_over(const Path& file, const Path& target) noexcept {
  constexpr int most_attempts = 20;
  for (int attempt = 1;; ++attempt) {
    DWORD error = rename_as_posix(file, target);
    if (is_unknown_call(error)) {
      error = ::MoveFileExW(file.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING) != 0 ? 0 : ::GetLastError();
    }
    if (error == 0) return true;
    const DWORD attributes = ::GetFileAttributesW(target.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
      errno = EISDIR;
      return false;
    }
    if (error != ERROR_ACCESS_DENIED && error != ERROR_SHARING_VIOLATION) return failed(error);
    if (attempt == most_attempts) {
      // The system says the same of a file without rights and of one that somebody has open.
      return failed(!looked_at(target, DELETE) ? ::GetLastError() : error);
    }
    ::Sleep(10);  // whoever looks through new files, for viruses or to index them, is done with one soon
  }
}

bool remove(const Path& file) noexcept { return ::DeleteFileW(file.c_str()) != 0 || failed(file); }

std::uint32_t this_process() noexcept { return ::GetCurrentProcessId(); }

bool is_running(std::uint32_t process) noexcept {
  const File running(reinterpret_cast<FileNumber>(::OpenProcess(SYNCHRONIZE, FALSE, process)));
  if (running.number() == 0) return ::GetLastError() != ERROR_INVALID_PARAMETER;
  return ::WaitForSingleObject(handle(running), 0) == WAIT_TIMEOUT;
}

Folder::Folder(const Path& path) : path_(path), file_(looked_at(path / L"")) {
  const auto found = information(file_);
  if (!found || (found->dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) file_.close();
  identity_ = identity(file_).value_or(Identity{});
}

Folder::~Folder() = default;

// A folder itself cannot be locked. The file that stands for that vanishes with the lock, also when the process is killed.
bool Folder::try_lock() {
  const Path name = path_ / L".hedro34-lock";
  constexpr DWORD flags = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE;
  lock_ = opened(name, GENERIC_WRITE | DELETE, 0, OPEN_ALWAYS, flags);
  if (lock_) return true;
  DWORD error = ::GetLastError();
  // The system says "access denied" of a file that is just vanishing and of one that this user has no right to. The former
  // lets nobody look at it; the latter is seen, and whether somebody holds it where it can be read.
  if (error == ERROR_ACCESS_DENIED) {
    const bool can_be_read = static_cast<bool>(looked_at(name, GENERIC_READ));
    if (!can_be_read && (::GetLastError() != ERROR_ACCESS_DENIED || !is_there(name))) error = ERROR_DELETE_PENDING;
  }
  failed(error);
  if (error == ERROR_SHARING_VIOLATION || error == ERROR_DELETE_PENDING) errno = EWOULDBLOCK;
  return false;
}

void Folder::flush_names() const {}  // the system's own journal has them

void Folder::each_name(const std::function<void(const std::string& name)>& visit) const {
  WIN32_FIND_DATAW found{};
  const HANDLE search = ::FindFirstFileW((path_ / L"*").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return;
  const auto close = [](void* open) { ::FindClose(open); };
  const std::unique_ptr<void, decltype(close)> searching(search, close);
  do {
    visit(to_utf8(units(found.cFileName)));
  } while (::FindNextFileW(search, &found) != 0);
}

bool Folder::is_unlocked_and_own(const std::string& name) const {
  const File file = looked_at(path_ / wide(from_utf8(name)), GENERIC_READ | DELETE);
  const auto found = file ? system::status(file) : std::nullopt;
  return found && found->kind == FileKind::Regular && system::try_lock(file);
}

void Folder::remove(const std::string& name) const noexcept {
  try {
    system::remove(path_ / wide(from_utf8(name)));
  } catch (const std::bad_alloc&) {
    // It is left to a later run.
  }
}

}  // namespace hedro34::system
