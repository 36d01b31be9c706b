#include "host/values.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <unordered_set>
#include <utility>

namespace host {
namespace {

constexpr std::int32_t most_choices = 26;
constexpr std::int32_t most_fields = 32767;
constexpr std::size_t state_length = 2;

[[noreturn]] void wrong(std::string_view option, std::string_view text, const std::string& way_out) {
  throw Stop(ExitCode::WrongUsage, std::string(option) + ": \"" + std::string(text) + "\" is not " + way_out);
}

constexpr std::array<std::pair<std::string_view, std::int32_t>, 6> objectives = {{
    {"none", hedro34::HEDROTestImportObjectivesNone},
    {"learning", hedro34::HEDROTestImportObjectivesLearning},
    {"local", hedro34::HEDROTestImportObjectivesLocal},
    {"state", hedro34::HEDROTestImportObjectivesState},
    {"national", hedro34::HEDROTestImportObjectivesNational},
    {"all", hedro34::HEDROTestImportObjectivesLearning | hedro34::HEDROTestImportObjectivesLocal |
                hedro34::HEDROTestImportObjectivesState | hedro34::HEDROTestImportObjectivesNational},
}};

constexpr std::array<std::pair<std::string_view, PartialCredit>, 3> answers = {
    {{"ok", PartialCredit::Ok}, {"cancel", PartialCredit::Cancel}, {"ask", PartialCredit::Ask}}};

template <class Rows>
std::vector<std::string_view> names_of(const Rows& rows) {
  std::vector<std::string_view> names;
  names.reserve(rows.size());
  for (const auto& row : rows) names.push_back(row.first);
  return names;
}

std::string list_of(const std::vector<std::string_view>& names) {
  std::string list;
  for (const std::string_view name : names) list.append(list.empty() ? "" : ", ").append(name);
  return list;
}

// The parts between commas; one empty part for an empty text.
std::vector<std::string_view> split(std::string_view text) {
  std::vector<std::string_view> parts;
  for (std::size_t start = 0;;) {
    const std::size_t end = std::min(text.find(',', start), text.size());
    parts.push_back(text.substr(start, end - start));
    if (end == text.size()) return parts;
    start = end + 1;
  }
}

}  // namespace

std::int32_t number_of(std::string_view option, std::string_view text, std::int32_t least) {
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error == std::errc() && end == text.data() + text.size() && number >= least) return number;
  wrong(option, text,
        "a whole number from " + std::to_string(least) + " to " +
            std::to_string(std::numeric_limits<std::int32_t>::max()));
}

std::vector<std::string_view> objective_names() { return names_of(objectives); }
std::vector<std::string_view> partial_credit_names() { return names_of(answers); }

hedro34::HEDROTestImportObjectives objectives_of(std::string_view text) {
  std::int32_t flags = 0;
  for (const std::string_view part : split(text)) {
    const auto* const named =
        std::find_if(objectives.begin(), objectives.end(), [&](const auto& row) { return row.first == part; });
    if (named == objectives.end()) {
      wrong("--objectives", part, "one of " + list_of(objective_names()) + ", separated by commas");
    }
    flags |= named->second;
  }
  return static_cast<hedro34::HEDROTestImportObjectives>(flags);
}

hedro34::String state_of(std::string_view text) {
  hedro34::String state = hedro34::from_utf8(text);
  if (state.size() > state_length) wrong("--state", text, "an abbreviation of two letters, such as CA");
  return state;
}

PartialCredit partial_credit_of(std::string_view text) {
  for (const auto& [name, answer] : answers) {
    if (text == name) return answer;
  }
  wrong("--partial-credit", text, "one of " + list_of(partial_credit_names()));
}

std::vector<hedro34::String> versions_of(std::string_view text) {
  std::vector<hedro34::String> versions;
  std::unordered_set<hedro34::String, hedro34::IgnoringCase, hedro34::IgnoringCase> seen;
  for (const std::string_view part : split(text)) {
    if (part.empty()) wrong("--versions", text, "a list of identifiers with one comma between them, such as A,B,C");
    if (!seen.insert(versions.emplace_back(hedro34::from_utf8(part))).second) {
      wrong("--versions", text,
            "a list of different identifiers: \"" + std::string(part) +
                "\" stands there twice, in any case of its letters");
    }
  }
  return versions;
}

void check_size(const FormCommand& form) {
  if (form.choices > most_choices) {
    wrong("--choices", std::to_string(form.choices), "within 26, the letters A to Z");
  }
  // Every page holds a field at least, so there are never more pages than fields.
  if (form.questions > most_fields - (form.versions.empty() ? 0 : 1)) {
    throw Stop(ExitCode::WrongUsage,
               "--questions: a form has at most 32767 fields, the version field included; ask for fewer");
  }
}

}  // namespace host
