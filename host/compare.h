// The command `compare`: how the versions of a test differ from the first one, by the rules by which `merge` takes them.
#pragma once

#include <string>
#include <vector>

#include "hedro34/merge/version_differences.h"
#include "host/arguments.h"
#include "host/messages.h"

namespace host {

// Loads the tests and prints the differences. Throws a `Stop` when one cannot be loaded, and with `AnsweredFalse` when `merge`
// would not take all of them.
void compare(const CompareCommand& command, Messages& messages);

// A difference of the test that came from the file at this index, as one line, which begins with the file.
std::string line_of(const hedro34::VersionDifference& difference, const std::vector<hedro34::String>& files,
                    std::size_t index);

}  // namespace host
