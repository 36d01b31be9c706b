// Writes an object as JSON by its table: every member in order, two blanks of indentation, a list of plain values on one
// line, a line feed at the end. Floats take the shortest form that reads back to the same 64-bit value; a lone surrogate
// becomes U+FFFD. Memory that runs out is thrown.
#pragma once

#include <optional>
#include <string>

#include "hedro34/json/json_table.h"
#include "hedro34/platform/pending_file.h"

namespace hedro34 {

// The whole text. Nothing when it could not be read back: a number is not finite, or the check of a table objects;
// `last_file_error()` then names `path`, the pointer and the reason.
std::optional<std::string> write_json(const JsonTable& table, Object& root, StringView path);

// Writes that text to a file beside its target, in parts. Nothing: `last_file_error()` says why.
std::optional<PendingFile> prepare_json(const JsonTable& table, Object& root, StringView path);

// Writes that text to a file, whole or not at all. False: `last_file_error()` says why, and the file keeps its content. What
// killed processes have left in its folder is removed.
bool save_json(const JsonTable& table, Object& root, StringView path);

}  // namespace hedro34
