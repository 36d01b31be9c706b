#include <array>

#include "hedro34/json/json_text.h"
#include "host/show.h"

namespace host {
namespace {

using namespace hedro34;

constexpr std::array<std::string_view, 16> header = {
    "number",
    "id",
    "type",
    "text",
    "choices",
    "key",
    "numericKey",
    "correctPoints",
    "incorrectPoints",
    "noResponsePoints",
    "subjectivePoints",
    "difficulty",
    "reference",
    "topic",
    "keywords",
    "objectives",
};

class TestTable {
 public:
  explicit TestTable(const clsHEDROTest& test) : test_(test) {
    for (std::int32_t i = 1; i <= test_.Sequences->Count(); ++i) versions_.push_back(test_.Sequences->Item(i));
  }

  std::string write() {
    for (const std::string_view name : header) field(name);
    for (const auto& version : versions_) field("place " + to_utf8(version->Answer));
    end_line();
    for (std::int32_t i = 1; i <= test_.Questions->Count(); ++i) question(i);
    return std::move(out_);
  }

 private:
  void question(std::int32_t position) {
    const auto question = test_.Questions->Item(position);
    field(std::to_string(position));
    field(question->ID);
    field(question_type_name(question->QuestionType));
    field(question->QuestionText);
    list(*question->Answers);
    field(test_.CorrectAnswersAsString(position));
    field(test_.CorrectAnswersAsString(position, u",", true, true));
    number(question->CorrectPoints);
    number(question->IncorrectPoints);
    number(question->NoResponsePoints);
    number(question->SubjectivePoints);
    field(question->Difficulty);
    field(question->Reference);
    field(question->Topic);
    field(question->Keywords);
    list(*question->LearningObjectives);
    const String& id = question->ID.str();
    for (const auto& version : versions_) {
      field(version->Order->Exists(id) ? std::to_string(version->Order->Item(id)) : std::string());
    }
    end_line();
  }

  void list(const clsHEDROTestStrings& texts) {
    String all;
    for (std::int32_t i = 1; i <= texts.Count(); ++i) {
      if (i > 1) all += u'\n';
      all += texts.Item(i);
    }
    field(all);
  }

  // As the JSON object of the test has it.
  void number(float value) {
    JsonText json(JsonText::Layout::Compact);
    json.value(value);
    json.finish();
    field(std::string_view(json.str()).substr(0, json.str().find('\n')));
  }

  void field(StringView text) { field(to_utf8(text)); }

  // In quotes where it has to be, and where a reader might drop blanks at its ends.
  void field(std::string_view text) {
    if (!at_start_) out_ += ',';
    at_start_ = false;
    const auto is_blank = [](char c) { return c == ' ' || c == '\t'; };
    if (text.find_first_of(",\"\r\n") == std::string_view::npos &&
        (text.empty() || (!is_blank(text.front()) && !is_blank(text.back())))) {
      out_ += text;
      return;
    }
    out_ += '"';
    for (const char c : text) out_.append(c == '"' ? 2 : 1, c);
    out_ += '"';
  }

  void end_line() {
    out_ += "\r\n";
    at_start_ = true;
  }

  const clsHEDROTest& test_;
  std::vector<Ref<clsHEDROTestSequence>> versions_;
  std::string out_;
  bool at_start_ = true;
};

}  // namespace

std::string as_csv(const clsHEDROTest& test) { return TestTable(test).write(); }

}  // namespace host
