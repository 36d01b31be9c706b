#include "host/compare.h"

#include "hedro34/json/json_text.h"
#include "hedro34/merge/clsHEDRO.h"
#include "host/input.h"
#include "host/load.h"
#include "host/stop.h"

namespace host {
namespace {

using namespace hedro34;
using Kind = VersionDifference::Kind;
using Differences = std::vector<VersionDifference>;

std::string shown(StringView text) { return one_line(to_utf8(text)); }
std::string shown_file(const String& path) { return shown(input_name(path)); }

// Loads the tests and takes out of them what a merge takes out, without a word.
Ref<clsHEDROTests> load(const CompareCommand& command, const Messages& messages) {
  const auto merge = make<clsHEDRO>();
  merge->Verbose = false;
  for (const String& path : command.tests) merge->Tests->Add(load_test(path, command.import, messages));
  if (merge->RemoveInvalid()) return merge->Tests;
  std::size_t emptied = 0;
  while (emptied + 1 < command.tests.size() &&
         merge->Tests->Item(static_cast<std::int32_t>(emptied + 1))->Questions->Count() > 0) {
    ++emptied;
  }
  throw Stop(ExitCode::AnsweredFalse, "RemoveInvalid answered False: " + to_utf8(input_name(command.tests[emptied])) +
                                          ": no question is true/false, yes/no, multiple choice or subjective");
}

// Looks at each key as a merge does, which reports one that it cannot hold against another.
void look_at_keys(const clsHEDROTests& tests) {
  for (std::int32_t n = 1; n <= tests.Count(); ++n) {
    const auto questions = tests.Item(n)->Questions;
    for (std::int32_t i = 1; i <= questions->Count(); ++i)
      questions->Item(i)->CorrectAnswers->GetBitWiseRepresentation();
  }
}

std::string as_json(const std::vector<Differences>& all, const CompareCommand& command, const clsHEDROTests& tests) {
  JsonText json(JsonText::Layout::Indented);
  json.begin_object();
  json.key("tests");
  json.begin_array();
  for (std::size_t i = 0; i < all.size(); ++i) {
    json.begin_object();
    json.key("file");
    json.value(command.tests[i + 1]);
    json.key("version");
    json.value(tests.Item(static_cast<std::int32_t>(i + 2))->Version);
    json.key("same");
    json.value(all[i].empty());
    json.key("differences");
    json.begin_array();
    for (const VersionDifference& difference : all[i]) {
      json.begin_object(JsonText::Layout::Spaced);
      json.key("kind");
      json.value(name_of(difference.kind));
      json.key("id");
      json.value(difference.id);
      json.key("first");
      json.value(difference.first);
      json.key("here");
      json.value(difference.here);
      json.end();
    }
    json.end();
    json.end();
  }
  json.end();
  json.end();
  json.finish();
  return std::move(json).str();
}

// "unit-b.xml as a version of unit-a.xml", or how many other tests.
std::string as_versions(const std::vector<String>& files, const std::string& first, std::size_t count) {
  const std::string others = count == 1 ? "" : " and " + std::to_string(count - 1) + " more";
  return first + others + (count == 1 ? " as a version of " : " as versions of ") + shown_file(files.front());
}

}  // namespace

std::string line_of(const VersionDifference& difference, const std::vector<String>& files, std::size_t index) {
  const std::string first_file = shown_file(files[static_cast<std::size_t>(difference.test - 1)]);
  const std::string first = shown(difference.first);
  const std::string here = shown(difference.here);
  const std::string question = "question " + std::to_string(difference.number) + " (" +
                               (difference.id.empty() ? "no ID" : "ID " + shown(difference.id)) + ')';
  const auto key = [](const std::string& text) { return text.empty() ? "none" : text; };
  const auto said = [&]() -> std::string {
    switch (difference.kind) {
      case Kind::Count: return here + " questions, in " + first_file + ' ' + first;
      case Kind::Missing: return question + " of " + first_file + " is missing";
      case Kind::New: return question + " is not in " + first_file;
      case Kind::Answers: return question + ": " + here + " choices, in " + first_file + ' ' + first;
      case Kind::Key: return question + ": key is " + key(here) + ", in " + first_file + ' ' + key(first);
      case Kind::Label:
        return "version label \"" + here + "\" is used already: " + first_file + " has \"" + first + '"';
      case Kind::Type: break;
    }
    return question + " is " + here + ", at its place in " + first_file + " stands " + first;
  };
  return shown_file(files[index]) + ": " + said();
}

void compare(const CompareCommand& command, Messages& messages) {
  const auto tests = load(command, messages);
  look_at_keys(*tests);
  VersionComparison comparison(tests->Item(1));
  std::vector<Differences> all;
  std::size_t refused = 0;
  std::size_t first_refused = 0;
  std::string text;
  for (std::size_t i = 1; i < command.tests.size(); ++i) {
    const Differences& found = all.emplace_back(comparison.next(*tests->Item(static_cast<std::int32_t>(i + 1))));
    for (const VersionDifference& difference : found) text += line_of(difference, command.tests, i) + '\n';
    if (!found.empty() && refused++ == 0) first_refused = i;
  }
  if (refused == 0) {
    text = "No differences: merge takes " +
           as_versions(command.tests, shown_file(command.tests[1]), command.tests.size() - 1) + '\n';
  }
  print(command.json ? as_json(all, command, *tests) : text);
  if (refused == 0) return;
  throw Stop(ExitCode::AnsweredFalse,
             "merge would not take " + as_versions(command.tests, shown_file(command.tests[first_refused]), refused));
}

}  // namespace host
