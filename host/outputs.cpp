#include "host/outputs.h"

#include "hedro34/platform/file_error.h"
#include "host/input.h"
#include "host/stop.h"

namespace host {
namespace {

[[noreturn]] void cannot_write(const char* what) {
  hedro34::FileError error = hedro34::last_file_error();
  if (is_standard_stream(error.path)) error.path = u"standard output";
  throw Stop(ExitCode::BadOutput, std::string("cannot write the ") + what + ": " + to_line(error));
}

}  // namespace

void Outputs::add(const char* what, const std::string& text, const hedro34::String& path) {
  if (begin(what, path)) {
    keep_text(text);
  } else {
    keep_file(hedro34::PendingFile::write(path, text));
  }
}

bool Outputs::begin(const char* what, const hedro34::String& path) {
  names_.push_back(what);
  paths_.push_back(path);
  if (is_standard_stream(path)) return true;
  hedro34::remove_abandoned_files(path);
  return false;
}

void Outputs::keep_text(std::optional<std::string> text) {
  if (!text) cannot_write(names_.back());
  text_ = std::move(text);
  name_of_text_ = names_.back();
}

void Outputs::keep_file(std::optional<hedro34::PendingFile> file) {
  if (!file) cannot_write(names_.back());
  files_.push_back(std::move(*file));
}

void Outputs::commit() {
  if (text_) print_output(std::string("the ") + name_of_text_, *text_);
  if (commit_together(files_)) return;
  std::size_t i = 0;
  while (i + 1 < paths_.size() && paths_[i] != hedro34::last_file_error().path) ++i;
  cannot_write(names_[i]);
}

}  // namespace host
