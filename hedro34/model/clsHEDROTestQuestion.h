// One question of a test: a record that the imports fill, a merge reads, and the host may read and write at any time. Texts
// with a limit keep the first so many 16-bit units and drop the rest. The lists are references that can be replaced; those of
// a new question are its own. They may be shared: whoever reads a field gets the object, not a copy.
#pragma once

#include "hedro34/model/clsHEDROTestCorrect.h"
#include "hedro34/model/clsHEDROTestStrings.h"
#include "hedro34/model/enumerations.h"
#include "hedro34/model/question_id.h"

namespace hedro34 {

class HEDRO34_API clsHEDROTestQuestion final : public Object {
 public:
  clsHEDROTestQuestion();
  ~clsHEDROTestQuestion() override;

  Ref<clsHEDROTestStrings> LearningObjectives;  // the texts of the objectives that the import took over
  Ref<clsHEDROTestStrings> Answers;             // the choices; position n is answer number n
  Ref<clsHEDROTestCorrect> CorrectAnswers;      // the numbers of the correct answers
  float CorrectPoints = 1;                      // points for a correct response
  float IncorrectPoints = 0;
  float NoResponsePoints = 0;
  float SubjectivePoints = 0;
  bool CorrectAnd = true;  // all correct answers must be selected

  // True when there is more than one correct answer and `CorrectAnd` is True. False without a `CorrectAnswers` object.
  bool MultiplesPermitted() const;

  Text<> QuestionText;
  Text<255> Difficulty;
  Text<> Reference;
  Text<255> Topic;
  Text<255> Keywords;
  Text<255> Miscellaneous;
  Text<> Notes;
  QuestionId ID;  // at most 50 units; the key in a test's questions and in every order
  HEDROTestQuestionType QuestionType = HEDROTestQuestionTypeUnknown;

  // The question's number in the file that it was imported from, from 1: that of its `question` element, or of its field in a
  // data document; 0 for a question that no import made. It stays when others are removed. Not to be seen by name.
  std::int32_t number_in_file = 0;

  // A new question that shares no object with this one; answers and objectives pass through tab-joined text. An empty
  // reference after a failure.
  Ref<clsHEDROTestQuestion> Copy() const;
};

}  // namespace hedro34
