// Reading the tests that a command names.
#pragma once

#include "hedro34/model/clsHEDROTest.h"
#include "host/arguments.h"
#include "host/input.h"
#include "host/messages.h"

namespace host {

// The path as the library takes that of a KTD document: with "\" between folders, and behind ".\" when it is a mere name
// with a period in it, so that the test gets its title from the file's name.
hedro34::String ktd_path(hedro34::String path);

// Whether the first character of a file behind a byte-order mark and white space is "{". Throws a `Stop` for one that cannot be
// read.
bool begins_as_json(const Input& input);

// A new test from an ExamView file or a KTD document, whichever the file is. Throws a `Stop` when the library answers False:
// `BadInput` when the file cannot be used, `AnsweredFalse` when it is in order but gives no test.
hedro34::Ref<hedro34::clsHEDROTest> load_test(const hedro34::String& path, const ImportOptions& options,
                                              const Messages& messages);
hedro34::Ref<hedro34::clsHEDROTest> load_test(const Input& input, const ImportOptions& options,
                                              const Messages& messages);

}  // namespace host
