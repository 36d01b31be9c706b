#include "host/arguments.h"

#include <algorithm>
#include <utility>

#include "hedro34/platform/files.h"
#include "host/command_line.h"
#include "host/input.h"
#include "host/stop.h"
#include "host/suggestion.h"

namespace host {
namespace {

using hedro34::String;

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

std::vector<std::string> options_of(CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::Option* option : app.get_options({})) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  }
  return names;
}

std::string see_help(CLI::App& app) {
  const auto chosen = app.get_subcommands();
  return "; see hedro34 " + (chosen.empty() ? "" : chosen.back()->get_name() + ' ') + "--help";
}

// The line about a word that stands where none is expected: what it may have been meant for, or where help is.
std::string unexpected(CLI::App& app, const std::string& word) {
  const auto chosen = app.get_subcommands();
  const auto line = [&](const char* what, const std::string& meant) {
    return what + word + (meant.empty() ? see_help(app) : "; did you mean " + meant + '?');
  };
  const bool is_option = word.size() > 1 && word.front() == '-';
  if (!chosen.empty()) {
    if (!is_option) return line("unexpected argument: ", {});
    const std::string name = word.substr(0, word.find('='));
    const std::string meant = closest(name, options_of(*chosen.back()));
    if (meant != name) return line("unknown option: ", meant);
    return "unexpected option: " + word + " is one of " + chosen.back()->get_name() + "; give it behind that word";
  }
  if (!is_option && hedro34::kind_of(hedro34::from_utf8(word)) == hedro34::FileKind::Regular) {
    return line("unknown command: ", "hedro34 show " + word);
  }
  std::vector<std::string> names = options_of(app);
  for (const CLI::App* command : app.get_subcommands({})) names.push_back(command->get_name());
  return line(is_option ? "unknown option: " : "unknown command: ", closest(word, names));
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

std::vector<Named> named(const char* name, const std::vector<String>& paths) {
  std::vector<Named> result;
  result.reserve(paths.size());
  for (const String& path : paths) result.emplace_back(name, &path);
  return result;
}

void check_distinct(const ShowCommand& command) {
  if (!command.import.messages) return check_distinct({}, named("FILE", command.files));
  if (is_standard_stream(*command.import.messages)) {
    throw Stop(ExitCode::WrongUsage, "--messages: what is shown goes to standard output; give the messages a file");
  }
  check_distinct({{"--messages", &*command.import.messages}}, named("FILE", command.files));
}

void check_distinct(const CompareCommand& command) { check_distinct({}, named("TEST", command.tests)); }

void check_distinct(const ReportCommand& command) {
  std::vector<Named> inputs = {{"DOCUMENT", &command.document}};
  if (command.form) inputs.emplace_back("--form", &*command.form);
  check_distinct({{"--out", &command.out}}, inputs);
}

std::vector<Named> outputs_of(const MergeCommand& command) {
  std::vector<Named> outputs = {{"--form-out", &command.form_out}, {"--document-out", &command.document_out}};
  if (command.report) outputs.emplace_back("--report", &*command.report);
  if (command.import.messages) outputs.emplace_back("--messages", &*command.import.messages);
  return outputs;
}

void check_distinct(const MergeCommand& command) {
  std::vector<Named> inputs = named("TEST", command.tests);
  inputs.insert(inputs.begin(), {"--form", &command.form});
  check_distinct(outputs_of(command), inputs);
}

void check_distinct(const FormCommand&) {}
void check_distinct(const Information&) {}

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

  CommandLine line;
  CLI::App& app = line.app();
  try {
    std::vector<std::string> arguments = prepared(words);
    std::reverse(arguments.begin(), arguments.end());
    app.parse(std::move(arguments));
  } catch (const CLI::CallForVersion& version) {
    return Information{std::string(version.what()) + '\n'};
  } catch (const CLI::CallForHelp&) {
    return Information{app.help()};
  } catch (const CLI::Error& error) {
    // A word that nobody expected explains more than what is missing because of it.
    for (const std::string& word : app.remaining(true)) {
      if (word != "--") throw Stop(ExitCode::WrongUsage, unexpected(app, word));
    }
    throw Stop(ExitCode::WrongUsage, error.what() + see_help(app));
  }
  return std::visit([](auto command) -> Command { return distinct(std::move(command)); }, line.command());
}

}  // namespace host
