#include "host/json.h"
#include "host/show.h"

namespace host {
namespace {

using namespace hedro34;

class TestJson {
 public:
  explicit TestJson(const clsHEDROTest& test) : test_(test) {}

  std::string write() {
    json_.open('{');
    text(u"title", test_.Title);
    text(u"version", test_.Version);
    text(u"id", test_.ID);
    text(u"description", test_.Description);
    text(u"notes", test_.Notes);
    text(u"createdBy", test_.CreatedBy);
    text(u"teacherID", test_.TeacherID);
    number(u"source", test_.Source);
    flag(u"userDefined", test_.UserDefined);
    number(u"importObjectives", test_.ImportObjectives);
    text(u"stateAbbreviation", test_.StateAbbreviation);
    number(u"numObjectives", test_.NumObjectives());
    strings(u"multipleChoiceOddScale", *test_.MultipleChoiceOddScale);
    strings(u"multipleChoiceEvenScale", *test_.MultipleChoiceEvenScale);
    strings(u"trueFalseScale", *test_.TrueFalseScale);
    strings(u"yesNoScale", *test_.YesNoScale);
    json_.name(u"questions");
    json_.open('[');
    for (std::int32_t i = 1; i <= test_.Questions->Count(); ++i) question(i);
    json_.close();
    json_.name(u"sequences");
    json_.open('[');
    for (std::int32_t i = 1; i <= test_.Sequences->Count(); ++i) sequence(*test_.Sequences->Item(i));
    json_.close();
    json_.close();
    return json_.str() + '\n';
  }

 private:
  void text(StringView name, StringView value) {
    json_.name(name);
    json_.text(value);
  }
  void flag(StringView name, bool value) {
    json_.name(name);
    json_.flag(value);
  }
  template <class Number>
  void number(StringView name, Number value) {
    json_.name(name);
    json_.number(value);
  }
  void number(StringView name, HEDROTestQuestionType value) { number(name, static_cast<std::int32_t>(value)); }
  void number(StringView name, HEDROTestSourceType value) { number(name, static_cast<std::int32_t>(value)); }
  void number(StringView name, HEDROTestImportObjectives value) { number(name, static_cast<std::int32_t>(value)); }

  void strings(StringView name, const clsHEDROTestStrings& values) {
    json_.name(name);
    json_.open('[', JsonText::Layout::Plain);
    for (std::int32_t i = 1; i <= values.Count(); ++i) json_.text(values.Item(i));
    json_.close();
  }

  void question(std::int32_t position) {
    const auto question = test_.Questions->Item(position);
    json_.open('{');
    text(u"id", question->ID);
    number(u"questionType", question->QuestionType);
    text(u"questionText", question->QuestionText);
    strings(u"answers", *question->Answers);
    json_.name(u"correctAnswers");
    json_.open('[', JsonText::Layout::Plain);
    const std::int32_t correct = question->CorrectAnswers->Count();
    for (std::int32_t i = 1; i <= correct; ++i) {
      json_.number(std::int32_t{question->CorrectAnswers->Item(static_cast<std::int16_t>(i))});
    }
    json_.close();
    flag(u"correctAnd", question->CorrectAnd);
    flag(u"multiplesPermitted", question->MultiplesPermitted());
    number(u"correctPoints", question->CorrectPoints);
    number(u"incorrectPoints", question->IncorrectPoints);
    number(u"noResponsePoints", question->NoResponsePoints);
    number(u"subjectivePoints", question->SubjectivePoints);
    text(u"difficulty", question->Difficulty);
    text(u"reference", question->Reference);
    text(u"topic", question->Topic);
    text(u"keywords", question->Keywords);
    text(u"miscellaneous", question->Miscellaneous);
    text(u"notes", question->Notes);
    strings(u"learningObjectives", *question->LearningObjectives);
    strings(u"scale", *test_.QuestionScale(position));
    text(u"key", test_.CorrectAnswersAsString(position));
    text(u"numericKey", test_.CorrectAnswersAsString(position, u",", true, true));
    json_.close();
  }

  void sequence(const clsHEDROTestSequence& sequence) {
    json_.open('{');
    text(u"answer", sequence.Answer);
    json_.name(u"order");
    json_.open('[', JsonText::Layout::Plain);
    const Array<std::int32_t> order = sequence.Order->AsArray();
    for (const std::int32_t place : order.elements()) json_.number(place);
    json_.close();
    json_.name(u"places");
    json_.open('{', JsonText::Layout::Plain);
    for (std::int32_t i = 1; i <= test_.Questions->Count(); ++i) {
      const auto question = test_.Questions->Item(i);
      const String& id = question->ID.str();
      if (sequence.Order->Exists(id)) number(id, sequence.Order->Item(id));
    }
    json_.close();
    json_.close();
  }

  const clsHEDROTest& test_;
  JsonText json_{JsonText::Layout::Indented};
};

}  // namespace

std::string as_json(const clsHEDROTest& test) { return TestJson(test).write(); }

}  // namespace host
