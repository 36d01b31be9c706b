#include "hedro34/model/left_out.h"

#include "hedro34/model/clsHEDROTestQuestion.h"

namespace hedro34 {

LeftOut note_of(LeftOut::What what, const clsHEDROTestQuestion& question) {
  return {what, question.number_in_file, question.ID, question.QuestionType, {}};
}

void Leaving::add(std::int32_t position, const clsHEDROTestQuestion& question) {
  positions.push_back(position);
  notes.push_back(note_of(LeftOut::What::Removed, question));
}

bool is_supported(HEDROTestQuestionType type) noexcept {
  switch (type) {
    case HEDROTestQuestionTypeTrueFalse:
    case HEDROTestQuestionTypeYesNo:
    case HEDROTestQuestionTypeMultipleChoice:
    case HEDROTestQuestionTypeSubjective: return true;
    default: return false;
  }
}

StringView question_type_name(HEDROTestQuestionType type) noexcept {
  switch (type) {
    case HEDROTestQuestionTypeUnknown: return u"unknown type";
    case HEDROTestQuestionTypeTrueFalse: return u"true/false";
    case HEDROTestQuestionTypeYesNo: return u"yes/no";
    case HEDROTestQuestionTypeMultipleChoice: return u"multiple choice";
    case HEDROTestQuestionTypeModifiedTrueFalse: return u"modified true/false";
    case HEDROTestQuestionTypeNumericResponse: return u"numeric response";
    case HEDROTestQuestionTypeCompletion: return u"completion";
    case HEDROTestQuestionTypeMatching: return u"matching";
    case HEDROTestQuestionTypeShortAnswer: return u"short answer";
    case HEDROTestQuestionTypeProblem: return u"problem";
    case HEDROTestQuestionTypeEssay: return u"essay";
    case HEDROTestQuestionTypeCase: return u"case";
    case HEDROTestQuestionTypeSubjective: return u"subjective";
    case HEDROTestQuestionTypeOther: return u"other";
    case HEDROTestQuestionTypeBimodal: return u"bimodal";
  }
  return u"unknown type";
}

}  // namespace hedro34
