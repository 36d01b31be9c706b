// How the program ends. A step that cannot go on throws a `Stop` with the exit code and the line that says what went wrong,
// where and, where there is one, the way out.
#pragma once

#include <array>
#include <exception>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace host {

enum class ExitCode { Done = 0, AnsweredFalse = 1, WrongUsage = 2, BadInput = 3, BadOutput = 4, FailuresReported = 5 };

// What each of them means, for `--help` and the manual page. The program also ends with `AnsweredFalse` when it had to stop, as
// for want of memory.
inline constexpr std::array<std::pair<ExitCode, std::string_view>, 6> exit_codes = {{
    {ExitCode::Done, "done"},
    {ExitCode::AnsweredFalse, "the library answered False to an operation, or tests that were compared differ"},
    {ExitCode::WrongUsage, "the command line cannot be carried out as it stands"},
    {ExitCode::BadInput, "an input cannot be read, is malformed or is not what it should be"},
    {ExitCode::BadOutput, "an output cannot be written"},
    {ExitCode::FailuresReported, "a failure was reported on the way: merge writes nothing then, unless told to go on"},
}};

// What exit code 5 means for what was read and merged.
inline constexpr std::string_view failures_reported =
    "the failures above were reported on the way: a question may be missing, and the keys behind it have moved up";

class Stop : public std::exception {
 public:
  Stop(ExitCode exit_code, std::string text) : code(exit_code), line(std::move(text)) {}
  const char* what() const noexcept override { return line.c_str(); }

  ExitCode code;
  std::string line;
};

// UTF-8 as one line of a terminal: control characters, ends of lines and characters that turn the direction of a line become
// visible escapes such as "\n" and "\u202e".
std::string one_line(std::string_view text);

// Writes "hedro34: " and the parts as one line to standard error; needs no memory.
void complain(std::initializer_list<std::string_view> parts) noexcept;
inline void complain(std::string_view line) noexcept { complain({line}); }

// Writes to standard output, to the last byte. A reader that has gone away has seen enough: that ends it quietly. Throws a
// `Stop` when the system does not take all of it for another reason.
void print(std::string_view text);

// The same for an output file that goes to standard output, which is not there without a reader.
void print_output(std::string_view what, std::string_view text);

// Whether the bytes are UTF-8.
bool is_utf8(std::string_view bytes);

}  // namespace host
