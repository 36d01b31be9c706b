// Files as the library writes them: whole or not at all, alone or several together. Where the system's separator is "/" alone,
// a path that names no file as it stands is tried once more with every "\" read as "/", and a new file is written under that
// name. A failure leaves its reason in
// `last_file_error()`; a success leaves the file error as it was. Memory that runs out is thrown, before anything has changed.
//
//   std::vector<PendingFile> files;
//   for (const auto& [path, bytes] : results) {
//     auto file = PendingFile::write(path, bytes);
//     if (!file) return false;                        // nothing has changed
//     files.push_back(std::move(*file));
//   }
//   return commit_together(files);                    // all are in place, or none is
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "hedro34/base/text.h"
#include "hedro34/platform/file_error.h"

namespace hedro34 {

// A file written beside its target, as ".hedro34-PROCESS-NUMBER.tmp": complete and flushed to disk when `write` returns, in
// place after `commit`. Without a commit the target keeps its content and the temporary file is removed. Of a process that
// was killed it stays, until `remove_abandoned_files`.
class HEDRO34_API PendingFile {
 public:
  // Nothing, and a file error of kind Unwritable, when it cannot be written; nothing is left behind then. An existing target
  // passes on its permissions and, where the system lets it, its owner; it must be a regular file that may be written. A
  // symbolic link stays, and what it names is replaced.
  static std::optional<PendingFile> write(StringView path, std::string_view bytes);

  // The same with bytes that come in parts: `produce` hands them to the writer that it is given and stops when that answers
  // False, which is when the system does not take them. When `produce` answers False by itself, the file error that it set
  // stands.
  using Writer = std::function<bool(std::string_view bytes)>;
  static std::optional<PendingFile> write(StringView path, const std::function<bool(const Writer&)>& produce);

  PendingFile(PendingFile&& other) noexcept;
  PendingFile& operator=(PendingFile&&) = delete;
  ~PendingFile();

  // Renames the temporary file over the target; called once. False and a file error when the system does not let it: the
  // target is then as it was.
  bool commit();

 private:
  struct Parts;
  friend bool commit_together(std::span<PendingFile> files);

  explicit PendingFile(std::unique_ptr<Parts> parts) noexcept;
  static std::optional<PendingFile> former(const Parts& file, bool& is_there);  // what stands at its target

  std::unique_ptr<Parts> parts_;
};

// Renames several files over their targets, in their order, all or none: when one cannot be renamed, those before it are
// taken back, so that each target has its former content again or is not there. The folders are locked meanwhile, so that of
// two programs that do this with the same targets one comes wholly before the other; False, with a file error, as well when
// somebody else keeps a folder locked for five seconds. Where no lock can be had it goes without. When the process is killed
// in between, each target is whole, the first ones new and the others old.
HEDRO34_API bool commit_together(std::span<PendingFile> files);

// Removes the temporary files that killed processes have left in the folder of a path: files of this user whose process is no
// more and on which nobody holds the lock of a writer. Does nothing where that cannot be told.
HEDRO34_API void remove_abandoned_files(StringView path) noexcept;

}  // namespace hedro34
