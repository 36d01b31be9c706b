// Reading of one `question` element: attributes, text, choices, answer and the metadata of `info`.
#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>

#include "hedro34/import/NodeText.h"
#include "hedro34/import/leading_number.h"
#include "hedro34/model/clsHEDROTest.h"
#include "hedro34/runtime/basError.h"

namespace hedro34 {
namespace {

enum class Part { Text, Choices, Answer, DisplayMode, Info, Other };
struct PartRow {
  StringView name;
  Part part;
};
constexpr Vocabulary parts = {Place::Question, std::array{
                                                   PartRow{u"text", Part::Text},
                                                   PartRow{u"choices", Part::Choices},
                                                   PartRow{u"answer", Part::Answer},
                                                   PartRow{u"bi-display-mode", Part::DisplayMode},
                                                   PartRow{u"info", Part::Info},
                                                   PartRow{{}, Part::Other},
                                               }};

enum class Info {
  Difficulty,
  Keywords,
  Miscellaneous,
  Notes,
  Reference,
  Topic,
  Points,
  Objectives,
  StateObjectives,
  Other
};
struct InfoRow {
  StringView name;
  Info info;
  HEDROTestImportObjectives objectives = HEDROTestImportObjectivesNone;  // the choice of the user that they need
};
constexpr Vocabulary infos = {Place::Info,
                              std::array{
                                  InfoRow{u"difficulty", Info::Difficulty},
                                  InfoRow{u"keywords", Info::Keywords},
                                  InfoRow{u"miscellaneous", Info::Miscellaneous},
                                  InfoRow{u"notes", Info::Notes},
                                  InfoRow{u"reference", Info::Reference},
                                  InfoRow{u"topic", Info::Topic},
                                  InfoRow{u"points", Info::Points},
                                  InfoRow{u"text-objective", Info::Objectives, HEDROTestImportObjectivesLearning},
                                  InfoRow{u"local-standard", Info::Objectives, HEDROTestImportObjectivesLocal},
                                  InfoRow{u"state-objective", Info::StateObjectives, HEDROTestImportObjectivesState},
                                  InfoRow{u"national-standard", Info::Objectives, HEDROTestImportObjectivesNational},
                                  InfoRow{{}, Info::Other},
                              }};

template <class Visit>
void each_part(StringView text, char16_t delimiter, Visit visit) {
  while (!text.empty()) {
    const std::size_t end = text.find(delimiter);
    visit(text.substr(0, end));
    if (end == StringView::npos) return;
    text.remove_prefix(end + 1);
    if (text.empty()) visit(text);
  }
}

// T or F, Y or N: the very first character, in either case, decides between answers 1 and 2; any other gives no answer.
void read_either(clsHEDROTestQuestion& question, StringView text, char16_t first, char16_t second) {
  const char16_t letter = text.empty() ? u'\0' : upper(text.front());
  if (letter == first) question.CorrectAnswers->Add(1);
  if (letter == second) question.CorrectAnswers->Add(2);
}

void read_letters(clsHEDROTestQuestion& question, StringView text) {
  each_part(text, u',', [&](StringView item) {
    item = trim(item);
    if (item.empty()) return;
    question.CorrectAnswers->Add(static_cast<std::int16_t>(upper(item.front()) - 64));  // A is 1
  });
}

// By the type that is known when the element comes: one that `bi-display-mode` names later does not read it again.
template <class Node>
void read_answer(clsHEDROTestQuestion& question, const Node& node) {
  const String text = node.text();
  switch (question.QuestionType) {
    case HEDROTestQuestionTypeTrueFalse: return read_either(question, text, u'T', u'F');
    case HEDROTestQuestionTypeYesNo: return read_either(question, text, u'Y', u'N');
    default: return read_letters(question, text);
  }
}

template <class Node>
void read_points(clsHEDROTestQuestion& question, const Node& node, bool& partial_credit) {
  question.CorrectAnd = true;
  const double points = leading_number(node.text());
  if (std::isinf(points)) fail(FailureNumber::Overflow);
  question.CorrectPoints = to_float32(points);
  const auto method = node.attributes().named(u"scoring-method");
  if (method && equal_ignoring_case(method->value(), u"RightLessWrong")) partial_credit = true;
}

template <class Node>
void read_objectives(clsHEDROTestQuestion& question, const Node& node, NotCarried& not_carried) {
  const String text = node.text();
  const char16_t delimiter = text.find(u'|') == String::npos ? u',' : u'|';
  each_part(text, delimiter, [&](StringView item) {
    item = trim(item);
    const Variant key = item;
    if (question.LearningObjectives->Exists(key)) return;
    const bool added = question.LearningObjectives->Add(item, key);
    if (added && item.size() > clsHEDROTestStrings::added_limit) not_carried.cut_objective();
  });
}

// A list that names its states counts for those only; one without attributes counts for every state.
template <class Node>
void read_state_objectives(clsHEDROTestQuestion& question, const Node& node, StringView state,
                           NotCarried& not_carried) {
  const auto attributes = node.attributes();
  const std::int32_t count = attributes.count();
  if (count == 0) return read_objectives(question, node, not_carried);
  for (std::int32_t i = 0; i < count; ++i) {
    const auto found = attributes.item(i);
    if (equal_ignoring_case(found.name(), u"state") && equal_ignoring_case(found.value(), state)) {
      read_objectives(question, node, not_carried);
    }
  }
}

template <class Node>
void read_info(const clsHEDROTest& test, clsHEDROTestQuestion& question, const Node& info, bool& partial_credit,
               NotCarried& not_carried) {
  info.children().each([&](const Node& child) {
    const InfoRow& row = child.meaning(infos, child.name());
    const bool imported = (test.ImportObjectives & row.objectives) != 0;
    const auto set = [&](auto& field) {
      String text = child.text();
      if (text.size() > field.limit) not_carried.cut(row.name, field.limit);
      field = std::move(text);
    };
    switch (row.info) {
      case Info::Difficulty: return set(question.Difficulty);
      case Info::Keywords: return set(question.Keywords);
      case Info::Miscellaneous: return set(question.Miscellaneous);
      case Info::Notes: return set(question.Notes);
      case Info::Reference: return set(question.Reference);
      case Info::Topic: return set(question.Topic);
      case Info::Points: return read_points(question, child, partial_credit);
      case Info::Objectives:
        if (imported) read_objectives(question, child, not_carried);
        return;
      case Info::StateObjectives:
        if (imported) read_state_objectives(question, child, test.StateAbbreviation, not_carried);
        return;
      case Info::Other: return;
    }
  });
}

template <class Node>
void read_question(const clsHEDROTest& test, clsHEDROTestQuestion& question, const Node& node, bool& partial_credit,
                   LeftOut& lost, NotCarried& not_carried) {
  const auto set_type = [&](const auto& type) {
    if (type) lost.type = question.QuestionType = test.QuestionType(type->value());
  };
  const auto attributes = node.attributes();
  set_type(attributes.named(u"type"));
  if (question.QuestionType == HEDROTestQuestionTypeTrueFalse) {
    question.Answers->AddDelimitedString(u"True\tFalse", tab);
  } else if (question.QuestionType == HEDROTestQuestionTypeYesNo) {
    question.Answers->AddDelimitedString(u"Yes\tNo", tab);
  }
  bool id_is_cut = false;
  const auto set_id = [&](String id) {
    lost.id = std::move(id);
    question.ID = StringView(lost.id);
    id_is_cut |= lost.id.size() > question.ID.str().size();
  };
  if (const auto id = attributes.named(u"question-id")) set_id(id->value());
  if (const auto bank = attributes.named(u"bank-id")) set_id(question.ID.str() + bank->value());
  if (id_is_cut) not_carried.cut(u"ID", QuestionId::limit);
  node.children().each([&](const Node& child) {
    const StringView name = child.name();
    switch (child.meaning(parts, name).part) {
      case Part::Text: question.QuestionText = NodeText(child, not_carried); return;
      case Part::Choices:
        return child.children().each([&](const Node& choice) {
          const String answer = NodeText(choice, not_carried);
          const bool added = question.Answers->Add(answer);
          if (added && answer.size() > clsHEDROTestStrings::added_limit)
            not_carried.cut_answer(question.Answers->Count());
        });
      case Part::Answer: return read_answer(question, child);
      case Part::DisplayMode: return set_type(child.attributes().named(u"value"));
      case Part::Info: return read_info(test, question, child, partial_credit, not_carried);
      case Part::Other: return not_carried.unknown_in_question(child.place(), name);
    }
  });
}

}  // namespace

bool clsHEDROTest::AddXMLQuestion(const Ref<IXMLDOMNode>& oNode, bool& bPartialCredit, std::int32_t number_in_file) {
  LeftOut lost;  // the question as far as it is read
  lost.number = number_in_file;
  bool is_kept = false;
  const std::size_t noted_before = left_out_.size();
  const bool comes_to_its_end = trap<bool>({u"clsHEDROTest", u"AddXMLQuestion"}, [&](auto& result) {
    const auto question = make<clsHEDROTestQuestion>();
    question->number_in_file = number_in_file;
    NotCarried not_carried;
    read_node(oNode,
              [&](const auto& node) { read_question(*this, *question, node, bPartialCredit, lost, not_carried); });
    std::vector<LeftOut> notes = not_carried.notes(*question);
    left_out_.insert(left_out_.end(), std::make_move_iterator(notes.begin()), std::make_move_iterator(notes.end()));
    if (!question->Answers)
      fail(FailureNumber::ObjectNotSet);  // there was no memory for its lists, which all else needs
    is_kept = Questions->Add(question);
    result = true;
  });
  if (is_kept) return comes_to_its_end;
  if (left_out_.size() > noted_before) left_out_.resize(noted_before);
  quietly([&] {
    lost.id.resize(std::min(lost.id.size(), QuestionId::limit));
    left_out_.push_back(std::move(lost));
  });
  return comes_to_its_end;
}

}  // namespace hedro34
