// The commands and options of the program, declared in one place: parsing, `--help`, the manual page and the completions all
// come from this list.
//
//   CommandLine line;
//   line.app().parse(words);             // throws a CLI::Error
//   Command command = line.command();
#pragma once

#include <CLI/CLI.hpp>
#include <memory>

#include "host/arguments.h"

namespace host {

class CommandLine {
 public:
  CommandLine();
  ~CommandLine();

  CLI::App& app() noexcept { return app_; }

  // The command that was parsed, with its values. Throws a `Stop` with `WrongUsage` for a value that is none.
  Command command() const;

 private:
  struct Words;

  CLI::App app_;
  std::unique_ptr<Words> words_;
};

}  // namespace host
