#include "host/show.h"

#include "hedro34/platform/file_error.h"
#include "hedro34/platform/files.h"
#include "host/input.h"
#include "host/left_out.h"
#include "host/load.h"
#include "host/stop.h"

namespace host {
namespace {

using namespace hedro34;
using As = ShowCommand::As;

// The form template that a file in JSON is. Nothing when it is none; throws a `Stop` when it says that it is one and is in
// error.
Ref<FormTemplate> form_in(Input& input) {
  constexpr std::string_view its_format = "\"hedro34-form\"";
  const auto bytes = read_file(input.path());
  if (!bytes) input.cannot_read();
  auto form = make<FormTemplate>();
  if (form->read(*bytes, input.path())) return form;
  if (last_file_error().pointer == "/format" || bytes->find(its_format) == std::string::npos) return {};
  input.call("form");
  input.cannot_read();
}

// JSON on one line: without what stands between its tokens.
std::string compact(std::string_view json) {
  std::string line;
  bool quoted = false;
  for (std::size_t i = 0; i < json.size(); ++i) {
    const char c = json[i];
    if (c == '"') quoted = !quoted;
    if (quoted || (c != ' ' && c != '\n')) line += c;
    if (c == '\\') line += json[++i];
  }
  return line + '\n';
}

std::string shown(FormTemplate& form, As as, Input& input) {
  if (as == As::Text) return as_text(form);
  if (as == As::Csv) {
    throw Stop(ExitCode::BadInput, "cannot show a form template as a table: " + to_utf8(input_name(input.given())) +
                                       ": it has no questions; give a test or a data document");
  }
  auto json = form.to_json(input.path());
  if (!json) input.cannot_read();
  return std::move(*json);
}

std::string shown(const String& file, const ShowCommand& command, Messages& messages) {
  Input input("test", file);
  const bool is_json = begins_as_json(input);
  if (is_json) {
    if (const auto form = form_in(input)) return shown(*form, command.as, input);
  }
  const auto test = load_test(input, command.import, messages);
  keep_notes(messages, *test, 0, command.files.size() > 1 ? &file : nullptr);
  if (command.as == As::Json) return as_json(*test);
  if (command.as == As::Csv) return as_csv(*test);
  std::string text = as_text(*test);
  if (is_json) {
    const auto document = make<DataDocument>();
    if (!document->Load(input.path())) input.cannot_read();
    text += versions_as_text(*document);
  }
  return text + left_out_sections(*test);
}

}  // namespace

void show(const ShowCommand& command, Messages& messages) {
  if (command.files.size() == 1) return print(shown(command.files.front(), command, messages));
  std::string all;
  for (const String& file : command.files) {
    const std::string one = shown(file, command, messages);
    if (command.as == As::Json) {
      all += compact(one);
    } else {
      if (!all.empty()) all += '\n';
      all += "==> " + one_line(to_utf8(input_name(file))) + " <==\n" + one;
    }
  }
  print(all);
}

}  // namespace host
