// Reads each file that a list names, one a line, with expat alone and with `ExpatDocument`, and compares what comes of
// it. A line for each file, with tabs between: its name; "accept" or "refuse" for either; by which of the reader's promises they
// differ, or nothing; what is wrong, or nothing.
#include <expat.h>

#include <algorithm>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "hedro34/platform/file_error.h"
#include "hedro34/xml/expat_document.h"

namespace {

using namespace hedro34;

// What expat itself says of a document: no namespaces, no other file. The tree is kept as the reader promises it: without comments
// and instructions, no node for text of white space only, each CDATA section a text of its own.
class Bare {
 public:
  explicit Bare(const std::string& bytes) {
    const std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> parser(XML_ParserCreate(nullptr), XML_ParserFree);
    parser_ = parser.get();
    XML_SetUserData(parser_, this);
    XML_SetElementHandler(
        parser_, [](void* self, const char* name, const char** each) { of(self).start(name, each); },
        [](void* self, const char*) { of(self).end(); });
    XML_SetCharacterDataHandler(parser_, [](void* self, const char* text, int size) {
      of(self).text_.append(text, static_cast<std::size_t>(size));
    });
    XML_SetCdataSectionHandler(
        parser_, [](void* self) { of(self).flush(false); }, [](void* self) { of(self).flush(true); });
    XML_SetXmlDeclHandler(parser_, [](void* self, const char* number, const char*, int) {
      of(self).version = number != nullptr ? number : "1.0";
    });
    XML_SetNotStandaloneHandler(parser_, [](void* self) { return of(self).may_skip = true, 1; });
    XML_SetSkippedEntityHandler(
        parser_, [](void* self, const char*, int is_parameter) { of(self).skipped |= is_parameter == 0; });
    XML_SetExternalEntityRefHandlerArg(parser_, reinterpret_cast<XML_Parser>(this));
    XML_SetExternalEntityRefHandler(parser_, [](XML_Parser self, const char*, const char*, const char*, const char*) {
      return reinterpret_cast<Bare*>(self)->outside = true, 1;
    });
    accepted = XML_Parse(parser_, bytes.data(), static_cast<int>(bytes.size()), 1) == XML_STATUS_OK;
    line = static_cast<std::int64_t>(XML_GetCurrentLineNumber(parser_));
    column = static_cast<std::int64_t>(XML_GetCurrentColumnNumber(parser_)) + 1;
  }

  bool accepted;
  std::int64_t line;  // of the error
  std::int64_t column;
  std::string version = "1.0";
  bool may_skip = false;  // there are declarations that are not read
  bool skipped = false;   // a reference to what was not declared
  bool outside = false;   // a reference to another file
  std::string root;
  std::string tree;
  std::map<std::string, int> elements;

 private:
  static Bare& of(void* self) { return *static_cast<Bare*>(self); }
  void start(const char* name, const char** each) {
    flush(false);
    if (open_.empty()) root = name;
    ++elements[name];
    tree += std::string("<") + name + "\n";
    for (; *each != nullptr; each += 2) tree += std::string(each[0]) + "=" + each[1] + "\n";
    open_.emplace_back();
  }
  void end() {
    flush(false);
    tree += ">" + open_.back() + "\n";
    const std::string inside = std::move(open_.back());
    open_.pop_back();
    if (!open_.empty()) open_.back() += inside;
  }
  void flush(bool even_if_blank) {
    if (even_if_blank || text_.find_first_not_of(" \t\r\n") != std::string::npos) {
      tree += "\"" + text_ + "\n";
      open_.back() += text_;
    }
    text_.clear();
  }

  XML_Parser parser_;
  std::string text_;
  std::vector<std::string> open_;  // the text inside, so far
};

std::string utf8(const Variant& value) { return to_utf8(to_text(value)); }

// The tree as a caller of the interfaces finds it, in the same words.
void dump(IXMLDOMNode& node, std::string& tree) {
  const auto attributes = node.attributes();
  if (!attributes) {
    if (node.nodeName() != u"#text" || node.childNodes()->length() != 0) tree += "?";
    tree += "\"" + utf8(node.nodeTypedValue()) + "\n";
    return;
  }
  tree += "<" + to_utf8(node.nodeName()) + "\n";
  for (std::int32_t i = 0; i < attributes->length(); ++i) {
    const auto each = attributes->item(i);
    const bool found = attributes->getNamedItem(String(each->nodeName()))->nodeValue() == each->nodeTypedValue();
    tree += to_utf8(each->nodeName()) + (found ? "=" : "?") + utf8(each->nodeTypedValue()) + "\n";
  }
  const auto children = node.childNodes();
  for (std::int32_t i = 0; i < children->length(); ++i) dump(*children->item(i), tree);
  tree += ">" + utf8(node.nodeTypedValue()) + "\n";
}

// The promise by which the reader refuses what expat reads, or refuses it earlier, as far as expat has met what it is about; else
// nothing.
std::string promise(const Bare& bare, const std::string& reason) {
  const auto says = [&](const char* words) { return reason.find(words) != std::string::npos; };
  if (says("stands for another file") && bare.outside) return "no other file";
  if (says("is not declared") && (bare.skipped || bare.may_skip)) return "no undeclared entity";
  if (says("the version of XML") && !bare.version.starts_with("1.")) return "XML 1.0 to 1.9";
  if (says("refers to itself") && !bare.accepted) return "circles are found where they are declared";
  return {};
}

std::string in_a_line(std::string text) {
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

std::string difference(const Bare& bare, ExpatDocument& document) {
  const auto root = document.selectSingleNode(from_utf8(bare.root));
  if (!root) return "another document element";
  std::string tree;
  dump(*root, tree);
  if (tree != bare.tree) return "another tree: " + in_a_line(tree) + " instead of " + in_a_line(bare.tree);
  for (const auto& [name, count] : bare.elements) {
    if (document.getElementsByTagName(from_utf8(name))->length() != count) return "another number of " + name;
  }
  return {};
}

void compare(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  const Bare bare(bytes);
  const auto document = make<ExpatDocument>();
  const bool accepted = document->load(from_utf8(path));
  const FileError& error = last_file_error();
  std::string rule;
  std::string wrong;
  if (accepted) {
    wrong = !bare.accepted                 ? "read, but expat refuses it"
            : bare.skipped || bare.outside ? "read without what it refers to"
                                           : difference(bare, *document);
  } else if (bare.accepted || std::pair(error.line, error.column) != std::pair(bare.line, bare.column)) {
    rule = promise(bare, error.reason);
    if (rule.empty()) wrong = "refused: " + to_line(error);
  }
  const auto word = [](bool yes) { return yes ? "accept" : "refuse"; };
  std::cout << path << '\t' << word(bare.accepted) << '\t' << word(accepted) << '\t' << rule << '\t' << wrong << '\n';
}

}  // namespace

int main(int, char** arguments) {
  std::ifstream list(arguments[1]);
  for (std::string path; std::getline(list, path);) compare(path);
}
