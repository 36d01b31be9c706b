// The whole road: tests are loaded, cleaned, compared, merged with a form, shown on a page and saved; what was saved reads back
// equal, gives the same keys as a test, and merges again. An input is text:
//
//   max 3 field 1 objectives 15 state CA odd cancel quiet unrecorded     options in front, each may be left out
//   %xml or %ktd                                                         a test, the first one is merged
//   <examview> ...
//   %form                                                                else a form of 12 fields behind a version field
//   {"format": "hedro34-form", ...
#include <cstddef>
#include <set>
#include <sstream>

#include "hedro34/merge/version_differences.h"
#include "hedro34/platform/file_error.h"
#include "hedro34/platform/pending_file.h"
#include "hedro34/xml/expat_document.h"
#include "fuzz/support/merged.h"

namespace hedro34::fuzz {
namespace {

struct Input {
  std::map<std::string, std::string, std::less<>> options;
  std::vector<std::pair<std::string, std::string>> sections;  // name and content

  explicit Input(std::string_view bytes) {
    std::string front;
    std::string* content = &front;
    while (!bytes.empty()) {
      const std::size_t end = std::min(bytes.find('\n'), bytes.size() - 1) + 1;
      const std::string_view line = bytes.substr(0, end);
      bytes.remove_prefix(end);
      if (line == "%xml\n" || line == "%ktd\n" || line == "%form\n") {
        content = &sections.emplace_back(line.substr(1, line.size() - 2), "").second;
      } else {
        content->append(line);
      }
    }
    std::istringstream words(front);
    for (std::string word; words >> word;) {
      if (!flags.contains(word))
        words >> options[word];
      else
        options[word] = "1";
    }
  }
  bool has(std::string_view flag) const { return options.find(flag) != options.end(); }
  std::int32_t number(std::string_view option) const {
    const auto found = options.find(option);
    return found == options.end() ? 0 : static_cast<std::int32_t>(std::strtol(found->second.c_str(), nullptr, 10));
  }
  static inline const std::set<std::string, std::less<>> flags = {"odd", "cancel", "quiet", "unrecorded"};
};

constexpr std::size_t most_tests = 4;

std::size_t removed_from(const clsHEDROTest& test) {
  return static_cast<std::size_t>(
      std::count_if(test.left_out().begin(), test.left_out().end(),
                    [](const LeftOut& lost) { return lost.what == LeftOut::What::Removed; }));
}

// Each question of the file is in the test, or said to be left out; a file that is not taken says why.
Ref<clsHEDROTest> load(const Input& input, bool is_xml, const std::string& bytes, const Listener& heard) {
  const auto test = make<clsHEDROTest>();
  test->ImportObjectives = static_cast<HEDROTestImportObjectives>(input.number("objectives"));
  if (input.has("state")) test->StateAbbreviation = from_utf8(input.options.find("state")->second);
  String path = Scratch::write("test", bytes);
  const std::size_t before = heard.count();
  bool cancelled = false;
  bool loaded = false;
  if (is_xml) {
    loaded = test->LoadXML(path, input.has("odd"), &cancelled);
    const auto document = make<ExpatDocument>();
    if (loaded && document->parse(bytes)) {
      const auto questions = static_cast<std::size_t>(document->getElementsByTagName(u"question")->length());
      expect(static_cast<std::size_t>(test->Questions->Count()) + removed_from(*test) == questions,
             "each question element is in the test or said to be removed");
    }
  } else {
    std::replace(path.begin(), path.end(), u'/', u'\\');
    loaded = test->LoadKTD(path);
  }
  expect(loaded == (test->Questions->Count() > 0) || heard.count() > before, "a test is loaded when it has questions");
  expect(last_file_error().kind == FileError::Kind::None || !loaded, "a loaded file has no file error");
  std::int32_t last = 0;
  for (std::int32_t i = 1; i <= test->Questions->Count(); ++i) {
    const auto question = test->Questions->Item(i);
    expect(question->number_in_file > last, "questions keep the order of their file");
    last = question->number_in_file;
  }
  return loaded ? test : nullptr;
}

// What is left are the first questions of the types that a merge takes, in their order, and what went is said.
bool clean(clsHEDRO& merge, std::int32_t most) {
  std::vector<std::vector<String>> expected;
  std::vector<std::size_t> lost;
  for (std::int32_t n = 1; n <= merge.Tests->Count(); ++n) {
    const auto test = merge.Tests->Item(n);
    auto& ids = expected.emplace_back();
    for (std::int32_t i = 1; i <= test->Questions->Count(); ++i) {
      const auto type = test->Questions->Item(i)->QuestionType;
      const bool kept = type == 1 || type == 2 || type == 3 || type == 12;
      if (kept && (most <= 0 || ids.size() < static_cast<std::size_t>(most)))
        ids.push_back(test->Questions->Item(i)->ID);
    }
    lost.push_back(removed_from(*test) + static_cast<std::size_t>(test->Questions->Count()) - ids.size());
  }
  if (!merge.RemoveInvalid(most)) return false;
  for (std::int32_t n = 1; n <= merge.Tests->Count(); ++n) {
    const auto test = merge.Tests->Item(n);
    std::vector<String> ids;
    for (std::int32_t i = 1; i <= test->Questions->Count(); ++i) ids.push_back(test->Questions->Item(i)->ID);
    expect(ids == expected[static_cast<std::size_t>(n - 1)], "the first supported questions stay");
    expect(removed_from(*test) == lost[static_cast<std::size_t>(n - 1)], "each removed question is noted");
  }
  return true;
}

// The operations and the comparison come to the same answer, unless a key does not fit into 31 bits, which is reported.
bool compare(clsHEDRO& merge, const Input& input, const Listener& heard) {
  const auto first = merge.Tests->Item(1);
  VersionComparison comparison(first);
  std::vector<bool> same;
  bool all_valid = true;
  for (std::int32_t n = 2; n <= merge.Tests->Count(); ++n) {
    const auto differences = comparison.next(*merge.Tests->Item(n));
    same.push_back(differences.empty());
    for (const auto& each : differences) all_valid = all_valid && !refuses_validation(each.kind);
  }
  const auto reported = heard.failures.size();
  const bool valid = merge.ValidTestVersions();
  expect(valid == all_valid || heard.failures.size() > reported, "versions are valid when they do not differ");
  if (!valid || input.has("unrecorded")) return valid;
  if (first->Sequences->Count() == 0) first->Sequences->AddDefault(first->Questions, first->Version);
  for (std::int32_t n = 2; n <= merge.Tests->Count(); ++n) {
    const bool added = first->AddSequence(merge.Tests->Item(n));
    expect(added == same[static_cast<std::size_t>(n - 2)] || heard.failures.size() > reported,
           "a version without differences is recorded");
    if (!added) return false;
  }
  return true;
}

Ref<FormTemplate> form_of(const Input& input) {
  auto form = make<FormTemplate>();
  for (const auto& [name, bytes] : input.sections) {
    if (name == "form") return form->Load(Scratch::write("form", bytes)) ? form : nullptr;
  }
  const auto regions = form->pages().add()->Regions();
  for (int i = 0; i <= 12; ++i) {
    const auto region = ref_cast<FormRegions>(regions)->add();
    region->SetName(u"Q" + decimal(i));
    const auto field = region->questions().add();
    field->SetGraded(i > 0);
    field->SetChoiceLabels(make<FormChoiceList>(std::vector<String>{u"A", u"B", u"C", u"D", u"E"}));
  }
  return form;
}

Ref<clsHEDRO> merge_of(const Ref<FormTemplate>& form, std::int32_t field) {
  auto merge = make<clsHEDRO>();
  merge->TemplateIn = form;
  merge->TemplateOut = make<FormTemplate>();
  merge->SequenceQuestion = field;
  return merge;
}

// Merges, and saves both outputs when that went without a failure; a False says why.
bool merged(clsHEDRO& merge, const Listener& heard) {
  const auto form = ref_cast<FormTemplate>(merge.TemplateIn)->to_json();
  const std::size_t before = heard.count();
  const std::size_t reported = heard.failures.size();
  const bool done = merge.Merge();
  expect(ref_cast<FormTemplate>(merge.TemplateIn)->to_json() == form, "the form that goes in stays as it is");
  expect(done || !merge.Verbose || heard.count() > before, "a merge that is refused says why");
  if (!done || heard.failures.size() > reported) return false;
  check_merged(merge);
  return true;
}

// The road once more, for a document that was saved.
void go_back(clsHEDRO& first, const Ref<FormTemplate>& form, const Listener& heard) {
  DataDocument& document = document_of(first);
  const auto merged_form = ref_cast<FormTemplate>(first.TemplateOut);
  const String form_path = Scratch::path("form-out");
  String path = Scratch::path("document");
  std::vector<PendingFile> files;
  const auto keep = [&](std::optional<PendingFile> file) {
    expect(file.has_value(), "what was merged can be written");
    files.push_back(std::move(*file));
  };
  keep(merged_form->prepare(form_path));
  keep(document.prepare(path));
  expect(commit_together(files), "both are put in place");
  const auto form_again = make<FormTemplate>();
  const auto document_again = make<DataDocument>();
  expect(form_again->Load(form_path) && form_again->to_json() == merged_form->to_json(), "the form reads back equal");
  expect(document_again->Load(path) && document_again->to_json() == document.to_json(),
         "the document reads back equal");
  check_page(first, heard.boxes);

  std::replace(path.begin(), path.end(), u'/', u'\\');
  const std::size_t reported = heard.failures.size();
  const auto test = make<clsHEDROTest>();
  if (!test->LoadKTD(path) || heard.failures.size() > reported) {
    expect(heard.failures.size() > reported, "a document that a merge wrote is a test");
    return;
  }
  check_loaded(first, *test);
  const auto second = merge_of(form, 0);
  second->Tests->Add(test);
  if (!merged(*second, heard)) return;
  check_same_keys(first, *second);
}

}  // namespace

void go(std::string_view bytes) {
  const Input input(bytes);
  Listener heard;
  heard.answer = input.has("cancel") ? answer_cancel : answer_ok;
  const auto form = form_of(input);
  if (!form) return;
  const auto merge = merge_of(form, input.number("field"));
  merge->Verbose = !input.has("quiet");
  for (const auto& [name, content] : input.sections) {
    if (name == "form" || merge->Tests->Count() == most_tests) continue;
    const auto test = load(input, name == "xml", content, heard);
    if (!test) return;
    merge->Tests->Add(test);
  }
  if (merge->Tests->Count() == 0 || !clean(*merge, input.number("max"))) return;
  if (merge->Tests->Count() > 1 && !compare(*merge, input, heard)) return;
  if (!merged(*merge, heard)) return;
  go_back(*merge, form, heard);
}

}  // namespace hedro34::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  hedro34::fuzz::go({reinterpret_cast<const char*>(data), size});
  return 0;
}
