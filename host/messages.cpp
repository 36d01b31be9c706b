#include "host/messages.h"

#include <iostream>
#include <span>

#include "hedro34/base/variant.h"
#include "hedro34/json/json_text.h"
#include "host/terminal_text.h"

namespace host {
namespace {

using hedro34::JsonText;
using hedro34::String;
using hedro34::StringView;
using hedro34::Variant;

class ErrorObject final : public hedro34::Object {
 public:
  explicit ErrorObject(Messages& messages) : messages_(messages) {}

  Variant Call(StringView name, std::span<Variant> arguments) override {
    constexpr std::size_t expected = 13, number = 0, description = 2, location = 3;
    if (!hedro34::equal_ignoring_case(name, u"RaiseError")) return Object::Call(name, arguments);
    if (arguments.size() != expected) hedro34::fail(hedro34::FailureNumber::WrongArguments);
    messages_.count_failure();  // first, so that it counts whatever becomes of its text
    messages_.failure(hedro34::to_int32(arguments[number]), hedro34::to_text(arguments[description]),
                      hedro34::to_text(arguments[location]));
    return std::int16_t{0};
  }

 private:
  Messages& messages_;
};

}  // namespace

std::int32_t Messages::Show(StringView text, std::int32_t flags, StringView title) {
  if (title == u"Application Error") count_failure();  // one that the library could not report otherwise
  std::int32_t answer = hedro34::answer_ok;
  if (title == u"Partial Credit" && partial_credit_ != PartialCredit::Ask) {
    std::cerr << hedro34::box_as_lines(without_turns(text), without_turns(title)) << std::flush;
    answer = partial_credit_ == PartialCredit::Ok ? hedro34::answer_ok : hedro34::answer_cancel;
  } else {
    answer = TerminalMessageBox::Show(without_turns(text), flags, without_turns(title));
  }
  said_.push_back(String(title).append(u"\n").append(text));
  keep([&](JsonText& line) {
    line.key("kind");
    line.value("box");
    line.key("title");
    line.value(title);
    line.key("text");
    line.value(text);
    line.key("flags");
    line.value(flags);
    line.key("answer");
    line.value(answer);
  });
  return answer;
}

void Messages::failure(std::int32_t number, const String& description, const String& location) {
  said_.push_back(u"Error# " + hedro34::decimal(number) + u": " + description + u", Location: " + location);
  std::cerr << hedro34::to_utf8(without_turns(said_.back())) << '\n' << std::flush;
  keep([&](JsonText& line) {
    line.key("kind");
    line.value("failure");
    line.key("number");
    line.value(number);
    line.key("description");
    line.value(description);
    line.key("location");
    line.value(location);
  });
}

void Messages::note(const hedro34::LeftOut& lost, const String* file) {
  const bool removed = lost.what == hedro34::LeftOut::What::Removed;
  keep([&](JsonText& line) {
    line.key("kind");
    line.value("note");
    line.key("number");
    line.value(lost.number);
    line.key("id");
    line.value(lost.id);
    line.key("what");
    line.value(removed ? "removed" : "not carried");
    line.key("detail");
    line.value(removed ? hedro34::question_type_name(lost.type) : StringView(lost.part));
    if (file == nullptr) return;
    line.key("file");
    line.value(*file);
  });
}

hedro34::Ref<hedro34::Object> Messages::error_object() { return hedro34::make<ErrorObject>(*this); }

template <class Members>
void Messages::keep(Members members) {
  JsonText line(JsonText::Layout::Compact);
  line.begin_object();
  members(line);
  line.end();
  line.finish();
  lines_ += line.str();
}

}  // namespace host
