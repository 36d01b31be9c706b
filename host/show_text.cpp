#include <algorithm>
#include <string_view>

#include "host/show.h"
#include "host/terminal_text.h"

namespace host {
namespace {

using namespace hedro34;

constexpr std::string_view indent = "      ";  // under the text of a question

std::string_view source_name(HEDROTestSourceType source) {
  switch (source) {
    case HEDROTestSourceTypeExamView: return "ExamView file";
    case HEDROTestSourceTypeKTD: return "KTD document";
    default: return "unknown";
  }
}

class TestText {
 public:
  explicit TestText(const clsHEDROTest& test) : test_(test) {}

  std::string write() {
    heading();
    scales();
    for (std::int32_t i = 1; i <= test_.Questions->Count(); ++i) question(i);
    return std::move(out_);
  }

 private:
  // A line under the start of the text, with the text's further lines aligned; no blanks at the end of a line.
  void lines(std::string start, StringView text) {
    const std::size_t column = columns(start);
    std::string whole = std::move(start) + plain(text);
    for (std::size_t from = 0; from <= whole.size();) {
      const std::size_t end = std::min(whole.find('\n', from), whole.size());
      std::string line = whole.substr(from, end - from);
      if (from > 0) line.insert(0, column, ' ');
      out_.append(line, 0, line.find_last_not_of(' ') + 1);
      out_ += '\n';
      from = end + 1;
    }
  }

  void row(std::string_view name, StringView value) {
    if (!value.empty()) lines(padded(std::string(name), 13), value);
  }

  void heading() {
    const std::string title = test_.Title.empty() ? "Test without a title" : plain(test_.Title);
    lines({}, from_utf8(title));
    out_.append(columns(title.substr(title.rfind('\n') + 1)), '=');
    out_ += "\n\n";
    row("Version", test_.Version);
    row("ID", test_.ID);
    row("Description", test_.Description);
    row("Notes", test_.Notes);
    row("Source", from_utf8(source_name(test_.Source)));
    row("Questions", decimal(test_.Questions->Count()));
    row("Objectives", decimal(test_.NumObjectives()));
  }

  void scales() {
    out_ += "\nScales\n";
    scale("multiple choice, odd questions", *test_.MultipleChoiceOddScale);
    scale("multiple choice, even questions", *test_.MultipleChoiceEvenScale);
    scale("true/false", *test_.TrueFalseScale);
    scale("yes/no", *test_.YesNoScale);
  }

  void scale(std::string_view name, const clsHEDROTestStrings& labels) {
    String all;
    for (std::int32_t i = 1; i <= labels.Count(); ++i) all.append(i > 1 ? u" " : u"").append(label(labels, i));
    lines("  " + padded(std::string(name), 33), all.empty() ? u"none" : all);
  }

  // A label of a scale, "-" for one that is empty or not there.
  static String label(const clsHEDROTestStrings& labels, std::int32_t position) {
    String text = labels.Item(position);
    return text.empty() ? u"-" : text;
  }

  void question(std::int32_t position) {
    const auto question = test_.Questions->Item(position);
    out_ += '\n';
    lines(padded(std::to_string(position) + ". ", indent.size()),
          u"ID " + question->ID.str() + u", " + String(question_type_name(question->QuestionType)));
    lines(std::string(indent), question->QuestionText);
    choices(position, *question->Answers);
    const String key = test_.CorrectAnswersAsString(position);
    const bool has_key = question->CorrectAnswers->Count() > 0;
    lines(std::string(indent) + "Key: ", !has_key ? u"none" : key.empty() ? u"-" : key);
    if (question->LearningObjectives->Count() > 0) {
      lines(std::string(indent) + "Objectives: ", question->LearningObjectives->AsString(u"; "));
    }
  }

  void choices(std::int32_t position, const clsHEDROTestStrings& answers) {
    const auto labels = test_.QuestionScale(position);
    std::vector<std::string> names;
    std::size_t column = 0;
    for (std::int32_t i = 1; i <= answers.Count(); ++i) {
      names.push_back(plain_line(label(*labels, i)));
      column = std::max(column, columns(names.back()));
    }
    for (std::int32_t i = 1; i <= answers.Count(); ++i) {
      lines(std::string(indent) + "  " + padded(names[static_cast<std::size_t>(i - 1)], column + 2), answers.Item(i));
    }
  }

  const clsHEDROTest& test_;
  std::string out_;
};

}  // namespace

std::string as_text(const clsHEDROTest& test) { return TestText(test).write(); }

}  // namespace host
