// Finds the attributes that an internal subset declares, character by character in its text. Comments and processing
// instructions are not part of what it is given, and declarations of other kinds may come in pieces.
#pragma once

#include <string>
#include <string_view>

namespace hedro34 {

class AttributeLists {
 public:
  // True when this character ends the declaration of an attribute: `element` is then the element's name, and `value`
  // the default as it was written, empty when there is none.
  bool next(char c) {
    if (quote_ != 0) {
      if (c != quote_) {
        value_ += c;
        return false;
      }
      quote_ = 0;
      return in_list();
    }
    const bool no_default = previous_ == '#' && (c == 'I' || c == 'R');  // #IMPLIED, #REQUIRED
    const bool blank_before = is_blank(previous_);
    previous_ = c;
    if (c == '\'' || c == '"') {
      quote_ = c;
      value_.clear();
    } else if (c == '<' || c == '>') {
      words_ = 0;
      keyword_ = c;
      element_.clear();
    } else if (is_blank(c)) {
      if (!blank_before) ++words_;
    } else if (words_ == 0) {
      keyword_ += c;
    } else if (words_ == 1) {
      element_ += c;
    }
    if (!no_default || !in_list()) return false;
    value_.clear();
    return true;
  }

  bool in_quotes() const noexcept { return quote_ != 0; }
  const std::string& element() const noexcept { return element_; }
  const std::string& value() const noexcept { return value_; }

 private:
  static bool is_blank(char c) noexcept { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
  bool in_list() const noexcept { return keyword_ == "<!ATTLIST"; }

  std::string keyword_;  // from the declaration's first character up to a blank
  std::string element_;  // the word behind that
  std::string value_;
  int words_ = 0;  // that have ended in this declaration
  char quote_ = 0;
  char previous_ = 0;  // outside quotes
};

}  // namespace hedro34
