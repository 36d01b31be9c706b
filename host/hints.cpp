#include "host/hints.h"

#include <algorithm>
#include <string_view>

#include "hedro34/platform/files.h"
#include "host/input.h"
#include "host/stop.h"

namespace host {
namespace {

using namespace hedro34;

constexpr std::string_view byte_order_mark = "\xef\xbb\xbf";

bool continues_character(char c) { return (static_cast<unsigned char>(c) & 0xc0) == 0x80; }

// Where a line begins; the end of the text when there is no such line. CR, LF and CRLF end lines.
std::size_t start_of_line(std::string_view text, std::int64_t line) {
  std::size_t at = 0;
  for (; line > 1 && at < text.size(); --line) {
    at = std::min(text.find_first_of("\r\n", at), text.size());
    if (at == text.size()) break;
    at += text.substr(at).starts_with("\r\n") ? 2 : 1;
  }
  return at;
}

// Whether the character at a line and column, both from 1, is not UTF-8. One that the end of the file may have cut is not.
bool is_no_utf8_at(std::string_view text, std::int64_t line, std::int64_t column) {
  std::size_t at = start_of_line(text, line);
  for (; column > 1 && at < text.size(); --column) {
    for (++at; at < text.size() && continues_character(text[at]);) ++at;
  }
  constexpr std::size_t longest = 4;
  const std::string_view rest = text.substr(at);
  for (std::size_t size = 1; size <= std::min(longest, rest.size()); ++size) {
    if (is_utf8(rest.substr(0, size))) return false;
  }
  return rest.size() >= longest || !std::all_of(rest.begin() + (rest.empty() ? 0 : 1), rest.end(), continues_character);
}

std::string encoding_hint(std::string_view text, const FileError& error) {
  if (text.starts_with(byte_order_mark) || text.starts_with("\xff\xfe") || text.starts_with("\xfe\xff")) return {};
  if (error.line == 0 || !is_no_utf8_at(text, error.line, error.column)) return {};
  return "; it is not UTF-8 there: save the file as UTF-8, or begin it with <?xml version=\"1.0\" encoding=\"windows-1252\"?>, "
         "or \"ISO-8859-1\", if that is what it is in";
}

// JSON is UTF-8 and nothing else.
std::string json_encoding_hint(std::string_view text, const FileError& error) {
  if (error.line == 0) return {};
  const std::string_view line = text.substr(start_of_line(text, error.line));
  return is_utf8(line.substr(0, line.find_first_of("\r\n"))) ? "" : "; save the file as UTF-8";
}

std::string listed(const std::vector<String>& labels) {
  constexpr std::size_t most = 12;
  std::string result;
  for (std::size_t i = 0; i < std::min(labels.size(), most); ++i) {
    result += (i == 0 ? "" : ", ") + one_line(to_utf8(labels[i]));
  }
  return labels.size() > most ? result + " and more" : result;
}

std::vector<String> labels_of(WENKtdQuestion& question) {
  std::vector<String> labels;
  const Ref<WENKtdStrings> given = question.ChoiceLabels();
  for (std::int32_t i = 1; i <= given->Count(); ++i) labels.push_back(given->Item(i));
  return labels;
}

bool offers(const std::vector<String>& labels, StringView version) {
  return std::any_of(labels.begin(), labels.end(),
                     [&](const String& each) { return equal_ignoring_case(each, version); });
}

// The first field that is not graded and offers all of these labels, where its number is the one to give: fields that stop being
// graded before it would change that. 0 when there is none.
std::int32_t field_that_offers(const clsHEDRO& merge, const std::vector<String>& versions) {
  const Ref<WENKtdQuestions> fields = merge.WENKTD->Questions();
  std::int32_t found = 0;
  std::int32_t graded = 0;
  bool stays = false;
  for (std::int32_t number = 1; number <= fields->Count(); ++number) {
    const Ref<WENKtdQuestion> field = fields->Item(number);
    if (field->Graded()) {
      ++graded;
      stays = stays || found > 0;
    } else if (found == 0) {
      const std::vector<String> labels = labels_of(*field);
      const auto is_offered = [&](const String& version) { return offers(labels, version); };
      if (std::all_of(versions.begin(), versions.end(), is_offered)) found = number;
    }
  }
  return stays || graded == merge.TemplateIn->GradedQuestionCount() ? found : 0;
}

// What is wrong with the field that the merge looked at, for the version that it did not take there.
std::string wrong_field(const clsHEDRO& merge, std::int32_t given, StringView version) {
  const Ref<WENKtdQuestions> fields = merge.WENKTD->Questions();
  const std::int32_t number = merge.SequenceQuestion;
  std::string name = "field " + std::to_string(number);
  if (number != given) name += " (" + std::to_string(given) + " less the fields no longer graded)";
  if (number < 1 || number > fields->Count()) {
    return name + " is not there, the form has " + std::to_string(fields->Count());
  }
  const Ref<WENKtdQuestion> field = fields->Item(number);
  if (field->Graded()) return name + " is graded";
  const std::vector<String> labels = labels_of(*field);
  return name + " offers " + (labels.empty() ? "nothing" : listed(labels)) + " and not " + one_line(to_utf8(version));
}

}  // namespace

std::string reading_hint(const std::string& what, const String& path, const FileError& error) {
  if (error.kind != FileError::Kind::Malformed && error.kind != FileError::Kind::WrongKind) return {};
  const auto bytes = read_file(path);
  if (!bytes) return {};
  const std::string_view text = *bytes;
  const std::size_t start =
      text.find_first_not_of(" \t\r\n", text.starts_with(byte_order_mark) ? byte_order_mark.size() : 0);
  const bool is_json = start != std::string_view::npos && text[start] == '{';
  const bool is_xml = start != std::string_view::npos && text[start] == '<';
  const auto says_it_is = [&](const char* format) {
    return is_json && error.pointer == "/format" && text.find(format) != std::string_view::npos;
  };
  if (what == "test") {
    if (says_it_is("\"hedro34-form\"")) return ", and this is a form template: it belongs behind merge --form";
    return is_json ? json_encoding_hint(text, error) : encoding_hint(text, error);
  }
  if (what == "form") {
    constexpr std::string_view way_out =
        ": a form template is a JSON file, and hedro34 form --questions N --out FORM makes one";
    if (is_xml) return std::string("; it looks like an XML file").append(way_out);
    if (says_it_is("\"hedro34-ktd\"")) return std::string("; it is a data document").append(way_out);
    return is_json ? json_encoding_hint(text, error) : std::string("; it is none").append(way_out);
  }
  if (is_xml) return "; it looks like an XML file: a data document is what merge --document-out writes";
  if (says_it_is("\"hedro34-form\""))
    return "; it is a form template: a data document is what merge --document-out writes";
  return is_json ? json_encoding_hint(text, error) : "";
}

std::string version_field_hint(const clsHEDRO& merge, const MergeCommand& command) {
  // The document has an order from when the field is looked at.
  const Ref<WENKtdVersions> written = merge.WENKTD->Versions();
  const std::int32_t taken = written->VersionAnswers()->Count();
  if (merge.Tests->Count() < 2 || written->Orders()->Count() == 0 || taken >= merge.Tests->Count()) return {};
  std::vector<String> versions;
  for (std::int32_t n = 1; n <= merge.Tests->Count(); ++n) {
    versions.push_back(merge.Tests->Item(n)->Version);
    if (!versions.back().empty()) continue;
    return "; " + one_line(to_utf8(input_name(command.tests[static_cast<std::size_t>(n - 1)]))) +
           " has no version label, by which its sheets would be known";
  }
  const std::int32_t field = field_that_offers(merge, versions);
  const bool is_given = command.sequence_question > 0;
  const std::string wrong =
      is_given ? wrong_field(merge, command.sequence_question, versions[static_cast<std::size_t>(taken)]) + ": " : "";
  if (field > 0) {
    return "; " + wrong + "give --sequence-question " + std::to_string(field) +
           ", the field with the version identifier " + listed(versions);
  }
  return "; " + wrong +
         "give --sequence-question N, the field with the version identifier, on a form that has one for " +
         listed(versions) + ": hedro34 form --versions makes such a form";
}

}  // namespace host
