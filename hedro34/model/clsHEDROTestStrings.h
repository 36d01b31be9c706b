// The library's ordered list of strings: answers, objectives and scales. See collection.h for the rules of all collections.
#pragma once

#include <vector>

#include "hedro34/model/collection.h"

namespace hedro34 {

class HEDRO34_API clsHEDROTestStrings final : public Collection<clsHEDROTestStrings, String> {
 public:
  static constexpr const char16_t* class_name = u"clsHEDROTestStrings";

  static constexpr std::size_t added_limit = 50;  // units of an element that is added

  // Adds the first 50 units of `Item` at the end, or before or behind the element that `Before` or `After` names; True when
  // it was added. A `Key` in use, and a `Before` or `After` that names nothing, is a failure.
  bool Add(StringView Item, const Variant& Key = missing, const Variant& Before = missing,
           const Variant& After = missing);

  // Adds every element in order, without keys. An array without bounds is a failure.
  bool AddArray(const Array<String>& Value);

  // Splits at every delimiter and adds all parts, the empty ones too. An empty `Items` adds nothing and gives False; an empty
  // delimiter splits nothing.
  bool AddDelimitedString(StringView Items, StringView sDelimiter = tab);

  // Puts the first 255 units of `sValue` in place of the element. It keeps its position and loses its key. Nothing happens
  // when there is no such element.
  void SetItem(const Variant& Index, StringView sValue);

  // The elements with the delimiter between them, or from the lower bound up; without bounds for an empty collection.
  String AsString(StringView sDelimiter = tab) const { return as_string(sDelimiter); }
  Array<String> AsArray(std::int32_t lLowerBound = 1) const { return as_array(lLowerBound); }

  // A new collection, filled through tab-joined text: without keys, each element cut to 50 units, an element with a tab
  // split in two, and a single empty element lost. An empty reference after a failure.
  Ref<clsHEDROTestStrings> Copy() const;

  // The element where it stands in this collection, which holds until it changes; empty when there is none at the position.
  // Not to be seen by name.
  StringView view(std::int32_t position) const noexcept {
    return position >= 1 && position <= items_.count() ? items_.at(position) : StringView();
  }

  // The elements that a copy would have, where they stand in this collection; they hold until it changes. Unlike the
  // operations it lets failures leave. Not to be seen by name.
  std::vector<StringView> in_copy() const;

 private:
  template <class Use>
  void each_in_copy(Use use) const;
};

}  // namespace hedro34
