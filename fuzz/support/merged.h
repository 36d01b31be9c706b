// What must hold of a merge that came to its end: the keys above all, worked out from the tests without the merge's own steps.
#pragma once

#include "hedro34/documents/data_document.h"
#include "hedro34/documents/form_template.h"
#include "hedro34/merge/clsHEDRO.h"
#include "fuzz/support/support.h"

namespace hedro34::fuzz {

// The elements of a collection, by position.
template <class List>
auto all(const Ref<List>& list) {
  std::vector<std::decay_t<decltype(list->Item(1))>> elements;
  for (std::int32_t i = 1; i <= list->Count(); ++i) elements.push_back(list->Item(i));
  return elements;
}

// Each graded field has its question, in order, with its key and texts; the versions put each question where they have it.
void check_merged(clsHEDRO& merge);

// The page of it is whole, and no text breaks out of its element.
void check_page(clsHEDRO& merge, const Lines& messages);

// The saved document as a test: as many questions, and their answers as far as labels tell them.
void check_loaded(clsHEDRO& merge, const clsHEDROTest& test);

}  // namespace hedro34::fuzz
