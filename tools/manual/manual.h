// The manual page of the program and its completions for three shells, written from the program's own list of commands and
// options: what `--help` says and what they say is one text.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "host/command_line.h"

namespace host::manual {

struct Option {
  std::string name;        // "--json"
  std::string short_name;  // "-h"; empty where there is none
  std::string value_name;  // "FILE"; empty for a flag
  std::string help;
  bool required = false;
  std::vector<std::string> excludes;  // names of options that cannot stand beside it
  Values values;
};

struct Operand {
  std::string name;  // "FILE"
  int at_least = 1;
  bool repeats = false;
  std::string help;
  Values values;
};

struct Command {
  std::string name;
  std::string help;
  std::vector<Option> options;
  std::vector<Operand> operands;
};

struct Program {
  std::string help;
  std::vector<Option> options;
  std::vector<Command> commands;
};

Program program();

void print_man(std::ostream& out, const Program& program);
void print_bash(std::ostream& out, const Program& program);
void print_zsh(std::ostream& out, const Program& program);
void print_fish(std::ostream& out, const Program& program);

// The text between single quotes of a shell, each quote in it as `quote` says.
std::string quoted(const std::string& text, const char* quote);

// The words with something between them.
template <class Words>
std::string joined(const Words& words, const char* between) {
  std::string result;
  for (const auto& word : words) result.append(result.empty() ? "" : between).append(word);
  return result;
}

}  // namespace host::manual
