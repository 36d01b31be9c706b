#include "hedro34/model/clsHEDROTestQuestions.h"

namespace hedro34 {
namespace {

constexpr Location here(const char16_t* operation) { return {u"clsHEDROTestQuestions", operation}; }

}  // namespace

class clsHEDROTestQuestions::Place final : public QuestionId::Watcher {
 public:
  Place(clsHEDROTestQuestions& owner, QuestionId& id, const KeyedList<Held>::Anchor& anchor)
      : Watcher(id), owner_(owner), anchor_(anchor) {
    if (is_stranger(id)) owner_.index(*this, id);
  }
  ~Place() override {
    if (is_stranger(id())) owner_.unindex(*this, id());
  }

  std::int32_t position() const noexcept { return owner_.items_.position(anchor_); }

 protected:
  void id_changes(const String& from, const String& to) noexcept override {
    if (from == to) return;
    if (is_stranger(to)) owner_.index(*this, to);
    if (is_stranger(from)) owner_.unindex(*this, from);
  }

 private:
  bool is_stranger(const String& id) const noexcept { return id.empty() || id != anchor_.key(); }

  clsHEDROTestQuestions& owner_;
  const KeyedList<Held>::Anchor& anchor_;
};

bool clsHEDROTestQuestions::ByPosition::operator()(const Place* a, const Place* b) const noexcept {
  return a->position() < b->position();
}

clsHEDROTestQuestions::clsHEDROTestQuestions() = default;

clsHEDROTestQuestions::~clsHEDROTestQuestions() {
  trap(here(u"Class_Terminate"), [&] {
    for (std::int32_t i = items_.count(); i >= 1; --i) items_.at(i).place.reset();
    items_ = {};
  });
}

std::int32_t clsHEDROTestQuestions::Count() const {
  std::int32_t result = 0;
  trap(here(u"Count"), [&] { result = items_.count(); });
  return result;
}

bool clsHEDROTestQuestions::Add(const Ref<clsHEDROTestQuestion>& oQuestion, const Variant& Before,
                                const Variant& After) {
  bool result = false;
  trap(here(u"Add"), [&] {
    const std::int32_t position = items_.add({oQuestion, nullptr}, oQuestion->ID.str(), Before, After);
    const bool placed = quietly(
        [&] { items_.at(position).place = std::make_unique<Place>(*this, oQuestion->ID, items_.anchor_at(position)); });
    if (!placed) {
      items_.remove(position);
      fail(FailureNumber::OutOfMemory);
    }
    result = true;
  });
  return result;
}

bool clsHEDROTestQuestions::Remove(const Variant& Index) {
  bool result = false;
  trap(here(u"Remove"), [&] {
    const Held* held = items_.find(Index);
    if (held == nullptr) return;
    const Ref<clsHEDROTestQuestion> question = held->question;
    question->LearningObjectives->RemoveAll();
    question->Answers->RemoveAll();
    drop(Index);
    result = true;
  });
  return result;
}

bool clsHEDROTestQuestions::RemoveAll() {
  bool result = false;
  trap(here(u"RemoveAll"), [&] {
    for (std::int32_t i = items_.count(); i >= 1; --i) Remove(i);
    result = items_.count() == 0;
  });
  return result;
}

Ref<clsHEDROTestQuestion> clsHEDROTestQuestions::Item(const Variant& Index) const {
  Ref<clsHEDROTestQuestion> result;
  trap(here(u"Item"), [&] {
    if (const Held* held = items_.find(Index)) result = held->question;
  });
  return result;
}

bool clsHEDROTestQuestions::Exists(const Variant& Index) const noexcept {
  bool result = false;
  quietly([&] { result = items_.find(Index) != nullptr; });
  return result;
}

std::int32_t clsHEDROTestQuestions::TypeCount(HEDROTestQuestionType eQuestionType) const {
  std::int32_t result = 0;
  trap(here(u"TypeCount"), [&] {
    std::int32_t found = 0;
    for (std::int32_t i = 1; i <= items_.count(); ++i) found += items_.at(i).question->QuestionType == eQuestionType;
    result = found;
  });
  return result;
}

std::int32_t clsHEDROTestQuestions::position_of_id(const String& id) const {
  if (!strangers_complete_) {
    for (std::int32_t i = 1; i <= items_.count(); ++i) {
      if (items_.at(i).question->ID == id) return i;
    }
    return 0;
  }
  std::int32_t result = 0;
  if (const Held* held = items_.find(StringView(id)); held != nullptr && held->question->ID == id) {
    result = held->place->position();
  }
  if (const auto strangers = strangers_.find(id); strangers != strangers_.end()) {
    const std::int32_t first = (*strangers->second.begin())->position();
    if (result == 0 || first < result) result = first;
  }
  return result;
}

std::int32_t clsHEDROTestQuestions::first_position(const Variant& Index) const {
  const std::int32_t position = items_.find_position(Index);
  const bool ids_are_keys = strangers_complete_ && strangers_.empty();  // so no two are the same
  return position == 0 || ids_are_keys ? position : position_of_id(items_.at(position).question->ID);
}

void clsHEDROTestQuestions::index(const Place& place, const String& id) noexcept {
  if (!quietly([&] { strangers_[id].insert(&place); })) strangers_complete_ = false;
}

void clsHEDROTestQuestions::unindex(const Place& place, const String& id) noexcept {
  const auto strangers = strangers_.find(id);
  if (strangers == strangers_.end()) return;
  strangers->second.erase(&place);
  if (strangers->second.empty()) strangers_.erase(strangers);
}

void clsHEDROTestQuestions::drop(const Variant& Index) {
  items_.at(Index).place.reset();
  if (quietly([&] { items_.remove(Index); })) return;
  strangers_complete_ = false;  // the question stays, but nobody hears its ID change
  fail(FailureNumber::OutOfMemory);
}

}  // namespace hedro34
