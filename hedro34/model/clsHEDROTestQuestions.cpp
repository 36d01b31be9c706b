#include "hedro34/model/clsHEDROTestQuestions.h"
#include "hedro34/base/text_hash.h"

#include <unordered_map>

namespace hedro34 {

bool clsHEDROTestQuestions::Add(const Ref<clsHEDROTestQuestion>& oQuestion, const Variant& Before,
                                const Variant& After) {
  return trap<bool>(here(u"Add"), [&](auto& result) {
    QuestionId& id = oQuestion->ID;
    id.count_changes();
    first_positions_.clear();
    aside_.clear();
    if (items_.count() == 0) {
      ids_are_keys_ = true;
      keys_as_of_ = QuestionId::changes();
    }
    items_.add_under(id, oQuestion, Before, After);
    if (id.empty()) ids_are_keys_ = false;
    result = true;
  });
}

Ref<clsHEDROTestQuestion> clsHEDROTestQuestions::take(const Variant& Index) {
  const std::int32_t position = items_.find_position(Index);
  if (position == 0) return {};
  const bool held = items_.at(position)->shared();
  Ref<clsHEDROTestQuestion> question = items_.at(position);
  const bool fails = !question->Answers;  // below, behind its objectives
  const auto empty = [&](clsHEDROTestStrings& list) {
    if (held || fails || list.shared()) list.RemoveAll();  // else nobody will see it again
  };
  empty(*question->LearningObjectives);
  empty(*question->Answers);
  first_positions_.clear();
  items_.remove(position);
  return question;
}

bool clsHEDROTestQuestions::Remove(const Variant& Index) {
  return trap<bool>(here(u"Remove"), [&](auto& result) { result = static_cast<bool>(take(Index)); });
}

bool clsHEDROTestQuestions::put_aside(std::int32_t position) {
  return trap<bool>(here(u"Remove"), [&](auto& result) {
    Ref<clsHEDROTestQuestion> question = take(position);
    result = static_cast<bool>(question);
    if (question) quietly([&] { aside_.push_back(std::move(question)); });
  });
}

bool clsHEDROTestQuestions::RemoveAll() {
  return trap<bool>(here(u"RemoveAll"), [&](auto& result) {
    for (std::int32_t i = items_.count(); i >= 1; --i) Remove(i);
    aside_.clear();
    result = items_.count() == 0;
  });
}

std::int32_t clsHEDROTestQuestions::TypeCount(HEDROTestQuestionType eQuestionType) const {
  return trap<std::int32_t>(here(u"TypeCount"), [&](auto& result) {
    std::int32_t found = 0;
    for (std::int32_t i = 1; i <= items_.count(); ++i) found += items_.at(i)->QuestionType == eQuestionType;
    result = found;
  });
}

std::int32_t clsHEDROTestQuestions::first_position(const Variant& Index) const {
  const std::int32_t position = items_.find_position(Index);
  if (position == 0) return 0;
  if (ids_are_keys_ && keys_as_of_ == QuestionId::changes()) return position;
  if (first_positions_.empty() || as_of_ != QuestionId::changes()) {
    const bool known = quietly([&] {
      std::unordered_map<StringView, std::int32_t, TextHash> by_id;
      std::vector<std::int32_t> positions;
      for (std::int32_t i = 1; i <= items_.count(); ++i) {
        positions.push_back(by_id.try_emplace(items_.at(i)->ID, i).first->second);
      }
      first_positions_ = std::move(positions);
      as_of_ = QuestionId::changes();
    });
    if (!known) {  // memory has run out
      std::int32_t first = 1;
      while (items_.at(first)->ID.str() != items_.at(position)->ID.str()) ++first;
      return first;
    }
  }
  return first_positions_[static_cast<std::size_t>(position - 1)];
}

}  // namespace hedro34
