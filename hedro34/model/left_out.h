// What a test lost on its way from a file to a sheet: questions that were removed, and content of questions that their texts
// cannot carry. The imports and `RemoveInvalid` note it, a question that a failure loses as one that was removed, and
// `clsHEDROTest::left_out()` has it, so that a program can say it before the sheets go out. It is seen from C++ only; callers
// by name see nothing of it.
#pragma once

#include <cstdint>
#include <vector>

#include "hedro34/base/text.h"
#include "hedro34/model/enumerations.h"

namespace hedro34 {

class clsHEDROTestQuestion;

struct LeftOut {
  enum class What {
    Removed,     // the whole question
    NotCarried,  // a part of it: `part` says which
  };

  What what = What::Removed;
  std::int32_t number = 0;  // of the question in its file, from 1; 0 when it came from no file
  String id;                // of the question
  HEDROTestQuestionType type = HEDROTestQuestionTypeUnknown;  // of the question

  // "equation", "picture", "element \"table\"", "choice 2 after 50 characters", "topic after 255 characters", and with their
  // number when a question has several: "3 equations", "2 elements \"table\"", "2 objectives after 50 characters". Empty when
  // the question was removed.
  String part;
};

// A note on a question as it is now, without a part.
LeftOut note_of(LeftOut::What what, const clsHEDROTestQuestion& question);

// The questions that are to go, from the last position down, and a note on each.
struct Leaving {
  std::vector<std::int32_t> positions;
  std::vector<LeftOut> notes;

  void add(std::int32_t position, const clsHEDROTestQuestion& question);
};

// Whether a merge takes questions of a type; it removes the others.
HEDRO34_API bool is_supported(HEDROTestQuestionType type) noexcept;

// What a person calls a type: "multiple choice", "true/false", "essay"; "unknown type" for a number that is none.
HEDRO34_API StringView question_type_name(HEDROTestQuestionType type) noexcept;

}  // namespace hedro34
