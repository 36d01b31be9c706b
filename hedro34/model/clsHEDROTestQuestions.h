// The questions of a test in test order. The key of a question is its `ID` at the time of `Add`; a later change of the ID
// does not change the key. A test owns its collection; a host does not create one.
#pragma once

#include <vector>

#include "hedro34/model/clsHEDROTestQuestion.h"

namespace hedro34 {

class HEDRO34_API clsHEDROTestQuestions final : public Collection<clsHEDROTestQuestions, Ref<clsHEDROTestQuestion>> {
 public:
  static constexpr const char16_t* class_name = u"clsHEDROTestQuestions";

  // True when added, at the end or before or behind the question that `Before` or `After` names. An `ID` that is a key
  // already, and an empty reference, is a failure.
  bool Add(const Ref<clsHEDROTestQuestion>& oQuestion, const Variant& Before = missing, const Variant& After = missing);

  // Empties the question's `LearningObjectives` and `Answers`, then removes it. True when removed; False when nothing is
  // there. Whoever still holds the question finds these two lists empty.
  bool Remove(const Variant& Index);
  bool RemoveAll();  // each from the last one down; gives whether nothing is left

  // As `Remove`, but the question's memory is released with the collection, or when that is emptied or takes another question:
  // to release many, each between others that stay, takes far longer than to remove them. Not to be seen by name.
  bool put_aside(std::int32_t position);

  // The question at a position, which the caller does not hold; failure 9 when there is none. Not to be seen by name.
  const clsHEDROTestQuestion& at(std::int32_t position) const { return *items_.at(position); }

  std::int32_t TypeCount(HEDROTestQuestionType eQuestionType) const;  // how many questions have exactly this type

  // The position of the first question whose present `ID` is exactly that of the question at the index; 0 when there is
  // nothing at the index. Constant time while each question has the ID, not an empty one, with which it was added; else but for
  // a walk after any ID was written or this collection changed: a loop that renames and asks in turn pays a walk each time.
  std::int32_t first_position(const Variant& Index) const;

 private:
  // Removes the question at the index and gives it, empty when there is none.
  Ref<clsHEDROTestQuestion> take(const Variant& Index);

  // Whether, as of that number of `QuestionId::changes()`, each ID is the key of its question and no two are the same.
  bool ids_are_keys_ = true;
  std::uint64_t keys_as_of_ = 0;

  // For each position the first one with the same ID, as of such a number as well; empty when it is not known.
  mutable std::vector<std::int32_t> first_positions_;
  mutable std::uint64_t as_of_ = 0;

  std::vector<Ref<clsHEDROTestQuestion>> aside_;
};

}  // namespace hedro34
