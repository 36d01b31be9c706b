// A host with classes of its own in place of the library's, for the shared library: virtual calls, failures, native faults and
// casts cross the boundary in both directions. Says what it saw.
#include <hedro34/component.h>
#include <hedro34/hedro34.h>

#include <iostream>
#include <stdexcept>
#include <vector>

using namespace hedro34;

struct Errors : Object {
  Variant Call(StringView, std::span<Variant> report) override {
    std::cout << "reported " << to_utf8(to_text(report[0])) << ": " << to_utf8(to_text(report[2])) << " at "
              << to_utf8(to_text(report[3])) << '\n';
    return std::int16_t{0};
  }
};

struct Box : MessageBox {
  std::int32_t Show(StringView text, std::int32_t, StringView) override {
    std::cout << "box " << to_utf8(text) << '\n';
    return answer_ok;
  }
};

// Fails as its path says.
struct Document : IXMLDOMDocument2 {
  void set_async(bool) override {}
  bool load(const Variant& path) override {
    const String text = to_text(path);
    if (text == u"own") throw Failure(4711, u"own words");
    if (text == u"other") throw std::runtime_error("no failure of ours");
    if (text == u"fault") *nowhere = 1;
    return ExpatDocument().load(path);
  }
  Ref<IXMLDOMElement> selectSingleNode(StringView) override { return {}; }
  Ref<IXMLDOMNodeList> getElementsByTagName(StringView) override { return {}; }

  volatile int* volatile nowhere = nullptr;
};

struct Documents : XmlDocumentFactory {
  Ref<IXMLDOMDocument2> document() override { return make<Document>(); }
};

int main() {
  Main();
  static Box box;
  static Documents documents;
  platform().message_box = &box;
  platform().xml_documents = &documents;
  auto test = make<clsHEDROTest>();
  const Ref<Object> errors = make<Errors>();
  test->SetError(errors);
  for (const char16_t* path : {u"own", u"other", u"fault"}) std::cout << test->LoadXML(path) << '\n';
  test->SetError({});
  test->LoadXML(u"own");

  try {
    make<FormTemplate>()->pages().Item(5);
  } catch (const Failure& failure) {
    std::cout << "caught " << failure.number << '\n';
  }
  try {
    make<FormChoiceList>()->Item(u"first");
  } catch (const std::exception& failure) {
    std::cout << "caught " << failure.what() << '\n';
  }

  const Ref<TIBTemplate> form = make<FormTemplate>();
  const Ref<Object> document = documents.document();
  std::cout << "casts " << !!ref_cast<FormTemplate>(form->Copy(false)) << !!ref_cast<Document>(document)
            << !!ref_cast<IXMLDOMDocument2>(document) << !!ref_cast<ExpatDocument>(document)
            << !!ref_cast<Errors>(errors) << !!ref_cast<clsHEDROTest>(own_object(identity_of(test).get())) << '\n';

  // The list has to hear of a name that is written here.
  std::vector<Ref<clsHEDROTestQuestion>> questions;
  for (const char16_t* id : {u"1", u"2"}) {
    questions.push_back(make<clsHEDROTestQuestion>());
    questions.back()->ID = id;
    test->Questions->Add(questions.back());
  }
  std::cout << "position " << test->Questions->first_position(2);
  questions[1]->ID = u"1";
  std::cout << ", renamed " << test->Questions->first_position(2) << '\n';
}
