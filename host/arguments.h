// The command line: what each command takes, and how the words become it. Paths and values are checked here as far as the
// words alone allow; nothing is opened.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "hedro34/base/text.h"
#include "hedro34/model/enumerations.h"

namespace host {

// How the box "Partial Credit" is answered.
enum class PartialCredit { Ok, Cancel, Ask };

// What the reading of a test needs; the first three play a part for ExamView files only.
struct ImportOptions {
  hedro34::HEDROTestImportObjectives objectives = hedro34::HEDROTestImportObjectivesNone;
  hedro34::String state;
  bool odd_distractors_only = false;
  PartialCredit partial_credit = PartialCredit::Ask;
  std::optional<hedro34::String> messages;  // where the messages go at the end
};

struct ShowCommand {
  enum class As { Text, Json, Csv };

  ImportOptions import;
  As as = As::Text;
  std::vector<hedro34::String> files;  // at least one; one for `Csv`
};

struct CompareCommand {
  ImportOptions import;
  bool json = false;
  std::vector<hedro34::String> tests;  // at least two
};

struct ReportCommand {
  std::optional<hedro34::String> form;  // the merged one
  hedro34::String out;
  hedro34::String document;
};

struct MergeCommand {
  ImportOptions import;
  hedro34::String form;
  hedro34::String form_out;
  hedro34::String document_out;
  std::optional<hedro34::String> report;  // where the page goes
  std::int32_t max_questions = 0;
  std::int32_t sequence_question = 0;
  bool quiet = false;
  bool keep_going = false;             // write the outputs though a failure was reported
  std::vector<hedro34::String> tests;  // at least one
};

struct FormCommand {
  std::int32_t questions = 1;  // graded fields; pages and all fields together are within 16 bits
  std::int32_t choices = 5;    // 1 to 26
  std::int32_t per_page = 50;
  std::vector<hedro34::String> versions;
  hedro34::String out;
};

// Whether an output of it is "-", so that standard output is for that alone.
bool writes_standard_output(const MergeCommand& command);

// A text that was asked for: the help or the version.
struct Information {
  std::string text;
};

using Command = std::variant<Information, ShowCommand, CompareCommand, MergeCommand, ReportCommand, FormCommand>;

// What the words behind the program's name ask for. Throws a `Stop` with `WrongUsage` when they make no command, when an
// output would overwrite an input or another output, or when a standard stream is named twice.
Command parse(const std::vector<std::string>& words);

}  // namespace host
