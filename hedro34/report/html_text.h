// Writes HTML piece by piece into one text. What comes from files goes through `text` or `attribute` and so is text on the page,
// never markup; nothing of it can turn the direction of what stands around it, and of the characters that nobody sees only those
// stay that scripts are written with: joiners, variation selectors, marks of direction.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "hedro34/base/text.h"

namespace hedro34 {

class HtmlText {
 public:
  // Markup of our own, as it stands.
  HtmlText& raw(std::string_view markup);

  // Text of a file: & < > " ' escaped, line breaks of all kinds as line feeds, other control characters as pictures or numbers,
  // marks that turn the direction of text and what nobody would see as numbers in a small element. A lone surrogate becomes
  // U+FFFD.
  HtmlText& text(StringView text) { return escaped(text, true); }

  // The same without an element, for the title of the page and for the value of an attribute between double quotes.
  HtmlText& attribute(StringView text) { return escaped(text, false); }

  HtmlText& number(std::int64_t number);
  HtmlText& real(double number);  // the shortest decimal text that reads back to the same number

  const std::string& str() const& noexcept { return html_; }
  std::string str() && noexcept { return std::move(html_); }

 private:
  HtmlText& escaped(StringView text, bool with_markup);

  std::string html_;
};

}  // namespace hedro34
