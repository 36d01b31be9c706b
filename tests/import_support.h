// What the tests of the ExamView import share: one load and all that can be seen of it as lines of text, and documents
// whose calls fail where a test or the file itself says so.
#pragma once

#include "hedro34/xml/xml_document.h"
#include "tests/test_lines.h"

namespace hedro34::testing::examview {

using namespace test_lines;

inline std::string repeated(std::string_view text, std::size_t times) {
  std::string result;
  for (std::size_t i = 0; i < times; ++i) result += text;
  return result;
}

// A test, the way in which it is loaded, and a recorder around it.
struct Import {
  // The result, "cancelled" where the variable was set, and the test; its questions; then boxes and failures.
  Lines load_path(const String& path) {
    bool cancelled = false;
    const bool result = test->LoadXML(path, odd_distractors_only, &cancelled, verbose);
    Lines lines = lines_of(*test);
    lines.front().insert(0, (result ? "True " : "False ") + std::string(cancelled ? "cancelled " : ""));
    lines.erase(lines.begin() + 1);  // the scales
    for (const std::string& report : recorder.take()) lines.push_back(report);
    return lines;
  }
  Lines load(std::string_view xml) { return load_path(folder.write("test.xml", xml)); }

  // The questions of a file with this content, then boxes and failures.
  Lines questions(const std::string& content) {
    Lines lines = load("<examview>" + content + "</examview>");
    lines.erase(lines.begin());
    return lines;
  }

  // The letters of the odd and of the even scale.
  std::string scales() const {
    return to_utf8(test->MultipleChoiceOddScale->AsString(u"") + u" " + test->MultipleChoiceEvenScale->AsString(u""));
  }

  Ref<clsHEDROTest> test = make<clsHEDROTest>();
  bool odd_distractors_only = false;
  bool verbose = true;
  Recorder recorder;
  Folder folder;
};

inline const std::string partial_box =
    "box 49 \"Partial Credit\": Warning: One or more test questions allow partial credit; however, partial credit is "
    "not supported. All imported test questions will require that all correct answers be selected in order for the "
    "response to be considered correct.";
inline const std::string duplicate = reported(457, "clsHEDROTestQuestions.Add");
inline const std::string refused = "1234 The parser refuses: HEDRO34 - clsHEDROTest.";  // before the operation

// An object of a document that refuses one call.
template <class Interface>
class Brittle : public Interface {
 public:
  Brittle(Ref<Interface> target, StringView fails) : target_(std::move(target)), fails_(fails) {}

 protected:
  Interface& checked(StringView call) {
    if (fails_ == call) throw Failure(1234, u"The parser refuses");
    return *target_;
  }

  Ref<Interface> target_;
  String fails_;
};

// An element fails at the call that its attribute `fails` names ("childNodes"; "item" from the second child on).
class BrittleNode final : public Brittle<IXMLDOMNode> {
 public:
  explicit BrittleNode(const Ref<IXMLDOMNode>& target) : Brittle(target, u"") {
    const Ref<IXMLDOMNamedNodeMap> map = target->attributes();
    if (const auto fails = map ? map->getNamedItem(u"fails") : nullptr) fails_ = to_text(fails->nodeValue());
  }
  Ref<IXMLDOMNodeList> childNodes() override;
  StringView nodeName() override { return checked(u"nodeName").nodeName(); }
  StringView baseName() override { return checked(u"baseName").baseName(); }
  Variant nodeTypedValue() override { return checked(u"nodeTypedValue").nodeTypedValue(); }
  Variant nodeValue() override { return target_->nodeValue(); }
  Ref<IXMLDOMNamedNodeMap> attributes() override { return checked(u"attributes").attributes(); }
};

class BrittleList final : public Brittle<IXMLDOMNodeList> {
 public:
  using Brittle::Brittle;
  std::int32_t length() override { return target_->length(); }
  Ref<IXMLDOMNode> item(std::int32_t index) override {
    return make<BrittleNode>(checked(index > 0 ? u"item" : u"first").item(index));
  }
  Ref<IXMLDOMNode> nextNode() override { return make<BrittleNode>(target_->nextNode()); }
};

inline Ref<IXMLDOMNodeList> BrittleNode::childNodes() {
  return make<BrittleList>(checked(u"childNodes").childNodes(), fails_);
}

class BrittleDocument final : public Brittle<IXMLDOMDocument2> {
 public:
  using Brittle::Brittle;
  void set_async(bool value) override { checked(value ? u"async" : u"not async").set_async(value); }
  bool load(const Variant& path) override { return checked(u"load").load(path); }
  Ref<IXMLDOMElement> selectSingleNode(StringView name) override { return checked(name).selectSingleNode(name); }
  Ref<IXMLDOMNodeList> getElementsByTagName(StringView name) override {
    return make<BrittleList>(checked(name).getElementsByTagName(name), u"");
  }
};

// While it lives, documents are brittle, and of the document itself the call named `failing` fails.
class BrittleDocuments : public XmlDocumentFactory {
 public:
  BrittleDocuments() : former_(platform().xml_documents) { platform().xml_documents = this; }
  ~BrittleDocuments() override { platform().xml_documents = former_; }
  Ref<IXMLDOMDocument2> document() override {
    if (failing == u"document") fail(FailureNumber::CannotCreateObject);
    return make<BrittleDocument>(former_->document(), failing);
  }

  String failing;

 private:
  XmlDocumentFactory* former_;
};

}  // namespace hedro34::testing::examview
