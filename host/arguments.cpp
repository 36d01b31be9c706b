#include "host/arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <limits>
#include <utility>

#include "hedro34/platform/files.h"
#include "hedro34/version.h"
#include "host/input.h"
#include "host/values.h"

namespace host {
namespace {

using hedro34::String;

// Values as they stand on the command line.
struct ImportWords {
  std::string objectives = "none";
  std::string state;
  std::string partial_credit = "ask";
  bool odd_distractors_only = false;
  std::string messages;
  CLI::Option* messages_option = nullptr;

  void declare(CLI::App& app) {
    app.add_option("--objectives", objectives,
                   "Objectives to take over: none (default), learning, local, state, national, all")
        ->type_name("LIST");
    app.add_option("--state", state, "State whose objectives are taken, such as CA")->type_name("XX");
    app.add_flag("--odd-distractors-only", odd_distractors_only, "Even questions take the answer letters of odd ones")
        ->disable_flag_override();
    app.add_option("--partial-credit", partial_credit,
                   "Answer to the question about partial credit: ok, cancel or ask (default)")
        ->type_name("ANSWER");
    messages_option =
        app.add_option("--messages", messages, "Write boxes and failures to this file, a JSON object a line")
            ->type_name("FILE");
  }

  ImportOptions options() const {
    ImportOptions result;
    result.objectives = objectives_of(objectives);
    result.state = state_of(state);
    result.odd_distractors_only = odd_distractors_only;
    result.partial_credit = partial_credit_of(partial_credit);
    if (messages_option->count() > 0) result.messages = hedro34::from_utf8(messages);
    return result;
  }
};

struct ShowWords {
  CLI::App* app;
  ImportWords import;
  bool json = false;
  std::string test;

  explicit ShowWords(CLI::App& program) : app(program.add_subcommand("show", "Print a test")) {
    import.declare(*app);
    app->add_flag("--json", json, "Print one JSON object")->disable_flag_override();
    app->add_option("TEST", test, "ExamView XML file or KTD document")->required()->type_name("");
  }

  ShowCommand command() const { return {import.options(), json, hedro34::from_utf8(test)}; }
};

struct MergeWords {
  CLI::App* app;
  ImportWords import;
  std::string form, form_out, document_out;
  std::string max_questions = "0", sequence_question = "0";
  bool quiet = false, keep_going = false;
  std::vector<std::string> tests;

  explicit MergeWords(CLI::App& program)
      : app(program.add_subcommand("merge", "Merge a test, with its further versions, with a form")) {
    import.declare(*app);
    app->add_option("--form", form, "Form template to read")->required()->type_name("FORM");
    app->add_option("--form-out", form_out, "Form template to write")->required()->type_name("FILE");
    app->add_option("--document-out", document_out, "Data document to write")->required()->type_name("FILE");
    app->add_option("--max-questions", max_questions, "Most questions that a test keeps; 0: no limit (default)")
        ->type_name("N");
    app->add_option("--sequence-question", sequence_question, "Field with the version identifier; 0: none (default)")
        ->type_name("N");
    app->add_flag("--quiet", quiet, "Show no boxes of removal and merge")->disable_flag_override();
    app->add_flag("--keep-going", keep_going, "Write the outputs though the library has reported a failure")
        ->disable_flag_override();
    app->add_option("TEST", tests, "ExamView XML file or KTD document; further ones are its versions")
        ->required()
        ->type_name("");
  }

  MergeCommand command() const {
    MergeCommand result;
    result.import = import.options();
    result.form = hedro34::from_utf8(form);
    result.form_out = hedro34::from_utf8(form_out);
    result.document_out = hedro34::from_utf8(document_out);
    result.max_questions = number_of("--max-questions", max_questions, std::numeric_limits<std::int32_t>::min());
    result.sequence_question =
        number_of("--sequence-question", sequence_question, std::numeric_limits<std::int32_t>::min());
    result.quiet = quiet;
    result.keep_going = keep_going;
    for (const std::string& test : tests) result.tests.push_back(hedro34::from_utf8(test));
    return result;
  }
};

struct FormWords {
  CLI::App* app;
  std::string questions, choices = "5", per_page = "50", versions, out;
  CLI::Option* versions_option;

  explicit FormWords(CLI::App& program) : app(program.add_subcommand("form", "Write a new form template")) {
    app->add_option("--questions", questions, "Number of graded fields")->required()->type_name("N");
    app->add_option("--choices", choices, "Choices of each, at most 26 (default 5)")->type_name("N");
    versions_option = app->add_option("--versions", versions, "A version field in front that offers these identifiers")
                          ->type_name("A,B,...");
    app->add_option("--per-page", per_page, "Graded fields on a page (default 50)")->type_name("N");
    app->add_option("--out", out, "Form template to write")->required()->type_name("FILE");
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

bool is_file_in_brackets(const std::string& word) {
  return word.size() > 1 && word.front() == '[' && word.back() == ']' &&
         hedro34::kind_of(hedro34::from_utf8(word)) != hedro34::FileKind::Nothing;
}

// The words in a form in which CLI11 takes each for what it is: "--option=" has the empty text as its value and not the
// next word, and a file name in brackets is no list of names.
std::vector<std::string> prepared(const std::vector<std::string>& words) {
  std::vector<std::string> result;
  bool options = true;
  for (const std::string& word : words) {
    options = options && word != "--";
    if (options && word.starts_with("--") && word.size() > 3 && word.find('=') == word.size() - 1) {
      result.push_back(word.substr(0, word.size() - 1));
      result.emplace_back();
    } else {
      result.push_back(is_file_in_brackets(word) ? "./" + word : word);
    }
  }
  return result;
}

using Named = std::pair<std::string, const String*>;

[[noreturn]] void named_twice(const Named& one, const Named& other, const std::string& what) {
  throw Stop(ExitCode::WrongUsage, one.first + " and " + other.first + what);
}

// Every output differs from every other one and from every input, and standard input is read once.
void check_distinct(const std::vector<Named>& outputs, const std::vector<Named>& inputs) {
  const Named* standard_input = nullptr;
  for (const Named& input : inputs) {
    if (!is_standard_stream(*input.second)) continue;
    if (standard_input != nullptr) {
      named_twice(*standard_input, input, " are both standard input, which can be read once only; give one a file");
    }
    standard_input = &input;
  }
  for (std::size_t i = 0; i < outputs.size(); ++i) {
    const bool is_standard = is_standard_stream(*outputs[i].second);
    const auto check = [&](const Named& other) {
      if (!is_standard && hedro34::same_file(*outputs[i].second, *other.second)) {
        named_twice(outputs[i], other,
                    " name the same file: " + hedro34::to_utf8(*outputs[i].second) + "; give each its own");
      }
    };
    for (std::size_t k = i + 1; k < outputs.size(); ++k) {
      if (is_standard && is_standard_stream(*outputs[k].second)) {
        named_twice(outputs[i], outputs[k], " are both standard output; give one a file");
      }
      check(outputs[k]);
    }
    for (const Named& input : inputs) check(input);
  }
}

void check_distinct(const ShowCommand& command) {
  if (!command.import.messages) return;
  if (is_standard_stream(*command.import.messages)) {
    throw Stop(ExitCode::WrongUsage, "--messages: what is shown goes to standard output; give the messages a file");
  }
  check_distinct({{"--messages", &*command.import.messages}}, {{"TEST", &command.test}});
}

std::vector<Named> outputs_of(const MergeCommand& command) {
  std::vector<Named> outputs = {{"--form-out", &command.form_out}, {"--document-out", &command.document_out}};
  if (command.import.messages) outputs.emplace_back("--messages", &*command.import.messages);
  return outputs;
}

void check_distinct(const MergeCommand& command) {
  std::vector<Named> inputs = {{"--form", &command.form}};
  for (const String& test : command.tests) inputs.emplace_back("TEST", &test);
  check_distinct(outputs_of(command), inputs);
}

template <class Asked>
Asked distinct(Asked command) {
  check_distinct(command);
  return command;
}

}  // namespace

bool writes_standard_output(const MergeCommand& command) {
  const auto outputs = outputs_of(command);
  return std::any_of(outputs.begin(), outputs.end(),
                     [](const Named& output) { return is_standard_stream(*output.second); });
}

Command parse(const std::vector<std::string>& words) {
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (is_utf8(words[i])) continue;
    throw Stop(ExitCode::WrongUsage, "argument " + std::to_string(i + 1) +
                                         " is not UTF-8: " + hedro34::to_utf8(hedro34::from_utf8(words[i])));
  }

  CLI::App app("Reads tests and merges them with form templates", "hedro34");
  app.set_version_flag("--version", "hedro34 " + std::string(hedro34::version));
  app.require_subcommand(1);
  app.footer(
      "A file may be -, standard input or standard output.\n\n"
      "Exit codes: 0 done, 1 the library answered False, 2 wrong usage, 3 an input is at fault, 4 an output cannot be\n"
      "written, 5 a failure was reported: merge writes nothing then, unless --keep-going is given");
  ShowWords show(app);
  MergeWords merge(app);
  FormWords form(app);
  for (CLI::App* each : {&app, show.app, merge.app, form.app})
    each->allow_windows_style_options(false);  // "/x" is a file
  try {
    std::vector<std::string> arguments = prepared(words);
    std::reverse(arguments.begin(), arguments.end());
    app.parse(std::move(arguments));
  } catch (const CLI::CallForVersion& version) {
    return Information{std::string(version.what()) + '\n'};
  } catch (const CLI::CallForHelp&) {
    return Information{app.help()};
  } catch (const CLI::Error& error) {
    const auto chosen = app.get_subcommands();
    const std::string help = "; see hedro34 " + (chosen.empty() ? "" : chosen.back()->get_name() + ' ') + "--help";
    // A word that nobody expected explains more than what is missing because of it.
    for (const std::string& word : app.remaining(true)) {
      if (word != "--") throw Stop(ExitCode::WrongUsage, "unexpected argument: " + word + help);
    }
    throw Stop(ExitCode::WrongUsage, error.what() + help);
  }
  if (show.app->parsed()) return distinct(show.command());
  if (merge.app->parsed()) return distinct(merge.command());
  return form.command();
}

}  // namespace host
