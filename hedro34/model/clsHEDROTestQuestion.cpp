#include "hedro34/model/clsHEDROTestQuestion.h"

namespace hedro34 {
namespace {

constexpr Location here(const char16_t* operation) { return {u"clsHEDROTestQuestion", operation}; }

}  // namespace

clsHEDROTestQuestion::clsHEDROTestQuestion() {
  trap(here(u"Class_Initialize"), [&] {
    std::tie(LearningObjectives, Answers, CorrectAnswers) =
        make_together<clsHEDROTestStrings, clsHEDROTestStrings, clsHEDROTestCorrect>();
  });
}

clsHEDROTestQuestion::~clsHEDROTestQuestion() {
  trap(here(u"Class_Terminate"), [&] {
    LearningObjectives = nullptr;
    Answers = nullptr;
    CorrectAnswers = nullptr;
  });
}

bool clsHEDROTestQuestion::MultiplesPermitted() const {
  return CorrectAnswers && CorrectAnswers->Count() > 1 && CorrectAnd;
}

}  // namespace hedro34
