// The command `show`: a test as the library reads it, for a person or as JSON.
#pragma once

#include <string>

#include "hedro34/model/clsHEDROTest.h"
#include "host/arguments.h"
#include "host/messages.h"

namespace host {

// Loads the test and prints it. Throws a `Stop` when it cannot be loaded or printed.
void show(const ShowCommand& command, Messages& messages);

// The test for a person: a heading, the scales, then the questions with their choices and keys. Lines are as long as the
// texts in them.
std::string as_text(const hedro34::clsHEDROTest& test);

// The test as one JSON object with every member of the documented order.
std::string as_json(const hedro34::clsHEDROTest& test);

}  // namespace host
