#include "hedro34/model/clsHEDROTest.h"

#include <array>
#include <iterator>

namespace hedro34 {
namespace {

constexpr Location here(const char16_t* operation) { return {u"clsHEDROTest", operation}; }

struct Code {
  const char16_t* text;
  std::int32_t number;
  HEDROTestQuestionType type;
};

constexpr std::array codes = {
    Code{u"tf", 0, HEDROTestQuestionTypeTrueFalse},
    Code{u"yn", 5, HEDROTestQuestionTypeYesNo},
    Code{u"mc", 2, HEDROTestQuestionTypeMultipleChoice},
    Code{u"mr", 3, HEDROTestQuestionTypeMultipleChoice},
    Code{u"mtf", 1, HEDROTestQuestionTypeModifiedTrueFalse},
    Code{u"nr", 6, HEDROTestQuestionTypeNumericResponse},
    Code{u"co", 7, HEDROTestQuestionTypeCompletion},
    Code{u"ma", 8, HEDROTestQuestionTypeMatching},
    Code{u"sa", 9, HEDROTestQuestionTypeShortAnswer},
    Code{u"pr", 10, HEDROTestQuestionTypeProblem},
    Code{u"es", 11, HEDROTestQuestionTypeEssay},
    Code{u"ca", 12, HEDROTestQuestionTypeCase},
    Code{u"ot", 13, HEDROTestQuestionTypeOther},
    Code{u"bi", 4, HEDROTestQuestionTypeBimodal},
};

}  // namespace

clsHEDROTest::clsHEDROTest() {
  trap(here(u"Class_Initialize"), [&] {
    Questions = make<clsHEDROTestQuestions>();
    Sequences = make<clsHEDROTestSequences>();
    MultipleChoiceOddScale = make<clsHEDROTestStrings>();
    MultipleChoiceEvenScale = make<clsHEDROTestStrings>();
    TrueFalseScale = make<clsHEDROTestStrings>();
    YesNoScale = make<clsHEDROTestStrings>();
    MultipleChoiceOddScale->AddDelimitedString(u"A\tB\tC\tD", tab);
    MultipleChoiceEvenScale->AddDelimitedString(u"A\tB\tC\tD", tab);
    TrueFalseScale->AddDelimitedString(u"T\tF", tab);
    YesNoScale->AddDelimitedString(u"Y\tN", tab);
  });
}

clsHEDROTest::~clsHEDROTest() {
  trap(here(u"Class_Terminate"), [&] {
    Questions = nullptr;
    Sequences = nullptr;
    MultipleChoiceOddScale = nullptr;
    MultipleChoiceEvenScale = nullptr;
    TrueFalseScale = nullptr;
    YesNoScale = nullptr;
  });
}

HEDROTestQuestionType clsHEDROTest::QuestionType(const Variant& vType) const {
  return trap<HEDROTestQuestionType>(here(u"QuestionType"), [&](auto& result) {
    const String* text = vType.text();
    const double number = text == nullptr ? to_double(vType) : 0;
    for (const Code& code : codes) {
      if (text != nullptr ? lower_equals(*text, code.text) : code.number == number) {
        result = code.type;
        return;
      }
    }
    result = HEDROTestQuestionTypeUnknown;
  });
}

void clsHEDROTest::Clear() {
  trap(here(u"Clear"), [&] {
    Sequences->RemoveAll();
    Questions->RemoveAll();
    left_out_.clear();
    Title.clear();
    Version.clear();
    ID.clear();
    UserDefined = false;
    Description.clear();
    TeacherID.clear();
    CreatedBy.clear();
    Notes.clear();
    Source = HEDROTestSourceTypeUnknown;
  });
}

void clsHEDROTest::remove_noted(clsHEDROTestQuestions& questions, Leaving& leaving) {
  left_out_.insert(left_out_.end(), std::make_move_iterator(leaving.notes.rbegin()),
                   std::make_move_iterator(leaving.notes.rend()));
  auto note = left_out_.end();
  for (const std::int32_t position : leaving.positions) {
    --note;
    if (!questions.put_aside(position)) note = left_out_.erase(note);
  }
}

bool clsHEDROTest::SetError(const Ref<Object>& oErr) {
  return trap<bool>(here(u"SetError"), [&](auto& result) { result = set_error_object(oErr); });
}

std::int32_t clsHEDROTest::NumObjectives() const {
  return trap<std::int32_t>(here(u"NumObjectives"), [&](auto& result) {
    std::int32_t sum = 0;
    for (std::int32_t i = 1; i <= Questions->Count(); ++i) sum += Questions->Item(i)->LearningObjectives->Count();
    result = sum;
  });
}

}  // namespace hedro34
