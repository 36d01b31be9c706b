// The merge object: everything that a merge works on, and the operations that prepare and run it. The host fills the fields,
// calls `RemoveInvalid`, with several versions `ValidTestVersions`, then `Merge`, and reads `TemplateOut` and `WENKTD`.
//
// Refusals of the library's own checks are message boxes and False; failures are reported once and give False. No operation
// undoes what it has done.
#pragma once

#include "hedro34/documents/TIBTemplate.h"
#include "hedro34/documents/WENKtdDocument.h"
#include "hedro34/model/clsHEDROTests.h"

namespace hedro34 {

class HEDRO34_API clsHEDRO final : public Object {
 public:
  clsHEDRO();
  ~clsHEDRO() override;

  Ref<TIBTemplate> TemplateIn;  // the form template that a merge reads; it stays as it is

  // Must hold a template before `Merge`, which clears that one and puts the changed copy in its place. It must be another
  // object than `TemplateIn`, which would be cleared before it is copied.
  Ref<TIBTemplate> TemplateOut;
  Ref<clsHEDROTests> Tests;    // the test at position 1, its further versions behind it
  Ref<WENKtdDocument> WENKTD;  // the document that `Merge` empties and fills

  // Takes every question out of the tests that is not true/false, yes/no, multiple choice or subjective, then those beyond
  // `lMaxQuestions` (0 or less: no limit), and rebuilds the sequences of a test that lost some. Tells the user under
  // `Verbose`. False at the first test without a supported question (an empty test is passed over).
  bool RemoveInvalid(std::int32_t lMaxQuestions = 0);

  // Merges the first test with `TemplateIn`: the n-th graded field takes the n-th question. True when it ran to its end.
  // A False of the checks before the copy leaves `TemplateOut` and the document as they were. When clearing or copying fails,
  // `TemplateOut` is still the former object, cleared or not. From then on it is the copy, as far as it was changed, and the
  // document, which is emptied once the names of the fields are read, holds what was written so far.
  // From inside of it, as when one of the host's objects that it calls does so, it is failure 5 and False, and the merge that
  // is under way goes on.
  bool Merge();

  bool Verbose = true;  // whether warnings and refusals are shown, but for those of `ValidTestVersions`

 private:
  bool merging_ = false;  // here, where it takes no room

 public:
  // Whether all tests hold the questions of the first one, by ID, each with as many answers and the same correct ones. The
  // first difference is shown whatever `Verbose` says.
  bool ValidTestVersions();

  // The field that holds the version identifier, from 1; `Merge` lowers it by the fields that stop being graded before it.
  std::int32_t SequenceQuestion = 0;

  // Stores the error object for all failures on this thread; an empty reference takes it away. Gives whether there is one.
  bool SetError(const Ref<Object>& oErr);

 private:
  friend class MergeRun;
  bool BuildSequences(const KeyedList<std::int32_t>& oFieldNumbers);
  bool ValidVersionIdentifier(StringView sVersion);
};

}  // namespace hedro34
