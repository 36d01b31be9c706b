// What a call by name costs on this system, without the benchmark library, which is not to be had for every one: prints the
// nanoseconds of the fastest of many rounds for each kind of property, to be compared with the same program of another system
// on the same machine.
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <limits>

#include "hedro34/component.h"
#include "hedro34/component/held.h"
#include "hedro34/component/identity.h"
#include "hedro34/hedro34.h"

namespace {

using namespace hedro34;
using namespace hedro34::binary;

constexpr int rounds = 200;
constexpr int calls = 5000;

// Reads a property as a caller outside does: its number by its name, then its value.
VARIANT read(IDispatch& object, String& name) {
  OLECHAR* names[] = {name.data()};
  DISPID id = 0;
  DISPPARAMS parameters{};
  VARIANT result{};
  const bool done = object.GetIDsOfNames(IID_NULL, names, 1, 0, &id) >= 0 &&
                    object.Invoke(id, IID_NULL, 0, DISPATCH_PROPERTYGET, &parameters, &result, nullptr, nullptr) >= 0;
  if (!done) std::exit(1);
  return result;
}

double nanoseconds(IDispatch& object, String name) {
  using Clock = std::chrono::steady_clock;
  auto best = std::numeric_limits<double>::max();
  for (int round = 0; round < rounds; ++round) {
    const auto start = Clock::now();
    for (int i = 0; i < calls; ++i) {
      VARIANT value = read(object, name);
      VariantClear(&value);
    }
    best = std::min(best, std::chrono::duration<double, std::nano>(Clock::now() - start).count() / calls);
  }
  return best;
}

}  // namespace

int main() {
  Main();
  auto question = make<clsHEDROTestQuestion>();
  question->QuestionText = u"Which of these is the powerhouse of the cell?";
  const Held<IDispatch> outside = identity_of(question);
  for (const StringView name : {u"CorrectPoints", u"MultiplesPermitted", u"QuestionText", u"Answers"}) {
    std::cout << std::left << std::setw(30) << to_utf8(name) << std::fixed << std::setprecision(1)
              << nanoseconds(*outside.get(), String(name)) << '\n';
  }
  String answers = u"Answers";
  VARIANT kept = read(*outside.get(), answers);
  std::cout << std::left << std::setw(30) << "Answers, held outside" << nanoseconds(*outside.get(), answers) << '\n';
  VariantClear(&kept);
}
