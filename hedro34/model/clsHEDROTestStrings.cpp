#include "hedro34/model/clsHEDROTestStrings.h"

#include <algorithm>

namespace hedro34 {
namespace {

constexpr std::size_t written_limit = 255;

Array<String> split(StringView text, StringView delimiter) {
  std::vector<String> parts;
  while (true) {
    const std::size_t end = delimiter.empty() ? StringView::npos : text.find(delimiter);
    parts.emplace_back(text.substr(0, end));
    if (end == StringView::npos) return Array<String>::of(std::move(parts), 0);
    text.remove_prefix(end + delimiter.size());
  }
}

}  // namespace

bool clsHEDROTestStrings::Add(StringView Item, const Variant& Key, const Variant& Before, const Variant& After) {
  return trap<bool>(here(u"Add"), [&](auto& result) {
    items_.add(Item.substr(0, added_limit), Key, Before, After);
    result = true;
  });
}

bool clsHEDROTestStrings::AddArray(const Array<String>& Value) {
  return trap<bool>(here(u"AddArray"), [&](auto& result) {
    const std::int32_t last = Value.UBound();
    for (std::int64_t i = Value.LBound(); i <= last; ++i) Add(Value[i]);
    result = true;
  });
}

bool clsHEDROTestStrings::AddDelimitedString(StringView Items, StringView sDelimiter) {
  return trap<bool>(here(u"AddDelimitedString"), [&](auto& result) {
    if (Items.empty()) return;
    result = AddArray(split(Items, sDelimiter));
  });
}

void clsHEDROTestStrings::SetItem(const Variant& Index, StringView sValue) {
  trap(here(u"Item"), [&] {
    if (!Exists(Index)) return;
    items_.add(sValue.substr(0, written_limit), missing, missing, Index);
    items_.remove(Index);
  });
}

// As if the elements went through text that is joined and split again at tabs, without the text: a single empty element is an
// empty text, which adds nothing.
template <class Use>
void clsHEDROTestStrings::each_in_copy(Use use) const {
  if (items_.count() == 1 && items_.at(1).empty()) return;
  for (std::int32_t i = 1; i <= items_.count(); ++i) {
    for (StringView rest = items_.at(i);;) {
      const std::size_t end = rest.find(*tab);
      use(rest.substr(0, std::min(end, added_limit)));
      if (end == StringView::npos) break;
      rest.remove_prefix(end + 1);
    }
  }
}

Ref<clsHEDROTestStrings> clsHEDROTestStrings::Copy() const {
  return trap<Ref<clsHEDROTestStrings>>(here(u"Copy"), [&](auto& result) {
    auto copy = make<clsHEDROTestStrings>();
    each_in_copy([&](StringView text) { copy->items_.append(text); });
    result = std::move(copy);
  });
}

std::vector<StringView> clsHEDROTestStrings::in_copy() const {
  std::vector<StringView> texts;
  texts.reserve(static_cast<std::size_t>(items_.count()));
  each_in_copy([&](StringView text) { texts.push_back(text); });
  return texts;
}

}  // namespace hedro34
