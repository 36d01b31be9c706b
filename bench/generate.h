// Generated input for the benchmarks: tests as ExamView exports them, of the usual mix of types and about 900 bytes a question,
// and forms with a field for each question.
#pragma once

#include <string>
#include <vector>

#include "hedro34/documents/form_template.h"

namespace hedro34::bench {

// The XML of a test with so many questions, one or two objectives each out of `objectives` in all (0: none).
std::string test_xml(int questions, int objectives);

// A form with so many graded fields of five choices, 50 on a page.
Ref<FormTemplate> form(int fields);

}  // namespace hedro34::bench
