// Flattening of ExamView's rich text into one line of plain text.
#include <algorithm>
#include <array>

#include "hedro34/import/not_carried.h"
#include "hedro34/model/clsHEDROTest.h"
#include "hedro34/xml/xml_document.h"

namespace hedro34 {
namespace {

// How an element takes part: what joins its children, and what it gives when it has none.
enum class Joined { Dropped, WithBlanks, Plainly };
enum class Alone { Nothing, ItsText, TextVariable, TheWordEquation };

struct Element {
  const char16_t* name;
  Joined children;
  Alone alone;
};

constexpr std::array vocabulary = {
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
};

constexpr Element unknown = {nullptr, Joined::Dropped, Alone::Nothing};

Element element_of(StringView base_name) {
  for (const Element& element : vocabulary) {
    if (lower_equals(base_name, element.name)) return element;
  }
  return unknown;
}

// The text of a node while it is gathered. Cleaning makes one blank of each pair, from left to right, twice, which leaves a
// quarter of a run of blanks, rounded up; then it takes the line feeds away. The run at the end is counted, so that cleaning
// what the levels below have cleaned already needs no walk: only the seams change.
class Flat {
 public:
  // A value as it stands, as the only part.
  void take(String value) {
    if (has_pair(value)) return add_units(value);
    if (has_line_feed(value)) {
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

  String str() && {
    text_.append(blanks_, u' ');
    return std::move(text_);
  }

 private:
  static std::size_t cleaned(std::size_t blanks) noexcept { return (blanks + 3) / 4; }

  // The two walk to the end with results as wide as a unit, so that they become vector code.
  static bool has_line_feed(StringView text) noexcept {
    std::uint16_t found = 0;
    for (std::size_t i = 0; i < text.size(); ++i) found |= std::uint16_t{text[i] == u'\n'};
    return found != 0;
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

bool is_text_variable(const Ref<IXMLDOMNode>& node) {
  const Ref<IXMLDOMNamedNodeMap> attributes = node->attributes();
  if (!attributes) return false;
  const Ref<IXMLDOMNode> data = attributes->getNamedItem(u"data");
  return data && equal_ignoring_case(to_text(data->nodeValue()), u"text");
}

Flat flatten(const Ref<IXMLDOMNode>& node, NotCarried& not_carried) {
  return trap<Flat>({u"clsHEDROTest", u"NodeText"}, [&](auto& result) {
    const StringView base_name = node->baseName();
    const Element element = element_of(base_name);
    const Ref<IXMLDOMNodeList> children = node->childNodes();
    const std::int32_t count = children ? children->length() : 0;
    if (element.name == nullptr) not_carried.unknown_in_text(*node, base_name, count > 0);
    if (element.alone == Alone::TheWordEquation) not_carried.equation();
    Flat flat;
    if (count > 0 && element.children != Joined::Dropped) {
      for (std::int32_t i = 0; i < count; ++i) {
        flat.append(flatten(children->item(i), not_carried));
        if (element.children == Joined::WithBlanks) flat.append_blank();
      }
    } else if (count == 0) {
      if (element.alone == Alone::ItsText || (element.alone == Alone::TextVariable && is_text_variable(node))) {
        flat.take(to_text(node->nodeTypedValue()));
      } else if (element.alone == Alone::TheWordEquation) {
        flat.take(u"equation");
      }
    }
    flat.finish();
    result = std::move(flat);
  });
}

}  // namespace

// A node that fails is reported and gives an empty text; what is around it goes on.
String clsHEDROTest::NodeText(const Ref<IXMLDOMNode>& oNode, NotCarried& not_carried) {
  return flatten(oNode, not_carried).str();
}

}  // namespace hedro34
