#include "versions.h"

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "hedro34/hedro34.h"
#include "generate.h"

namespace hedro34::bench {
namespace {

void require(bool done, const char* what) {
  if (done) return;
  std::cerr << "bench: " << what << " failed\n";
  std::exit(1);
}

String label(int version) { return u"V" + decimal(version); }

// The form of the benchmarks with a field in front that takes the version.
Ref<FormTemplate> form_with_versions(int questions, int versions) {
  auto whole = make<FormTemplate>();
  const Ref<FormRegion> region = whole->pages().add()->regions().add();
  region->SetName(u"Version");
  std::vector<String> labels;
  std::vector<String> values;
  for (int i = 1; i <= versions; ++i) {
    labels.push_back(label(i));
    values.push_back(decimal(i));
  }
  const Ref<FormQuestion> field = region->questions().add();
  field->SetChoiceLabels(make<FormChoiceList>(labels));
  field->SetChoiceValues(make<FormChoiceList>(values));
  const Ref<FormTemplate> graded = form(questions);
  for (const auto& page : graded->pages().all()) {
    const Ref<FormPage> added = whole->pages().add();
    for (const auto& each : page->regions().all()) {
      const Ref<FormRegion> copy = added->regions().add();
      copy->SetName(each->Name());
      const Ref<FormQuestion> of_copy = copy->questions().add();
      of_copy->SetGraded(true);
      of_copy->SetChoiceLabels(make<FormChoiceList>(std::vector<String>{u"A", u"B", u"C", u"D", u"E"}));
      of_copy->SetChoiceValues(make<FormChoiceList>(std::vector<String>{u"1", u"2", u"3", u"4", u"5"}));
    }
  }
  return whole;
}

Ref<clsHEDROTest> loaded(const std::string& file) {
  auto test = make<clsHEDROTest>();
  require(test->LoadXML(from_utf8(file)), "LoadXML");
  return test;
}

}  // namespace

void merge_versions(benchmark::State& state, const std::string& file, int questions, int versions) {
  const Ref<FormTemplate> form = form_with_versions(questions, versions);
  for (auto _ : state) {
    state.PauseTiming();
    auto merge = make<clsHEDRO>();
    merge->TemplateIn = form;
    merge->TemplateOut = make<FormTemplate>();
    merge->SequenceQuestion = 1;
    for (int i = 1; i <= versions; ++i) {
      const Ref<clsHEDROTest> test = loaded(file);
      test->Version = label(i);
      merge->Tests->Add(test);
    }
    const Ref<clsHEDROTest> first = merge->Tests->Item(1);
    state.ResumeTiming();
    require(merge->ValidTestVersions(), "ValidTestVersions");
    first->Sequences->AddDefault(first->Questions, first->Version);
    for (int i = 2; i <= versions; ++i) require(first->AddSequence(merge->Tests->Item(i)), "AddSequence");
    require(merge->Merge(), "Merge");
    state.PauseTiming();
    merge = nullptr;
    state.ResumeTiming();
  }
}

void write_document(const std::string& file, int questions, const std::string& document) {
  auto merge = make<clsHEDRO>();
  auto data = make<DataDocument>();
  merge->TemplateIn = form(questions);
  merge->TemplateOut = make<FormTemplate>();
  merge->WENKTD = data;
  merge->Tests->Add(loaded(file));
  require(merge->Merge() && data->Save(from_utf8(document)), "writing the document");
}

void load_document(benchmark::State& state, const std::string& document) {
  for (auto _ : state) {
    auto test = make<clsHEDROTest>();
    require(test->LoadKTD(from_utf8(document)), "LoadKTD");
    state.PauseTiming();
    test = nullptr;
    state.ResumeTiming();
  }
}

void parse_document(benchmark::State& state, const std::string& document) {
  for (auto _ : state) {
    const auto bytes = read_file(from_utf8(document));
    auto tree = nlohmann::json::parse(*bytes);
    require(tree.is_object(), "parsing the document");
    state.PauseTiming();
    tree = nullptr;
    state.ResumeTiming();
  }
}

}  // namespace hedro34::bench
