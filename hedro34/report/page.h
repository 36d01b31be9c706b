// The page as HTML, section by section. It stands alone: no script, nothing fetched, and a content policy that forbids both. A
// program may rely on what stands in `data-` attributes and on these ids:
//
//   #look-first                      notices and messages, each a list element
//   #sheet [data-field="3"]          a field of the answer sheet by its number: `.bubbles` holds an element for each choice, with
//                                    the class `filled` for a correct one; `.ungraded` and `.subjective` tell fields apart
//   #key-1, #key-2 ...               the key of a version: a table with a row [data-field="3"] for each graded field
//   #questions [data-question="3"]   a question by its number in the document, which is that of its field
//   #objectives, #left-out           objectives with their questions; what each test lost
#pragma once

#include <string>
#include <string_view>

#include "hedro34/report/html_text.h"
#include "hedro34/report/report_data.h"

namespace hedro34 {

std::string page_of(const ReportData& data, StringView title, const std::vector<String>& messages);

// The sections, in the order of the page. Each writes itself whole, or nothing when there is nothing to say.
void write_sheet(HtmlText& html, const ReportData& data);
void write_keys(HtmlText& html, const ReportData& data, StringView title);
void write_questions(HtmlText& html, const ReportData& data);
void write_objectives(HtmlText& html, const ReportData& data);
void write_left_out(HtmlText& html, const ReportData& data);

// A row of bubbles, those of `answers` filled; a choice without a label is not there. For who cannot see it, it is an image
// whose words say which ones are filled.
void write_bubbles(HtmlText& html, const std::vector<String>& labels, const std::vector<std::int32_t>& answers);

// "1 field", "2 fields".
void write_count(HtmlText& html, std::int64_t count, std::string_view one, std::string_view many);

std::string_view page_style() noexcept;

}  // namespace hedro34
