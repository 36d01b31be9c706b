#include "tests/test_lines.h"

namespace hedro34::testing::test_lines {

Json json_of(const clsHEDROTestStrings& strings) {
  Json result = Json::array();
  for (std::int32_t i = 1; i <= strings.Count(); ++i) result.push_back(to_utf8(strings.Item(i)));
  return result;
}

Json json_of(const clsHEDROTestCorrect& numbers) {
  Json result = Json::array();
  for (std::int16_t i = 1; i <= numbers.Count(); ++i) result.push_back(numbers.Item(i));
  return result;
}

std::string line_of(const clsHEDROTestQuestion& question) {
  const Json all = {{"id", to_utf8(question.ID)},
                    {"type", static_cast<std::int32_t>(question.QuestionType)},
                    {"text", to_utf8(question.QuestionText)},
                    {"answers", json_of(*question.Answers)},
                    {"correct", json_of(*question.CorrectAnswers)},
                    {"and", question.CorrectAnd},
                    {"points", {question.CorrectPoints, question.IncorrectPoints, question.NoResponsePoints}},
                    {"subjectivePoints", question.SubjectivePoints},
                    {"difficulty", to_utf8(question.Difficulty)},
                    {"reference", to_utf8(question.Reference)},
                    {"topic", to_utf8(question.Topic)},
                    {"keywords", to_utf8(question.Keywords)},
                    {"miscellaneous", to_utf8(question.Miscellaneous)},
                    {"notes", to_utf8(question.Notes)},
                    {"objectives", json_of(*question.LearningObjectives)}};
  static const Json of_a_new_one =
      Json::parse(R"({"id": "", "type": -1, "text": "", "answers": [], "correct": [], "and": true,
      "points": [1, 0, 0], "subjectivePoints": 0, "difficulty": "", "reference": "", "topic": "", "keywords": "",
      "miscellaneous": "", "notes": "", "objectives": []})");
  return changed(all, of_a_new_one);
}

std::string line_of(const clsHEDROTestSequence& sequence, const clsHEDROTestQuestions& questions) {
  std::vector<std::string> ids(static_cast<std::size_t>(sequence.Order->Count()), "?");
  for (std::int32_t i = 1; i <= questions.Count(); ++i) {
    const Variant id = questions.Item(i)->ID.str();
    if (sequence.Order->Exists(id))
      ids.at(static_cast<std::size_t>(sequence.Order->Item(id)) - 1) = to_utf8(*id.text());
  }
  std::string line = "sequence " + to_utf8(sequence.Answer) + ":";
  for (const std::string& id : ids) line += ' ' + id;
  return line;
}

std::string scales_of(const clsHEDROTest& test) {
  return Json::array({json_of(*test.MultipleChoiceOddScale), json_of(*test.MultipleChoiceEvenScale),
                      json_of(*test.TrueFalseScale), json_of(*test.YesNoScale)})
      .dump();
}

Lines lines_of(const clsHEDROTest& test) {
  const Json all = {{"title", to_utf8(test.Title)},
                    {"version", to_utf8(test.Version)},
                    {"id", to_utf8(test.ID)},
                    {"description", to_utf8(test.Description)},
                    {"notes", to_utf8(test.Notes)},
                    {"createdBy", to_utf8(test.CreatedBy)},
                    {"teacherID", to_utf8(test.TeacherID)},
                    {"source", static_cast<std::int32_t>(test.Source)},
                    {"userDefined", test.UserDefined},
                    {"importObjectives", static_cast<std::int32_t>(test.ImportObjectives)},
                    {"state", to_utf8(test.StateAbbreviation)}};
  static const Json of_a_new_one = Json::parse(R"({"title": "", "version": "", "id": "", "description": "", "notes": "",
      "createdBy": "", "teacherID": "", "source": 0, "userDefined": false, "importObjectives": 0, "state": ""})");
  Lines lines = {changed(all, of_a_new_one), scales_of(test)};
  for (std::int32_t i = 1; i <= test.Questions->Count(); ++i) lines.push_back(line_of(*test.Questions->Item(i)));
  for (std::int32_t i = 1; i <= test.Sequences->Count(); ++i) {
    lines.push_back(line_of(*test.Sequences->Item(i), *test.Questions));
  }
  return lines;
}

std::string left_out_of(const clsHEDROTest& test) {
  std::string text;
  for (const LeftOut& lost : test.left_out()) {
    const bool removed = lost.what == LeftOut::What::Removed;
    text += (text.empty() ? "" : "; ") + std::to_string(lost.number) + ' ' + to_utf8(lost.id) + ' ' +
            to_utf8(question_type_name(lost.type)) + (removed ? " removed" : ": ") + to_utf8(lost.part);
  }
  return text;
}

void add_sequence(clsHEDROTest& test, StringView label, const std::vector<const char16_t*>& ids) {
  auto sequence = make<clsHEDROTestSequence>();
  sequence->Answer = label;
  for (const char16_t* id : ids) sequence->Order->Add(id);
  test.Sequences->Add(sequence);
}

}  // namespace hedro34::testing::test_lines
