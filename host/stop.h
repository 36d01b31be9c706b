// How the program ends. A step that cannot go on throws a `Stop` with the exit code and the line that says what went wrong,
// where and, where there is one, the way out.
#pragma once

#include <exception>
#include <string>
#include <string_view>
#include <utility>

namespace host {

enum class ExitCode {
  Done = 0,
  Refused = 1,           // the library answered False to an operation
  WrongUsage = 2,        // the command line cannot be carried out as it stands
  BadInput = 3,          // an input file cannot be read, is malformed or is not what it should be
  BadOutput = 4,         // an output cannot be written
  DoneWithFailures = 5,  // done, and the outputs are written, but a failure was reported on the way
};

class Stop : public std::exception {
 public:
  Stop(ExitCode exit_code, std::string text) : code(exit_code), line(std::move(text)) {}
  const char* what() const noexcept override { return line.c_str(); }

  ExitCode code;
  std::string line;
};

// UTF-8 as one line of a terminal: control characters become visible escapes such as "\n".
std::string one_line(std::string_view text);

// Writes "hedro34: " and the line to standard error.
void report(std::string_view line);

// Writes to standard output, to the last byte. Throws a `Stop` when the system does not take all of it.
void print(std::string_view text);

// Whether the bytes are UTF-8.
bool is_utf8(std::string_view bytes);

}  // namespace host
