// What a test lost on its way to a sheet, for a person and among the messages.
#pragma once

#include <string>
#include <vector>

#include "hedro34/model/clsHEDROTest.h"
#include "host/messages.h"

namespace host {

// Keeps a note for each thing that the test left out, but for the first `from` of them. They name the file when it is given.
void keep_notes(Messages& messages, const hedro34::clsHEDROTest& test, std::size_t from, const hedro34::String* file);

// The ends of what `show` prints of a test: the questions that a merge removes or the load has removed, and what is not
// carried. Empty when there is none of them.
std::string left_out_sections(const hedro34::clsHEDROTest& test);

// What a merge of these tests, from these files, left out: at most two lines for each test, which name the file when there
// are several.
std::string left_out_lines(const std::vector<hedro34::Ref<hedro34::clsHEDROTest>>& tests,
                           const std::vector<hedro34::String>& files);

}  // namespace host
