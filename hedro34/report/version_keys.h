// The keys of a data document as a person reads them off a sheet: for each version of the test and each field of the form the
// question that stands there, and its key in the labels that the field bears. Odd and even fields may bear other letters, so a
// question that is C at its own field may be H at the field where another version has it.
#pragma once

#include <cstdint>
#include <vector>

#include "hedro34/documents/WENKtdDocument.h"

namespace hedro34 {

// What is wrong with a key at its place. Whoever shows the key says it: such a sheet marks a class wrongly.
enum class KeyFault {
  None,
  NoLabel,     // the field has no label for one of the answers: nobody can mark it there
  NoQuestion,  // the version's order names no question of the document here
  Misplaced,   // the order names this question twice, or puts a graded question where none is graded, or the reverse
  Unreadable,  // which choices the key means cannot be told
  Disagrees,   // the labels and the numbers of the document's key name different choices
  Ambiguous,   // the key's labels can be read as other choices: one stands twice at the field or holds a comma
};

// Words for a person, such as "the field has no label for this answer"; empty for `None`.
HEDRO34_API StringView words_of(KeyFault fault) noexcept;

// The words for a version whose order ends before its last graded fields.
HEDRO34_API String words_on_missing(std::int32_t graded_fields);

// What stands at one field in one version.
struct KeyPlace {
  std::int32_t field = 0;     // from 1
  std::int32_t question = 0;  // the question of the document that stands there, from 1; 0 when there is none

  // "C", "(A,C)", empty without a correct answer, also where the document has "()". At its own field the question's label key
  // as the document has it, else the labels of the field. An answer for which the field has no label is its number in brackets:
  // "(A,[5])".
  String key;
  std::vector<std::int32_t> answers;  // the choices of the field that are correct, from 1, in the order of the key
  bool graded = false;                // the field
  bool subjective = false;            // the question
  KeyFault fault = KeyFault::None;

  bool on_sheet() const noexcept { return fault == KeyFault::None; }  // the key can be marked as it stands here
};

// The key of one version.
struct VersionKey {
  String label;                  // the version's identifier; empty when the document has no versions
  std::vector<KeyPlace> places;  // from the first field on, as many as the order names
  std::int32_t missing = 0;      // graded fields behind them

  // Nothing for a field behind the places.
  const KeyPlace* at(std::int32_t field) const noexcept {
    const auto offset = static_cast<std::size_t>(field - 1);
    return offset < places.size() ? &places[offset] : nullptr;
  }
};

// The keys of a document.
struct DocumentKeys {
  std::vector<KeyPlace> own;         // each question of the document at its own field, whatever the versions say
  std::vector<VersionKey> versions;  // at least one
  std::vector<String> faults;        // what is wrong with the versions as a whole: sentences for a person
};

// The versions are the document's, the first one first. A document whose `VersionMode` is not 2, or that has no orders, has one
// version, without a label, in which each question stands at its own field. What an order says of fields that the document
// does not have is passed over. Time and memory are linear in the questions and the entries of the orders, with the key of
// each. A failure that an object of the host throws leaves as it is.
HEDRO34_API DocumentKeys document_keys(WENKtdDocument& document);

}  // namespace hedro34
