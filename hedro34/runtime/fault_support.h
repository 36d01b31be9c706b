// HEDRO34_TRANSLATES_FAULTS is defined where native faults are translated: g++ for Linux on x86-64 and for Windows, the flags
// that let an instruction throw (cmake/faults.cmake gives them together with HEDRO34_FAULTS), and no sanitizer, which would
// lose its own handlers.
#pragma once

#if defined(HEDRO34_FAULTS) && defined(__GNUC__) && !defined(__clang__) && !defined(__SANITIZE_ADDRESS__) && \
    !defined(__SANITIZE_THREAD__) &&                                                                         \
    ((defined(__x86_64__) && defined(__linux__)) || (defined(_WIN32) && (defined(__x86_64__) || defined(__i386__))))
#define HEDRO34_TRANSLATES_FAULTS 1
#endif
