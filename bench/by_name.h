// Benchmarks of calls by name against calls in C++, and of the trap around an operation.
#pragma once

#include <string>

namespace hedro34::bench {

// Registers "direct/PROPERTY" and "by_name/PROPERTY" for four properties, "plain" and "trap" for a body without and with a
// trap around it, and "questions/N": all questions of a test read by name.
void register_calls_by_name();

}  // namespace hedro34::bench
