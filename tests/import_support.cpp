#include "tests/import_support.h"

namespace hedro34::testing::examview {
namespace {

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
  Ref<IXMLDOMNamedNodeMap> attributes() override {
    return fails_ == u"no attributes" ? nullptr : checked(u"attributes").attributes();
  }
};

class BrittleList final : public Brittle<IXMLDOMNodeList> {
 public:
  using Brittle::Brittle;
  std::int32_t length() override { return target_->length(); }
  Ref<IXMLDOMNode> item(std::int32_t index) override {
    return make<BrittleNode>(checked(index > 0 ? u"item" : u"first").item(index));
  }
  Ref<IXMLDOMNode> nextNode() override {
    return fails_ == u"nextNode" ? nullptr : Ref<IXMLDOMNode>(make<BrittleNode>(target_->nextNode()));
  }
};

Ref<IXMLDOMNodeList> BrittleNode::childNodes() {
  if (fails_ == u"own nodes") return target_->childNodes();
  return make<BrittleList>(checked(u"childNodes").childNodes(), fails_);
}

class BrittleDocument final : public Brittle<IXMLDOMDocument2> {
 public:
  using Brittle::Brittle;
  void set_async(bool value) override { checked(value ? u"async" : u"not async").set_async(value); }
  bool load(const Variant& path) override { return checked(u"load").load(path); }
  Ref<IXMLDOMElement> selectSingleNode(StringView name) override { return checked(name).selectSingleNode(name); }
  Ref<IXMLDOMNodeList> getElementsByTagName(StringView name) override {
    return make<BrittleList>(checked(name).getElementsByTagName(name), fails_);
  }
};

}  // namespace

Lines Import::load_path(const String& path) {
  bool cancelled = false;
  const bool result = test->LoadXML(path, odd_distractors_only, &cancelled, verbose);
  Lines lines = lines_of(*test);
  lines.front().insert(0, (result ? "True " : "False ") + std::string(cancelled ? "cancelled " : ""));
  lines.erase(lines.begin() + 1);  // the scales
  for (const std::string& report : recorder.take()) lines.push_back(report);
  return lines;
}

Lines Import::load(std::string_view xml) { return load_path(folder.write("test.xml", xml)); }

Lines Import::questions(const std::string& content) {
  Lines lines = load("<examview>" + content + "</examview>");
  lines.erase(lines.begin());
  return lines;
}

std::string Import::scales() const {
  return to_utf8(test->MultipleChoiceOddScale->AsString(u"") + u" " + test->MultipleChoiceEvenScale->AsString(u""));
}

BrittleDocuments::BrittleDocuments() : former_(platform().xml_documents) { platform().xml_documents = this; }
BrittleDocuments::~BrittleDocuments() { platform().xml_documents = former_; }

Ref<IXMLDOMDocument2> BrittleDocuments::document() {
  if (failing == u"document") fail(FailureNumber::CannotCreateObject);
  return make<BrittleDocument>(former_->document(), failing);
}

}  // namespace hedro34::testing::examview
