#include "by_name.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstdlib>
#include <iostream>
#include <utility>

#include "hedro34/component.h"
#include "hedro34/component/values.h"
#include "hedro34/hedro34.h"

namespace hedro34::bench {
namespace {

using namespace binary;

void check(HRESULT code) {
  if (code >= 0) return;
  std::cerr << "bench: a call by name failed\n";
  std::exit(1);
}

// A value as a caller outside holds it.
struct Value : VARIANT {
  Value() : VARIANT{} {}
  Value(Value&& other) noexcept : VARIANT(std::exchange(static_cast<VARIANT&>(other), VARIANT{})) {}
  Value& operator=(Value other) noexcept {
    std::swap(static_cast<VARIANT&>(*this), static_cast<VARIANT&>(other));
    return *this;
  }
  ~Value() { VariantClear(this); }
};

// Reads a property as a caller outside does: its number by its name, then its value.
Value read(IDispatch& object, String& name, VARIANT* argument = nullptr) {
  OLECHAR* names[] = {name.data()};
  DISPID id = 0;
  check(object.GetIDsOfNames(IID_NULL, names, 1, 0, &id));
  DISPPARAMS parameters = {argument, nullptr, argument != nullptr ? 1u : 0u, 0};
  Value result;
  check(object.Invoke(id, IID_NULL, 0, DISPATCH_PROPERTYGET, &parameters, &result, nullptr, nullptr));
  return result;
}

Ref<clsHEDROTest> test_of(std::int32_t questions) {
  auto test = make<clsHEDROTest>();
  for (std::int32_t i = 1; i <= questions; ++i) {
    auto question = make<clsHEDROTestQuestion>();
    question->ID = decimal(i);
    question->QuestionText = u"Which of these is the powerhouse of the cell?";
    question->Answers->AddDelimitedString(u"nucleus\tmitochondrion\tribosome");
    question->CorrectAnswers->Add(2);
    test->Questions->Add(question);
  }
  return test;
}

// What the C++ side costs: the value read through a pointer that the compiler cannot see through.
template <auto get>
void direct(benchmark::State& state) {
  const Ref<clsHEDROTestQuestion> question = test_of(1)->Questions->Item(1);
  auto* volatile call = get;
  for (auto _ : state) benchmark::DoNotOptimize(call(*question));
}

// `held`: the object that the property gives is held outside already, as by a caller that keeps it.
void by_name(benchmark::State& state, const char16_t* property, bool held) {
  const Held<IDispatch> question = identity_of(test_of(1)->Questions->Item(1));
  String name = property;
  Value keeper;
  if (held) keeper = read(*question.get(), name);
  for (auto _ : state) benchmark::DoNotOptimize(read(*question.get(), name).llVal);
}

float points(const clsHEDROTestQuestion& question) { return question.CorrectPoints; }
bool multiples(const clsHEDROTestQuestion& question) { return question.MultiplesPermitted(); }
String text(const clsHEDROTestQuestion& question) { return question.QuestionText; }
Ref<clsHEDROTestStrings> answers(const clsHEDROTestQuestion& question) { return question.Answers; }

void plain_body(benchmark::State& state) {
  std::int32_t value = 0;
  const auto body = [](void* context) { benchmark::DoNotOptimize(++*static_cast<std::int32_t*>(context)); };
  void (*volatile call)(void*) = body;
  for (auto _ : state) call(&value);
}

void trapped_body(benchmark::State& state) {
  std::int32_t value = 0;
  const Location where = {u"clsHEDROTest", u"Clear"};
  for (auto _ : state) {
    trap(where, [&] { benchmark::DoNotOptimize(++value); });
  }
}

void all_questions(benchmark::State& state, std::int32_t count) {
  const Ref<clsHEDROTest> test = test_of(count);
  const Held<IDispatch> outside = identity_of(test);
  std::array<String, 6> names = {u"Questions", u"Item", u"ID", u"QuestionText", u"CorrectAnswers", u"Count"};
  for (auto _ : state) {
    const Value questions = read(*outside.get(), names[0]);
    for (std::int32_t i = 1; i <= count; ++i) {
      VARIANT index{};
      put(index, i);
      const Value question = read(*questions.pdispVal, names[1], &index);
      benchmark::DoNotOptimize(read(*question.pdispVal, names[2]).bstrVal);
      benchmark::DoNotOptimize(read(*question.pdispVal, names[3]).bstrVal);
      const Value correct = read(*question.pdispVal, names[4]);
      benchmark::DoNotOptimize(read(*correct.pdispVal, names[5]).lVal);
    }
  }
}

}  // namespace

void register_calls_by_name() {
  benchmark::RegisterBenchmark("direct/CorrectPoints", direct<points>);
  benchmark::RegisterBenchmark("by_name/CorrectPoints", by_name, u"CorrectPoints", false);
  benchmark::RegisterBenchmark("direct/MultiplesPermitted", direct<multiples>);
  benchmark::RegisterBenchmark("by_name/MultiplesPermitted", by_name, u"MultiplesPermitted", false);
  benchmark::RegisterBenchmark("direct/QuestionText", direct<text>);
  benchmark::RegisterBenchmark("by_name/QuestionText", by_name, u"QuestionText", false);
  benchmark::RegisterBenchmark("direct/Answers", direct<answers>);
  benchmark::RegisterBenchmark("by_name/Answers", by_name, u"Answers", false);
  benchmark::RegisterBenchmark("by_name/Answers, held", by_name, u"Answers", true);
  benchmark::RegisterBenchmark("plain", plain_body);
  benchmark::RegisterBenchmark("trap", trapped_body);
  for (const std::int32_t count : {1000, 10000}) {
    benchmark::RegisterBenchmark(("questions/" + std::to_string(count)).c_str(), all_questions, count)
        ->Unit(benchmark::kMillisecond);
  }
}

}  // namespace hedro34::bench
