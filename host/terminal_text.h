// Text as a terminal may be given it, and the columns that it takes there. Control characters and characters that turn the
// direction of what stands behind them never reach it; the marks U+200E, U+200F and U+061C, which turn nothing, do.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "hedro34/base/text.h"

namespace host {

// The text with U+FFFD for each embedding, override and isolate (U+202A to U+202E, U+2066 to U+2069).
hedro34::String without_turns(hedro34::StringView text);

// The same as UTF-8, in lines: CR, LF, CRLF and U+0085, U+2028, U+2029 are the ends of lines and become line feeds, all other
// control characters blanks.
std::string plain(hedro34::StringView text);

// The same as one line: its ends of lines are blanks as well.
std::string plain_line(hedro34::StringView text);

// The columns that a line of UTF-8 takes: two for a wide character, none for one that combines with what stands before it. A
// sequence of joined emoji counts as its parts, which is how most terminals show it.
std::size_t columns(std::string_view line);

// The line with blanks behind it, up to so many columns.
std::string padded(std::string line, std::size_t to);

}  // namespace host
