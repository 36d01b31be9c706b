// Loading of an ExamView file: header, questions, scales, and the question about partial credit.
#include "hedro34/model/clsHEDROTest.h"
#include "hedro34/platform/file_error.h"
#include "hedro34/platform/message_box.h"
#include "hedro34/platform/platform.h"
#include "hedro34/xml/xml_document.h"

namespace hedro34 {
namespace {

void read_header(clsHEDROTest& test, const Ref<IXMLDOMNodeList>& headers) {
  if (headers->length() < 1) return;
  const Ref<IXMLDOMNodeList> children = headers->item(0)->childNodes();
  const std::int32_t count = children->length();
  for (std::int32_t i = 0; i < count; ++i) {
    const Ref<IXMLDOMNode> child = children->item(i);
    const StringView name = child->nodeName();
    if (lower_equals(name, u"title")) test.Title = to_text(child->nodeTypedValue());
    if (lower_equals(name, u"version")) test.Version = to_text(child->nodeTypedValue());
  }
}

bool user_cancels_partial_credit() {
  return platform().message_box->Show(
             u"Warning: One or more test questions allow partial credit; however, partial credit is not supported. All "
             u"imported test questions will require that all correct answers be selected in order for the response to be "
             u"considered correct.",
             box_ok_cancel | box_exclamation, u"Partial Credit") == answer_cancel;
}

}  // namespace

bool clsHEDROTest::LoadXML(const String& sExamViewXMLFile, bool bOddDistractorsOnly, bool* bUserCancelled,
                           bool bVerbose) {
  return trap<bool>({u"clsHEDROTest", u"LoadXML"}, [&](auto& result) {
    clear_file_error();
    const String path = sExamViewXMLFile;  // it may be a text of this test, which `Clear` empties
    Clear();
    Source = HEDROTestSourceTypeExamView;
    bool bPartialCredit = false;
    const auto read = [&] {
      const Ref<IXMLDOMDocument2> document = platform().xml_documents->document();
      document->set_async(false);
      if (!document->load(path)) return;
      if (!document->selectSingleNode(u"examview")) {
        set_file_error({.kind = FileError::Kind::WrongKind,
                        .path = path,
                        .reason = "no ExamView file: the root element is not \"examview\""});
        return;
      }
      read_header(*this, document->getElementsByTagName(u"header"));
      const Ref<IXMLDOMNodeList> questions = document->getElementsByTagName(u"question");
      const std::int32_t count = questions->length();
      for (std::int32_t i = 0; i < count; ++i) AddXMLQuestion(questions->item(i), bPartialCredit, i + 1);
      const Ref<IXMLDOMNodeList> letters = document->getElementsByTagName(u"mc-choice-sequence");
      if (letters->length() > 0) PopulateMultipleChoiceScales(letters->nextNode(), bOddDistractorsOnly);
    };
    read();
    if (bPartialCredit && bVerbose && user_cancels_partial_credit()) {
      if (bUserCancelled != nullptr) *bUserCancelled = true;
      Clear();
      return;
    }
    if (!TrimScales()) return;
    result = Questions->Count() > 0;
  });
}

}  // namespace hedro34
