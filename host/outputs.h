// The files that a command writes: all of them, or none.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "hedro34/platform/pending_file.h"

namespace host {

// Each `add` makes an output ready and each throws a `Stop` with `BadOutput` that names it as "the WHAT". One may be "-",
// standard output.
class Outputs {
 public:
  // A form or a document.
  template <class Document>
  void add(const char* what, Document& document, const hedro34::String& path) {
    if (begin(what, path)) {
      keep_text(document.to_json(path));
    } else {
      keep_file(document.prepare(path));
    }
  }
  void add(const char* what, const std::string& text, const hedro34::String& path);

  // Writes standard output first, which cannot be taken back, then puts all files in place.
  void commit();

 private:
  bool begin(const char* what, const hedro34::String& path);  // whether it is standard output
  void keep_text(std::optional<std::string> text);
  void keep_file(std::optional<hedro34::PendingFile> file);

  std::vector<const char*> names_;      // of all, the one that was begun last at the end
  std::vector<hedro34::String> paths_;  // of the same
  std::vector<hedro34::PendingFile> files_;
  std::optional<std::string> text_;
  const char* name_of_text_ = nullptr;
};

}  // namespace host
