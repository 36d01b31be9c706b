// The whole road: tests are loaded, cleaned, compared, merged with a form, shown on a page and saved; what was saved reads back
// equal, gives the same answers as a test, and merges again. An input is text:
//
//   max=3 field=1 objectives=15 state=CA odd cancel quiet unrecorded     options, each may be left out
//   %xml or %ktd                                                         a test, the first one is merged
//   <examview> ...
//   %form                                                                else a form of 12 fields behind a version field
//   {"format": "hedro34-form", ...
#include <algorithm>
#include <map>
#include <sstream>

#include "hedro34/merge/version_differences.h"
#include "hedro34/platform/pending_file.h"
#include "hedro34/xml/expat_document.h"
#include "fuzz/support/merged.h"
#include "tests/merge_support.h"

namespace hedro34::fuzz {
namespace {

constexpr std::int32_t most_tests = 4;

struct Input {
  std::map<std::string, std::string> options;
  std::vector<std::pair<std::string, std::string>> sections;  // its first line and its content

  explicit Input(std::string_view bytes) {
    std::istringstream lines{std::string(bytes)};
    std::string line, word;
    std::getline(lines, line);
    for (std::istringstream words(line); words >> word;) {
      std::istringstream parts(word);
      std::getline(parts, word, '=');
      parts >> options[word];
    }
    while (std::getline(lines, line)) {
      if (line == "%xml" || line == "%ktd" || line == "%form")
        sections.emplace_back(line, "");
      else if (!sections.empty())
        sections.back().second += line + '\n';
    }
  }
  bool has(const char* option) const { return options.contains(option); }
  std::int32_t number(const char* option) { return std::atoi(options[option].c_str()); }
};

const Folder& folder() {
  static const Folder folder;
  return folder;
}

std::ptrdiff_t failures(const Recorder& heard) {
  return std::ranges::count_if(heard.lines, [](const std::string& line) { return !line.starts_with("box "); });
}

// How many questions the file had, as far as the test knows.
std::ptrdiff_t known_to(const clsHEDROTest& test) {
  const auto removed = std::ranges::count(test.left_out(), LeftOut::What::Removed, &LeftOut::what);
  return test.Questions->Count() + removed;
}

// Each question of the file is in the test, or said to be left out; a file that is not taken says why.
Ref<clsHEDROTest> load(Input& input, bool is_xml, const std::string& bytes, const Recorder& heard) {
  const auto test = make<clsHEDROTest>();
  test->ImportObjectives = static_cast<HEDROTestImportObjectives>(input.number("objectives"));
  test->StateAbbreviation = from_utf8(input.options["state"]);
  const String path = folder().write("test", bytes);
  const std::size_t before = heard.lines.size();
  bool cancelled = false;
  const bool loaded = is_xml ? test->LoadXML(path, input.has("odd"), &cancelled) : test->LoadKTD(path);
  const auto document = make<ExpatDocument>();
  if (loaded && is_xml && document->parse(bytes)) {
    EXPECT_EQ(known_to(*test), document->getElementsByTagName(u"question")->length());
  }
  EXPECT_TRUE(loaded == (test->Questions->Count() > 0) || heard.lines.size() > before);
  if (loaded) {
    EXPECT_EQ(last_file_error().kind, FileError::Kind::None);
  }
  std::int32_t last = 0;
  for (const auto& question : all(test->Questions))
    EXPECT_GT(question->number_in_file, std::exchange(last, question->number_in_file));
  return loaded ? test : nullptr;
}

// The IDs of each test's first questions of the types that a merge takes, and how many questions there were.
auto taken(const clsHEDRO& merge, std::int32_t most) {
  std::vector<std::pair<std::vector<String>, std::ptrdiff_t>> result;
  for (const auto& test : all(merge.Tests)) {
    std::vector<String> ids;
    for (const auto& question : all(test->Questions)) {
      const auto type = question->QuestionType;
      if (type == 1 || type == 2 || type == 3 || type == 12) ids.push_back(question->ID);
    }
    if (most > 0 && ids.size() > static_cast<std::size_t>(most)) ids.resize(static_cast<std::size_t>(most));
    result.emplace_back(std::move(ids), known_to(*test));
  }
  return result;
}

// They are what is left, and what went is said.
bool clean(clsHEDRO& merge, std::int32_t most) {
  const auto expected = taken(merge, most);
  if (!merge.RemoveInvalid(most)) return false;
  EXPECT_EQ(taken(merge, 0), expected);
  for (std::size_t n = 0; n < expected.size(); ++n) {
    EXPECT_EQ(all(all(merge.Tests)[n]->Questions).size(), expected[n].first.size());
  }
  return true;
}

// The operations and the comparison come to the same answer, unless a key does not fit into 31 bits, which is reported.
bool compare(clsHEDRO& merge, bool record, const Recorder& heard) {
  const auto tests = all(merge.Tests);
  VersionComparison comparison(tests[0]);
  std::vector<bool> same(tests.size());
  bool all_valid = true;
  for (std::size_t n = 1; n < tests.size(); ++n) {
    const auto differences = comparison.next(*tests[n]);
    same[n] = differences.empty();
    for (const auto& each : differences) all_valid = all_valid && !refuses_validation(each.kind);
  }
  const auto reported = failures(heard);
  const bool valid = merge.ValidTestVersions();
  EXPECT_TRUE(valid == all_valid || failures(heard) > reported);
  if (!valid || !record) return valid;
  if (tests[0]->Sequences->Count() == 0) tests[0]->Sequences->AddDefault(tests[0]->Questions, tests[0]->Version);
  for (std::size_t n = 1; n < tests.size(); ++n) {
    const bool added = tests[0]->AddSequence(tests[n]);
    EXPECT_TRUE(added == same[n] || failures(heard) > reported);
    if (!added) return false;
  }
  return true;
}

// Whether the merge went without a failure. One that is refused says why.
bool merged(clsHEDRO& merge, const Recorder& heard) {
  const auto form = ref_cast<FormTemplate>(merge.TemplateIn)->to_json();
  const std::size_t before = heard.lines.size();
  const auto reported = failures(heard);
  const bool done = merge.Merge();
  EXPECT_EQ(ref_cast<FormTemplate>(merge.TemplateIn)->to_json(), form) << "the form that goes in stays as it is";
  EXPECT_TRUE(done || !merge.Verbose || heard.lines.size() > before);
  if (!done || failures(heard) > reported) return false;
  check_merged(merge);
  return true;
}

// The road once more, for a document that was saved.
void go_back(clsHEDRO& merge, const Recorder& heard) {
  const auto document = ref_cast<DataDocument>(merge.WENKTD);
  const auto form = ref_cast<FormTemplate>(merge.TemplateOut);
  const String form_path = folder().path("form-out"), path = folder().path("document");
  std::vector<PendingFile> files;
  files.push_back(form->prepare(form_path).value());
  files.push_back(document->prepare(path).value());
  EXPECT_TRUE(commit_together(files));
  const auto form_again = make<FormTemplate>();
  const auto document_again = make<DataDocument>();
  EXPECT_TRUE(form_again->Load(form_path) && document_again->Load(path));
  EXPECT_EQ(form_again->to_json(), form->to_json());
  EXPECT_EQ(document_again->to_json(), document->to_json());
  check_page(merge, heard.lines);

  const auto reported = failures(heard);
  const auto test = make<clsHEDROTest>();
  const bool loaded = test->LoadKTD(path);
  EXPECT_TRUE(loaded || failures(heard) > reported);
  if (!loaded || failures(heard) > reported) return;
  check_loaded(merge, *test);
  merge.Tests = make<clsHEDROTests>();
  merge.Tests->Add(test);
  merged(merge, heard);
}

}  // namespace

void run(std::string_view input) {
  Input parts(input);
  Recorder heard;
  heard.answer = parts.has("cancel") ? answer_cancel : answer_ok;
  Ref<FormTemplate> form;
  const auto merge = make<clsHEDRO>();
  for (const auto& [kind, content] : parts.sections) {
    if (kind == "%form") {
      if (form) continue;
      form = make<FormTemplate>();
      if (!form->Load(folder().write("form", content))) return;
    } else if (merge->Tests->Count() < most_tests) {
      const auto test = load(parts, kind == "%xml", content, heard);
      if (!test) return;
      merge->Tests->Add(test);
    }
  }
  const std::string four_fields = " Q:*ABCDE,*ABCDE R:*ABCDE,*ABCDE";
  merge->TemplateIn = form ? form : form_of("V:ABCDE" + four_fields + four_fields + four_fields);
  merge->TemplateOut = make<FormTemplate>();
  merge->SequenceQuestion = parts.number("field");
  merge->Verbose = !parts.has("quiet");
  if (merge->Tests->Count() == 0 || !clean(*merge, parts.number("max"))) return;
  if (merge->Tests->Count() > 1 && !compare(*merge, !parts.has("unrecorded"), heard)) return;
  if (merged(*merge, heard)) go_back(*merge, heard);
}

}  // namespace hedro34::fuzz
