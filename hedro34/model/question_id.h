// The `ID` of a question: a text of at most 50 units that tells those who watch it before it changes. The collections that
// hold the question watch, so that they find it by its ID in constant time although the ID may change after `Add`.
#pragma once

#include "hedro34/base/text.h"

namespace hedro34 {

class QuestionId {
 public:
  static constexpr std::size_t limit = 50;

  // Hears of every change of one ID for as long as it lives.
  class Watcher {
   public:
    explicit Watcher(QuestionId& id) noexcept : id_(id), next_(id.watchers_) {
      if (next_ != nullptr) next_->link_ = &next_;
      link_ = &id.watchers_;
      id.watchers_ = this;
    }
    virtual ~Watcher() {
      if (next_ != nullptr) next_->link_ = link_;
      *link_ = next_;
    }
    Watcher(const Watcher&) = delete;
    Watcher& operator=(const Watcher&) = delete;

   protected:
    // Called just before the change.
    virtual void id_changes(const String& from, const String& to) noexcept = 0;
    const QuestionId& id() const noexcept { return id_; }

   private:
    friend class QuestionId;
    QuestionId& id_;
    Watcher* next_;
    Watcher** link_;
  };

  QuestionId() = default;
  QuestionId(const QuestionId&) = delete;
  QuestionId& operator=(const QuestionId& other) { return *this = StringView(other.text_); }
  QuestionId& operator=(StringView text) {
    String changed(text.substr(0, limit));
    for (Watcher* watcher = watchers_; watcher != nullptr; watcher = watcher->next_) {
      watcher->id_changes(text_, changed);
    }
    text_ = std::move(changed);
    return *this;
  }
  QuestionId& operator=(const char16_t* text) { return *this = StringView(text); }

  const String& str() const noexcept { return text_; }
  operator const String&() const noexcept { return text_; }
  operator StringView() const noexcept { return text_; }
  bool empty() const noexcept { return text_.empty(); }

  friend bool operator==(const QuestionId& a, StringView b) noexcept { return StringView(a.text_) == b; }

 private:
  String text_;
  Watcher* watchers_ = nullptr;
};

}  // namespace hedro34
