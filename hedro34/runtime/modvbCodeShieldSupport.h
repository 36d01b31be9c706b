// The translation of native faults: what the platform tells about one becomes a failure with a number and a name, which the
// nearest trap reports like any other. What is covered and what is not: docs/faults.md.
#pragma once

#include <array>
#include <cstdint>

#include "hedro34/base/text.h"

namespace hedro34 {

// What is known about a fault, in the layout of the platforms that have such a record. A record may link to another one,
// which it came up in.
struct EXCEPTION_RECORD {
  std::uint32_t ExceptionCode = 0;
  std::uint32_t ExceptionFlags = 0;
  EXCEPTION_RECORD* ExceptionRecord = nullptr;
  void* ExceptionAddress = nullptr;  // of the instruction
  std::uint32_t NumberParameters = 0;
  std::array<std::uintptr_t, 15> ExceptionInformation = {};
};

struct EXCEPTION_POINTERS {
  EXCEPTION_RECORD* ExceptionRecord = nullptr;
  void* ContextRecord = nullptr;  // the registers, as the platform has them
};

// Installs `vbcsExceptionFilter` for faults: once for the process, and once for the thread what it needs of its own. It is
// never removed. Does no more than remember the call where `translates_faults` is false.
void InstallExceptionFilter() noexcept;

// Throws the failure (code AND &H8EF) OR &H2710, with the exception's name as description and the filter's own name as
// source, for the last record of the chain.
[[noreturn]] void vbcsExceptionFilter(const EXCEPTION_POINTERS& pointers);

// "Access Violation" and so on; "Unknown (&HC0000001)" for a code without a name.
String GetExceptionName(std::uint32_t code);

// Whether this build turns native faults into failures.
bool translates_faults() noexcept;

}  // namespace hedro34
