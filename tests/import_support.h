// What the tests of the ExamView import share: one load and all that can be seen of it as lines of text, and documents
// whose calls fail where a test or the file itself says so.
#pragma once

#include "hedro34/xml/xml_document.h"
#include "tests/test_lines.h"

namespace hedro34::testing::examview {

using namespace test_lines;

// A test, the way in which it is loaded, and a recorder around it.
struct Import {
  // The result, "cancelled" where the variable was set, and the test; its questions; then boxes and failures.
  Lines load_path(const String& path);
  Lines load(std::string_view xml);

  // The questions of a file with this content, then boxes and failures.
  Lines questions(const std::string& content);

  // The letters of the odd and of the even scale.
  std::string scales() const;

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
inline const std::string rejected = "1234 The parser refuses: HEDRO34 - clsHEDROTest.";  // before the operation

// While it lives, documents are brittle: of the document itself the call named `failing` fails, and an element fails at the
// call that its attribute `fails` names ("childNodes"; "item" from the second child on). Without a failure there is nothing for "nextNode" of a list and
// for "no attributes" of an element, and "own nodes" gives the children of our own document.
class BrittleDocuments : public XmlDocumentFactory {
 public:
  BrittleDocuments();
  ~BrittleDocuments() override;
  Ref<IXMLDOMDocument2> document() override;

  String failing;

 private:
  XmlDocumentFactory* former_;
};

}  // namespace hedro34::testing::examview
