#include "hedro34/import/NodeText.h"

#include <algorithm>

#include "hedro34/runtime/basError.h"

namespace hedro34 {
namespace {

// How an element takes part: what joins its children, and what it gives when it has none.
enum class Joined { Dropped, WithBlanks, Plainly };
enum class Alone { Nothing, ItsText, TextVariable, TheWordEquation };

struct Element {
  StringView name;
  Joined children;
  Alone alone;
};

constexpr Vocabulary vocabulary = {
    Place::RichText, std::array{
                         Element{u"", Joined::Dropped, Alone::ItsText},  // a text node, which has no children
                         Element{u"text", Joined::WithBlanks, Alone::Nothing},
                         Element{u"para", Joined::WithBlanks, Alone::ItsText},
                         Element{u"b", Joined::WithBlanks, Alone::ItsText},
                         Element{u"i", Joined::WithBlanks, Alone::ItsText},
                         Element{u"u", Joined::WithBlanks, Alone::ItsText},
                         Element{u"font", Joined::Plainly, Alone::Nothing},
                         Element{u"sup", Joined::Plainly, Alone::ItsText},
                         Element{u"variable", Joined::Plainly, Alone::TextVariable},
                         Element{u"choice-a", Joined::Plainly, Alone::Nothing},
                         Element{u"choice-b", Joined::Plainly, Alone::Nothing},
                         Element{u"choice-c", Joined::Plainly, Alone::Nothing},
                         Element{u"choice-d", Joined::Plainly, Alone::Nothing},
                         Element{u"choice-e", Joined::Plainly, Alone::Nothing},
                         Element{u"choice-f", Joined::Plainly, Alone::Nothing},
                         Element{u"choice-g", Joined::Plainly, Alone::Nothing},
                         Element{u"choice-h", Joined::Plainly, Alone::Nothing},
                         Element{u"equation", Joined::Dropped, Alone::TheWordEquation},
                         Element{{}, Joined::Dropped, Alone::Nothing},
                     }};
constexpr const Element& unknown = vocabulary.rows.back();

// The text of a node while it is gathered. Cleaning makes one blank of each pair, from left to right, twice, which leaves a
// quarter of a run of blanks, rounded up; then it takes the line feeds away. The run at the end is counted, so that cleaning
// what the levels below have cleaned already needs no walk: only the seams change.
class Flat {
 public:
  // A value as it stands, as the only part.
  void take(String value) {
    if (!is_clean(value)) {
      if (has_pair(value)) return add_units(value);
      std::erase(value, u'\n');
      if (has_pair(value)) rough_ = value.size();
    }
    text_ = std::move(value);
  }
  void append(Flat&& child) {
    if (child.rough_ == 0 && text_.empty() && blanks_ == 0) {
      text_ = std::move(child.text_);
    } else {
      const StringView units = child.text_;
      add_units(units.substr(0, child.rough_));
      add_settled(units.substr(child.rough_));
    }
    blanks_ += child.blanks_;
  }
  void append_blank() noexcept { ++blanks_; }

  // Once, behind the last part.
  void finish() {
    blanks_ = cleaned(blanks_);
    for (; text_.ends_with(u' '); text_.pop_back()) ++blanks_;
    rough_ = std::min(rough_, text_.size());
  }

  // Without blanks at the ends, of which `finish` has counted those behind.
  String trimmed() && {
    text_.erase(0, text_.find_first_not_of(u' '));
    return std::move(text_);
  }

 private:
  static std::size_t cleaned(std::size_t blanks) noexcept { return (blanks + 3) / 4; }

  // The two walk to the end with results as wide as a unit, so that they become vector code.
  static bool is_clean(StringView text) noexcept {  // without pairs and line feeds
    std::uint16_t found = text.starts_with(u'\n');
    for (std::size_t i = 1; i < text.size(); ++i) {
      found |= std::uint16_t{text[i] == u'\n' || (text[i] == u' ' && text[i - 1] == u' ')};
    }
    return found == 0;
  }
  static bool has_pair(StringView text) noexcept {
    std::uint16_t found = 0;
    for (std::size_t i = 1; i < text.size(); ++i) found |= std::uint16_t{text[i] == u' ' && text[i - 1] == u' '};
    return found != 0;
  }

  void add_units(StringView units) {
    for (const char16_t unit : units) {
      if (unit == u' ') {
        ++blanks_;
      } else {
        end_run(0);
        if (unit != u'\n') text_ += unit;
      }
    }
  }
  void add_settled(StringView units) {
    if (units.empty()) return;
    const std::size_t leading = units.front() == u' ' ? 1 : 0;
    end_run(leading);
    text_.append(units.substr(leading));
  }
  void end_run(std::size_t more) {
    const std::size_t kept = cleaned(blanks_ + more);
    const bool meets_another = kept > 0 && text_.ends_with(u' ');  // a line feed was between them
    text_.append(kept, u' ');
    if (kept > 1 || meets_another) rough_ = text_.size();
    blanks_ = 0;
  }

  String text_;             // without the run at its end
  std::size_t blanks_ = 0;  // of the run at the end
  std::size_t rough_ = 0;   // up to here the text may have two blanks in a row
};

template <class Node>
bool is_text_variable(const Node& node) {
  const auto data = node.attributes().named(u"data");
  return data && equal_ignoring_case(data->value(), u"text");
}

template <class Node>
Flat flatten(const Node& node, NotCarried& not_carried) {
  return trap<Flat>({u"clsHEDROTest", u"NodeText"}, [&](auto& result) {
    const StringView base_name = node.base_name();
    const Element& element = node.meaning(vocabulary, base_name);
    const auto children = node.children();
    if (&element == &unknown) not_carried.unknown_in_text(node.place(), base_name, !children.empty());
    if (element.alone == Alone::TheWordEquation) not_carried.equation();
    Flat flat;
    if (!children.empty() && element.children != Joined::Dropped) {
      children.each([&](const Node& child) {
        flat.append(flatten(child, not_carried));
        if (element.children == Joined::WithBlanks) flat.append_blank();
      });
    } else if (children.empty()) {
      if (element.alone == Alone::ItsText || (element.alone == Alone::TextVariable && is_text_variable(node))) {
        flat.take(node.text());
      } else if (element.alone == Alone::TheWordEquation) {
        flat.take(u"equation");
      }
    }
    flat.finish();
    result = std::move(flat);
  });
}

}  // namespace

String NodeText(const HostNode& node, NotCarried& not_carried) { return flatten(node, not_carried).trimmed(); }
String NodeText(const TreeNode& node, NotCarried& not_carried) { return flatten(node, not_carried).trimmed(); }

}  // namespace hedro34
