// HEDRO34_API stands in front of what a program can use of the shared library; all else in there is hidden. Programs that link
// the static library, and Windows, have it too and need no such word.
#pragma once

#ifdef _WIN32
#define HEDRO34_API
#else
#define HEDRO34_API [[gnu::visibility("default")]]
#endif
