// Native faults in objects of a host, which stand in another module than the library: called by the DLL in the middle of an
// operation.
#include "tests/component_support.h"
#include "tests/faults/provoke_windows.h"

#include <windows.h>

namespace hedro34 {
namespace {

using namespace testing;
using component::as_object, component::created, component::Host, component::method, component::put_reference,
    component::run;

TEST(ComponentFaults, OfAHostsObjectAreReportedToItsErrorObject) {
  const auto merge = created(u"HEDRO34.dll", u"clsHEDRO");
  const auto errors = Host::create();
  errors->answer = std::int16_t{0};
  const auto form = Host::create();
  EXPECT_EQ(run(merge.get(), {u"SetError", method, {as_object(errors)}}), "BOOL -1");
  run(merge.get(), {u"TemplateIn", put_reference, {as_object(form)}});
  const auto tests = component::Call{u"Tests", component::get};
  binary::VARIANT list{};
  run(merge.get(), tests, &list);
  const auto test = created(u"HEDRO34.dll", u"clsHEDROTest");
  run(list.pdispVal, {u"Add", method, {serving_as<Object>(test)}});
  const std::uint32_t references = form->count;
  for (int round = 0; round < 2; ++round) {
    for (const Provocation& provocation : provocations()) {
      form->members["QuestionCount"] = [&](auto, auto*, auto*) {
        provocation.fault();
        return S_OK;
      };
      EXPECT_EQ(run(merge.get(), {u"Merge"}), "BOOL 0") << provocation.name;
      const Lines lines = errors->take();
      ASSERT_EQ(lines.size(), 1U) << provocation.name;
      const std::string report = provocation.report;
      const auto blank = report.find(' ');
      const std::string expected = "I4 " + report.substr(0, blank) + ", &I4 0, &BSTR " + report.substr(blank + 1) +
                                   ", &BSTR HEDRO34 - clsHEDRO.Merge,";
      EXPECT_NE(lines[0].find(expected), std::string::npos) << provocation.name << ": " << lines[0];
      EXPECT_EQ(form->count, references) << provocation.name << ": what the library held in the call is released";
    }
  }
  binary::VariantClear(&list);
}

}  // namespace
}  // namespace hedro34
