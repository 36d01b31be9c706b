// The enumerations of the test model, each 32 bits wide. A field of such a type takes any 32-bit value.
#pragma once

#include <cstdint>

namespace hedro34 {

// Where a test came from.
enum HEDROTestSourceType : std::int32_t {
  HEDROTestSourceTypeUnknown = -1,
  HEDROTestSourceTypeExamView = 0,
  HEDROTestSourceTypeKTD = 1,
  HEDROTestSourceTypeNGT = 2,  // nothing inside the library sets it
};

// Which objectives an ExamView import takes over; flags that may be combined.
enum HEDROTestImportObjectives : std::int32_t {
  HEDROTestImportObjectivesNone = 0,
  HEDROTestImportObjectivesLearning = 1,
  HEDROTestImportObjectivesLocal = 2,
  HEDROTestImportObjectivesState = 4,
  HEDROTestImportObjectivesNational = 8,
};

// The type of a question. 0 is no question type.
enum HEDROTestQuestionType : std::int32_t {
  HEDROTestQuestionTypeUnknown = -1,
  HEDROTestQuestionTypeTrueFalse = 1,
  HEDROTestQuestionTypeYesNo = 2,
  HEDROTestQuestionTypeMultipleChoice = 3,
  HEDROTestQuestionTypeModifiedTrueFalse = 4,
  HEDROTestQuestionTypeNumericResponse = 5,
  HEDROTestQuestionTypeCompletion = 6,
  HEDROTestQuestionTypeMatching = 7,
  HEDROTestQuestionTypeShortAnswer = 8,
  HEDROTestQuestionTypeProblem = 9,
  HEDROTestQuestionTypeEssay = 10,
  HEDROTestQuestionTypeCase = 11,
  HEDROTestQuestionTypeSubjective = 12,
  HEDROTestQuestionTypeOther = 13,
  HEDROTestQuestionTypeBimodal = 14,
};

}  // namespace hedro34
