// Hosts that misbehave. At each call of an operation in turn one object of the host raises, throws what is no failure, answers
// with nonsense, lets go of everything, or calls back. No crash, one report at the right place, and the next operation on the
// same objects gives the right result.
#include <limits>
#include <stdexcept>

#include "tests/component_support.h"
#include "tests/merge_support.h"

namespace hedro34::testing {
namespace {

using namespace component;

// What an operation works on, as far as a host can get at it.
struct Scene {
  Ref<clsHEDRO> merge;
  std::vector<Ref<clsHEDROTest>> tests;

  void each_test(const std::function<void(clsHEDROTest&)>& change) {
    for (const Ref<clsHEDROTest>& test : std::vector(tests)) change(*test);
  }
};

enum class Road { Both, Native, ByName };

struct Deed {
  Road road;
  const char* name;
  std::function<void(Scene&)> act = {};     // before the call is passed on
  std::optional<Variant> answer = {};       // in place of the right one
  std::optional<std::string> failure = {};  // as which the deed is told
};

const String long_text(2000, u'?');
constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();

// A host in C++ cannot answer with a wrong type, and behind the boundary it is all one what an object of the host does.
const Deed deeds[] = {
    {Road::Both, "raises", [](Scene&) { throw Failure(1234, u"The host refuses"); }, {}, "1234 The host refuses"},
    {Road::Both, "throws a number", [](Scene&) { throw 1; }, {}, "5 Invalid procedure call or argument"},
    {Road::Both, "throws an exception", [](Scene&) { throw std::runtime_error("odd"); }, {}, "5 odd"},
    {Road::Both, "answers nothing", {}, Variant()},
    {Road::Both, "answers the lowest number", {}, lowest},
    {Road::Both, "answers the highest number", {}, highest},
    {Road::Both, "answers an empty reference", {}, none},
    {Road::ByName, "answers text", {}, u"no number"},
    {Road::ByName, "answers no number", {}, std::numeric_limits<double>::quiet_NaN()},
    {Road::ByName, "answers an object of another class", {}, make<FormChoiceList>()},
    {Road::Both, "answers an array without bounds", {}, Array<String>()},
    {Road::Both, "lets go of everything",
     [](Scene& scene) {
       scene.merge->TemplateIn = scene.merge->TemplateOut = nullptr;
       scene.merge->WENKTD = nullptr;
       scene.merge->Tests = nullptr;
       scene.tests.clear();
     }},
    {Road::Native, "takes the tests apart",
     [](Scene& scene) {
       scene.each_test([](clsHEDROTest& test) {
         test.Questions = nullptr;
         test.Sequences = nullptr;
         test.MultipleChoiceOddScale = test.MultipleChoiceEvenScale = test.TrueFalseScale = nullptr;
       });
     }},
    {Road::Native, "empties the questions",
     [](Scene& scene) {
       scene.each_test([](clsHEDROTest& test) {
         test.Version = long_text;
         for (std::int32_t i = 1; i <= test.Questions->Count(); ++i) {
           const auto question = test.Questions->Item(i);
           question->Answers->RemoveAll();
           question->CorrectAnswers->RemoveAll();
           question->LearningObjectives = nullptr;
           question->QuestionText = long_text;
         }
       });
     }},
    {Road::Native, "clears the tests", [](Scene& scene) { scene.each_test([](clsHEDROTest& test) { test.Clear(); }); }},
    {Road::Native, "calls RemoveInvalid", [](Scene& scene) { scene.merge->RemoveInvalid(1); }},
    {Road::Native, "calls ValidTestVersions and AddSequence",
     [](Scene& scene) {
       scene.merge->ValidTestVersions();
       scene.each_test([&](clsHEDROTest& test) { test.AddSequence(scene.tests.back()); });
     }},
    {Road::Native, "calls Merge", [](Scene& scene) { scene.merge->Merge(); }},
    {Road::Native, "writes the merge object's fields",
     [](Scene& scene) {
       scene.merge->TemplateIn = scene.merge->TemplateOut;
       scene.merge->WENKTD = make<DataDocument>();
       scene.merge->Tests = make<clsHEDROTests>();
       scene.merge->SequenceQuestion = lowest;
     }},
};

// Does one deed at one call.
class Misbehaving : public CallListener {
 public:
  void called(std::string_view interface, std::string_view member) override {
    call = std::string(interface) + "." + std::string(member);
    answered.push_back(false);
    does_it_ = answered.size() == at_;
    if (!does_it_ || !deed_->act) return;
    const std::size_t lines = recorder.lines.size();
    deed_->act(*scene_);
    recorder.lines.resize(lines);  // what the deed itself has reported
  }
  void answers(Variant& answer) override {
    answered.back() = true;
    if (!does_it_ || !deed_->answer) return;
    does_it_ = false;
    answer = *deed_->answer;
    // A merge adds a flag to every question for each objective that the host counts, and has the host make an order of as many
    // entries as it counts questions: that would take minutes and gigabytes.
    if (answer == Variant(highest) && call.ends_with(".Count")) answer = 1000;
  }

  // From here on calls are counted, and the deed is done at one of them.
  void start(std::size_t at, const Deed& deed, Scene& scene) {
    answered.clear();
    at_ = at;
    deed_ = &deed;
    scene_ = &scene;
  }
  void stop() { at_ = 0; }

  Recorder recorder;
  std::string call;            // the last one
  std::vector<bool> answered;  // whether a call has a result

 private:
  std::size_t at_ = 0;
  const Deed* deed_ = nullptr;
  Scene* scene_ = nullptr;
  bool does_it_ = false;
};

// An object of the library as a host's own, called by name: each call is told and passed on.
class Told final : public Proxy {
 public:
  static Ref<HostObject> around(CallListener& listener, const Ref<Object>& object) {
    return make<HostObject>(dispatch<Told>(listener, identity_of(object)));
  }
  Told(CallListener& listener, Held<IDispatch> its_target) : Proxy(std::move(its_target)), listener_(listener) {}

  HRESULT HEDRO34_CALL Invoke(DISPID id, const GUID&, LCID, std::uint16_t flags, DISPPARAMS* parameters,
                              VARIANT* result, EXCEPINFO* exception, std::uint32_t* bad) override {
    try {
      listener_.called("a host's object", to_utf8(name_of(id)));
    } catch (const Failure& failure) {
      exception->scode = result_code(0x800A0000u | static_cast<std::uint32_t>(failure.number));
      exception->bstrDescription = bstr_of(failure.description);
      return DISP_E_EXCEPTION;
    }
    const HRESULT code = pass_on(id, flags, *parameters, result, exception, bad);
    if (result == nullptr || code != S_OK) return code;
    Variant answer = missing;
    listener_.answers(answer);
    if (answer != missing) {
      VariantClear(result);
      put(*result, answer);
    }
    return code;
  }

 private:
  Held<IDispatch> before(Held<IDispatch> object) override { return dispatch<Told>(listener_, std::move(object)); }

  CallListener& listener_;
};

// Objects of the host, natively and called by name.
struct Native {
  explicit Native(CallListener& listener) : host(listener) {}
  Ref<TIBTemplate> wrap(const Ref<FormTemplate>& form) { return host.wrap(form); }
  Ref<WENKtdDocument> wrap(const Ref<DataDocument>& document) { return host.wrap(document); }
  ForwardingHost host;
};

struct ByName {
  explicit ByName(CallListener& its_listener) : listener(its_listener) {
    offer<FormRegion>(u"TIBTemplate81.TIBRegion");
    offer<DataQuestion>(u"WENKtd81.WENKtdQuestion");
    offer<DataObjective>(u"WENKtd81.WENKtdObjective");
    offer<DataOrder>(u"WENKtd81.WENKtdOrder");
    offer<DataDocument>(u"WENKtd81.WENKtdDocument");
  }
  ~ByName() {
    for (const char16_t* name : names) services->RevokeClass(name);
  }
  Ref<TIBTemplate> wrap(const Ref<FormTemplate>& form) { return adapter<TIBTemplate>(form); }
  Ref<WENKtdDocument> wrap(const Ref<DataDocument>& document) { return adapter<WENKtdDocument>(document); }
  template <class T>
  Ref<T> adapter(const Ref<Object>& object) {
    return adapted<T>(Held<IDispatch>(Told::around(listener, object)->host()));
  }
  template <class T>
  void offer(const char16_t* name) {
    const auto factory = Host::create();
    factory->members["CreateInstance"] = [this](auto, VARIANT* result, EXCEPINFO*) {
      listener.called("a class of the host", "CreateInstance");
      Variant made = Told::around(listener, make<T>());
      listener.answers(made);
      put(*result, made);
      return S_OK;
    };
    services->RegisterClass(name, as_object(factory));
    names.push_back(name);
  }

  CallListener& listener;
  const HostFactories factories;
  const Ref<PlatformObject> services = make<PlatformObject>();
  std::vector<const char16_t*> names;
};

class HostileHost : public Component {};

// Two versions of a test of two graded questions and a subjective one, on a form of two pages with an ungraded field and one
// graded field too many.
template <class Host>
void merge_at_every_call(Road road) {
  Misbehaving host;
  Host objects(host);
  const auto form = form_of("V:- Q1:*ABC | T:*AB,*AB");
  const std::vector<String> labels = {u"the first version", u"the second version"};
  region_of(*form, 0, 0).questions().all().at(0)->SetChoiceLabels(make<FormChoiceList>(labels));
  const auto document = make<DataDocument>();
  Scene scene;
  scene.merge = make<clsHEDRO>();
  clsHEDRO& merge = *scene.merge;
  const auto give = [&] {
    const Asked a{u"a", mc, 3, {1}, {u"Area"}};
    const Asked b{u"b", tf, 2, {2}, {u"AREA", u"Volume"}};
    const Asked s{u"s", subjective, 0, {}, {u"Area"}};
    scene.tests = {test_of({a, b, s}, labels[0]), test_of({b, a, s}, labels[1])};
    merge.Tests = make<clsHEDROTests>();
    for (const auto& test : scene.tests) merge.Tests->Add(test);
    merge.TemplateIn = objects.wrap(form);
    merge.TemplateOut = objects.wrap(form_of("old:AB"));
    merge.WENKTD = objects.wrap(document);
    merge.SequenceQuestion = 1;
  };
  const auto merged = [&] {
    give();
    host.answered.clear();
    EXPECT_TRUE(merge.Merge());
    EXPECT_EQ(host.recorder.take(), Lines());
    return form->to_json().value() + document->to_json().value();
  };
  const std::string expected = merged();
  const std::vector<bool> answered = host.answered;
  EXPECT_EQ(
      lines_of(*document).back(),
      R"({"sequenceQuestion":1,"versionAnswers":["the first version","the second version"],"orders":[[1,2,3,4,5],[1,3,2,4,5]]})");
  ASSERT_GT(answered.size(), 300U);
  for (std::size_t at = 1; at <= answered.size(); ++at) {
    for (const Deed& deed : deeds) {
      if ((deed.answer && !answered[at - 1]) || (deed.road != Road::Both && deed.road != road)) continue;
      give();
      host.start(at, deed, scene);
      const bool result = merge.Merge();
      host.stop();
      SCOPED_TRACE(std::string(deed.name) + " at call " + std::to_string(at) + " of " +
                   std::to_string(answered.size()));
      Lines lines = host.recorder.take();
      // Operations of the model report for themselves, and the merge goes on.
      std::erase_if(lines,
                    [](const std::string& line) { return line.find("HEDRO34 - clsHEDROTest") != std::string::npos; });
      ASSERT_LE(lines.size(), result ? 0U : 1U) << host.call << ::testing::PrintToString(lines);
      const auto orders = document->Versions()->Orders();
      for (std::int32_t v = 1; result && v <= orders->Count(); ++v) {
        for (std::int32_t p = orders->Item(v)->Count(); p >= 1; --p) ASSERT_GT(orders->Item(v)->Item(p), 0);
      }
      if (!deed.failure) continue;
      ASSERT_EQ(lines.size(), 1U) << host.call;
      if (lines[0] != invalid_version) {
        EXPECT_EQ(lines[0].substr(0, lines[0].rfind('.')), *deed.failure + ": HEDRO34 - clsHEDRO");
      }
    }
    ASSERT_EQ(merged(), expected) << "after the deeds at call " << at;
  }
}

TEST_F(HostileHost, AtEveryCallOfAMerge) { merge_at_every_call<Native>(Road::Native); }
TEST_F(HostileHost, AtEveryCallByNameOfAMerge) { merge_at_every_call<ByName>(Road::ByName); }

}  // namespace
}  // namespace hedro34::testing
