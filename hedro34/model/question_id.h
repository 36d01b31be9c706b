// The `ID` of a question: a text of at most 50 units. Once a collection has taken the question, changes of it are counted, so
// that the collection knows when what it has worked out from the IDs of its questions is out of date.
#pragma once

#include <cstdint>

#include "hedro34/base/text.h"

namespace hedro34 {

class HEDRO34_API QuestionId {
 public:
  static constexpr std::size_t limit = 50;  // units

  QuestionId() = default;
  QuestionId(const QuestionId&) = delete;
  QuestionId& operator=(const QuestionId& other) { return *this = StringView(other); }
  QuestionId& operator=(StringView text) {
    if (counted_) count_change();
    text_ = text;
    return *this;
  }
  QuestionId& operator=(const char16_t* text) { return *this = StringView(text); }

  const String& str() const noexcept { return text_; }
  operator const String&() const noexcept { return text_; }
  operator StringView() const noexcept { return text_; }
  bool empty() const noexcept { return text_.empty(); }

  friend bool operator==(const QuestionId& a, StringView b) noexcept { return a.text_ == b; }

  // From here on every write counts.
  void count_changes() noexcept { counted_ = true; }

  // How often a counted ID was written on this thread. A question stays on the thread that made it, so no change is missed.
  static std::uint64_t changes() noexcept;

 private:
  static void count_change() noexcept;

  Text<limit> text_;
  bool counted_ = false;
};

}  // namespace hedro34
