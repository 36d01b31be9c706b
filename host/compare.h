// The command `compare`: how the versions of a test differ from the first one, by the rules by which `merge` takes them.
#pragma once

#include "host/arguments.h"
#include "host/messages.h"

namespace host {

// Loads the tests and prints the differences. Throws a `Stop` when one cannot be loaded, and with `AnsweredFalse` when `merge`
// would not take all of them.
void compare(const CompareCommand& command, Messages& messages);

}  // namespace host
