#include "host/command_line.h"

#include <limits>

#include "hedro34/version.h"
#include "host/values.h"

namespace host {
namespace {

using hedro34::String;

using ValueTable = std::unordered_map<const CLI::Option*, Values>;

// Usage lines say how many names a command needs: "FILE [FILE ...]".
class HelpFormatter final : public CLI::Formatter {
 public:
  std::string make_option_usage(const CLI::Option* option) const override {
    const std::string name = make_option_name(option, true);
    std::string usage = name;
    for (int i = 1; i < option->get_items_expected_min(); ++i) usage += ' ' + name;
    return option->get_items_expected_max() > 1 ? usage + " [" + name + " ...]" : usage;
  }
};

// Files that are looked for by the ends of their names.
Values files_like(std::vector<std::string_view> endings) { return {{}, false, std::move(endings)}; }

constexpr std::string_view xml = ".xml", ktd = ".ktd", form_json = ".form.json", html = ".html", any = "";

// Values as they stand on the command line.
struct ImportWords {
  std::string objectives = "none";
  std::string state;
  std::string partial_credit = "ask";
  bool odd_distractors_only = false;
  std::string messages;
  CLI::Option* messages_option = nullptr;

  void declare(CLI::App& app, ValueTable& values) {
    values[app.add_option("--objectives", objectives,
                          "Objectives to take over: none (default), learning, local, state, national, all")
               ->type_name("LIST")] = {objective_names(), true, {}};
    app.add_option("--state", state, "State whose objectives are taken, such as CA")->type_name("XX");
    app.add_flag("--odd-distractors-only", odd_distractors_only, "Even questions take the answer letters of odd ones")
        ->disable_flag_override();
    values[app.add_option("--partial-credit", partial_credit,
                          "Answer to the question about partial credit: ok, cancel or ask (default)")
               ->type_name("ANSWER")] = {partial_credit_names(), false, {}};
  }

  void declare_messages(CLI::App& app, ValueTable& values) {
    messages_option =
        app.add_option("--messages", messages, "Write boxes, failures and notes to this file, a JSON object a line")
            ->type_name("FILE");
    values[messages_option] = files_like({any});
  }

  ImportOptions options() const {
    ImportOptions result;
    result.objectives = objectives_of(objectives);
    result.state = state_of(state);
    result.odd_distractors_only = odd_distractors_only;
    result.partial_credit = partial_credit_of(partial_credit);
    if (messages_option != nullptr && messages_option->count() > 0) result.messages = hedro34::from_utf8(messages);
    return result;
  }
};

std::vector<String> texts(const std::vector<std::string>& words) {
  std::vector<String> result;
  result.reserve(words.size());
  for (const std::string& word : words) result.push_back(hedro34::from_utf8(word));
  return result;
}

struct ShowWords {
  CLI::App* app;
  ImportWords import;
  bool json = false, csv = false;
  std::vector<std::string> files;

  ShowWords(CLI::App& program, ValueTable& values)
      : app(program.add_subcommand("show", "Print tests, data documents and form templates")) {
    import.declare(*app, values);
    CLI::Option* as_json =
        app->add_flag("--json", json, "Print one JSON object for each FILE")->disable_flag_override();
    app->add_flag("--csv", csv, "Print the questions of one FILE as a table for a spreadsheet")
        ->disable_flag_override()
        ->excludes(as_json);
    import.declare_messages(*app, values);
    values[app->add_option("FILE", files, "ExamView XML file, KTD document or form template")
               ->required()
               ->type_name("")] = files_like({xml, ktd, form_json});
  }

  ShowCommand command() const {
    if (csv && files.size() > 1) {
      throw Stop(ExitCode::WrongUsage, "--csv: a table has one header line; give one FILE");
    }
    const auto as = json ? ShowCommand::As::Json : csv ? ShowCommand::As::Csv : ShowCommand::As::Text;
    return {import.options(), as, texts(files)};
  }
};

struct CompareWords {
  CLI::App* app;
  ImportWords import;
  bool json = false;
  std::vector<std::string> tests;

  CompareWords(CLI::App& program, ValueTable& values)
      : app(program.add_subcommand("compare", "Tell how versions of a test differ from the first one")) {
    import.declare(*app, values);
    app->add_flag("--json", json, "Print one JSON object")->disable_flag_override();
    values[app->add_option("TEST", tests,
                           "ExamView XML file or KTD document; the first one is what the others are held against")
               ->required()
               ->expected(2, -1)
               ->type_name("")] = files_like({xml, ktd});
  }

  CompareCommand command() const { return {import.options(), json, texts(tests)}; }
};

struct MergeWords {
  CLI::App* app;
  ImportWords import;
  std::string form, form_out, document_out, report;
  CLI::Option* report_option;
  std::string max_questions = "0", sequence_question = "0";
  bool quiet = false, keep_going = false;
  std::vector<std::string> tests;

  MergeWords(CLI::App& program, ValueTable& values)
      : app(program.add_subcommand("merge", "Merge a test, with its further versions, with a form")) {
    import.declare(*app, values);
    values[app->add_option("--form", form, "Form template to read")->required()->type_name("FORM")] =
        files_like({form_json});
    values[app->add_option("--form-out", form_out, "Form template to write")->required()->type_name("FILE")] =
        files_like({form_json});
    values[app->add_option("--document-out", document_out, "Data document to write")->required()->type_name("FILE")] =
        files_like({ktd});
    report_option = app->add_option("--report", report, "HTML page to write: the sheet, the keys, what was left out")
                        ->type_name("FILE");
    values[report_option] = files_like({html});
    app->add_option("--max-questions", max_questions, "Most questions that a test keeps; 0: no limit (default)")
        ->type_name("N");
    app->add_option("--sequence-question", sequence_question, "Field with the version identifier; 0: none (default)")
        ->type_name("N");
    app->add_flag("--quiet", quiet, "Show no boxes of removal and merge")->disable_flag_override();
    app->add_flag("--keep-going", keep_going, "Write the outputs though the library has reported a failure")
        ->disable_flag_override();
    import.declare_messages(*app, values);
    values[app->add_option("TEST", tests, "ExamView XML file or KTD document; further ones are its versions")
               ->required()
               ->type_name("")] = files_like({xml, ktd});
  }

  MergeCommand command() const {
    MergeCommand result;
    result.import = import.options();
    result.form = hedro34::from_utf8(form);
    result.form_out = hedro34::from_utf8(form_out);
    result.document_out = hedro34::from_utf8(document_out);
    if (report_option->count() > 0) result.report = hedro34::from_utf8(report);
    result.max_questions = number_of("--max-questions", max_questions, std::numeric_limits<std::int32_t>::min());
    result.sequence_question =
        number_of("--sequence-question", sequence_question, std::numeric_limits<std::int32_t>::min());
    result.quiet = quiet;
    result.keep_going = keep_going;
    result.tests = texts(tests);
    return result;
  }
};

struct ReportWords {
  CLI::App* app;
  std::string form, out, document;
  CLI::Option* form_option;

  ReportWords(CLI::App& program, ValueTable& values)
      : app(program.add_subcommand("report", "Write the HTML page of a merge: the sheet, the keys, the questions")) {
    form_option = app->add_option("--form", form, "Merged form template, for the pages and regions of the sheet")
                      ->type_name("FORM");
    values[form_option] = files_like({form_json});
    values[app->add_option("--out", out, "HTML page to write")->required()->type_name("FILE")] = files_like({html});
    values[app->add_option("DOCUMENT", document, "Data document that the merge wrote")->required()->type_name("")] =
        files_like({ktd});
  }

  ReportCommand command() const {
    ReportCommand result;
    if (form_option->count() > 0) result.form = hedro34::from_utf8(form);
    result.out = hedro34::from_utf8(out);
    result.document = hedro34::from_utf8(document);
    return result;
  }
};

struct FormWords {
  CLI::App* app;
  std::string questions, choices = "5", per_page = "50", versions, out;
  CLI::Option* versions_option;

  FormWords(CLI::App& program, ValueTable& values) : app(program.add_subcommand("form", "Write a new form template")) {
    app->add_option("--questions", questions, "Number of graded fields")->required()->type_name("N");
    app->add_option("--choices", choices, "Choices of each, at most 26 (default 5)")->type_name("N");
    versions_option = app->add_option("--versions", versions, "A version field in front that offers these identifiers")
                          ->type_name("A,B,...");
    app->add_option("--per-page", per_page, "Graded fields on a page (default 50)")->type_name("N");
    values[app->add_option("--out", out, "Form template to write")->required()->type_name("FILE")] =
        files_like({form_json});
  }

  FormCommand command() const {
    FormCommand result;
    result.questions = number_of("--questions", questions, 1);
    result.choices = number_of("--choices", choices, 1);
    result.per_page = number_of("--per-page", per_page, 1);
    if (versions_option->count() > 0) result.versions = versions_of(versions);
    result.out = hedro34::from_utf8(out);
    check_size(result);
    return result;
  }
};

}  // namespace

struct CommandLine::Words {
  ShowWords show;
  CompareWords compare;
  MergeWords merge;
  ReportWords report;
  FormWords form;

  Words(CLI::App& app, ValueTable& values)
      : show(app, values), compare(app, values), merge(app, values), report(app, values), form(app, values) {}
};

CommandLine::CommandLine()
    : app_("Reads tests, shows and compares them, and merges them with form templates", "hedro34") {
  app_.set_version_flag("--version", "hedro34 " + std::string(hedro34::version));
  app_.require_subcommand(1);
  app_.formatter(std::make_shared<HelpFormatter>());
  std::string footer = std::string(standard_streams) + "\n\nExit codes:";
  for (const auto& [code, meaning] : exit_codes) {
    footer.append("\n  ").append(std::to_string(static_cast<int>(code))).append("  ").append(meaning);
  }
  app_.footer(footer);
  words_ = std::make_unique<Words>(app_, values_);
  app_.allow_windows_style_options(false);  // "/x" is a file
  for (CLI::App* command : app_.get_subcommands({})) command->allow_windows_style_options(false);
}

CommandLine::~CommandLine() = default;

Values CommandLine::values(const CLI::Option& option) const {
  const auto found = values_.find(&option);
  return found == values_.end() ? Values() : found->second;
}

Command CommandLine::command() const {
  if (words_->show.app->parsed()) return words_->show.command();
  if (words_->compare.app->parsed()) return words_->compare.command();
  if (words_->merge.app->parsed()) return words_->merge.command();
  if (words_->report.app->parsed()) return words_->report.command();
  return words_->form.command();
}

}  // namespace host
