// How further versions of a test differ from the first one, by the rules by which `clsHEDRO::ValidTestVersions` and
// `clsHEDROTest::AddSequence` take them, and all of it at once. Nothing is changed or shown.
//
//   VersionComparison comparison(tests->Item(1));
//   for (std::int32_t n = 2; n <= tests->Count(); ++n) {
//     for (const VersionDifference& difference : comparison.next(*tests->Item(n))) ...
//   }
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "hedro34/model/clsHEDROTest.h"

namespace hedro34 {

// One difference between a version and the first test.
struct VersionDifference {
  enum class Kind {
    Count,    // another number of questions; `first` and `here` are the numbers
    Missing,  // the version does not have a question; `first` is its number in its file
    New,      // nor the first test this one; `here` is its number in its file
    Answers,  // a question has another number of answers; the numbers
    Key,  // a question has other correct answers, as labels, or as numbers in brackets where the labels do not tell them apart
    Label,  // the version's label is used already; the label as it is used, and as it is here
    Type,  // at the place of a question the first test has one of another type; the type at the place, and the question's type
  };

  Kind kind;
  std::int32_t number =
      0;      // of the question in the version's file, or in the first test's for `Missing`; 0 for no question
  String id;  // of the question
  String first;
  String here;
  std::int32_t test = 1;  // whose is what `first` says, from 1; a label may be that of an earlier version
};

// The name of a kind: "count", "missing", "new", "answers", "key", "label", "type".
HEDRO34_API StringView name_of(VersionDifference::Kind kind) noexcept;

// Whether `ValidTestVersions` looks at differences of the kind; at the others `AddSequence` does.
HEDRO34_API bool refuses_validation(VersionDifference::Kind kind) noexcept;

// Compares the further versions of a test with the first one, one after the other.
class HEDRO34_API VersionComparison {
 public:
  // The labels used already are those of the first test's sequences, or its `Version` when it has none.
  explicit VersionComparison(Ref<clsHEDROTest> first);

  // The differences of the next version, in the order in which the two operations come to them; none when both take it. Types are
  // looked at only when the two have the same questions. The label of the version is used from here on. Answers that do not fit
  // into the 31 of `GetBitWiseRepresentation` are no failure here; any other failure is reported.
  std::vector<VersionDifference> next(const clsHEDROTest& version);

 private:
  Ref<clsHEDROTest> first_;
  std::unordered_map<String, std::int32_t, IgnoringCase, IgnoringCase> labels_;  // and whose each is
  std::int32_t tests_ = 1;                                                       // so far
};

}  // namespace hedro34
