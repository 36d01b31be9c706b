#include "host/load.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>

#include "hedro34/platform/file_error.h"
#include "hedro34/platform/files.h"
#include "host/stop.h"

namespace host {
namespace {

using namespace hedro34;

// Whether the first character behind a byte-order mark and white space is "{". False for a file that cannot be read, which
// the load then refuses.
bool is_ktd(const String& path) {
  constexpr std::string_view byte_order_mark = "\xef\xbb\xbf";
  constexpr std::string_view white_space = " \t\r\n";
  auto file = InputFile::open(path);
  if (!file) return false;
  std::array<char, 4096> buffer;
  for (bool at_start = true;; at_start = false) {
    const auto size = file->read(buffer.data(), buffer.size());
    if (!size || *size == 0) return false;
    std::string_view bytes(buffer.data(), *size);
    if (at_start && bytes.starts_with(byte_order_mark)) bytes.remove_prefix(byte_order_mark.size());
    const std::size_t first = bytes.find_first_not_of(white_space);
    if (first != std::string_view::npos) return bytes[first] == '{';
  }
}

// A test is read twice, first to see what kind of file it is, so a pipe will not do.
void check_regular(const String& path) {
  std::error_code error;
  std::string name = to_utf8(path);
  if (!std::filesystem::exists(name, error)) std::replace(name.begin(), name.end(), '\\', '/');  // as it will be read
  const auto status = std::filesystem::status(name, error);
  if (!std::filesystem::exists(status) || std::filesystem::is_regular_file(status) ||
      std::filesystem::is_directory(status)) {
    return;
  }
  throw Stop(ExitCode::BadInput,
             "cannot read the test: " + to_utf8(path) + ": it is not a regular file; save it as one");
}

[[noreturn]] void refused_file(const String& path) {
  FileError error = last_file_error();
  error.path = path;
  const bool wrong_kind = error.kind == FileError::Kind::WrongKind;
  throw Stop(ExitCode::BadInput, "cannot read the test: " + to_line(error) +
                                     (wrong_kind ? "; a test is an ExamView XML file or a KTD document" : ""));
}

[[noreturn]] void refused_load(const std::string& operation, const String& path, const std::string& why) {
  throw Stop(ExitCode::Refused, operation + " answered False: " + to_utf8(path) + ": " + why);
}

void load_ktd(clsHEDROTest& test, const String& path, const Messages& messages) {
  const std::size_t failures = messages.failures();
  const String library_path = ktd_path(path);
  std::error_code error;
  if (std::filesystem::exists(to_utf8(library_path), error) && !same_file(path, library_path)) {
    throw Stop(ExitCode::BadInput, "cannot read the test: " + to_utf8(path) + ": a file named \"" +
                                       to_utf8(library_path) + "\" would be read in its place; rename that one");
  }
  clear_file_error();
  if (test.LoadKTD(library_path)) return;
  if (last_file_error().kind != FileError::Kind::None) refused_file(path);
  if (messages.failures() == failures) refused_load("LoadKTD", path, "there is no graded or subjective question in it");
  const auto separator = library_path.rfind(u'\\');
  const bool no_title = separator != String::npos && library_path.rfind(u'.') < separator;
  refused_load("LoadKTD", path,
               no_title ? "the file's name has no period, and a folder's has; rename the file to end in .ktd"
                        : "the failure above says why");
}

void load_xml(clsHEDROTest& test, const String& path, const ImportOptions& options, const Messages& messages) {
  const std::size_t failures = messages.failures();
  bool cancelled = false;
  clear_file_error();
  if (test.LoadXML(path, options.odd_distractors_only, &cancelled)) return;
  if (last_file_error().kind != FileError::Kind::None) refused_file(path);
  if (cancelled) {
    refused_load("LoadXML", path,
                 "the question about partial credit was answered with Cancel; --partial-credit ok takes the test");
  }
  refused_load("LoadXML", path,
               messages.failures() == failures ? "there is no question in it"
                                               : "no question could be taken over; the failures above say why");
}

}  // namespace

String ktd_path(String path) {
  std::replace(path.begin(), path.end(), u'/', u'\\');
  const bool mere_name = path.find(u'\\') == String::npos;
  return mere_name && path.find(u'.') != String::npos ? u".\\" + path : path;
}

Ref<clsHEDROTest> load_test(const String& path, const ImportOptions& options, Messages& messages) {
  check_regular(path);
  const auto test = make<clsHEDROTest>();
  test->SetError(messages.error_object());
  test->ImportObjectives = options.objectives;
  test->StateAbbreviation = options.state;
  if (is_ktd(path)) {
    load_ktd(*test, path, messages);
  } else {
    load_xml(*test, path, options, messages);
  }
  return test;
}

}  // namespace host
