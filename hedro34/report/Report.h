// The page that a person looks at before the sheets go out: the answer sheet with the key filled in, the key of each version,
// the questions, the objectives, and what the tests lost. A host fills the fields after a merge and saves the page:
//
//   auto report = make<Report>();
//   report->Document = merge->WENKTD;
//   report->Form = merge->TemplateOut;
//   for (std::int32_t i = 1; i <= merge->Tests->Count(); ++i) report->AddTest(merge->Tests->Item(i));
//   if (!report->Save(u"quiz.html")) std::cerr << to_line(last_file_error());
//
// The page is one HTML file that stands alone: no script, nothing fetched. What comes from files is text on it, never markup.
// Documents and templates may be the host's own; a failure that one of them throws leaves as it is.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "hedro34/documents/TIBTemplate.h"
#include "hedro34/documents/WENKtdDocument.h"
#include "hedro34/model/clsHEDROTest.h"
#include "hedro34/platform/pending_file.h"

namespace hedro34 {

class HEDRO34_API Report final : public Object {
 public:
  Ref<WENKtdDocument> Document;  // what the page is about; failure 91 as long as there is none

  // The merged form: its pages and regions are drawn. Without it, and with one that cannot belong to the document, the fields
  // stand one after the other; the page says so.
  Ref<TIBTemplate> Form;

  String Title;  // empty: that of the first test, else the document's description, else "Test"

  // Appends a test of the merge, the first version first: they have the texts of the choices and what was left out. Failure 91
  // for an empty reference.
  void AddTest(const Ref<clsHEDROTest>& test);

  // Appends what was said on the way, such as the text of a message box.
  void AddMessage(StringView text);

  // The page, UTF-8 or as text.
  std::string to_html() const;
  String Page() const { return from_utf8(to_html()); }

  // Writes the page to a file beside its target, ready to take its place. Nothing: `last_file_error()` says why.
  std::optional<PendingFile> prepare(const String& path) const;

  // Writes the page, whole or not at all. False: `last_file_error()` says why.
  bool Save(const String& path) const;

 private:
  String title() const;

  std::vector<Ref<clsHEDROTest>> tests_;
  std::vector<String> messages_;
};

}  // namespace hedro34
