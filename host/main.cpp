#include <new>

#include "hedro34/base/failure.h"
#include "hedro34/base/text.h"
#include "hedro34/platform/platform.h"
#include "hedro34/runtime/basError.h"
#include "hedro34/runtime/modStartup.h"
#include "host/arguments.h"
#include "host/compare.h"
#include "host/form.h"
#include "host/merge.h"
#include "host/messages.h"
#include "host/outputs.h"
#include "host/report.h"
#include "host/show.h"
#include "host/stop.h"
#include "host/system.h"

namespace host {
namespace {

// Runs the steps; what ends them early becomes a line on standard error and the exit code. When there is no memory even for
// the line of a failure, that is the line.
template <class Steps>
ExitCode finished(Steps steps) noexcept {
  try {
    try {
      return steps();
    } catch (const Stop& stop) {
      complain(stop.line);
      return stop.code;
    } catch (const hedro34::Failure& failure) {
      complain("stopped by failure " + std::to_string(failure.number) + ": " + hedro34::to_utf8(failure.description));
    }
  } catch (const std::bad_alloc&) {
    complain("stopped: out of memory");
  } catch (const std::exception& exception) {
    complain({"stopped: ", exception.what()});
  }
  return ExitCode::AnsweredFalse;
}

template <class TestCommand>
ExitCode run(const TestCommand& command, void (*steps)(const TestCommand&, Messages&)) {
  Messages messages(command.import.partial_credit);
  hedro34::platform().message_box = &messages;
  ExitCode code = finished([&] {
    hedro34::set_error_object(messages.error_object());
    steps(command, messages);
    if (messages.failures() == 0) return ExitCode::Done;
    complain({"done, but ", failures_reported});
    return ExitCode::FailuresReported;
  });
  if (!command.import.messages) return code;
  const ExitCode written = finished([&] {
    Outputs outputs;
    outputs.add("messages", messages.lines(), *command.import.messages);
    outputs.commit();
    return ExitCode::Done;
  });
  const bool done = code == ExitCode::Done || code == ExitCode::FailuresReported;
  return done && written != ExitCode::Done ? written : code;
}

ExitCode run(const ShowCommand& command) { return run(command, &show); }

ExitCode run(const CompareCommand& command) { return run(command, &compare); }

ExitCode run(const MergeCommand& command) { return run(command, &merge); }

ExitCode run(const ReportCommand& command) {
  report(command);
  return ExitCode::Done;
}

ExitCode run(const FormCommand& command) {
  form(command);
  return ExitCode::Done;
}

ExitCode run(const Information& information) {
  print(information.text);
  return ExitCode::Done;
}

}  // namespace
}  // namespace host

int main(int argc, char** argv) {
  host::keep_memory();
  hedro34::Main();
  const host::Streams streams;
  const auto code = host::finished([&] {
    return std::visit([](const auto& command) { return host::run(command); }, host::parse(host::words_of(argc, argv)));
  });
  return static_cast<int>(code);
}
