// Text is a sequence of 16-bit units (`String`); UTF-8 exists only at the edges. Here stand the two conversions, the
// comparison without regard to case, trimming, and `Text<N>`, a field that keeps the first N units of what it is given.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "hedro34/base/case_map.h"

namespace hedro34 {

// Text, and a view of text that lies elsewhere.
using String = std::u16string;
using StringView = std::u16string_view;

// UTF-8 of a text. A lone surrogate becomes U+FFFD.
HEDRO34_API std::string to_utf8(StringView text);
HEDRO34_API void append_utf8(std::string& target, StringView text);

// The 16-bit units of UTF-8 bytes. Bytes that are not UTF-8 become U+FFFD, one for each byte.
HEDRO34_API String from_utf8(std::string_view bytes);
HEDRO34_API void append_utf16(String& target, std::string_view bytes);

// Simple mappings of each unit, the same on every platform and locale.
HEDRO34_API String upper(StringView text);
HEDRO34_API String lower(StringView text);

// True when the upper-case mappings of the two texts are equal.
HEDRO34_API bool equal_ignoring_case(StringView a, StringView b) noexcept;

// True when the lower-case mapping of `text` is `expected`, which is given in small letters.
HEDRO34_API bool lower_equals(StringView text, StringView expected) noexcept;

// Hash and equality of texts without regard to case, for unordered containers. A process hashes in a way of its own, so that no
// choice of texts makes them slow. (The hash is not noexcept, though it cannot fail: so the containers keep what they have
// computed.)
struct HEDRO34_API IgnoringCase {
  using is_transparent = void;
  std::size_t operator()(StringView text) const;
  bool operator()(StringView a, StringView b) const noexcept { return equal_ignoring_case(a, b); }
};

// The text without the characters 32 at both ends; no other white space is removed.
HEDRO34_API StringView trim(StringView text) noexcept;

// The number in decimal.
HEDRO34_API String decimal(std::int64_t number);

// A text field that keeps the first `Limit` 16-bit units of what is written and drops the rest without a report.
template <std::size_t Limit = String::npos>
class Text {
 public:
  static constexpr std::size_t limit = Limit;

  Text() = default;
  Text(StringView text) : text_(text.substr(0, Limit)) {}

  Text& operator=(StringView text) {
    text_ = text.substr(0, Limit);
    return *this;
  }
  Text& operator=(const char16_t* text) { return *this = StringView(text); }
  Text& operator=(String&& text) {
    text_ = std::move(text);
    if (text_.size() > Limit) text_.resize(Limit);
    return *this;
  }

  const String& str() const noexcept { return text_; }
  operator const String&() const noexcept { return text_; }
  operator StringView() const noexcept { return text_; }
  bool empty() const noexcept { return text_.empty(); }
  void clear() noexcept { text_.clear(); }

  friend bool operator==(const Text& a, StringView b) noexcept { return StringView(a.text_) == b; }
  friend bool operator==(const Text& a, const Text& b) noexcept { return a.text_ == b.text_; }

 private:
  String text_;
};

}  // namespace hedro34
