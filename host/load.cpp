#include "host/load.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "hedro34/platform/file_error.h"
#include "hedro34/platform/files.h"
#include "host/stop.h"

namespace host {
namespace {

using namespace hedro34;

[[noreturn]] void cannot_read(const Input& input) {
  const bool wrong_kind = last_file_error().kind == FileError::Kind::WrongKind;
  input.cannot_read(wrong_kind ? "; a test is an ExamView XML file or a KTD document" : "");
}

[[noreturn]] void answered_false(const std::string& operation, const String& path, const std::string& why) {
  throw Stop(ExitCode::AnsweredFalse, operation + " answered False: " + to_utf8(input_name(path)) + ": " + why);
}

void load_ktd(clsHEDROTest& test, const Input& input, const String& path, const Messages& messages) {
  const std::size_t failures = messages.failures();
  // Standard input has no name to take a title from.
  const String library_path = input.is_standard_input() ? input.path() : ktd_path(path);
  if (kind_of(library_path) != FileKind::Nothing && !same_file(input.path(), library_path)) {
    throw Stop(ExitCode::BadInput, "cannot read the test: " + to_utf8(path) + ": a file named \"" +
                                       to_utf8(library_path) + "\" would be read in its place; rename that one");
  }
  clear_file_error();
  if (test.LoadKTD(library_path)) return;
  const FileError::Kind kind = last_file_error().kind;
  if (kind != FileError::Kind::None && kind != FileError::Kind::NoMemory) cannot_read(input);
  if (messages.failures() == failures)
    answered_false("LoadKTD", path, "there is no graded or subjective question in it");
  const auto separator = library_path.rfind(u'\\');
  const bool no_title = separator != String::npos && library_path.rfind(u'.') < separator;
  answered_false("LoadKTD", path,
                 no_title ? "the file's name has no period, and a folder's has; rename the file to end in .ktd"
                          : "the failure above says why");
}

void load_xml(clsHEDROTest& test, const Input& input, const String& path, const ImportOptions& options,
              const Messages& messages) {
  const std::size_t failures = messages.failures();
  bool cancelled = false;
  clear_file_error();
  if (test.LoadXML(input.path(), options.odd_distractors_only, &cancelled)) return;
  if (last_file_error().kind != FileError::Kind::None) cannot_read(input);
  if (cancelled) {
    answered_false("LoadXML", path,
                   "the question about partial credit was answered with Cancel; --partial-credit ok takes the test");
  }
  answered_false("LoadXML", path,
                 messages.failures() == failures ? "there is no question in it"
                                                 : "no question could be taken over; the failures above say why");
}

}  // namespace

String ktd_path(String path) {
  std::replace(path.begin(), path.end(), u'/', u'\\');
  const bool mere_name = path.find(u'\\') == String::npos;
  return mere_name && path.find(u'.') != String::npos ? u".\\" + path : path;
}

bool begins_as_json(const Input& input) {
  constexpr std::string_view byte_order_mark = "\xef\xbb\xbf";
  constexpr std::string_view white_space = " \t\r\n";
  auto file = InputFile::open(input.path());
  if (!file) input.cannot_read();
  std::array<char, 4096> buffer;
  for (bool at_start = true;; at_start = false) {
    const auto size = file->read(buffer.data(), buffer.size());
    if (!size) input.cannot_read();
    if (*size == 0) return false;
    std::string_view bytes(buffer.data(), *size);
    if (at_start && bytes.starts_with(byte_order_mark)) bytes.remove_prefix(byte_order_mark.size());
    const std::size_t first = bytes.find_first_not_of(white_space);
    if (first != std::string_view::npos) return bytes[first] == '{';
  }
}

Ref<clsHEDROTest> load_test(const Input& input, const ImportOptions& options, const Messages& messages) {
  auto test = make<clsHEDROTest>();
  test->ImportObjectives = options.objectives;
  test->StateAbbreviation = options.state;
  if (begins_as_json(input)) {
    load_ktd(*test, input, input.given(), messages);
  } else {
    load_xml(*test, input, input.given(), options, messages);
  }
  return test;
}

Ref<clsHEDROTest> load_test(const String& path, const ImportOptions& options, const Messages& messages) {
  return load_test(Input("test", path), options, messages);
}

}  // namespace host
