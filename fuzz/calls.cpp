// Calls by name of all classes, through the binary interface as a host makes them: with arguments of the right type and of
// others, by reference, named, too many and too few; objects that came out of a call go into later ones. Objects of a host
// stand in for templates, documents and the error object: they hand calls on to one of the library's, fail, lie or call back.
// Whatever comes, a call answers with a result or a code, and at the end nothing is left alive.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <set>

#include "hedro34/component/classes.h"
#include "hedro34/component/create_object.h"
#include "hedro34/component/host_document.h"
#include "hedro34/component/host_template.h"
#include "hedro34/component/identity.h"
#include "hedro34/component/services.h"
#include "hedro34/documents/data_document.h"
#include "hedro34/documents/form_template.h"
#include "hedro34/merge/clsHEDRO.h"
#include "hedro34/report/Report.h"
#include "fuzz/support/support.h"

using hedro34::binary::GUID, hedro34::binary::HRESULT;
HEDRO34_EXPORT HRESULT HEDRO34_CALL DllGetClassObject(const GUID& class_id, const GUID& iid, void** object);
HEDRO34_EXPORT HRESULT HEDRO34_CALL DllCanUnloadNow();
HEDRO34_EXPORT HRESULT HEDRO34_CALL DllRegisterServer();
HEDRO34_EXPORT HRESULT HEDRO34_CALL DllUnregisterServer();

namespace hedro34::fuzz {
namespace {

using namespace binary;

class Program;
Program* running = nullptr;

constexpr std::size_t most_objects = 12, most_steps = 60, most_inside = 4;

// Values at the edges of widths; large ones are left out that are a request for as much memory.
constexpr std::int32_t numbers[] = {0,  1,  2,   3,     4,     5,      -1,     12,         15,       31,
                                    32, 50, 255, 32767, 32768, -32768, -32769, 0x7FFFFFFF, 10000001, -2147483647 - 1};
constexpr StringView texts[] = {
    u"",    u"A",      u"B",    u"a\tb",     u"q1", u"q2", u"1",          u"(A,C)",
    u"yes", u"test.x", u"form", u"document", u"mc", u"\t", u"RaiseError", u"TIBTemplate81.TIBRegion"};

constexpr std::string_view exam = R"(<examview><header><version>B</version></header>
<question type="mc" question-id="q1"><text>P</text><choices><choice-a>1</choice-a><choice-b>2</choice-b></choices><answer>B</answer>
<info><points scoring-method="RightLessWrong">2</points></info></question>
<question type="tf" question-id="q2"><answer>F</answer></question></examview>)";
constexpr std::string_view form = R"({"format": "hedro34-form", "version": 1, "pages": [{"regions": [
{"name": "V", "questions": [{"choiceLabels": ["A", "B"]}]},
{"questions": [{"graded": true, "choiceLabels": ["A", "B"]}, {"graded": true, "choiceLabels": ["A", "B"]}]}]}]})";
constexpr std::string_view document = R"({"format": "hedro34-ktd", "version": 1, "objectives": ["", "o"], "questions": [
{"graded": true, "choiceLabels": ["A", "B"], "answerKey": ["B"], "objectiveFlags": [false, true]}, {"subjective": true}],
"versions": {"versionAnswers": ["A"], "orders": [[1, 2]]}})";

// An object of a host. With a target it hands calls on to that, and its objects are the host's as well.
class Host final : public IDispatch {
 public:
  static Held<IDispatch> create(Held<IDispatch> target) {
    return Held<IDispatch>(std::make_unique<Host>(std::move(target)).release());
  }
  explicit Host(Held<IDispatch> target) : target_(std::move(target)) { all.insert(this); }
  ~Host() { all.erase(this); }
  HRESULT HEDRO34_CALL QueryInterface(const GUID& iid, void** object) override {
    const bool known = iid == IID_IUnknown || iid == IID_IDispatch;
    *object = known ? this : nullptr;
    if (known) AddRef();
    return known ? S_OK : E_NOINTERFACE;
  }
  std::uint32_t HEDRO34_CALL AddRef() override { return ++count_; }
  std::uint32_t HEDRO34_CALL Release() override {
    const std::uint32_t left = --count_;
    if (left == 0) std::unique_ptr<Host>(this).reset();
    return left;
  }
  HRESULT HEDRO34_CALL GetTypeInfoCount(std::uint32_t*) override { return E_NOTIMPL; }
  HRESULT HEDRO34_CALL GetTypeInfo(std::uint32_t, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT HEDRO34_CALL GetIDsOfNames(const GUID&, OLECHAR** wanted, std::uint32_t, LCID, DISPID* ids) override {
    names_.emplace_back(wanted[0]);
    ids[0] = static_cast<DISPID>(names_.size());
    return S_OK;
  }
  HRESULT HEDRO34_CALL Invoke(DISPID id, const GUID&, LCID, std::uint16_t flags, DISPPARAMS* parameters,
                              VARIANT* result, EXCEPINFO* exception, std::uint32_t* bad) override;
  const Held<IDispatch>& target() const { return target_; }
  static Held<IDispatch> factory(const ClassTable& table) {
    auto made = std::make_unique<Host>(Held<IDispatch>());
    made->makes_ = &table;
    return Held<IDispatch>(made.release());
  }

  // An object that holds a host of itself would live for ever.
  static void let_go() {
    std::vector<Held<IDispatch>> targets;
    targets.reserve(all.size());
    for (Host* const host : all) targets.push_back(std::exchange(host->target_, {}));
  }

 private:
  static inline std::set<Host*> all;

  HRESULT hand_on(StringView name, std::uint16_t flags, const DISPPARAMS& parameters, VARIANT* result,
                  EXCEPINFO* exception, std::uint32_t* bad);

  Held<IDispatch> target_;
  const ClassTable* makes_ = nullptr;  // its objects, where it stands for a class
  std::vector<String> names_;          // as they were asked for
  std::uint32_t count_ = 0;
};

class Program {
 public:
  explicit Program(std::string_view bytes) : input(bytes) { running = this; }
  ~Program() { running = nullptr; }

  void run() {
    if (input.byte() % 2 == 1) merge_of_a_host();
    for (std::size_t steps = 0; !input.done() && steps < most_steps; ++steps) step();
    objects.erase(
        std::remove_if(objects.begin(), objects.end(), [](const auto& held) { return !own_object(held.get()); }),
        objects.end());
    for (const auto& held : std::vector(objects)) check_list(held);
  }

  void step() {
    switch (input.below(8)) {
      case 0: return create();
      case 1: return keep(Host::create(input.below(4) == 0 ? Held<IDispatch>() : any_object()));
      case 2: return ask_for_more();
      default: return call(any_object());
    }
  }

  Held<IDispatch> any_object() { return objects.empty() ? Held<IDispatch>() : objects[input.below(objects.size())]; }

  void keep(Held<IDispatch> object) {
    if (!object) return;
    if (objects.size() < most_objects) {
      objects.push_back(std::move(object));
    } else {
      objects[input.below(objects.size())] = std::move(object);
    }
  }

  // A value of the type that is asked for, or of any.
  OwnedVariant value(const ValueType& wanted, int depth = 0) {
    OwnedVariant result;
    const std::uint8_t choice = input.byte();
    if (choice >= 200) return odd_value(depth);
    switch (wanted.kind) {
      case Kind::Boolean: put(*result, choice % 2 == 0); break;
      case Kind::Int16: put(*result, static_cast<std::int16_t>(numbers[choice % 15])); break;
      case Kind::Int32:
      case Kind::Enumeration: put(*result, numbers[choice % std::size(numbers)]); break;
      case Kind::Float: put(*result, static_cast<float>(choice) / 4); break;
      case Kind::Double: put(*result, static_cast<double>(choice) / 4); break;
      case Kind::Object: put_object_of(*result, wanted.name); break;
      case Kind::Texts: put(*result, Array<String>::of({text(), text()}, choice % 3)); break;
      case Kind::Numbers: put(*result, Array<std::int32_t>::of({1, 3, 2}, choice % 3)); break;
      case Kind::Value:
        if (choice % 2 == 0)
          put(*result, numbers[choice / 2 % 8]);
        else
          put(*result, StringView(text()));
        break;
      default: put(*result, StringView(text())); break;
    }
    return result;
  }

  Reader input;
  std::vector<Held<IDispatch>> objects;
  std::vector<String> registered;  // names of classes
  std::size_t inside = 0;          // calls that are running

 private:
  // Without a separator of folders, so that no path leads out of the scratch folder.
  String text() {
    const std::uint8_t choice = input.byte();
    if (choice < 200) return String(texts[choice % std::size(texts)]);
    String made;
    for (const char unit : input.bytes(choice - 200u))
      made += unit == '/' || unit == '\\' ? u'_' : static_cast<char16_t>(unit);
    return made;
  }

  void put_object_of(VARIANT& target, StringView name) {
    const std::size_t first = input.below(most_objects);
    target.vt = VT_DISPATCH;
    target.pdispVal = nullptr;
    for (std::size_t i = 0; i < objects.size(); ++i) {
      const auto& held = objects[(first + i) % objects.size()];
      const auto own = own_object(held.get());
      const ClassTable* const table = own ? table_of(*own) : nullptr;
      if (table != nullptr && !name.empty() && table->name != name && !is_default_for(*table, name)) continue;
      target.pdispVal = Held<IDispatch>(held).detach();
      return;
    }
  }
  static bool is_default_for(const ClassTable& table, StringView name) {
    return (name.starts_with(u"TIB") && table.name == u"Form" + String(name.substr(3))) ||
           (name.starts_with(u"WENKtd") && table.name == u"Data" + String(name.substr(6)));
  }

  OwnedVariant odd_value(int depth) {
    OwnedVariant result;
    switch (input.below(14)) {
      case 0: break;
      case 1: result->vt = VT_NULL; break;
      case 2: put(*result, Variant(missing)); break;
      case 3: put(*result, input.raw<double>()); break;
      case 4: result->vt = VT_I8, result->llVal = input.raw<std::int64_t>(); break;
      case 5: result->vt = VT_UI8, result->llVal = input.raw<std::int64_t>(); break;
      case 6: result->vt = VT_CY, result->llVal = input.raw<std::int64_t>(); break;
      case 7: result->vt = VT_UI1, result->bVal = input.byte(); break;
      case 8: result->vt = VT_BSTR, result->bstrVal = nullptr; break;
      case 9: result->vt = VT_ARRAY | VT_BSTR, result->parray = nullptr; break;
      case 10:
        result->vt = static_cast<VARTYPE>(input.byte() % 40 + (input.byte() % 2) * VT_BYREF);
        result->llVal = 0;
        break;
      case 11:
        put_object_of(*result, {});
        result->vt = VT_UNKNOWN;
        break;
      case 12:
        if (depth > 2) break;
        result->parray = SafeArrayCreateVector(VT_VARIANT, input.below(2) == 0 ? 1 : 0x7FFFFFFF, 2);
        result->vt = VT_ARRAY | VT_VARIANT;
        for (std::size_t i = 0; i < 2; ++i) {
          static_cast<VARIANT*>(result->parray->pvData)[i] = value({Kind::Value, {}}, depth + 1).detach();
        }
        break;
      default: put(*result, StringView(text())); break;
    }
    return result;
  }

  void create() {
    const auto tables = input.below(2) == 0 ? library_classes() : service_classes();
    const ClassTable& table = tables[input.below(tables.size())];
    void* made = nullptr;
    const HRESULT code = DllGetClassObject(table.class_id, IID_IClassFactory, &made);
    expect((code == S_OK) == (table.create != nullptr), "a host gets the classes that it may create");
    if (code != S_OK) return;
    const auto factory = Held<IClassFactory>::taken(static_cast<IClassFactory*>(made));
    expect(factory->CreateInstance(nullptr, IID_IDispatch, &made) == S_OK, "a class makes objects");
    keep(Held<IDispatch>::taken(static_cast<IDispatch*>(made)));
  }

  void merge_of_a_host();
  void ask_for_more();
  void call(const Held<IDispatch>& object);
  void check_list(const Held<IDispatch>& object);
};

// A merge whose template and document are the host's, as are the objects that it adds to them.
void Program::merge_of_a_host() {
  PlatformObject services;
  for (const ClassTable& table : service_classes()) {
    const bool of_form = table.name == u"FormRegion";
    if (!of_form && !table.name.starts_with(u"Data")) continue;
    const String name =
        of_form ? String(u"TIBTemplate81.TIBRegion") : u"WENKtd81.WENKtd" + String(table.name.substr(4));
    services.RegisterClass(name, adapted<Object>(Host::factory(table)));
    registered.push_back(name);
  }
  const auto merge = make<clsHEDRO>();
  const auto template_in = make<FormTemplate>();
  template_in->Load(u"form");
  merge->TemplateIn = adapted<TIBTemplate>(Host::create(identity_of(template_in)));
  merge->TemplateOut = adapted<TIBTemplate>(Host::create(identity_of(make<FormTemplate>())));
  merge->WENKTD = adapted<WENKtdDocument>(Host::create(identity_of(make<DataDocument>())));
  merge->SequenceQuestion = 1;
  for (const bool from_document : {input.below(2) == 0, true}) {
    const auto test = make<clsHEDROTest>();
    test->ImportObjectives = HEDROTestImportObjectivesLearning;
    if (from_document)
      test->LoadKTD(u"document");
    else
      test->LoadXML(u"test.x");
    test->Version = from_document ? u"A" : u"B";
    merge->Tests->Add(test);
  }
  merge->Merge();
  const auto report = make<Report>();
  report->Document = merge->WENKTD;
  report->Form = merge->TemplateOut;
  quietly([&] { report->to_html(); });
  for (const Ref<Object>& each : {Ref<Object>(merge), Ref<Object>(report)}) keep(identity_of(each));
}

// What else there is at an object, and the four functions of the component.
void Program::ask_for_more() {
  const Held<IDispatch> object = any_object();
  std::uint32_t count = 7;
  ITypeInfo* info = nullptr;
  void* found = nullptr;
  switch (input.below(6)) {
    case 0:
    case 1:
      if (input.byte() < 240) return;  // seldom: a file is read and written
      input.below(2) == 0 ? DllRegisterServer() : DllUnregisterServer();
      return;
    case 2:
      if (objects.size() > 1) objects.erase(objects.begin() + static_cast<std::ptrdiff_t>(input.below(objects.size())));
      return;
    case 3: {
      IDispatch* made = nullptr;
      expect(create_object(u"HEDRO34.clsHEDRO", &made) < 0 && made == nullptr, "a program is no library");
      return;
    }
    default: break;
  }
  if (!object) return;
  expect(object->GetTypeInfoCount(&count) < 0 || count == 0, "there is no type information here");
  expect(object->GetTypeInfo(0, 0, &info) < 0 && info == nullptr, "and none is given");
  if (object->QueryInterface(input.raw<GUID>(), &found) == S_OK) static_cast<IUnknown*>(found)->Release();
  DllCanUnloadNow();
}

struct Answer {
  HRESULT code = S_OK;
  OwnedVariant result;
};

// Makes the call and holds what comes back against what may come back.
Answer invoke(const Held<IDispatch>& object, DISPID id, std::uint16_t flags, DISPPARAMS parameters, bool wants_all) {
  Answer answer;
  EXCEPINFO exception{};
  std::uint32_t bad = 1000;
  answer.code = object->Invoke(id, IID_NULL, 0, flags, &parameters, wants_all ? answer.result.get() : nullptr,
                               wants_all ? &exception : nullptr, wants_all ? &bad : nullptr);
  expect(answer.code <= S_OK, "a call answers S_OK or a failure");
  expect(answer.code == S_OK || answer.result->vt == VT_EMPTY, "a failed call has no result");
  expect(bad == 1000 || bad < parameters.cArgs, "a bad argument is one of them");
  expect(answer.code != DISP_E_EXCEPTION || !wants_all || exception.scode < 0, "a failure has its code");
  for (const BSTR text : {exception.bstrSource, exception.bstrDescription, exception.bstrHelpFile}) SysFreeString(text);
  return answer;
}

void Program::call(const Held<IDispatch>& object) {
  const Ref<Object> own = own_object(object.get());
  if (!own || inside >= most_inside) return;
  ++inside;
  const ClassTable& table = *table_of(*own);
  const std::size_t position = input.below(table.members.size());
  const Member& member = table.members[position];
  std::uint16_t flags = member.kinds;
  const std::uint8_t how = input.byte();
  const bool writes = member.write != nullptr && how % 2 == 0;
  if (writes)
    flags = member.kinds & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF);
  else if ((flags & DISPATCH_PROPERTYGET) != 0)
    flags = DISPATCH_PROPERTYGET | (how & DISPATCH_METHOD);
  if (how > 240) flags = input.byte() % 16;

  std::size_t count = member.count + (writes ? 1u : 0u);
  if (how % 16 == 15) count = input.below(8);
  std::vector<OwnedVariant> values;
  std::vector<OwnedVariant> inner(8);  // what references lead to
  for (std::size_t i = 0; i < count && i < inner.size(); ++i) {
    const bool is_value = writes && i + 1 == count;
    const ValueType type = is_value ? member.type : i < member.count ? member.arguments[i].type : ValueType{};
    const bool optional = !is_value && i < member.count && member.arguments[i].optional;
    OwnedVariant made = optional && input.below(2) == 0 ? OwnedVariant() : value(type);
    if (optional && made->vt == VT_EMPTY) put(*made, Variant(missing));
    const std::size_t reference = input.below(8);
    if (reference < 2 && (made->vt & VT_BYREF) == 0) {
      inner[i] = std::move(made);
      made = OwnedVariant();
      made->vt = static_cast<VARTYPE>(VT_BYREF | (reference == 0 ? VARTYPE{VT_VARIANT} : inner[i]->vt));
      made->byref = reference == 0 ? static_cast<void*>(inner[i].get()) : &inner[i]->llVal;
    }
    values.insert(values.begin(), std::move(made));
  }
  if (member.name == u"RegisterClass") {
    for (const OwnedVariant& each : values) quietly([&] { registered.push_back(text_of(*each)); });
  }

  std::vector<VARIANT> backwards;
  backwards.reserve(values.size());
  for (OwnedVariant& each : values) backwards.push_back(*each);
  std::vector<DISPID> names;
  if (writes && !backwards.empty()) names.push_back(DISPID_PROPERTYPUT);
  if (how % 32 == 9) {
    while (names.size() < backwards.size() && input.below(2) == 0) names.push_back(static_cast<DISPID>(input.below(6)));
  }
  String name(member.name);
  String argument(member.arguments[0].name);
  if (how % 4 == 3) name = upper(name);
  OLECHAR* wanted[] = {name.data(), argument.data()};
  DISPID ids[2] = {};
  object->GetIDsOfNames(IID_NULL, wanted, how % 8 == 1 && !argument.empty() ? 2 : 1, 0, ids);
  expect(table.member(ids[0]) == &member, "a member is found by its name");
  if (how == 255) ids[0] = input.raw<std::int16_t>();
  Answer answer = invoke(object, ids[0], flags,
                         {backwards.data(), names.data(), static_cast<std::uint32_t>(backwards.size()),
                          static_cast<std::uint32_t>(names.size())},
                         how % 64 != 5);
  if (answer.result->vt == VT_DISPATCH) keep(Held<IDispatch>(answer.result->pdispVal));
  --inside;
}

// A list has an element at each position up to its count.
void Program::check_list(const Held<IDispatch>& object) {
  const ClassTable& table = *table_of(*own_object(object.get()));
  const DISPID count = table.id_of(u"Count"), item = table.id_of(u"Item");
  if (count == DISPID_UNKNOWN || item == DISPID_UNKNOWN) return;
  Answer size = invoke(object, count, DISPATCH_PROPERTYGET, {}, true);
  if (size.code != S_OK || size.result->lVal < 1 || size.result->lVal > 32767) return;
  VARIANT last = *size.result;
  Answer element = invoke(object, item, DISPATCH_PROPERTYGET, {&last, nullptr, 1, 0}, true);
  expect(element.code == S_OK && (element.result->vt != VT_DISPATCH || element.result->pdispVal != nullptr),
         "a list has its last element");
}

HRESULT Host::hand_on(StringView name, std::uint16_t flags, const DISPPARAMS& parameters, VARIANT* result,
                      EXCEPINFO* exception, std::uint32_t* bad) {
  DISPID id = DISPID_VALUE;
  String wanted(name);
  OLECHAR* names[] = {wanted.data()};
  if (!name.empty() && target_->GetIDsOfNames(IID_NULL, names, 1, 0, &id) < 0) return DISP_E_UNKNOWNNAME;
  std::vector<VARIANT> arguments(parameters.rgvarg, parameters.rgvarg + parameters.cArgs);
  for (VARIANT& each : arguments) {
    const VARIANT value = plain(each);
    if (value.vt != VT_DISPATCH) continue;
    auto* const host = dynamic_cast<Host*>(value.pdispVal);
    each = value;
    if (host != nullptr && host->target()) each.pdispVal = host->target().get();
  }
  DISPPARAMS passed = parameters;
  passed.rgvarg = arguments.data();
  const Held<IDispatch> target = target_;
  const HRESULT code = target->Invoke(id, IID_NULL, 0, flags, &passed, result, exception, bad);
  if (code == S_OK && result != nullptr && result->vt == VT_DISPATCH && result->pdispVal != nullptr) {
    result->pdispVal = create(Held<IDispatch>::taken(result->pdispVal)).detach();
  }
  return code;
}

HRESULT HEDRO34_CALL Host::Invoke(DISPID id, const GUID&, LCID, std::uint16_t flags, DISPPARAMS* parameters,
                                  VARIANT* result, EXCEPINFO* exception, std::uint32_t* bad) {
  if (running == nullptr) return E_UNEXPECTED;
  const Held<IDispatch> living(this);
  const String name =
      id >= 1 && static_cast<std::size_t>(id) <= names_.size() ? names_[static_cast<std::size_t>(id - 1)] : String();
  Reader& input = running->input;
  const std::uint8_t how = input.byte();
  if (name == u"CreateInstance" && how < 200) {
    const auto tables = service_classes();
    const ClassTable& table = makes_ != nullptr ? *makes_ : tables[input.below(tables.size())];
    if (table.create != nullptr) put_object(*result, table.create());
    if (result->vt == VT_DISPATCH) result->pdispVal = create(Held<IDispatch>::taken(result->pdispVal)).detach();
    return S_OK;
  }
  if (target_ && how < 230) return hand_on(name, flags, *parameters, result, exception, bad);
  switch (how % 6) {
    case 0: return DISP_E_MEMBERNOTFOUND;
    case 1: return static_cast<HRESULT>(0x80000000u | input.raw<std::uint32_t>());
    case 2:
      exception->wCode = input.raw<std::uint16_t>();
      exception->scode = static_cast<HRESULT>(input.raw<std::uint32_t>());
      exception->bstrDescription = SysAllocStringLen(u"host", 4);
      return DISP_E_EXCEPTION;
    case 3: running->step(); break;
    default: break;
  }
  constexpr Kind kinds[] = {Kind::Value,  Kind::Boolean, Kind::Int32,  Kind::Text,
                            Kind::Object, Kind::Texts,   Kind::Numbers};
  if (result != nullptr) *result = running->value({kinds[input.below(std::size(kinds))], {}}).detach();
  return S_OK;
}

// Gives back what the program has put in the place of the library's services.
void put_back(const Program& program) {
  PlatformObject services;
  services.SetMessageBox(nullptr);
  services.SetScreen(nullptr);
  services.SetErrorTexts(nullptr);
  services.SetHostFaults(true);
  for (const String& name : program.registered) services.RevokeClass(name);
}

}  // namespace

void go(std::string_view bytes) {
  static const bool once = ::setenv("XDG_DATA_HOME", Scratch::folder().c_str(), 1) == 0;
  expect(once, "the registry of classes is in the scratch folder");
  const InScratch folder;
  Scratch::write("test.x", exam);
  Scratch::write("form", form);
  Scratch::write("document", document);
  const std::int64_t before = Alive::count();
  {
    Listener heard;
    Program program(bytes);
    program.run();
    put_back(program);
    set_error_object(nullptr);
    program.objects.clear();
    Host::let_go();
  }
  expect(Alive::count() == before, "nothing is left alive");
}

}  // namespace hedro34::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  hedro34::fuzz::go({reinterpret_cast<const char*>(data), size});
  return 0;
}
