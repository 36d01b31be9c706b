// The order of one version of a test: for each question ID, in the order of the version, its place from 1 as it was when the
// entry was added. Entries are not renumbered when one is removed.
#pragma once

#include "hedro34/model/collection.h"

namespace hedro34 {

class HEDRO34_API clsHEDROTestSequenceOrder final : public Collection<clsHEDROTestSequenceOrder, std::int32_t> {
 public:
  static constexpr const char16_t* class_name = u"clsHEDROTestSequenceOrder";

  void Add(StringView sQuestionID);  // adds `Count` + 1 under the ID; an ID that is there already is a failure
  void Remove(const Variant& vKey) { Collection::Remove(vKey); }  // nothing happens when there is no such entry
  void RemoveAll();

  // The places, from the lower bound up; without bounds for an empty order. As text they are in decimal.
  Array<std::int32_t> AsArray(std::int32_t lLowerBound = 1) const { return as_array(lLowerBound); }
  String AsString(StringView sDelimiter = tab) const { return as_string(sDelimiter); }
};

}  // namespace hedro34
