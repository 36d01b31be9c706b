// The program with any arguments, one a line, and behind an empty line what stands on standard input. It runs in a scratch
// folder with the files a.xml, b.xml, c.xml, f.form.json and d.ktd; no argument leads out of there. Its exit code, its outputs and what it
// prints keep to each other.
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <iostream>
#include <map>

#include "hedro34/documents/data_document.h"
#include "hedro34/documents/form_template.h"
#include "hedro34/platform/files.h"
#include "hedro34/platform/platform.h"
#include "hedro34/runtime/basError.h"
#include "fuzz/support/support.h"
#include "host/arguments.h"
#include "host/stop.h"

int hedro34_main(int argc, char** argv);

// Where a sanitizer in the program writes to, if there is one.
extern "C" [[gnu::weak]] void __sanitizer_set_report_fd(void* file);  // NOLINT(bugprone-reserved-identifier)

namespace hedro34::fuzz {
namespace {

constexpr std::string_view exam = R"(<examview><header><title>T</title><version>@</version></header>
<question type="mc" question-id="1"><text>P</text><choices><choice-a>1</choice-a><choice-b>2</choice-b></choices><answer>B</answer>
<info><points scoring-method="RightLessWrong">2</points><text-objective>o</text-objective></info></question>
<question type="es" question-id="2"><text>Why?</text></question>
<question type="mc" question-id="3"><text>Q</text><choices><choice-a>1</choice-a><choice-b>2</choice-b></choices><answer>A</answer>
</question></examview>)";
constexpr std::string_view form = R"({"format": "hedro34-form", "version": 1, "pages": [{"regions": [
{"name": "Version", "questions": [{"choiceLabels": ["A", "B"]}]},
{"name": "Q", "questions": [{"graded": true, "choiceLabels": ["A", "B"]}, {"graded": true, "choiceLabels": ["A", "B"]}]}]}]})";
constexpr std::string_view document = R"({"format": "hedro34-ktd", "version": 1, "objectives": ["", "o"], "questions": [
{"choiceLabels": ["A", "B"]}, {"graded": true, "choiceLabels": ["A", "B"], "answerKey": ["B"], "objectiveFlags": [false, true]},
{"graded": true, "choiceLabels": ["A", "B"], "answerKey": ["A"]}, {"subjective": true}],
"versions": {"sequenceQuestion": 1, "versionAnswers": ["A", "B"], "orders": [[1, 2, 3, 4], [1, 3, 2, 4]]}})";

// While it lives a standard stream is a file in memory.
class Redirected {
 public:
  Redirected(int stream, std::string_view content)
      : stream_(stream), former_(::dup(stream)), file_(::memfd_create("", 0)) {
    expect(::write(file_, content.data(), content.size()) >= 0 && ::lseek(file_, 0, SEEK_SET) == 0 &&
               ::dup2(file_, stream_) == stream_,
           "a stream can be a file in memory");
  }
  std::string give_back() {
    std::string text(static_cast<std::size_t>(::lseek(file_, 0, SEEK_END)), '\0');
    const bool read = ::pread(file_, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size());
    ::dup2(former_, stream_);
    ::close(former_);
    ::close(file_);
    expect(read, "what was printed can be read");
    return text;
  }

 private:
  int stream_, former_, file_;
};

std::map<std::string, std::string> files() {
  std::map<std::string, std::string> all;
  for (const auto& entry : std::filesystem::directory_iterator(".")) {
    const std::string name = entry.path().filename().string();
    all[name] = entry.is_regular_file() ? read_file(from_utf8(entry.path().string())).value_or("") : "";
  }
  return all;
}

void check_outputs(const std::vector<std::string>& words) {
  const auto command = host::parse(words);
  const auto* const merge = std::get_if<host::MergeCommand>(&command);
  if (merge == nullptr) return;
  if (merge->form_out != u"-")
    expect(make<FormTemplate>()->Load(merge->form_out), "a form that was written can be read");
  if (merge->document_out != u"-") {
    expect(make<DataDocument>()->Load(merge->document_out), "a document that was written can be read");
  }
}

}  // namespace

void go(std::string_view input) {
  std::vector<std::string> words;
  while (!input.empty()) {
    std::string& word = words.emplace_back(input.substr(0, input.find('\n')));
    input.remove_prefix(std::min(word.size() + 1, input.size()));
    if (word.empty()) {
      words.pop_back();
      break;
    }
    std::replace_if(
        word.begin(), word.end(), [](char sign) { return sign == '/' || sign == '\\' || sign == '\0'; }, '_');
  }
  static const std::intptr_t reports = ::dup(STDERR_FILENO);
  if (__sanitizer_set_report_fd != nullptr) {
    __sanitizer_set_report_fd(
        reinterpret_cast<void*>(reports));  // NOLINT(performance-no-int-to-ptr): as it is asked for
  }
  const InScratch folder;
  for (const char version : {'a', 'b', 'c'}) {
    std::string content(exam);
    if (version == 'c') content.replace(content.find(">B<"), 3, ">A<");  // another key
    content[content.find('@')] = static_cast<char>(version - 'a' + 'A');
    Scratch::write(std::string(1, version) + ".xml", content);
  }
  Scratch::write("f.form.json", form);
  Scratch::write("d.ktd", document);
  const auto before = files();

  std::string program = "hedro34";
  std::vector<char*> argv = {program.data()};
  std::vector<std::string> given = words;
  for (std::string& word : given) argv.push_back(word.data());
  MessageBox* const box = platform().message_box;
  Redirected in(STDIN_FILENO, input), out(STDOUT_FILENO, ""), err(STDERR_FILENO, "");
  std::cin.clear();
  std::cout.clear();
  const int code = hedro34_main(static_cast<int>(argv.size()), argv.data());
  std::cout.flush();
  std::cerr.flush();
  const std::string complaints = err.give_back();
  const std::string printed = out.give_back();
  in.give_back();
  platform().message_box = box;
  set_error_object(nullptr);

  expect(code >= 0 && code <= 5, "the program has six exit codes");
  const auto after = files();
  const bool has_messages = std::any_of(words.begin(), words.end(),
                                        [](const auto& word) { return word.find("messages") != std::string::npos; });
  if (code != 0 && code != 5 && !has_messages) expect(after == before, "outputs are all there or none");
  for (const auto& [name, content] : after) expect(!name.ends_with(".tmp"), "no temporary file is left");
  if (code == 0) return check_outputs(words);
  const std::size_t end = complaints.empty() ? 0 : complaints.size() - 1;
  const std::size_t start = end == 0 ? 0 : complaints.rfind('\n', end - 1) + 1;
  expect(complaints.ends_with('\n') && complaints.compare(start, 9, "hedro34: ") == 0,
         "the last line says what went wrong");
  if (code == 2) expect(start == 0 && printed.empty(), "wrong usage is one line");
}

}  // namespace hedro34::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  hedro34::fuzz::go({reinterpret_cast<const char*>(data), size});
  return 0;
}
