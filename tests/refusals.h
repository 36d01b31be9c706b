// Rows of files that a reader refuses, and the answer of a statement that fails.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <span>
#include <string>

#include "hedro34/base/failure.h"
#include "hedro34/platform/refusal.h"

namespace hedro34::testing {

struct RefusalRow {
  const char* what;
  std::string file;
  Refusal::Kind kind;
  const char* line;  // the refusal as one line for the path "f"
};

// Reads each file into the object and compares the refusals; `unchanged` says what the object must still hold after each.
template <class Target>
void expect_refusals(Target& target, std::span<const RefusalRow> rows, const std::string& unchanged) {
  for (const RefusalRow& row : rows) {
    SCOPED_TRACE(row.what);
    forget_refusal();
    EXPECT_FALSE(target.read(row.file, u"f"));
    EXPECT_EQ(last_refusal().kind, row.kind);
    EXPECT_EQ(to_line(last_refusal()), row.line);
    EXPECT_EQ(target.to_json(), unchanged);
  }
}

// The number of the failure that the statement throws, 0 when it throws none.
inline std::int32_t failure_of(const std::function<void()>& statement) {
  try {
    statement();
  } catch (const Failure& failure) {
    return failure.number;
  }
  return 0;
}

}  // namespace hedro34::testing
