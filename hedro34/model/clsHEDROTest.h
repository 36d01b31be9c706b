// One test: its identity, its questions, the scales from which the labels of the answers come, and the sequences that say how
// its versions order the questions. The imports fill it, a merge reads it, and the host may read and write it at any time.
// A position in `Questions` is the question's number in the test.
//
// Operations report a failure once and return their result as it stood: False, 0, an empty text, reference or array.
#pragma once

#include <optional>
#include <vector>

#include "hedro34/model/clsHEDROTestSequences.h"
#include "hedro34/model/left_out.h"

namespace hedro34 {

class IXMLDOMNode;

class HEDRO34_API clsHEDROTest final : public Object {
 public:
  clsHEDROTest();
  ~clsHEDROTest() override;

  Ref<clsHEDROTestQuestions> Questions;
  Ref<clsHEDROTestSequences> Sequences;             // one for each version of the test
  Ref<clsHEDROTestStrings> MultipleChoiceOddScale;  // labels for multiple-choice questions at odd positions: A, B, C, D
  Ref<clsHEDROTestStrings> MultipleChoiceEvenScale;  // the same for even positions
  Ref<clsHEDROTestStrings> TrueFalseScale;           // T, F
  Ref<clsHEDROTestStrings> YesNoScale;               // Y, N
  Text<255> Title;
  Text<50> Version;  // the test's version label
  Text<> Notes;
  Text<255> CreatedBy;
  Text<255> TeacherID;
  HEDROTestSourceType Source = HEDROTestSourceTypeExamView;

  // The type that a code names: a text such as "mc", in any case, or a number of the other code scheme. -1 for an unknown
  // code; 0 after a failure, for a value that is no code at all.
  HEDROTestQuestionType QuestionType(const Variant& vType) const;

  // Empties the sequences, the questions (with the objectives and answers of each) and the text fields; `Source` becomes
  // unknown. The four scales, `ImportObjectives` and `StateAbbreviation` stay.
  void Clear();

  // Stores the error object for all failures on this thread; an empty reference takes it away. Gives whether there is one.
  bool SetError(const Ref<Object>& oErr);

  // Fills the test from a data document. True when there is a question in it. A file that cannot be read leaves the test
  // as it was; `last_file_error()` says why. The title is the file's name between the last "\" and the last "."; a path without
  // "\" gives none, and a last "." before the last "\" is a failure.
  bool LoadKTD(const String& sKTDFile);

  // Fills the test from an ExamView XML file. True when there is a question in it. False otherwise, silently; why a file was
  // not taken is in `last_file_error()`. `bOddDistractorsOnly`: even questions take the letters of odd ones.
  // When questions allow partial credit and `bVerbose` is True, the user is asked once; Cancel empties the test, sets
  // `bUserCancelled` where one is given (it is never set to False) and gives False.
  // The multiple-choice scales start from what they are: a test that is loaded a second time keeps the first file's, and
  // they are empty after a file that could not be loaded.
  bool LoadXML(const String& sExamViewXMLFile, bool bOddDistractorsOnly = false, bool* bUserCancelled = nullptr,
               bool bVerbose = true);

  std::int32_t NumObjectives() const;  // the sum of the questions' learning objectives

  Text<50> ID;
  HEDROTestImportObjectives ImportObjectives = HEDROTestImportObjectivesNone;  // set before `LoadXML`
  Text<2> StateAbbreviation;                                                   // set before `LoadXML`
  bool UserDefined = false;
  Text<255> Description;

  // A new test that shares no object with this one. `ID`, `StateAbbreviation` and `ImportObjectives` are not copied,
  // `UserDefined` is True, lists of strings pass through tab-joined text, and every sequence follows the order of the
  // questions. A question that cannot be copied is reported and left out. An empty reference after a failure.
  Ref<clsHEDROTest> Copy() const;

  // The labels of a question's answers: a new collection. For multiple choice it has as many as the question has answers,
  // empty ones where the test's scale lacks them, and comes from the odd or the even scale by the question's position, or by
  // `vIsOddOverride`. For other types than multiple choice, true/false and yes/no it is empty. An empty reference when there
  // is no such question.
  Ref<clsHEDROTestStrings> QuestionScale(const Variant& vQuestionIndex, const Variant& vIsOddOverride = missing) const;

  // Records a further version of this test: a sequence with its `Version` as label and its questions in its order. Refused
  // with a box, and nothing changed: a label that is there already, another number of questions, a question that this test
  // does not have or has with other correct answers, and a question at a place where this test has one of another type.
  bool AddSequence(const Ref<clsHEDROTest>& oTestVersion);

  // The correct answers in the order of the set, as labels or, with `bNumeric`, as numbers: "(A,C)", "B". Two or more are
  // put in parentheses when `bEnclosedByParens`.
  String CorrectAnswersAsString(const Variant& vQuestionIndex, StringView sDelimiter = u",",
                                bool bEnclosedByParens = true, bool bNumeric = false) const;

  // The same as an array from 0, as numbers or, with `bAsString`, as labels; without bounds when there is no answer.
  Array<String> CorrectAnswersAsArray(const Variant& vQuestionIndex, bool bAsString = false) const;

  // What was removed or not carried since the test was last cleared, in the order in which it happened: at a load by question,
  // then at each `RemoveInvalid` by question. Not to be seen by name.
  const std::vector<LeftOut>& left_out() const noexcept { return left_out_; }
  void add_left_out(LeftOut lost) { left_out_.push_back(std::move(lost)); }

  // Removes these questions from the test's questions and takes the notes on those that go, in rising order. Unlike the
  // operations it lets failures leave; when there is no memory for the notes, no question is removed. Not to be seen by name.
  void remove_noted(clsHEDROTestQuestions& questions, Leaving& leaving);

 private:
  bool AddXMLQuestion(const Ref<IXMLDOMNode>& oNode, bool& bPartialCredit, std::int32_t number_in_file);
  bool PopulateMultipleChoiceScales(const Ref<IXMLDOMNode>& oNode, bool bOddDistractorsOnly);
  bool TrimScales();

  // Where the labels of a question stand: in one of the test's scales, as a copy of it would have them, or nowhere. Multiple
  // choice has a `count` of them, empty ones where the scale lacks them.
  struct Labels {
    Ref<clsHEDROTestStrings> scale;
    std::optional<std::int32_t> count;

    std::vector<StringView> texts() const;  // they hold until the scale changes
  };
  Labels labels_of(const clsHEDROTestQuestion& question, const Variant& vQuestionIndex,
                   const Variant& vIsOddOverride) const;

  // Calls `use` with each correct answer in turn, as label or as number. Lets failures leave, but those of the way to the scale,
  // which are reported as that of `QuestionScale`.
  template <class Use>
  void each_correct_answer(const Variant& vQuestionIndex, bool numeric, Use use) const;

  std::vector<LeftOut> left_out_;
};

}  // namespace hedro34
