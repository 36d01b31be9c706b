// The commands and options of the program, declared in one place: parsing, `--help`, the manual page and the completions all
// come from this list.
//
//   CommandLine line;
//   line.app().parse(words);             // throws a CLI::Error
//   Command command = line.command();
#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/arguments.h"

namespace host {

// What `-` is where a file is asked for.
inline constexpr std::string_view standard_streams = "A file may be -, standard input or standard output.";

// What can stand as the value of an option, or as a name behind the options, as far as a shell can complete it.
struct Values {
  std::vector<std::string_view> names;
  bool is_list = false;                   // of names, with commas between them
  std::vector<std::string_view> endings;  // of files that are looked for there; "" is any
};

class CommandLine {
 public:
  CommandLine();
  ~CommandLine();

  CLI::App& app() noexcept { return app_; }
  Values values(const CLI::Option& option) const;  // nothing in it for a flag and for what only the user knows

  // The command that was parsed, with its values. Throws a `Stop` with `WrongUsage` for a value that is none.
  Command command() const;

 private:
  struct Words;

  CLI::App app_;
  std::unordered_map<const CLI::Option*, Values> values_;
  std::unique_ptr<Words> words_;
};

}  // namespace host
