// The command `show`: tests, data documents and form templates, for a person, as JSON or as a table.
#pragma once

#include <string>

#include "hedro34/documents/data_document.h"
#include "hedro34/documents/form_template.h"
#include "hedro34/model/clsHEDROTest.h"
#include "host/arguments.h"
#include "host/messages.h"

namespace host {

// Reads every FILE, then prints all of them. Throws a `Stop` when one cannot be read, with nothing printed, or when the system
// does not take what is printed.
void show(const ShowCommand& command, Messages& messages);

// The test for a person: a heading, the scales, then the questions with their choices and keys. Lines are as long as the
// texts in them.
std::string as_text(const hedro34::clsHEDROTest& test);

// The versions of a document for a person: for each field the question that stands there and its key.
std::string versions_as_text(hedro34::DataDocument& document);

// The form for a person: counts, then pages, regions and fields. A continuation's fields have the numbers of those that it
// continues.
std::string as_text(hedro34::FormTemplate& form);

// The test as one JSON object with every member of the documented order.
std::string as_json(const hedro34::clsHEDROTest& test);

// The questions of the test as a table for a spreadsheet, by RFC 4180.
std::string as_csv(const hedro34::clsHEDROTest& test);

}  // namespace host
