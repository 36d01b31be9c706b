// Calls by name of all classes, through the binary interface as a host makes them: with arguments of the right type and of
// others, by reference, named, too many and too few; objects that came out of a call go into later ones. Objects of a host
// stand in for templates, documents and the error object: they hand calls on to one of the library's, fail, lie or call back.
// Whatever comes, a call answers with a result or a code, and at the end nothing is left alive. A first byte that is odd asks
// for a merge with such objects in front.
#include <array>
#include <cstring>
#include <set>

#include "hedro34/component/classes.h"
#include "hedro34/component/host_document.h"
#include "hedro34/component/host_template.h"
#include "hedro34/component/identity.h"
#include "hedro34/component/services.h"
#include "hedro34/report/Report.h"
#include "fuzz/support/support.h"
#include "tests/dispatch.h"
#include "tests/merge_support.h"
#include "tests/process.h"

using hedro34::binary::GUID, hedro34::binary::HRESULT;
HEDRO34_EXPORT HRESULT HEDRO34_CALL DllGetClassObject(const GUID& class_id, const GUID& iid, void** object);
HEDRO34_EXPORT HRESULT HEDRO34_CALL DllCanUnloadNow();
HEDRO34_EXPORT HRESULT HEDRO34_CALL DllRegisterServer();
HEDRO34_EXPORT HRESULT HEDRO34_CALL DllUnregisterServer();

namespace hedro34::fuzz {
namespace {

using namespace component;

constexpr std::size_t most_objects = 12, most_steps = 60, most_inside = 4, most_given = 8;

// Values at the edges of widths; large ones are left out that are a request for as much memory.
constexpr std::int32_t numbers[] = {0,  1,  2,   3,     4,     5,      -1,     12,         15,       31,
                                    32, 50, 255, 32767, 32768, -32768, -32769, 0x7FFFFFFF, 10000001, -2147483647 - 1};
constexpr StringView texts[] = {
    u"",    u"A",     u"B",           u"a\tb",  u"q1", u"q2", u"1",          u"(A,C)",
    u"yes", u"a.xml", u"f.form.json", u"d.ktd", u"mc", u"\t", u"RaiseError", u"TIBTemplate81.TIBRegion"};

// Takes values from the front of an input; zeros when there is nothing left.
struct Reader {
  std::string_view rest;

  template <class T>
  T raw() {
    T value{};
    const std::string_view taken = bytes(sizeof value);
    std::memcpy(&value, taken.data(), taken.size());
    return value;
  }
  std::string_view bytes(std::size_t count) {
    const std::string_view taken = rest.substr(0, count);
    rest.remove_prefix(taken.size());
    return taken;
  }
  std::uint8_t byte() { return raw<std::uint8_t>(); }
  std::size_t below(std::size_t bound) { return byte() % bound; }
};

// An object of a host, before one of the library's or before none; a class of the host where it has a table.
class Host final : public Proxy {
 public:
  explicit Host(Held<IDispatch> its_target, const ClassTable* makes = nullptr)
      : Proxy(std::move(its_target)), makes_(makes) {
    all.insert(this);
  }
  ~Host() override { all.erase(this); }
  HRESULT HEDRO34_CALL Invoke(DISPID id, const GUID&, LCID, std::uint16_t flags, DISPPARAMS* parameters,
                              VARIANT* result, EXCEPINFO* exception, std::uint32_t* bad) override;

  // An object that holds a host of itself would live for ever.
  static void let_go() {
    std::vector<Held<IDispatch>> targets;
    targets.reserve(all.size());
    for (Host* const host : all) targets.push_back(std::exchange(host->target, {}));
  }

 private:
  Held<IDispatch> before(Held<IDispatch> object) override { return dispatch<Host>(std::move(object)); }

  static inline std::set<Host*> all;
  const ClassTable* makes_;
};

struct Program {
  Reader input;
  std::vector<Held<IDispatch>> objects = {};
  std::vector<String> registered = {};  // names of classes
  std::size_t inside = 0;               // calls that are running
  std::size_t raised = 0;               // failures of hosts

  void run() {
    const std::uint8_t start = input.byte();
    if (start % 2 == 1) merge_of_a_host();
    if (start >= 250) static_cast<void>(DllRegisterServer()), DllUnregisterServer();  // files are read and written
    for (std::size_t steps = 0; !input.rest.empty() && steps < most_steps; ++steps) step();
    PlatformObject services;
    services.SetMessageBox(nullptr);
    services.SetScreen(nullptr);
    services.SetErrorTexts(nullptr);
    services.SetHostFaults(true);
    for (const String& name : registered) services.RevokeClass(name);
    set_error_object(nullptr);
    objects.clear();
    Host::let_go();
    DllCanUnloadNow();
  }

  void step() {
    switch (input.below(8)) {
      case 0: return create();
      case 1: return keep(dispatch<Host>(input.below(4) == 0 ? Held<IDispatch>() : any_object()));
      case 2: return drop();
      default: return call(any_object());
    }
  }

  Held<IDispatch> any_object() { return objects.empty() ? Held<IDispatch>() : objects[input.below(objects.size())]; }

  void drop() {
    if (!objects.empty()) objects.erase(objects.begin() + static_cast<std::ptrdiff_t>(input.below(objects.size())));
  }

  void keep(Held<IDispatch> object) {
    if (objects.size() == most_objects) drop();
    if (object) objects.push_back(std::move(object));
  }

  // Without a separator of folders, so that no path leads out of the scratch folder.
  String text() {
    const std::uint8_t choice = input.byte();
    if (choice < 200) return String(texts[choice % std::size(texts)]);
    String made;
    for (const char unit : input.bytes(choice - 200u))
      made += unit == '/' || unit == '\\' ? u'_' : static_cast<char16_t>(unit);
    return made;
  }

  // One whose class ends like the name, since ours do not begin as the interfaces of a host; any object for an empty name.
  void put_object_of(VARIANT& target, StringView name) {
    for (const StringView start : {u"TIB", u"WENKtd"}) {
      if (name.starts_with(start)) name.remove_prefix(start.size());
    }
    target.vt = VT_DISPATCH;
    target.pdispVal = nullptr;
    const std::size_t first = input.below(most_objects);
    for (std::size_t i = 0; i < objects.size() && target.pdispVal == nullptr; ++i) {
      const auto& object = objects[(first + i) % objects.size()];
      const auto own = own_object(object.get());
      if (!own || table_of(*own)->name.ends_with(name)) target.pdispVal = Held<IDispatch>(object).detach();
    }
  }

  // A value of the type that is asked for, or of any.
  OwnedVariant value(const ValueType& wanted, int depth = 0) {
    const std::uint8_t choice = input.byte();
    if (choice >= 200) return odd_value(depth);
    if (wanted.kind == Kind::Texts) return owned(Array<String>::of({text(), text()}, choice % 3));
    if (wanted.kind == Kind::Numbers) return owned(Array<std::int32_t>::of({1, 3, 2}, choice % 3));
    const bool is_text = wanted.kind == Kind::Value ? choice % 2 == 1 : wanted.kind == Kind::Text;
    if (is_text || wanted.kind == Kind::None) return owned(text());
    if (wanted.kind != Kind::Object) return owned(numbers[choice % std::size(numbers)]);
    OwnedVariant result;
    put_object_of(*result, wanted.name);
    return result;
  }

  // Of any type and with any bits, but null where they point to something.
  OwnedVariant odd_value(int depth) {
    OwnedVariant result;
    const std::size_t choice = input.below(8);
    if (choice == 0) return owned(text());
    if (choice == 1) {
      put_object_of(*result, {});
      result->vt = VT_UNKNOWN;
    } else if (choice == 2 && depth < 3) {
      result->parray = SafeArrayCreateVector(VT_VARIANT, numbers[input.below(std::size(numbers))], 2);
      result->vt = VT_ARRAY | VT_VARIANT;
      for (int i = 0; i < 2; ++i)
        static_cast<VARIANT*>(result->parray->pvData)[i] = value({Kind::Value}, depth + 1).detach();
    } else {
      constexpr VARTYPE flags[] = {0, 0, 0, VT_BYREF, VT_ARRAY, VT_ARRAY | VT_BYREF};
      const auto type = static_cast<VARTYPE>(input.byte() % 40);
      result->vt = type | flags[input.below(std::size(flags))];
      const bool points =
          result->vt != type || type == VT_BSTR || type == VT_DISPATCH || type == VT_UNKNOWN || type > VT_UINT;
      result->llVal = points ? 0 : input.raw<std::int64_t>();
    }
    return result;
  }

  void create() {
    const auto tables = input.below(2) == 0 ? library_classes() : service_classes();
    const ClassTable& table = tables[input.below(tables.size())];
    void* made = nullptr;
    const HRESULT code = DllGetClassObject(table.class_id, IID_IClassFactory, &made);
    EXPECT_EQ(code == S_OK, table.create != nullptr) << "a host gets the classes that it may create";
    if (code != S_OK) return;
    const auto factory = Held<IClassFactory>::taken(static_cast<IClassFactory*>(made));
    for (const std::int32_t lock : {1, 0}) factory->LockServer(lock);
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IDispatch, &made), S_OK);
    keep(Held<IDispatch>::taken(static_cast<IDispatch*>(made)));
  }

  // A merge whose template and document are the host's, as are the objects that it adds to them.
  void merge_of_a_host() {
    PlatformObject services;
    for (const ClassTable& table : service_classes()) {
      const bool of_form = table.name == u"FormRegion";
      if (!of_form && !table.name.starts_with(u"Data")) continue;
      registered.push_back(of_form ? u"TIBTemplate81.TIBRegion" : u"WENKtd81.WENKtd" + String(table.name.substr(4)));
      services.RegisterClass(registered.back(), adapted<Object>(dispatch<Host>(Held<IDispatch>(), &table)));
    }
    const auto merge = make<clsHEDRO>();
    merge->TemplateIn = adapted<TIBTemplate>(dispatch<Host>(identity_of(form_of("V:AB Q:*AB,*AB"))));
    merge->TemplateOut = adapted<TIBTemplate>(dispatch<Host>(identity_of(make<FormTemplate>())));
    merge->WENKTD = adapted<WENKtdDocument>(dispatch<Host>(identity_of(make<DataDocument>())));
    merge->SequenceQuestion = 1;
    for (const char16_t* version : {u"A", u"B"}) {
      merge->Tests->Add(test_of({{u"q1", mc, 2, {2}, {u"o"}}, {u"q2", tf, 2}, {u"s", subjective, 0, {}}}, version));
    }
    merge->Merge();
    const auto report = make<Report>();
    report->Document = merge->WENKTD;
    report->Form = merge->TemplateOut;
    keep(identity_of(merge));
    keep(identity_of(report));
  }

  void call(const Held<IDispatch>& object) {
    const Ref<Object> own = own_object(object.get());
    if (!own || inside >= most_inside) return;
    const ClassTable& table = *table_of(*own);
    const Member& member = table.members[input.below(table.members.size())];
    const std::uint8_t how = input.byte();
    const bool writes = member.write != nullptr && how % 2 == 0;
    constexpr std::uint16_t puts = DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF;
    int flags = writes ? member.kinds & puts : (member.kinds & ~puts) | (how & DISPATCH_METHOD);
    if (how > 240) flags = input.byte() % 16;
    const std::size_t count = how % 16 == 15 ? input.below(most_given) : member.count + (writes ? 1u : 0u);
    std::array<OwnedVariant, most_given> values, behind;  // the arguments, and what references lead to
    std::array<VARIANT, most_given> given;                // the last one first
    for (std::size_t i = 0; i < count; ++i) {
      const Argument argument = i < member.count ? member.arguments[i] : Argument{.type = member.type};
      const bool left_out = argument.optional && input.below(2) == 0;
      values[i] = left_out ? owned(missing) : value(argument.type);
      const std::size_t reference = input.below(8);
      if (reference < 2 && (values[i]->vt & VT_BYREF) == 0) {
        std::swap(behind[i], values[i]);
        const bool to_variant = reference == 0 || behind[i]->vt == VT_VARIANT;
        values[i]->vt = static_cast<VARTYPE>(VT_BYREF | (to_variant ? VARTYPE{VT_VARIANT} : behind[i]->vt));
        values[i]->byref = to_variant ? static_cast<void*>(behind[i].get()) : &behind[i]->llVal;
      }
      given[count - 1 - i] = *values[i];
      if (member.name == u"RegisterClass") quietly([&] { registered.push_back(hedro34::text_of(*values[i])); });
    }
    std::vector<DISPID> names(writes && count > 0 ? 1 : 0, DISPID_PROPERTYPUT);
    while (how % 32 == 9 && names.size() < count && input.below(2) == 0)
      names.push_back(static_cast<DISPID>(input.below(6)));
    DISPID id = id_of(object.get(), how % 4 == 3 ? upper(member.name) : String(member.name));
    EXPECT_EQ(table.member(id), &member) << "a member is found by its name";
    if (how == 255) id = input.raw<std::int16_t>();

    const bool all = how % 64 != 5;  // or the caller leaves out what it does not want to know
    DISPPARAMS parameters = {given.data(), names.data(), static_cast<std::uint32_t>(count),
                             static_cast<std::uint32_t>(names.size())};
    OwnedVariant result;
    EXCEPINFO exception{};
    std::uint32_t bad = 0;
    const std::size_t before = raised;
    ++inside;
    const HRESULT code = object->Invoke(id, IID_NULL, 0, static_cast<std::uint16_t>(flags), &parameters,
                                        all ? result.get() : nullptr, all ? &exception : nullptr, all ? &bad : nullptr);
    --inside;
    EXPECT_LE(code, S_OK);
    EXPECT_TRUE(code == S_OK || result->vt == VT_EMPTY);
    EXPECT_TRUE(bad == 0 || bad < count) << bad;
    // What the default member of a host's own object says comes through as it is.
    EXPECT_TRUE(code != DISP_E_EXCEPTION || !all || exception.scode < 0 || raised > before);
    for (const BSTR told : {exception.bstrSource, exception.bstrDescription, exception.bstrHelpFile})
      SysFreeString(told);
    if (result->vt == VT_DISPATCH) keep(Held<IDispatch>(result->pdispVal));
  }
};

Program* running = nullptr;

HRESULT HEDRO34_CALL Host::Invoke(DISPID id, const GUID&, LCID, std::uint16_t flags, DISPPARAMS* parameters,
                                  VARIANT* result, EXCEPINFO* exception, std::uint32_t* bad) {
  const Held<IDispatch> living(this);
  Reader& input = running->input;
  const std::uint8_t how = input.byte();
  if (makes_ != nullptr && how < 200) {
    hedro34::put_object(*result, makes_->create());
    result->pdispVal = before(Held<IDispatch>::taken(result->pdispVal)).detach();
    return S_OK;
  }
  if (target && how < 230) return pass_on(id, flags, *parameters, result, exception, bad);
  if (how % 5 == 0) return static_cast<HRESULT>(0x80000000u | input.raw<std::uint32_t>());
  if (how % 5 == 1) {
    ++running->raised;
    exception->scode = input.raw<HRESULT>();
    exception->bstrDescription = bstr_of(u"host");
    return DISP_E_EXCEPTION;
  }
  if (how % 5 == 2) running->step();
  const auto kind = static_cast<Kind>(input.below(static_cast<std::size_t>(Kind::Enumeration)));
  if (result != nullptr) *result = running->value({kind, {}}).detach();
  // One that counts millions is asked for as many.
  if (result != nullptr && result->vt == VT_I4) result->lVal %= 1000;
  return S_OK;
}

}  // namespace

void run(std::string_view input) {
  const Scratch folder;
  const Variable data_home("XDG_DATA_HOME");
  data_home.set(to_utf8(folder.path("")).c_str());
  const Recorder heard;
  const std::int64_t before = Alive::count();
  Program program{.input = {input}};
  running = &program;
  program.run();
  EXPECT_EQ(Alive::count(), before) << "nothing is left alive";
}

}  // namespace hedro34::fuzz
