// The order of one version of a test: for each question ID, in the order of the version, its place from 1 as it was when the
// entry was added. Entries are not renumbered when one is removed.
#pragma once

#include "hedro34/model/collection.h"

namespace hedro34 {

class clsHEDROTestSequenceOrder final : public Collection<clsHEDROTestSequenceOrder, std::int32_t> {
 public:
  static constexpr const char16_t* class_name = u"clsHEDROTestSequenceOrder";

  void Add(StringView sQuestionID);  // adds `Count` + 1 under the ID; an ID that is there already is a failure
  void Remove(const Variant& vKey);  // nothing happens when there is no such entry
  void RemoveAll();
  std::int32_t Item(const Variant& vKey) const;  // the place stored under the ID or at the position, or 0

  Array<std::int32_t> AsArray(std::int32_t lLowerBound = 1) const;  // the places; without bounds for an empty order
  String AsString(StringView sDelimiter = tab) const;               // the places in decimal

 private:
  friend class Collection<clsHEDROTestSequenceOrder, std::int32_t>;
};

}  // namespace hedro34
