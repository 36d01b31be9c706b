// A form that is read is written, and what was written is read and written again as it stands.
#include "hedro34/documents/form_template.h"
#include "fuzz/support/json_file.h"

void hedro34::fuzz::run(std::string_view input) { both_ways<FormTemplate>(input); }
