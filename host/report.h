// The command `report`: the page of a merge, from the files that it wrote.
#pragma once

#include "host/arguments.h"

namespace host {

// Reads document and form and writes the page. Throws a `Stop` when one cannot be read or the page not be written.
void report(const ReportCommand& command);

}  // namespace host
