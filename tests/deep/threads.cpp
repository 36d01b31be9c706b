// Several threads at once, each with objects of its own, for the thread sanitizer; each gives what one alone gives.
#include <gtest/gtest.h>

#include <thread>

#include "hedro34/component/class_registry.h"
#include "hedro34/runtime/modStartup.h"
#include "tests/component_support.h"
#include "tests/deep/road.h"

namespace hedro34::testing::component {
namespace {

constexpr int threads = 8;
constexpr int times = 4;

// Runs `job` in all threads, with their numbers from 0, and gives their results.
std::vector<std::string> in_threads(const std::function<std::string(int)>& job) {
  std::vector<std::string> results(threads);
  std::vector<std::thread> running;
  for (int i = 0; i < threads; ++i) {
    running.emplace_back([&, i] { results[static_cast<std::size_t>(i)] = job(i); });
  }
  for (std::thread& each : running) each.join();
  return results;
}

String samples() { return source_path("examples/versions"); }

TEST(Threads, EachHasATestOfItsOwn) {
  Main();
  const Folder alone;
  const std::string expected = whole_road(samples(), alone.path(""));
  EXPECT_EQ(expected.find("FAILED"), std::string::npos) << expected;
  EXPECT_NE(expected.find("457 HEDRO34 - clsHEDROTestQuestions.Add\n91 HEDRO34 - clsHEDRO.Merge\n"), std::string::npos);
  const auto results = in_threads([](int) {
    Main();
    const Folder folder;
    std::string result;
    for (int i = 0; i < times; ++i) result = whole_road(samples(), folder.path(""));
    return result;
  });
  for (const std::string& result : results) EXPECT_EQ(result, expected);
}

// The same by name, through the component library and its error object.
std::string road_by_name(const String& folder) {
  const String library = from_utf8(HEDRO34_COMPONENT);
  const auto merge = created(library, u"clsHEDRO");
  const auto error_object = Host::create();
  const auto object_in = [](IDispatch* object, const char16_t* member) {
    OwnedVariant read;
    run(object, {member, get}, read.get());
    return Held<IDispatch>(read->pdispVal);
  };
  const auto as_value = [](const Held<IDispatch>& object) { return Ref<Object>(make<HostObject>(object)); };
  std::string result = run(merge.get(), {u"SetError", method, {as_object(error_object)}});
  const auto tests = object_in(merge.get(), u"Tests");
  for (const char16_t version : StringView(u"abcd")) {
    const auto test = created(library, u"clsHEDROTest");
    result += run(test.get(), {u"LoadXML", method, {samples() + u"/unit-" + version + u".xml"}});
    result += run(tests.get(), {u"Add", method, {as_value(test)}});
  }
  const auto form = created(library, u"FormTemplate");
  result += run(form.get(), {u"Load", method, {samples() + u"/unit.form.json"}});
  run(merge.get(), {u"TemplateIn", put_reference, {as_value(form)}});
  run(merge.get(), {u"TemplateOut", put_reference, {as_value(created(library, u"FormTemplate"))}});
  run(merge.get(), {u"SequenceQuestion", put_value, {1}});
  for (const char16_t* step : {u"RemoveInvalid", u"ValidTestVersions", u"Merge"}) result += run(merge.get(), {step});
  const auto document = object_in(merge.get(), u"WENKTD");
  result += run(document.get(), {u"Save", method, {folder + u"/document"}});
  result += run(created(library, u"clsHEDROTest").get(), {u"LoadKTD", method, {folder + u"/document"}});
  result += run(form.get(), {u"Load", method, {u"no file.json"}});
  result += run(created(library, u"Platform").get(), {u"LastFileError", get});
  run(merge.get(), {u"TemplateOut", put_reference, {none}});
  result += run(merge.get(), {u"Merge"});
  for (const std::string& line : error_object->take()) result += "\n" + line;
  return result + run(merge.get(), {u"SetError", method, {none}});
}

TEST(Threads, CallByName) {
  const Folder alone;
  const std::string expected = road_by_name(alone.path(""));
  EXPECT_NE(expected.find("no file.json"), std::string::npos) << expected;
  EXPECT_NE(expected.find("RaiseError(&VARIANT I4 91"), std::string::npos) << expected;
  const auto results = in_threads([](int) {
    const Folder folder;
    std::string result;
    for (int i = 0; i < times; ++i) result = road_by_name(folder.path(""));
    return result;
  });
  for (const std::string& result : results) EXPECT_EQ(result, expected);
  EXPECT_EQ(function_in<HRESULT HEDRO34_CALL()>(from_utf8(HEDRO34_COMPONENT), "DllCanUnloadNow")(), S_OK);
}

TEST(Threads, ShareTheClassRegistry) {
  const Folder folder;
  const Variable home("XDG_DATA_HOME");
  home.set(to_utf8(folder.path("")).c_str());
  const auto entry = [](int thread) {
    RegisteredClass result{u"Test.Of" + decimal(thread), {}, u"/a/library"};
    result.id.Data1 = static_cast<std::uint32_t>(thread);
    return result;
  };
  const auto results = in_threads([&](int thread) {
    const RegisteredClass own = entry(thread);
    const RegisteredClass passing = entry(thread + threads);
    std::string result;
    for (int i = 0; i < times; ++i) {
      const RegisteredClass both[] = {own, passing};
      RegisteredClass found;
      const HRESULT codes[] = {register_classes(both), find_class(passing.name, found),
                               unregister_classes({&both[1], 1}), find_class(passing.name, found),
                               find_class(own.name, found)};
      for (const HRESULT code : codes) result += hexadecimal(code) + " ";
      if (found != own) result += "another ";
    }
    return result;
  });
  for (const std::string& result : results) {
    EXPECT_EQ(result, repeat("00000000 00000000 00000000 800401F3 00000000 ", times));
  }
  RegisteredClass found;
  for (int thread = 0; thread < 2 * threads; ++thread) {
    EXPECT_EQ(find_class(entry(thread).name, found), thread < threads ? S_OK : CO_E_CLASSSTRING);
  }
}

}  // namespace
}  // namespace hedro34::testing::component
