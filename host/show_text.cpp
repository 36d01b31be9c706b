#include <algorithm>
#include <string_view>

#include "host/show.h"
#include "host/terminal_text.h"
#include "host/text_lines.h"

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
    return std::move(out_).str();
  }

 private:
  void heading() {
    out_.heading(test_.Title.empty() ? StringView(u"Test without a title") : StringView(test_.Title));
    out_.row("Version", test_.Version);
    out_.row("ID", test_.ID);
    out_.row("Description", test_.Description);
    out_.row("Notes", test_.Notes);
    out_.row("Source", from_utf8(source_name(test_.Source)));
    out_.row("Questions", decimal(test_.Questions->Count()));
    out_.row("Objectives", decimal(test_.NumObjectives()));
  }

  void scales() {
    out_.empty_line();
    out_.line("Scales");
    scale("multiple choice, odd questions", *test_.MultipleChoiceOddScale);
    scale("multiple choice, even questions", *test_.MultipleChoiceEvenScale);
    scale("true/false", *test_.TrueFalseScale);
    scale("yes/no", *test_.YesNoScale);
  }

  void scale(std::string_view name, const clsHEDROTestStrings& labels) {
    String all;
    for (std::int32_t i = 1; i <= labels.Count(); ++i) all.append(i > 1 ? u" " : u"").append(label(labels, i));
    out_.lines("  " + padded(std::string(name), 33), all.empty() ? u"none" : all);
  }

  // A label of a scale, "-" for one that is empty or not there.
  static String label(const clsHEDROTestStrings& labels, std::int32_t position) {
    String text = labels.Item(position);
    return text.empty() ? u"-" : text;
  }

  void question(std::int32_t position) {
    const auto question = test_.Questions->Item(position);
    out_.empty_line();
    out_.lines(padded(std::to_string(position) + ". ", indent.size()),
               u"ID " + question->ID.str() + u", " + String(question_type_name(question->QuestionType)));
    out_.lines(std::string(indent), question->QuestionText);
    choices(position, *question->Answers);
    const String key = test_.CorrectAnswersAsString(position);
    const bool has_key = question->CorrectAnswers->Count() > 0;
    out_.lines(std::string(indent) + "Key: ", !has_key ? u"none" : key.empty() ? u"-" : key);
    if (question->LearningObjectives->Count() > 0) {
      out_.lines(std::string(indent) + "Objectives: ", question->LearningObjectives->AsString(u"; "));
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
      out_.lines(std::string(indent) + "  " + padded(names[static_cast<std::size_t>(i - 1)], column + 2),
                 answers.Item(i));
    }
  }

  const clsHEDROTest& test_;
  TextLines out_;
};

}  // namespace

std::string as_text(const clsHEDROTest& test) { return TestText(test).write(); }

}  // namespace host
