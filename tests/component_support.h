// What the tests of the component share: calls by name with their outcome as text, and objects of a host that is called by
// name. Values are shown as they lie in memory: "I4 3", "BSTR a", "&BOOL -1" by reference, "&VARIANT I4 3".
#pragma once

#include <cstring>
#include <functional>
#include <map>

#include "hedro34/component/classes.h"
#include "hedro34/component/host_document.h"
#include "hedro34/component/host_template.h"
#include "hedro34/component/identity.h"
#include "hedro34/component/services.h"
#include "tests/dispatch.h"
#include "tests/model_support.h"
#include "tests/process.h"

namespace hedro34::testing::component {

inline constexpr std::uint16_t method = DISPATCH_METHOD;
inline constexpr std::uint16_t get = DISPATCH_PROPERTYGET;
inline constexpr std::uint16_t put_value = DISPATCH_PROPERTYPUT;
inline constexpr std::uint16_t put_reference = DISPATCH_PROPERTYPUTREF;

inline const Ref<Object> none;

inline std::string hexadecimal(HRESULT code) {
  char text[16];
  std::snprintf(text, sizeof text, "%08X", static_cast<unsigned>(code));
  return text;
}

inline std::string show(BSTR text) { return to_utf8(StringView(text, SysStringLen(text))); }

template <class T>
T value_at(const void* address) {
  T result;
  std::memcpy(&result, address, sizeof(T));  // NOLINT(bugprone-sizeof-expression): T may be a pointer
  return result;
}

inline std::string show(const VARIANT& value) {
  const bool by_reference = (value.vt & VT_BYREF) != 0;
  const void* const at = by_reference ? value.byref : &value.llVal;
  const int type = value.vt & 0xFFF;
  static const std::map<int, std::string> names = {
      {VT_EMPTY, "EMPTY"}, {VT_NULL, "NULL"},   {VT_I2, "I2"},           {VT_I4, "I4"},
      {VT_R4, "R4"},       {VT_R8, "R8"},       {VT_BSTR, "BSTR"},       {VT_I8, "I8"},
      {VT_BOOL, "BOOL"},   {VT_ERROR, "ERROR"}, {VT_DISPATCH, "OBJECT"}, {VT_VARIANT, "VARIANT"}};
  const auto name = names.find(type);
  std::string text = (by_reference ? "&" : "") + (name != names.end() ? name->second : std::to_string(type));
  if ((value.vt & VT_ARRAY) != 0) {
    const auto* const array = value_at<const SAFEARRAY*>(at);
    if (array == nullptr) return text + "[]";
    text += "[" + std::to_string(array->rgsabound[0].lLbound) + "]";
    for (std::uint32_t i = 0; i < array->rgsabound[0].cElements; ++i) {
      const char* const element = static_cast<const char*>(array->pvData) + i * array->cbElements;
      text += " " + (type == VT_I4 ? std::to_string(value_at<std::int32_t>(element)) : show(value_at<BSTR>(element)));
    }
    return text;
  }
  switch (type) {
    case VT_I2:
    case VT_BOOL: return text + " " + std::to_string(value_at<std::int16_t>(at));
    case VT_I4: return text + " " + std::to_string(value_at<std::int32_t>(at));
    case VT_R4: return text + " " + to_utf8(to_text(value_at<float>(at)));
    case VT_R8: return text + " " + to_utf8(to_text(value_at<double>(at)));
    case VT_BSTR: return text + " " + show(value_at<BSTR>(at));
    case VT_ERROR: return text + " " + hexadecimal(value_at<HRESULT>(at));
    case VT_DISPATCH: return value_at<void*>(at) == nullptr ? text + " none" : text;
    case VT_VARIANT: return text + " " + show(*value.pvarVal);
    default: return text;
  }
}

// The outcome of a call: its result, or the result code with the index of a bad argument, "80020005 at 0", or with what is
// told of a failure, "80020009 800A005B HEDRO34: Object variable not set".
inline std::string invoke(IDispatch* object, DISPID id, std::uint16_t flags, DISPPARAMS parameters,
                          VARIANT* result = nullptr) {
  OwnedVariant own;
  EXCEPINFO exception{};
  std::uint32_t bad = 77;
  const HRESULT code =
      object->Invoke(id, IID_NULL, 0, flags, &parameters, result != nullptr ? result : own.get(), &exception, &bad);
  if (code == S_OK) return show(result != nullptr ? *result : *own);
  std::string text = hexadecimal(code);
  if (bad != 77 && code != DISP_E_BADPARAMCOUNT) text += " at " + std::to_string(bad);
  if (code == DISP_E_EXCEPTION) {
    text +=
        " " + hexadecimal(exception.scode) + " " + show(exception.bstrSource) + ": " + show(exception.bstrDescription);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
  }
  return text;
}

// A call by name with arguments in order, the last ones named. The last argument of a put is its value.
struct Call {
  const char16_t* member;
  std::uint16_t flags = method;
  std::vector<Variant> arguments = {};
  std::vector<const char16_t*> names = {};
};

inline std::string run(IDispatch* object, const Call& call, VARIANT* result = nullptr) {
  String member(call.member);
  std::vector<String> texts(call.names.begin(), call.names.end());
  std::vector<OLECHAR*> names = {member.data()};
  for (String& text : texts) names.push_back(text.data());
  std::vector<DISPID> ids(names.size());
  const HRESULT known =
      object->GetIDsOfNames(IID_NULL, names.data(), static_cast<std::uint32_t>(names.size()), 0, ids.data());
  if (known != S_OK) return "names " + hexadecimal(known);
  std::vector<OwnedVariant> values;
  for (const Variant& argument : call.arguments) values.push_back(owned(argument));
  std::vector<VARIANT> backwards;
  for (auto value = values.rbegin(); value != values.rend(); ++value) backwards.push_back(**value);
  std::vector<DISPID> named(ids.rbegin(), ids.rend() - 1);
  if ((call.flags & (put_value | put_reference)) != 0) named.insert(named.begin(), DISPID_PROPERTYPUT);
  return invoke(object, ids[0], call.flags,
                {backwards.data(), named.data(), static_cast<std::uint32_t>(backwards.size()),
                 static_cast<std::uint32_t>(named.size())},
                result);
}

// A new object of a component library, which is loaded.
inline Held<IDispatch> created(const String& library, StringView name) {
  using ClassObject = HRESULT HEDRO34_CALL(const GUID&, const GUID&, void**);
  const auto class_object = function_in<ClassObject>(library, "DllGetClassObject");
  for (const auto tables : {library_classes(), service_classes()}) {
    for (const ClassTable& table : tables) {
      if (table.name != name) continue;
      void* found = nullptr;
      EXPECT_EQ(class_object(table.class_id, IID_IClassFactory, &found), S_OK);
      const auto factory = Held<IClassFactory>::taken(static_cast<IClassFactory*>(found));
      EXPECT_EQ(factory->CreateInstance(nullptr, IID_IDispatch, &found), S_OK);
      return Held<IDispatch>::taken(static_cast<IDispatch*>(found));
    }
  }
  return {};
}

// An object of a host, in a script's way: it has every member that it is asked for, writes each call down as
// "GET|METHOD Item(I4 1)", a put with its value last and without METHOD as "PUT Item(I4 1, BSTR a)", and answers with what
// stands under the member's name, else with `answer`. All objects of one script write into the same lines.
class Host final : public Dispatch {
 public:
  using Answer = std::function<HRESULT(std::vector<VARIANT*> arguments, VARIANT* result, EXCEPINFO* exception)>;

  static Held<Host> create() { return Held<Host>(std::make_unique<Host>().release()); }

  HRESULT HEDRO34_CALL QueryInterface(const GUID& iid, void** object) override {
    return Dispatch::QueryInterface(agreeable ? IID_IUnknown : iid, object);
  }
  HRESULT HEDRO34_CALL GetIDsOfNames(const GUID& iid, OLECHAR** wanted, std::uint32_t number, LCID locale,
                                     DISPID* ids) override {
    if (closed && !members.contains(to_utf8(wanted[0]))) return DISP_E_UNKNOWNNAME;
    return Dispatch::GetIDsOfNames(iid, wanted, number, locale, ids);
  }
  HRESULT HEDRO34_CALL Invoke(DISPID id, const GUID&, LCID, std::uint16_t flags, DISPPARAMS* parameters,
                              VARIANT* result, EXCEPINFO* exception, std::uint32_t*) override {
    const std::string name = to_utf8(name_of(id));
    static const char* const kinds[] = {"", "METHOD ", "GET ", "", "PUT ", "", "", "", "PUTREF "};
    std::string line = (flags == (method | get) ? "" : kinds[flags]) + name + "(";
    std::vector<VARIANT*> arguments;
    for (std::uint32_t i = parameters->cArgs; i-- > 0;) {
      arguments.push_back(&parameters->rgvarg[i]);
      line += show(parameters->rgvarg[i]) + (i > 0 ? ", " : "");
    }
    const bool puts = (flags & (put_value | put_reference)) != 0;
    EXPECT_EQ(parameters->cNamedArgs, puts ? 1u : 0u) << name;
    EXPECT_TRUE(!puts || parameters->rgdispidNamedArgs[0] == DISPID_PROPERTYPUT) << name;
    lines.push_back(line + ")");
    if (const auto member = members.find(name); member != members.end()) {
      return Answer(member->second)(arguments, result, exception);
    }
    if (result != nullptr && code == S_OK) put(*result, answer);
    return code;
  }

  // Makes a member answer with a value.
  void has(const std::string& name, const Variant& value = {}) {
    members[name] = [value](auto, VARIANT* result, EXCEPINFO*) {
      if (result != nullptr) put(*result, value);
      return S_OK;
    };
  }
  Lines take() { return std::exchange(lines, {}); }

  std::map<std::string, Answer> members;
  bool closed = false;     // has no member but those of `members`
  bool agreeable = false;  // answers to every interface
  Variant answer;
  HRESULT code = S_OK;
  Lines lines;
};

// The host's object as a value, and as an object of the library.
inline Ref<Object> as_object(const Held<Host>& host) { return make<HostObject>(Held<IDispatch>(host.get())); }

inline IDispatch* part_of_host = nullptr;

// A result of an adapter as text; "part" for the host's object that every object-valued member answers with.
struct Result {
  template <class T>
  Result(const T& value) : text(model::label(Variant(value))) {}
  template <class T>
  Result(const Ref<T>& object)
      : text(!object                                     ? "none"
             : identity_of(object).get() == part_of_host ? "part"
                                                         : "other") {}
  template <class T>
  Result(const Array<T>& array) : text(model::dump(array)) {}
  std::string text;
};

template <class T>
Ref<T> as(const Held<Host>& host) {
  return adapted<T>(Held<IDispatch>(host.get()));
}

// A list of the texts a, b, c, of which b has the key "k".
inline Ref<clsHEDROTestStrings> abc() {
  auto list = make<clsHEDROTestStrings>();
  list->Add(u"a");
  list->Add(u"b", u"k");
  list->Add(u"c");
  return list;
}

// The factories that make objects of the host's classes, while it lives; no class is registered for the user.
class HostFactories {
 public:
  HostFactories() {
    data_home_.set(to_utf8(folder_.path("")).c_str());
    static const Platform installed = (install_host_factories(), platform());
    platform().template_objects = installed.template_objects;
    platform().document_objects = installed.document_objects;
  }
  ~HostFactories() { platform() = former_; }

 private:
  const Folder folder_;
  const Variable data_home_{"XDG_DATA_HOME"};
  const Platform former_ = platform();
};

// A test that leaves no identity behind.
class Component : public ::testing::Test {
 protected:
  ~Component() override { EXPECT_EQ(Alive::count(), alive_); }

 private:
  const std::int64_t alive_ = Alive::count();
};

}  // namespace hedro34::testing::component
