// Measures loading and merging and prints each as a ratio to what it is held against, with the limit beside it. All is
// measured in one run, the repetitions in random order, and the shortest CPU time of each counts.
//
//   hedro34_bench [--benchmark_... options]     all ratios
//   hedro34_bench --read FILE                   reads a test (.xml), data document (.ktd) or form (.json) and prints how much
//                                               memory that took, in kB at the peak
//   hedro34_bench --generate QUESTIONS FILE     writes a test

#include <benchmark/benchmark.h>
#include <expat.h>
#include <malloc.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <string>

#include "hedro34/hedro34.h"
#include "by_name.h"
#include "generate.h"
#include "tests/forwarding_host.h"
#include "versions.h"

namespace hedro34::bench {
namespace {

namespace fs = std::filesystem;

constexpr int objectives = 50;

class Silent : public testing::CallListener {
  void called(std::string_view, std::string_view) override {}
};

// One size of test, which is generated when it is first asked for.
class Input {
 public:
  Input(const fs::path& folder, int questions, int of_objectives)
      : name(std::to_string(questions) + (of_objectives > 0 ? "/objectives" : "")),
        count(questions),
        objectives(of_objectives),
        file_((folder / (std::to_string(questions) + "-" + std::to_string(of_objectives) + ".xml")).string()) {}

  const std::string& xml() const {
    if (xml_.empty()) {
      xml_ = test_xml(count, objectives);
      std::ofstream(file_, std::ios::binary) << xml_;
    }
    return xml_;
  }
  const std::string& file() const {
    xml();
    return file_;
  }

  std::string name;
  int count;
  int objectives;

 private:
  std::string file_;
  mutable std::string xml_;
};

void require(bool done, const char* what) {
  if (done) return;
  std::cerr << "bench: " << what << " failed\n";
  std::exit(1);
}

Ref<clsHEDROTest> loaded(const Input& input) {
  auto test = make<clsHEDROTest>();
  test->ImportObjectives = HEDROTestImportObjectivesLearning;
  require(test->LoadXML(from_utf8(input.file())), "LoadXML");
  return test;
}

void parse_bare(benchmark::State& state, const Input& input) {
  for (auto _ : state) {
    const auto parser =
        std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)>(XML_ParserCreate(nullptr), XML_ParserFree);
    require(XML_Parse(parser.get(), input.xml().data(), static_cast<int>(input.xml().size()), 1) == XML_STATUS_OK,
            "expat");
  }
}

// What a call leaves behind is released outside of the measured time.
void load(benchmark::State& state, const Input& input) {
  for (auto _ : state) {
    Ref<clsHEDROTest> test = loaded(input);
    state.PauseTiming();
    test = nullptr;
    state.ResumeTiming();
  }
}

// The test is released outside of the measured time, as are those that `load` makes.
void remove_invalid(benchmark::State& state, const Input& input) {
  for (auto _ : state) {
    state.PauseTiming();
    auto merge = make<clsHEDRO>();
    merge->Verbose = false;
    merge->Tests->Add(loaded(input));
    Ref<clsHEDROTestQuestions> questions = merge->Tests->Item(1)->Questions;
    for (int i = 2; i <= questions->Count(); i += 2) questions->Item(i)->QuestionType = HEDROTestQuestionTypeEssay;
    state.ResumeTiming();
    require(merge->RemoveInvalid(), "RemoveInvalid");
    state.PauseTiming();
    require(questions->Count() == (input.count + 1) / 2, "removal of every other question");
    questions = nullptr;
    merge = nullptr;
    state.ResumeTiming();
  }
}

void run_merge(benchmark::State& state, const Input& input, const Ref<TIBTemplate>& form, const Ref<TIBTemplate>& out) {
  const auto test = loaded(input);
  for (auto _ : state) {
    state.PauseTiming();
    auto merge = make<clsHEDRO>();
    merge->TemplateIn = form;
    merge->TemplateOut = out;
    merge->Tests->Add(test);
    state.ResumeTiming();
    require(merge->Merge(), "Merge");
    state.PauseTiming();
    merge = nullptr;
    state.ResumeTiming();
  }
}

void merge_default(benchmark::State& state, const Input& input) {
  run_merge(state, input, form(input.count), make<FormTemplate>());
}

void merge_forwarded(benchmark::State& state, const Input& input) {
  Silent listener;
  testing::ForwardingHost host(listener);
  run_merge(state, input, host.wrap(form(input.count)), host.wrap(make<FormTemplate>()));
}

// Keeps the shortest CPU time of each benchmark, in seconds.
class Shortest : public benchmark::ConsoleReporter {
 public:
  Shortest() : ConsoleReporter(OO_Tabular) {}
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration) continue;
      const double seconds = run.cpu_accumulated_time / static_cast<double>(run.iterations);
      const auto [entry, added] = times_.try_emplace(run.run_name.function_name, seconds);
      if (!added) entry->second = std::min(entry->second, seconds);
    }
    ConsoleReporter::ReportRuns(runs);
  }
  // 0 for a benchmark that did not run.
  double time(const std::string& name) const {
    const auto found = times_.find(name);
    return found == times_.end() ? 0 : found->second;
  }

 private:
  std::map<std::string, double> times_;
};

bool print(const std::string& what, double measured, double held_against, double limit) {
  if (measured == 0 || held_against == 0) return true;
  const double ratio = measured / held_against;
  std::printf("%-62s %6.2f  at most %.2f%s\n", what.c_str(), ratio, limit, ratio > limit ? "  EXCEEDED" : "");
  return ratio <= limit;
}

bool print_ratios(const Shortest& times, const std::vector<Input>& inputs) {
  bool held = true;
  for (const Input& input : inputs) {
    const auto time = [&](const std::string& name) { return times.time(name + "/" + input.name); };
    const bool plain = input.objectives == 0;
    held &= print("LoadXML to bare expat, " + input.name, time("load"), time("expat"), 1.7);
    // By the clock, to which the memory that a merge touches first adds a third of what bench/instructions.py counts.
    held &= print("Merge to bare expat, " + input.name, time("merge"), time("expat"), plain ? 0.5 : 0.65);
    held &= print("Merge behind forwarding objects to bare expat, " + input.name, time("forwarded"), time("expat"),
                  plain ? 0.65 : 0.8);
  }
  // Time a question, against that of the smallest test that is held against.
  for (const char* const name : {"load", "remove", "merge", "forwarded"}) {
    for (const char* const suffix : {"", "/objectives"}) {
      const double thousand = times.time(std::string(name) + "/1000" + suffix);
      for (const int count : {10000, 30000}) {
        const double time = times.time(std::string(name) + "/" + std::to_string(count) + suffix);
        const double limit = std::string_view(name) == "remove" ? 2.5 : 1.34;
        held &= print(std::string(name) + suffix + ": time a question at " + std::to_string(count) + " to 1000", time,
                      thousand * count / 1000, limit);
      }
    }
  }
  held &= print("LoadKTD to nlohmann-json's tree of the same file, 10000", times.time("load_ktd"),
                times.time("parse_ktd"), 0.5);
  const auto print_call = [&](const std::string& property, const std::string& direct, double limit) {
    held &= print("call by name to the C++ call, " + property, times.time("by_name/" + property),
                  times.time("direct/" + direct), limit);
  };
  print_call("CorrectPoints", "CorrectPoints", 15);
  print_call("MultiplesPermitted", "MultiplesPermitted", 15);
  print_call("QuestionText", "QuestionText", 15);
  print_call("Answers", "Answers", 25);
  print_call("Answers, held", "Answers", 25);
  held &= print("reading by name: time a question at 10000 to 1000", times.time("questions/10000"),
                times.time("questions/1000") * 10, 1.34);
  // What a further version adds, among the first few and among many. (The second one also spares the merge the search for a
  // question's position, which a test without versions needs.)
  const double two = times.time("versions/2");
  const double six = times.time("versions/6");
  const double of_few = (six - two) / 4;
  const double of_many = (times.time("versions/20") - six) / 14;
  if (two > 0) held &= print("time a question and version, 6 to 20 versions to 2 to 6", of_many, of_few, 1.34);
  return held;
}

long peak_kilobytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

// In a process of its own, so that nothing else has made the peak.
bool print_memory(const std::string& program, const Input& input) {
  const std::string command = "'" + program + "' --read '" + input.file() + "'";
  const std::unique_ptr<FILE, int (*)(FILE*)> output(popen(command.c_str(), "r"), pclose);
  long kilobytes = 0;
  require(output && std::fscanf(output.get(), "%ld", &kilobytes) == 1, "measuring memory");
  return print("memory of LoadXML at the peak to the file's size, " + input.name, static_cast<double>(kilobytes) * 1024,
               static_cast<double>(input.xml().size()), 4);
}

int run(int argc, char** argv) {
  // Freed memory stays with the process: what is measured is the library, not the system's way of handing out pages.
  mallopt(M_TRIM_THRESHOLD, 1 << 30);
  mallopt(M_MMAP_MAX, 0);
  const fs::path folder = fs::temp_directory_path() / ("hedro34-bench-" + std::to_string(getpid()));
  fs::create_directory(folder);
  std::vector<Input> inputs;
  for (const int of_objectives : {0, objectives}) {
    for (const int count : {100, 1000, 10000, 30000}) inputs.emplace_back(folder, count, of_objectives);
  }
  using Body = void (*)(benchmark::State&, const Input&);
  constexpr std::pair<const char*, Body> bodies[] = {{"expat", parse_bare},
                                                     {"load", load},
                                                     {"remove", remove_invalid},
                                                     {"merge", merge_default},
                                                     {"forwarded", merge_forwarded}};
  for (const Input& input : inputs) {
    for (const auto& [name, body] : bodies) {
      benchmark::RegisterBenchmark((std::string(name) + "/" + input.name).c_str(), body, std::cref(input))
          ->Unit(benchmark::kMillisecond);
    }
  }
  for (const int versions : {2, 6, 20}) {
    const Input& thousand = inputs[1];
    benchmark::RegisterBenchmark(("versions/" + std::to_string(versions)).c_str(), [&,
                                                                                    versions](benchmark::State& state) {
      merge_versions(state, thousand.file(), thousand.count, versions);
    })->Unit(benchmark::kMillisecond);
  }
  const std::string document = (folder / "document.ktd").string();
  const auto with_document = [&](auto body) {
    return [&, body](benchmark::State& state) {
      if (!fs::exists(document)) write_document(inputs[2].file(), inputs[2].count, document);
      body(state, document);
    };
  };
  benchmark::RegisterBenchmark("load_ktd", with_document(load_document))->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("parse_ktd", with_document(parse_document))->Unit(benchmark::kMillisecond);
  register_calls_by_name();
  std::vector<std::string> options = {argv[0], "--benchmark_enable_random_interleaving=true",
                                      "--benchmark_repetitions=9", "--benchmark_min_time=0.02"};
  options.insert(options.end(), argv + 1, argv + argc);
  std::vector<char*> arguments;
  arguments.reserve(options.size());
  for (std::string& option : options) arguments.push_back(option.data());
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  Shortest times;
  benchmark::RunSpecifiedBenchmarks(&times);
  std::printf("\n");
  bool held = print_ratios(times, inputs);
  for (const Input& input : inputs) {
    const bool is_measured = times.time("load/" + input.name) > 0;
    if (input.count >= 10000 && is_measured) held &= print_memory(argv[0], input);
  }
  fs::remove_all(folder);
  return held ? 0 : 1;
}

int read_and_print_peak(const std::string& file) {
  const long before = peak_kilobytes();
  const String path = from_utf8(file);
  auto test = make<clsHEDROTest>();
  auto form = make<FormTemplate>();
  auto document = make<DataDocument>();
  test->ImportObjectives = HEDROTestImportObjectivesLearning;
  const bool read = file.ends_with(".json")  ? form->Load(path)
                    : file.ends_with(".ktd") ? document->Load(path)
                                             : test->LoadXML(path);
  require(read, "reading");
  std::printf("%ld\n", peak_kilobytes() - before);
  return 0;
}

}  // namespace
}  // namespace hedro34::bench

int main(int argc, char** argv) {
  if (argc == 3 && std::string_view(argv[1]) == "--read") return hedro34::bench::read_and_print_peak(argv[2]);
  if (argc == 4 && std::string_view(argv[1]) == "--generate") {
    std::ofstream(argv[3], std::ios::binary)
        << hedro34::bench::test_xml(std::atoi(argv[2]), hedro34::bench::objectives);
    return 0;
  }
  return hedro34::bench::run(argc, argv);
}
