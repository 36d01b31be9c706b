// Deep copies of a test and of a question.
#include "hedro34/model/clsHEDROTest.h"

namespace hedro34 {

Ref<clsHEDROTest> clsHEDROTest::Copy() const {
  return trap<Ref<clsHEDROTest>>({u"clsHEDROTest", u"Copy"}, [&](auto& result) {
    const auto copy = make<clsHEDROTest>();
    copy->MultipleChoiceEvenScale = MultipleChoiceEvenScale->Copy();
    copy->MultipleChoiceOddScale = MultipleChoiceOddScale->Copy();
    copy->YesNoScale = YesNoScale->Copy();
    copy->TrueFalseScale = TrueFalseScale->Copy();
    copy->CreatedBy = CreatedBy;
    copy->Description = Description;
    copy->Notes = Notes;
    copy->TeacherID = TeacherID;
    copy->Title = Title;
    copy->UserDefined = true;
    copy->Version = Version;
    copy->Source = Source;
    copy->left_out_ = left_out_;
    for (std::int32_t i = 1; i <= Questions->Count(); ++i) copy->Questions->Add(Questions->Item(i)->Copy());
    for (std::int32_t i = 1; i <= Sequences->Count(); ++i) copy->Sequences->Add(Sequences->Item(i)->Copy(Questions));
    result = copy;
  });
}

Ref<clsHEDROTestQuestion> clsHEDROTestQuestion::Copy() const {
  return trap<Ref<clsHEDROTestQuestion>>({u"clsHEDROTestQuestion", u"Copy"}, [&](auto& result) {
    const auto copy = make<clsHEDROTestQuestion>();
    copy->Answers->AddDelimitedString(Answers->AsString(tab), tab);
    copy->Difficulty = Difficulty;
    copy->ID = ID;
    copy->Keywords = Keywords;
    copy->Miscellaneous = Miscellaneous;
    copy->Notes = Notes;
    copy->QuestionText = QuestionText;
    copy->QuestionType = QuestionType;
    copy->Reference = Reference;
    copy->LearningObjectives->AddDelimitedString(LearningObjectives->AsString(tab), tab);
    copy->Topic = Topic;
    copy->CorrectPoints = CorrectPoints;
    copy->IncorrectPoints = IncorrectPoints;
    copy->NoResponsePoints = NoResponsePoints;
    copy->SubjectivePoints = SubjectivePoints;
    copy->CorrectAnd = CorrectAnd;
    copy->CorrectAnswers = CorrectAnswers->Copy();
    copy->number_in_file = number_in_file;
    result = copy;
  });
}

}  // namespace hedro34
