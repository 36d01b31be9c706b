// The questions of a test in test order. The key of a question is its `ID` at the time of `Add`; a later change of the ID
// does not change the key. A test owns its collection; a host does not create one.
#pragma once

#include <map>
#include <memory>
#include <set>

#include "hedro34/model/clsHEDROTestQuestion.h"

namespace hedro34 {

class clsHEDROTestQuestions final : public Object {
 public:
  clsHEDROTestQuestions();
  ~clsHEDROTestQuestions() override;

  std::int32_t Count() const;

  // True when added, at the end or before or behind the question that `Before` or `After` names. An `ID` that is a key
  // already, and an empty reference, is a failure.
  bool Add(const Ref<clsHEDROTestQuestion>& oQuestion, const Variant& Before = missing, const Variant& After = missing);

  // Empties the question's `LearningObjectives` and `Answers`, then removes it. True when removed; False when nothing is
  // there. Whoever still holds the question finds these two lists empty.
  bool Remove(const Variant& Index);
  bool RemoveAll();  // from the last to the first through `Remove`; whether nothing is left

  Ref<clsHEDROTestQuestion> Item(const Variant& Index) const;  // the question itself, or an empty reference
  bool Exists(const Variant& Index) const noexcept;
  std::int32_t TypeCount(HEDROTestQuestionType eQuestionType) const;  // how many questions have exactly this type

  // The position of the first question whose present `ID` is exactly this text, 0 when there is none. Constant time, but
  // for the logarithm of the number of questions whose ID is not their key.
  std::int32_t position_of_id(const String& id) const;

  // The position of the first question with the `ID` of the one at the index; 0 when there is nothing at the index.
  std::int32_t first_position(const Variant& Index) const;

 private:
  // What the collection keeps for a question: its place, and an ear for changes of its ID.
  class Place;
  struct Held {
    Ref<clsHEDROTestQuestion> question;
    std::unique_ptr<Place> place;
  };
  struct ByPosition {
    bool operator()(const Place* a, const Place* b) const noexcept;
  };

  void index(const Place& place, const String& id) noexcept;
  void unindex(const Place& place, const String& id) noexcept;
  void drop(const Variant& Index);

  // The questions whose ID is not their key, by ID: those without ID, and those whose ID was changed after `Add`. It is
  // declared before the list, whose places leave it when they go.
  std::map<String, std::set<const Place*, ByPosition>> strangers_;
  bool strangers_complete_ = true;  // false after memory ran out there: from then on a walk finds the position
  KeyedList<Held> items_;
};

}  // namespace hedro34
