// The program with any arguments, one a line, and behind an empty line what stands on standard input. It runs in a scratch
// folder with the files a.xml, b.xml, c.xml, f.form.json and d.ktd; no argument leads out of there. Its exit code, its outputs
// and what it prints keep to each other.
#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <iterator>
#include <map>
#include <sstream>

#include "hedro34/documents/data_document.h"
#include "hedro34/documents/form_template.h"
#include "hedro34/platform/files.h"
#include "fuzz/support/support.h"
#include "host/arguments.h"

int hedro34_main(int argc, char** argv);

// Where a sanitizer in the program writes to, if there is one.
extern "C" [[gnu::weak]] void __sanitizer_set_report_fd(void* file);  // NOLINT(bugprone-reserved-identifier)

namespace hedro34::fuzz {
namespace {

// Its exit code, what stands on standard error and what on standard output.
std::tuple<int, std::string, std::string> run_program(std::vector<std::string> words, std::string_view input) {
  words.insert(words.begin(), "hedro34");
  std::vector<char*> argv(words.size());
  std::ranges::transform(words, argv.begin(), [](std::string& word) { return word.data(); });
  const Folder folder;
  EXPECT_NE(std::freopen(to_utf8(folder.write("input", input)).c_str(), "rb", stdin), nullptr);
  std::cin.clear();
  const Recorder puts_back_services;
  ::testing::internal::CaptureStdout();
  ::testing::internal::CaptureStderr();
  const int code = hedro34_main(static_cast<int>(argv.size()), argv.data());
  std::cout.flush().clear();
  return {code, ::testing::internal::GetCapturedStderr(), ::testing::internal::GetCapturedStdout()};
}

std::map<std::string, std::string> files() {
  std::map<std::string, std::string> all;
  for (const auto& entry : std::filesystem::directory_iterator(".")) {
    all[entry.path().filename().string()] = read_file(entry.path().u16string()).value_or("");
  }
  return all;
}

void check_outputs(const std::vector<std::string>& words) {
  const auto command = host::parse(words);
  const auto* const merge = std::get_if<host::MergeCommand>(&command);
  if (merge == nullptr) return;
  EXPECT_TRUE(merge->form_out == u"-" || make<FormTemplate>()->Load(merge->form_out));
  EXPECT_TRUE(merge->document_out == u"-" || make<DataDocument>()->Load(merge->document_out));
}

}  // namespace

void run(std::string_view input) {
  std::istringstream lines{std::string(input)};
  std::vector<std::string> words;
  for (std::string word; std::getline(lines, word) && !word.empty();) {
    const auto leads_out = [](char sign) { return sign == '/' || sign == '\\' || sign == '\0'; };
    std::replace_if(word.begin(), word.end(), leads_out, '_');
    words.push_back(word);
  }
  static const std::intptr_t reports = ::dup(STDERR_FILENO);
  if (__sanitizer_set_report_fd != nullptr) {
    __sanitizer_set_report_fd(
        reinterpret_cast<void*>(reports));  // NOLINT(performance-no-int-to-ptr): as it is asked for
  }
  const Scratch folder;
  const auto before = files();
  const auto [code, complaints, printed] = run_program(words, std::string(std::istreambuf_iterator(lines), {}));
  const auto after = files();
  EXPECT_TRUE(code >= 0 && code <= 5) << code;
  const bool may_write = code == 0 || code == 5 || input.find("messages") != std::string_view::npos;
  EXPECT_TRUE(may_write || after == before) << "outputs are all there or none";
  for (const auto& [name, content] : after) EXPECT_FALSE(name.ends_with(".tmp")) << name;
  if (code == 0) return check_outputs(words);
  const std::size_t start = complaints.rfind("\nhedro34: ") + 1;  // of the last line
  EXPECT_TRUE(complaints.find('\n', start) == complaints.size() - 1 && complaints.compare(start, 9, "hedro34: ") == 0)
      << complaints;
  if (code == 2) {
    EXPECT_TRUE(start == 0 && printed.empty()) << printed << complaints;
  }
}

}  // namespace hedro34::fuzz
