// Flattening of ExamView's rich text into one line of plain text.
#include <array>

#include "hedro34/model/clsHEDROTest.h"
#include "hedro34/platform/xml_document.h"

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

Element element_of(StringView base_name) {
  for (const Element& element : vocabulary) {
    if (lower_equals(base_name, element.name)) return element;
  }
  return {u"", Joined::Dropped, Alone::Nothing};
}

void halve_blanks(String& text) {
  if (text.find(u"  ") == String::npos) return;
  std::size_t kept = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    text[kept++] = text[i];
    if (text[i] == u' ' && i + 1 < text.size() && text[i + 1] == u' ') ++i;
  }
  text.resize(kept);
}

bool is_text_variable(const Ref<IXMLDOMNode>& node) {
  const Ref<IXMLDOMNamedNodeMap> attributes = node->attributes();
  if (!attributes) return false;
  const Ref<IXMLDOMNode> data = attributes->getNamedItem(u"data");
  return data && equal_ignoring_case(to_text(data->nodeValue()), u"text");
}

}  // namespace

String clsHEDROTest::NodeText(const Ref<IXMLDOMNode>& oNode) {
  String result;
  trap({u"clsHEDROTest", u"NodeText"}, [&] {
    const Element element = element_of(oNode->baseName());
    const Ref<IXMLDOMNodeList> children = oNode->childNodes();
    const std::int32_t count = children ? children->length() : 0;
    String text;
    if (count > 0 && element.children != Joined::Dropped) {
      for (std::int32_t i = 0; i < count; ++i) {
        String of_child = NodeText(children->item(i));
        if (text.empty()) {
          text = std::move(of_child);
        } else {
          text += of_child;
        }
        if (element.children == Joined::WithBlanks) text += u' ';
      }
    } else if (count == 0) {
      if (element.alone == Alone::ItsText || (element.alone == Alone::TextVariable && is_text_variable(oNode))) {
        text = to_text(oNode->nodeTypedValue());
      } else if (element.alone == Alone::TheWordEquation) {
        text = u"equation";
      }
    }
    halve_blanks(text);
    halve_blanks(text);
    std::erase(text, u'\n');
    result = std::move(text);
  });
  return result;
}

}  // namespace hedro34
