// The command `merge`: the road of a merge, from the form and the tests to the files.
#pragma once

#include "host/arguments.h"
#include "host/messages.h"

namespace host {

// Runs it and prints a summary. Throws a `Stop` at the first step that fails. The outputs are written at the end, both or
// neither; neither as well when the library has reported a failure, unless the command is to keep going.
void merge(const MergeCommand& command, Messages& messages);

}  // namespace host
