// Benchmarks of tests in several versions, and of data documents as tests.
#pragma once

#include <benchmark/benchmark.h>

#include <string>

namespace hedro34::bench {

// Checks, records and merges `versions` versions of the test in `file`, which has `questions` questions.
void merge_versions(benchmark::State& state, const std::string& file, int questions, int versions);

// Writes the document of a merge of that test.
void write_document(const std::string& file, int questions, const std::string& document);

void load_document(benchmark::State& state, const std::string& document);   // as a test
void parse_document(benchmark::State& state, const std::string& document);  // with nlohmann-json, to its tree

}  // namespace hedro34::bench
