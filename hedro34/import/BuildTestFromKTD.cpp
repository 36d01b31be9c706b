#include "hedro34/import/BuildTestFromKTD.h"

#include <algorithm>
#include <unordered_map>

#include "hedro34/base/text_hash.h"
#include "hedro34/documents/data_document.h"

namespace hedro34 {
namespace {

// The position of the first answer with exactly this text, 0 when there is none. Many answers are looked up, few are walked.
class AnswerFinder {
 public:
  explicit AnswerFinder(const clsHEDROTestStrings& answers) : answers_(answers.AsArray()) {
    const auto& texts = answers_.elements();
    if (texts.size() <= few) return;
    for (std::size_t i = 0; i < texts.size(); ++i) positions_.emplace(texts[i], static_cast<std::int32_t>(i + 1));
  }
  std::int32_t find(StringView text) const {
    const auto& texts = answers_.elements();
    if (texts.size() <= few) {
      const auto found = std::find(texts.begin(), texts.end(), text);
      return found == texts.end() ? 0 : static_cast<std::int32_t>(found - texts.begin() + 1);
    }
    const auto found = positions_.find(text);
    return found == positions_.end() ? 0 : found->second;
  }

 private:
  static constexpr std::size_t few = 16;
  Array<String> answers_;
  std::unordered_map<StringView, std::int32_t, TextHash> positions_;  // into `answers_`
};

void read_answer_key(clsHEDROTestQuestion& question, WENKtdQuestion& source) {
  const Ref<WENKtdStrings> keys = source.AnswerKey();
  if (keys->Count() <= 0) return;
  const String key = keys->Item(1);
  StringView rest = key;
  if (rest.size() > 1 && rest.front() == u'(' && rest.back() == u')') rest = rest.substr(1, rest.size() - 2);
  if (rest.empty()) return;
  const AnswerFinder answers(*question.Answers);
  for (bool more = true; more;) {
    const std::size_t end = rest.find(u',');
    const std::int32_t position = answers.find(rest.substr(0, end));
    if (position > 0) question.CorrectAnswers->Add(to_int16(position));
    more = end != StringView::npos;
    if (more) rest.remove_prefix(end + 1);
  }
}

HEDROTestQuestionType type_of(const clsHEDROTestStrings& answers) {
  if (answers.Count() == 0) return HEDROTestQuestionTypeUnknown;
  if (answers.Count() != 2) return HEDROTestQuestionTypeMultipleChoice;
  const auto start_with = [&](StringView first, StringView second) {
    return equal_ignoring_case(answers.Item(1).substr(0, 1), first) &&
           equal_ignoring_case(answers.Item(2).substr(0, 1), second);
  };
  if (start_with(u"Y", u"N")) return HEDROTestQuestionTypeYesNo;
  if (start_with(u"T", u"F")) return HEDROTestQuestionTypeTrueFalse;
  return HEDROTestQuestionTypeMultipleChoice;
}

// The flags of one question. Those of our own document are read where they stand, without an object for each.
class Flags {
 public:
  explicit Flags(Ref<WENKtdObjectiveFlags> flags)
      : flags_(std::move(flags)), own_(dynamic_cast<DataObjectiveFlags*>(flags_.get())) {}

  bool is_set(std::int32_t position) const {
    if (own_ != nullptr) {
      const auto offset = static_cast<std::size_t>(position - 1);
      return offset < own_->all().size() && own_->all()[offset];
    }
    const Variant flag = flags_->Item(position)->Value();
    return !flag.is<Null>() && to_boolean(flag);
  }

 private:
  Ref<WENKtdObjectiveFlags> flags_;
  const DataObjectiveFlags* own_;
};

void read_objectives(clsHEDROTestQuestion& question, WENKtdQuestion& source, WENKtdObjectives& objectives) {
  const std::int32_t count = objectives.Count();
  if (count < 2) return;  // position 1 is the default objective
  const Flags flags(source.ObjectiveFlags());
  for (std::int32_t j = 2; j <= count; ++j) {
    if (!flags.is_set(j)) continue;
    const String name = objectives.Item(j)->Name();
    const Variant text = trim(name);
    if (!question.LearningObjectives->Exists(text)) question.LearningObjectives->Add(trim(name), text);
  }
}

// Adds the question, which stands at the position; gives whether it is a subjective one.
bool add_question(clsHEDROTest& test, WENKtdDocument& document, const Ref<WENKtdQuestion>& source,
                  std::int32_t position) {
  const bool subjective = source->Subjective();
  if (!source->Graded() && !subjective) return false;
  const auto question = make<clsHEDROTestQuestion>();
  question->number_in_file = position;
  const Ref<WENKtdStrings> labels = source->ChoiceLabels();
  if (labels->Count() > 0) question->Answers->AddArray(labels->AsArray());
  question->CorrectAnd = source->CorrectAnd();
  question->CorrectPoints = to_float32(source->CorrectPoints());
  question->Difficulty = source->Difficulty();
  question->ID = decimal(position);
  question->IncorrectPoints = to_float32(source->IncorrectPoints());
  question->Keywords = source->Keywords();
  question->Miscellaneous = source->Miscellaneous();
  question->NoResponsePoints = to_float32(source->NoResponsePoints());
  question->Notes = source->Notes();
  question->QuestionText = source->QuestionText();
  if (subjective) {
    question->QuestionType = HEDROTestQuestionTypeSubjective;
    question->SubjectivePoints = to_float32(source->SubjectivePoints());
  } else {
    read_answer_key(*question, *source);
    question->QuestionType = type_of(*question->Answers);
  }
  question->Reference = source->Reference();
  read_objectives(*question, *source, *document.Objectives());
  question->Topic = source->Topic();
  if (!question->Answers) fail(FailureNumber::ObjectNotSet);  // there was no memory for its lists, which all else needs
  test.Questions->Add(question);
  return subjective;
}

// Removes the subjective questions that have a question of another type behind them.
void screen_subjective_questions(clsHEDROTest& test) {
  bool at_the_end = true;
  Leaving leaving;
  for (std::int32_t i = test.Questions->Count(); i >= 1; --i) {
    const clsHEDROTestQuestion& question = test.Questions->at(i);
    if (question.QuestionType != HEDROTestQuestionTypeSubjective) {
      at_the_end = false;
    } else if (!at_the_end) {
      leaving.add(i, question);
    }
  }
  test.remove_noted(*test.Questions, leaving);
}

void read_sequences(clsHEDROTest& test, WENKtdVersions& versions) {
  if (versions.VersionMode() != 2) {
    test.Sequences->AddDefault(test.Questions, u"A");
    return;
  }
  const Ref<WENKtdOrders> orders = versions.Orders();
  const std::int32_t count = orders->Count();
  for (std::int32_t v = 1; v <= count; ++v) {
    const auto sequence = make<clsHEDROTestSequence>();
    sequence->Answer = versions.VersionAnswers()->Item(v);
    const Ref<WENKtdOrder> order = orders->Item(v);
    const std::int32_t entries = order->Count();
    for (std::int32_t p = 1; p <= entries; ++p) {
      const String id = decimal(order->Item(p));
      if (test.Questions->Exists(id)) sequence->Order->Add(id);
    }
    test.Sequences->Add(sequence);
  }
}

// Fills the scale from the first multiple-choice question at `first`, `first` + 2 and so on; leaves it when there is none.
void fill_scale(const Ref<clsHEDROTestStrings>& scale, const clsHEDROTestQuestions& questions, std::int32_t first) {
  for (std::int32_t i = first; i <= questions.Count(); i += 2) {
    const Ref<clsHEDROTestQuestion> question = questions.Item(i);
    if (question->QuestionType != HEDROTestQuestionTypeMultipleChoice) continue;
    scale->RemoveAll();
    scale->AddArray(question->Answers->AsArray(1));
    return;
  }
}

}  // namespace

bool BuildTestFromKTD(clsHEDROTest* oTest, WENKtdDocument* oKTD, DataQuestions* spent) {
  return trap<bool>({u"basPublic", u"BuildTestFromKTD"}, [&](auto& result) {
    if (oKTD == nullptr || oTest == nullptr) return;
    oTest->UserDefined = true;
    oTest->Description = oKTD->Description();
    oTest->Notes = oKTD->Notes();
    oTest->Source = HEDROTestSourceTypeKTD;
    bool has_subjective = false;
    std::vector<Ref<DataQuestion>> own;
    if (spent != nullptr) own = spent->take_all();
    const std::int32_t count = spent != nullptr ? static_cast<std::int32_t>(own.size()) : oKTD->Questions()->Count();
    for (std::int32_t n = 1; n <= count; ++n) {
      const Ref<WENKtdQuestion> source =
          spent != nullptr ? std::move(own[static_cast<std::size_t>(n - 1)]) : oKTD->Questions()->Item(n);
      has_subjective |= add_question(*oTest, *oKTD, source, n);
    }
    if (has_subjective) screen_subjective_questions(*oTest);
    read_sequences(*oTest, *oKTD->Versions());
    fill_scale(oTest->MultipleChoiceOddScale, *oTest->Questions, 1);
    fill_scale(oTest->MultipleChoiceEvenScale, *oTest->Questions, 2);
    result = true;
  });
}

}  // namespace hedro34
