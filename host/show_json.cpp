#include "hedro34/json/json_text.h"
#include "host/show.h"

namespace host {
namespace {

using namespace hedro34;

class TestJson {
 public:
  explicit TestJson(const clsHEDROTest& test) : test_(test) {}

  std::string write() {
    json_.begin_object();
    text("title", test_.Title);
    text("version", test_.Version);
    text("id", test_.ID);
    text("description", test_.Description);
    text("notes", test_.Notes);
    text("createdBy", test_.CreatedBy);
    text("teacherID", test_.TeacherID);
    number("source", test_.Source);
    flag("userDefined", test_.UserDefined);
    number("importObjectives", test_.ImportObjectives);
    text("stateAbbreviation", test_.StateAbbreviation);
    number("numObjectives", test_.NumObjectives());
    strings("multipleChoiceOddScale", *test_.MultipleChoiceOddScale);
    strings("multipleChoiceEvenScale", *test_.MultipleChoiceEvenScale);
    strings("trueFalseScale", *test_.TrueFalseScale);
    strings("yesNoScale", *test_.YesNoScale);
    json_.key("questions");
    json_.begin_array();
    for (std::int32_t i = 1; i <= test_.Questions->Count(); ++i) question(i);
    json_.end();
    json_.key("sequences");
    json_.begin_array();
    for (std::int32_t i = 1; i <= test_.Sequences->Count(); ++i) sequence(*test_.Sequences->Item(i));
    json_.end();
    json_.end();
    json_.finish();
    return std::move(json_).str();
  }

 private:
  void text(std::string_view name, StringView value) {
    json_.key(name);
    json_.value(value);
  }
  void flag(std::string_view name, bool value) {
    json_.key(name);
    json_.value(value);
  }
  template <class Number>
  void number(std::string_view name, Number value) {
    json_.key(name);
    json_.value(value);
  }
  void number(std::string_view name, HEDROTestQuestionType value) { number(name, static_cast<std::int32_t>(value)); }
  void number(std::string_view name, HEDROTestSourceType value) { number(name, static_cast<std::int32_t>(value)); }
  void number(std::string_view name, HEDROTestImportObjectives value) {
    number(name, static_cast<std::int32_t>(value));
  }

  void strings(std::string_view name, const clsHEDROTestStrings& values) {
    json_.key(name);
    json_.begin_array(JsonText::Layout::Spaced);
    for (std::int32_t i = 1; i <= values.Count(); ++i) json_.value(values.Item(i));
    json_.end();
  }

  void question(std::int32_t position) {
    const auto question = test_.Questions->Item(position);
    json_.begin_object();
    text("id", question->ID);
    number("questionType", question->QuestionType);
    text("questionText", question->QuestionText);
    strings("answers", *question->Answers);
    json_.key("correctAnswers");
    json_.begin_array(JsonText::Layout::Spaced);
    const std::int32_t correct = question->CorrectAnswers->Count();
    for (std::int32_t i = 1; i <= correct; ++i) {
      json_.value(std::int32_t{question->CorrectAnswers->Item(static_cast<std::int16_t>(i))});
    }
    json_.end();
    flag("correctAnd", question->CorrectAnd);
    flag("multiplesPermitted", question->MultiplesPermitted());
    number("correctPoints", question->CorrectPoints);
    number("incorrectPoints", question->IncorrectPoints);
    number("noResponsePoints", question->NoResponsePoints);
    number("subjectivePoints", question->SubjectivePoints);
    text("difficulty", question->Difficulty);
    text("reference", question->Reference);
    text("topic", question->Topic);
    text("keywords", question->Keywords);
    text("miscellaneous", question->Miscellaneous);
    text("notes", question->Notes);
    strings("learningObjectives", *question->LearningObjectives);
    strings("scale", *test_.QuestionScale(position));
    text("key", test_.CorrectAnswersAsString(position));
    text("numericKey", test_.CorrectAnswersAsString(position, u",", true, true));
    json_.end();
  }

  void sequence(const clsHEDROTestSequence& sequence) {
    json_.begin_object();
    text("answer", sequence.Answer);
    json_.key("order");
    json_.begin_array(JsonText::Layout::Spaced);
    const Array<std::int32_t> order = sequence.Order->AsArray();
    for (const std::int32_t place : order.elements()) json_.value(place);
    json_.end();
    json_.key("places");
    json_.begin_object(JsonText::Layout::Spaced);
    for (std::int32_t i = 1; i <= test_.Questions->Count(); ++i) {
      const auto question = test_.Questions->Item(i);
      const String& id = question->ID.str();
      if (!sequence.Order->Exists(id)) continue;
      json_.key(id);
      json_.value(sequence.Order->Item(id));
    }
    json_.end();
    json_.end();
  }

  const clsHEDROTest& test_;
  JsonText json_{JsonText::Layout::Indented};
};

}  // namespace

std::string as_json(const clsHEDROTest& test) { return TestJson(test).write(); }

}  // namespace host
