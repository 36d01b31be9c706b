// HEDRO34_FAULT_SIGNALS is defined where native faults are translated: g++ for x86-64 Linux, the flags that let an
// instruction throw (cmake/faults.cmake gives them together with HEDRO34_FAULTS), and no sanitizer, which would lose its own
// handlers.
#pragma once

#if defined(HEDRO34_FAULTS) && defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__) && \
    defined(__linux__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define HEDRO34_FAULT_SIGNALS 1
#endif
