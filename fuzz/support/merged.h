// What must hold of a merge that came to its end: the keys above all, worked out from the tests without the merge's own steps.
#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "hedro34/documents/data_document.h"
#include "hedro34/documents/form_template.h"
#include "hedro34/merge/clsHEDRO.h"
#include "fuzz/support/support.h"

namespace hedro34::fuzz {

DataDocument& document_of(clsHEDRO& merge);

// Each graded field has its question, in order, with its key and texts; the versions put each question where they have it.
void check_merged(clsHEDRO& merge);

// The page of it is whole, and nothing of a file is markup on it.
void check_page(clsHEDRO& merge, const std::vector<std::string>& messages);

// The saved document as a test: as many questions, and their keys as far as labels tell them.
void check_loaded(clsHEDRO& merge, const clsHEDROTest& test);

// The merge of that test gives the keys of the first one, as far as labels tell them.
void check_same_keys(clsHEDRO& first, clsHEDRO& second);

}  // namespace hedro34::fuzz
