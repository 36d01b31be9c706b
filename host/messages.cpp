#include "host/messages.h"

#include <iostream>
#include <span>

#include "hedro34/base/variant.h"
#include "host/json.h"

namespace host {
namespace {

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
    messages_.failure(hedro34::to_int32(arguments[number]), hedro34::to_text(arguments[description]),
                      hedro34::to_text(arguments[location]));
    return std::int16_t{0};
  }

 private:
  Messages& messages_;
};

}  // namespace

std::int32_t Messages::Show(StringView text, std::int32_t flags, StringView title) {
  std::int32_t answer = hedro34::answer_ok;
  if (title == u"Partial Credit" && partial_credit_ != PartialCredit::Ask) {
    std::cerr << hedro34::box_as_lines(text, title) << std::flush;
    answer = partial_credit_ == PartialCredit::Ok ? hedro34::answer_ok : hedro34::answer_cancel;
  } else {
    answer = TerminalMessageBox::Show(text, flags, title);
  }
  JsonText line(JsonText::Layout::Compact);
  line.open('{');
  line.name(u"kind");
  line.text(u"box");
  line.name(u"title");
  line.text(title);
  line.name(u"text");
  line.text(text);
  line.name(u"flags");
  line.number(flags);
  line.name(u"answer");
  line.number(answer);
  line.close();
  keep(line.str());
  return answer;
}

void Messages::failure(std::int32_t number, const String& description, const String& location) {
  ++failures_;
  std::cerr << hedro34::to_utf8(u"Error# " + hedro34::decimal(number) + u": " + description + u", Location: " +
                                location + u"\n")
            << std::flush;
  JsonText line(JsonText::Layout::Compact);
  line.open('{');
  line.name(u"kind");
  line.text(u"failure");
  line.name(u"number");
  line.number(number);
  line.name(u"description");
  line.text(description);
  line.name(u"location");
  line.text(location);
  line.close();
  keep(line.str());
}

hedro34::Ref<hedro34::Object> Messages::error_object() { return hedro34::make<ErrorObject>(*this); }

void Messages::keep(const std::string& line) {
  lines_ += line;
  lines_ += '\n';
  ++count_;
}

}  // namespace host
