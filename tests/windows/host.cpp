// A host in C++ that knows the component by its type library alone: no header of the library, only what widl makes of the
// interface definition and the system's own. Its arguments are the folder of examples and the path of HEDRO34.dll. The last line,
// "passed N", and exit code 0 are the signs of success.
#include <windows.h>

#include <initguid.h>

#include "HEDRO34_h.h"

#include <cguid.h>
#include <objbase.h>
#include <oleauto.h>

#include <cstdio>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

int passed = 0;
int failed = 0;

std::string narrow(std::wstring_view text) {
  std::string result;
  for (const wchar_t unit : text) result += unit < 0x80 ? static_cast<char>(unit) : '?';
  return result;
}

std::string hexadecimal(HRESULT code) {
  char text[9];
  std::snprintf(text, sizeof text, "%08lX", static_cast<unsigned long>(code));
  return text;
}

void check(const std::string& what, const std::string& found, const std::string& expected) {
  if (found == expected) {
    ++passed;
  } else {
    ++failed;
    std::printf("%s: %s instead of %s\n", what.c_str(), found.c_str(), expected.c_str());
  }
}

void check(const std::string& what, HRESULT found, HRESULT expected = S_OK) {
  check(what, hexadecimal(found), hexadecimal(expected));
}

// --- values and objects ----------------------------------------------------------------------------------------------------

template <class T>
class Held {
 public:
  Held() = default;
  explicit Held(T* object) : object_(object) {
    if (object_ != nullptr) object_->AddRef();
  }
  Held(const Held& other) : Held(other.object_) {}
  Held(Held&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  Held& operator=(Held other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~Held() {
    if (object_ != nullptr) object_->Release();
  }
  T* get() const { return object_; }
  T* operator->() const { return object_; }
  T** put() { return &object_; }
  void** put_void() { return reinterpret_cast<void**>(&object_); }

 private:
  T* object_ = nullptr;
};

struct Value : VARIANT {
  Value() { VariantInit(this); }
  Value(int number) : Value() {
    vt = VT_I4;
    lVal = number;
  }
  Value(bool truth) : Value() {
    vt = VT_BOOL;
    boolVal = truth ? VARIANT_TRUE : VARIANT_FALSE;
  }
  Value(const wchar_t* text) : Value() {
    vt = VT_BSTR;
    bstrVal = SysAllocString(text);
  }
  Value(const std::wstring& text) : Value(text.c_str()) {}
  Value(IDispatch* object) : Value() {
    vt = VT_DISPATCH;
    pdispVal = object;
    if (object != nullptr) object->AddRef();
  }
  Value(const Held<IDispatch>& object) : Value(object.get()) {}
  Value(const Value& other) : Value() { VariantCopy(this, const_cast<Value*>(&other)); }
  Value& operator=(const Value& other) {
    VariantCopy(this, const_cast<Value*>(&other));
    return *this;
  }
  ~Value() { VariantClear(this); }

  static Value left_out() {
    Value result;
    result.vt = VT_ERROR;
    result.scode = DISP_E_PARAMNOTFOUND;
    return result;
  }
  static Value texts(std::initializer_list<const wchar_t*> elements, LONG lower) {
    Value result;
    SAFEARRAYBOUND bound = {static_cast<ULONG>(elements.size()), lower};
    result.vt = VT_ARRAY | VT_BSTR;
    result.parray = SafeArrayCreate(VT_BSTR, 1, &bound);
    for (LONG i = lower; const wchar_t* const element : elements) {
      const Value text(element);
      SafeArrayPutElement(result.parray, &i, text.bstrVal);
      ++i;
    }
    return result;
  }
  // The caller's variable.
  static Value reference(VARIANT_BOOL& variable) {
    Value result;
    result.vt = VT_BYREF | VT_BOOL;
    result.pboolVal = &variable;
    return result;
  }
  static Value reference(VARIANT& variable) {
    Value result;
    result.vt = VT_BYREF | VT_VARIANT;
    result.pvarVal = &variable;
    return result;
  }
};

// A value as text, such as "I4 3", "BSTR[1] a b c" for an array from 1, or "&BOOL -1" for a reference.
std::string describe(const VARIANT& value) {
  if ((value.vt & VT_BYREF) != 0) {
    if (value.vt == (VT_BYREF | VT_VARIANT)) return "&VARIANT " + describe(*value.pvarVal);
    Value target;
    return SUCCEEDED(VariantCopyInd(&target, const_cast<VARIANT*>(&value))) ? "&" + describe(target) : "&?";
  }
  if ((value.vt & VT_ARRAY) != 0) {
    const bool texts = value.vt == (VT_ARRAY | VT_BSTR);
    std::string result = texts ? "BSTR[" : value.vt == (VT_ARRAY | VT_I4) ? "I4[" : "?[";
    if (value.parray == nullptr) return result + "]";
    LONG first = 0, last = 0;
    SafeArrayGetLBound(value.parray, 1, &first);
    SafeArrayGetUBound(value.parray, 1, &last);
    result += std::to_string(first) + "]";
    for (LONG i = first; i <= last; ++i) {
      Value element;
      element.vt = texts ? VT_BSTR : VT_I4;
      SafeArrayGetElement(value.parray, &i, texts ? static_cast<void*>(&element.bstrVal) : &element.lVal);
      result += " " + (texts ? narrow({element.bstrVal, SysStringLen(element.bstrVal)}) : std::to_string(element.lVal));
    }
    return result;
  }
  switch (value.vt) {
    case VT_EMPTY: return "EMPTY";
    case VT_I2: return "I2 " + std::to_string(value.iVal);
    case VT_I4: return "I4 " + std::to_string(value.lVal);
    case VT_BOOL: return "BOOL " + std::to_string(value.boolVal);
    case VT_BSTR: return "BSTR " + narrow({value.bstrVal, SysStringLen(value.bstrVal)});
    case VT_DISPATCH: return value.pdispVal != nullptr ? "OBJECT" : "OBJECT none";
    default: return "type " + std::to_string(value.vt);
  }
}

// A call by name: positional arguments in order, then those under `names`.
struct Call {
  const wchar_t* member;
  WORD flags = DISPATCH_METHOD | DISPATCH_PROPERTYGET;
  std::vector<Value> arguments{};
  std::vector<const wchar_t*> names{};  // of the last arguments
};

constexpr WORD read = DISPATCH_METHOD | DISPATCH_PROPERTYGET;
constexpr WORD write = DISPATCH_PROPERTYPUT;
constexpr WORD write_object = DISPATCH_PROPERTYPUTREF;

// What came of it: the value as text, or the result code with the argument at fault and what the exception says.
std::string run(IDispatch* object, Call call, Value* result = nullptr) {
  if (object == nullptr) return "no object";
  std::vector<wchar_t*> names = {const_cast<wchar_t*>(call.member)};
  for (const wchar_t* const name : call.names) names.push_back(const_cast<wchar_t*>(name));
  std::vector<DISPID> ids(names.size());
  HRESULT code = object->GetIDsOfNames(IID_NULL, names.data(), static_cast<UINT>(names.size()), 0, ids.data());
  if (FAILED(code)) return "names " + hexadecimal(code);
  std::vector<VARIANT> backwards(call.arguments.rbegin(), call.arguments.rend());
  std::vector<DISPID> named(ids.rbegin(), ids.rend() - 1);
  if (call.flags != read) named.assign(1, DISPID_PROPERTYPUT);
  DISPPARAMS parameters = {backwards.data(), named.data(), static_cast<UINT>(backwards.size()),
                           static_cast<UINT>(named.size())};
  Value answer;
  EXCEPINFO exception{};
  UINT bad = 99;
  code = object->Invoke(ids[0], IID_NULL, 0, call.flags, &parameters, &answer, &exception, &bad);
  std::string text = hexadecimal(code);
  if (SUCCEEDED(code)) text = describe(answer);
  if (code == DISP_E_EXCEPTION) text += " " + hexadecimal(exception.scode);
  if (FAILED(code) && bad != 99) text += " at " + std::to_string(bad);
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  if (result != nullptr) *result = answer;
  return text;
}

Held<IDispatch> object_of(IDispatch* object, const Call& call) {
  Value found;
  run(object, call, &found);
  return found.vt == VT_DISPATCH ? Held<IDispatch>(found.pdispVal) : Held<IDispatch>();
}

Held<IDispatch> create(const wchar_t* name) {
  CLSID id{};
  Held<IDispatch> object;
  HRESULT code = CLSIDFromProgID((std::wstring(L"HEDRO34.") + name).c_str(), &id);
  if (SUCCEEDED(code)) code = CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.put_void());
  if (FAILED(code)) check("creating " + narrow(name), code);
  return object;
}

// An object of the host with one method, which gets the arguments in order.
class Host final : public IDispatch {
 public:
  using Method = std::function<Value(const std::vector<const VARIANT*>&)>;

  static Held<IDispatch> create(const wchar_t* name, Method method) {
    return Held<IDispatch>(std::make_unique<Host>(name, std::move(method)).release());
  }
  Host(const wchar_t* name, Method method) : name_(name), method_(std::move(method)) { ++living; }
  ~Host() { --living; }

  static inline long living = 0;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    const bool known = IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch);
    *object = known ? this : nullptr;
    if (known) AddRef();
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++count_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --count_;
    if (left == 0) std::unique_ptr<Host>(this).reset();
    return left;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return DISP_E_BADINDEX; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
    *ids = lstrcmpiW(names[0], name_) == 0 ? 7 : DISPID_UNKNOWN;
    return *ids == 7 && count == 1 ? S_OK : DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                                   EXCEPINFO*, UINT*) override {
    if (id != 7 || (flags & DISPATCH_METHOD) == 0) return DISP_E_MEMBERNOTFOUND;
    std::vector<const VARIANT*> arguments;
    for (UINT i = parameters->cArgs; i > 0; --i) arguments.push_back(&parameters->rgvarg[i - 1]);
    Value answer = method_(arguments);
    return result != nullptr ? VariantCopy(result, &answer) : S_OK;
  }

 private:
  const wchar_t* name_;
  Method method_;
  ULONG count_ = 0;
};

std::string in_order(const std::vector<const VARIANT*>& arguments) {
  std::string result;
  for (const VARIANT* const argument : arguments) result += (result.empty() ? "" : ", ") + describe(*argument);
  return result;
}

std::wstring examples;

// --- what is tried ---------------------------------------------------------------------------------------------------------

void classes_are_registered() {
  Held<_clsHEDROTest> test;
  check("by its class",
        CoCreateInstance(CLSID_clsHEDROTest, nullptr, CLSCTX_INPROC_SERVER, DIID__clsHEDROTest, test.put_void()));
  Held<IUnknown> inner;
  check("not created directly",
        CoCreateInstance(CLSID_clsHEDROTests, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, inner.put_void()),
        REGDB_E_CLASSNOTREG);
  wchar_t* name = nullptr;
  check("ProgIDFromCLSID", ProgIDFromCLSID(CLSID_clsHEDROTestStrings, &name));
  check("its name", name != nullptr ? narrow(name) : "", "HEDRO34.clsHEDROTestStrings");
  CoTaskMemFree(name);
}

// Every class of the library: an object of it says its name, and has its members under the numbers of the library.
void types_are_those_of_the_library() {
  Held<ITypeLib> library;
  check("LoadRegTypeLib", LoadRegTypeLib(LIBID_HEDRO34, 15, 0, 1033, library.put()));
  if (library.get() == nullptr) return;
  check("types in it", std::to_string(library->GetTypeInfoCount()), "23");
  const auto test = create(L"clsHEDROTest"), merge = create(L"clsHEDRO"), sequence = create(L"clsHEDROTestSequence");
  const struct {
    IID iid;
    const char* name;
    Held<IDispatch> object;
  } rows[] = {
      {DIID__clsHEDRO, "clsHEDRO", merge},
      {DIID__clsHEDROTest, "clsHEDROTest", test},
      {DIID__clsHEDROTestQuestion, "clsHEDROTestQuestion", create(L"clsHEDROTestQuestion")},
      {DIID__clsHEDROTestStrings, "clsHEDROTestStrings", create(L"clsHEDROTestStrings")},
      {DIID__clsHEDROTestCorrect, "clsHEDROTestCorrect", create(L"clsHEDROTestCorrect")},
      {DIID__clsHEDROTestSequence, "clsHEDROTestSequence", sequence},
      {DIID__clsHEDROTests, "clsHEDROTests", object_of(merge.get(), {L"Tests"})},
      {DIID__clsHEDROTestQuestions, "clsHEDROTestQuestions", object_of(test.get(), {L"Questions"})},
      {DIID__clsHEDROTestSequences, "clsHEDROTestSequences", object_of(test.get(), {L"Sequences"})},
      {DIID__clsHEDROTestSequenceOrder, "clsHEDROTestSequenceOrder", object_of(sequence.get(), {L"Order"})},
  };
  for (const auto& [iid, expected, object] : rows) {
    Held<ITypeInfo> of_object, of_library;
    TYPEATTR* attributes = nullptr;
    BSTR name = nullptr;
    Held<IDispatch> same;
    if (object.get() == nullptr || FAILED(object->GetTypeInfo(0, 1033, of_object.put())) ||
        FAILED(of_object->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr)) ||
        FAILED(of_object->GetTypeAttr(&attributes)) ||
        FAILED(library->GetTypeInfoOfGuid(attributes->guid, of_library.put()))) {
      check(std::string("type of ") + expected, "none", "there");
      continue;
    }
    check("name of a type", narrow(name), expected);
    SysFreeString(name);
    check(std::string("interface of ") + expected, IsEqualGUID(attributes->guid, iid) ? S_OK : E_FAIL);
    check(std::string("asked for it, ") + expected, object->QueryInterface(iid, same.put_void()));
    std::string wrong;
    for (UINT i = 0; i < attributes->cFuncs; ++i) {
      FUNCDESC* function = nullptr;
      if (FAILED(of_library->GetFuncDesc(i, &function))) break;
      BSTR names[8] = {};
      UINT count = 0;
      of_library->GetNames(function->memid, names, 8, &count);
      std::vector<DISPID> ids(count + 1, DISPID_UNKNOWN);
      bool right = SUCCEEDED(object->GetIDsOfNames(IID_NULL, names, count, 0, ids.data())) && ids[0] == function->memid;
      for (UINT k = 1; k < count; ++k) right = right && ids[k] == static_cast<DISPID>(k - 1);
      if (!right) wrong += " " + narrow(names[0]);
      for (UINT k = 0; k < count; ++k) SysFreeString(names[k]);
      of_library->ReleaseFuncDesc(function);
    }
    check(std::string("members of ") + expected, wrong + (attributes->cFuncs > 4 ? "" : " too few"),
          attributes->cFuncs > 4 ? "" : " ");
    of_object->ReleaseTypeAttr(attributes);
  }
}

void calls() {
  const auto test = create(L"clsHEDROTest");
  check("LoadXML", run(test.get(), {L"LoadXML", read, {examples + L"\\biology.xml"}}), "BOOL -1");
  const auto left_out = Value::left_out();
  const auto strings = create(L"clsHEDROTestStrings");
  const auto scale = object_of(test.get(), {L"TrueFalseScale"});
  const struct {
    Held<IDispatch> object;
    Call call;
    std::string outcome;
  } rows[] = {
      // named and left out
      {test, {L"CorrectAnswersAsString", read, {10, true, L" "}, {L"bNumeric", L"sDelimiter"}}, "BSTR (1 3 5)"},
      {test, {L"CorrectAnswersAsString", read, {false, 10}, {L"bEnclosedByParens", L"vQuestionIndex"}}, "BSTR A,C,E"},
      {test, {L"CorrectAnswersAsString", read, {10, left_out, left_out, true}}, "BSTR (1,3,5)"},
      // arrays
      {strings, {L"AddArray", read, {Value::texts({L"a", L"b"}, -5)}}, "BOOL -1"},
      {strings, {L"Add", read, {L"c", 1}, {L"Before"}}, "BOOL -1"},
      {strings, {L"AsArray"}, "BSTR[1] c a b"},
      {strings, {L"AsArray", read, {-3}}, "BSTR[-3] c a b"},
      {strings, {L"RemoveAll"}, "BOOL -1"},
      {strings, {L"AsArray"}, "BSTR[]"},
      {test, {L"CorrectAnswersAsArray", read, {10}}, "BSTR[0] 1 3 5"},
      {test, {L"CorrectAnswersAsArray", read, {10, true}}, "BSTR[0] A C E"},
      // default members, and values and objects assigned
      {test, {L"TrueFalseScale", read, {2}}, "BSTR F"},
      {test, {L"TrueFalseScale", write, {2, L"X"}}, "EMPTY"},
      {scale, {L"AsString", read, {L","}}, "BSTR T,X"},
      {test, {L"YesNoScale", write_object, {scale}}, "EMPTY"},
      {test, {L"YesNoScale", read, {2}}, "BSTR X"},
      {test, {L"Source", write, {L"1"}}, "EMPTY"},
      {test, {L"Source"}, "I4 1"},
      {create(L"Platform"),
       {L"RegisterClass", read, {L"x", Value(static_cast<IDispatch*>(nullptr))}},
       "80020009 800A005B"},
  };
  for (const auto& [object, call, outcome] : rows) check(narrow(call.member), run(object.get(), call), outcome);
}

void host_objects() {
  std::string shown, told;
  const auto test = create(L"clsHEDROTest"), platform = create(L"Platform");
  const auto box = Host::create(L"Show", [&](const auto& arguments) {
    shown = in_order(arguments);
    return Value(2);
  });
  check("MessageBox", run(platform.get(), {L"MessageBox", write_object, {box}}), "EMPTY");
  Value same;
  run(platform.get(), {L"MessageBox"}, &same);
  check("the host's own object comes back", same.vt == VT_DISPATCH && same.pdispVal == box.get() ? S_OK : E_FAIL);

  VARIANT_BOOL cancelled = VARIANT_FALSE;
  Value variable;
  const auto mixed = examples + L"\\mixed.xml";
  for (const Value& argument : {Value::reference(cancelled), Value::reference(variable)}) {
    check("Cancel", run(test.get(), {L"LoadXML", read, {mixed, argument}, {L"bUserCancelled"}}), "BOOL 0");
  }
  check("a Boolean by reference", std::to_string(cancelled), "-1");
  check("a variant by reference", describe(variable), "BOOL -1");
  check("the box", shown,
        "BSTR Warning: One or more test questions allow partial credit; however, partial credit is not supported. All "
        "imported test questions will require that all correct answers be selected in order for the response to be "
        "considered correct., I4 49, BSTR Partial Credit");

  const auto errors = Host::create(L"RaiseError", [&](const auto& arguments) {
    told = in_order(arguments);
    return Value(0);
  });
  check("SetError", run(test.get(), {L"SetError", read, {errors}}), "BOOL -1");
  const auto questions = object_of(test.get(), {L"Questions"});
  const auto nothing = Value(static_cast<IDispatch*>(nullptr));
  check("a failure", run(questions.get(), {L"Add", read, {nothing}}), "BOOL 0");
  check(
      "13 arguments", told,
      "&VARIANT I4 91, &I4 0, &BSTR Object variable not set, &BSTR HEDRO34 - clsHEDROTestQuestions.Add, &BSTR , &BSTR , "
      "&BSTR , &BSTR , &I4 1, &BSTR , &BSTR , &BSTR , &BOOL 0");
  Value by_reference = nothing;
  check("SetError of nothing", run(test.get(), {L"SetError", read, {Value::reference(by_reference)}}), "BOOL 0");
  check("MessageBox of nothing", run(platform.get(), {L"MessageBox", write_object, {nothing}}), "EMPTY");
}

// A thread that ends while the library holds its error object, with and without taking leave of the system.
DWORD WINAPI hold_an_error_object(void* leaves) {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  {
    const auto errors = Host::create(L"RaiseError", [](const auto&) { return Value(0); });
    run(create(L"clsHEDRO").get(), {L"SetError", read, {errors}});
  }
  const long held = Host::living;
  if (leaves != nullptr) CoUninitialize();
  return static_cast<DWORD>(held);
}

void threads() {
  for (int leaves : {0, 1}) {
    const long before = Host::living;
    const HANDLE thread = CreateThread(nullptr, 0, hold_an_error_object, leaves != 0 ? &leaves : nullptr, 0, nullptr);
    DWORD held = 0;
    check("a thread ends", WaitForSingleObject(thread, 20000) == WAIT_OBJECT_0 ? S_OK : E_FAIL);
    GetExitCodeThread(thread, &held);
    CloseHandle(thread);
    check("its error object is held", std::to_string(static_cast<long>(held) - before), "1");
    check(leaves != 0 ? "and given back behind CoUninitialize" : "and given back",
          std::to_string(Host::living - before), "0");
  }
}

// On a thread without an apartment of its own the system makes the object elsewhere and carries the calls there.
DWORD WINAPI call_from_elsewhere(void*) {
  CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  {
    const auto strings = create(L"clsHEDROTestStrings");
    check("added from elsewhere", run(strings.get(), {L"Add", read, {L"a"}}), "BOOL -1");
    check("read from elsewhere", run(strings.get(), {L"AsString"}), "BSTR a");
  }
  CoUninitialize();
  return 0;
}

void apartments() {
  const HANDLE thread = CreateThread(nullptr, 0, call_from_elsewhere, nullptr, 0, nullptr);
  check("a thread without an apartment ends", WaitForSingleObject(thread, 20000) == WAIT_OBJECT_0 ? S_OK : E_FAIL);
  CloseHandle(thread);
}

// To register leaves something with the thread, so the library stays for that as well. It says the same once more here.
void registering(const wchar_t* path) {
  const HMODULE library = LoadLibraryW(path);
  const auto address = library != nullptr ? GetProcAddress(library, "DllRegisterServer") : nullptr;
  if (address == nullptr) return check("DllRegisterServer", "missing", "there");
  check("registered again", reinterpret_cast<HRESULT(STDMETHODCALLTYPE*)()>(reinterpret_cast<void*>(address))());
  FreeLibrary(library);
  check("it stays", GetModuleHandleW(L"HEDRO34.dll") == library ? S_OK : E_FAIL);
}

// The library counts what is held outside, and stays as long as anything might come back to it.
void unloading(const wchar_t* path) {
  const HMODULE library = LoadLibraryW(path);
  const auto address = library != nullptr ? GetProcAddress(library, "DllCanUnloadNow") : nullptr;
  check("the library is loaded once",
        library != nullptr && library == GetModuleHandleW(L"HEDRO34.dll") ? S_OK : E_FAIL);
  if (address == nullptr) return check("DllCanUnloadNow", "missing", "there");
  const auto can_unload = reinterpret_cast<HRESULT(STDMETHODCALLTYPE*)()>(reinterpret_cast<void*>(address));
  CoFreeUnusedLibrariesEx(0, 0);
  check("nothing is held", can_unload());
  {
    const auto strings = create(L"clsHEDROTestStrings");
    check("an object is held", can_unload(), S_FALSE);
    CoFreeUnusedLibrariesEx(0, 0);
    for (int i = 0; i < 10 && GetModuleHandleW(L"HEDRO34.dll") != nullptr; ++i) FreeLibrary(library);
    check("an object lives on", run(strings.get(), {L"Add", read, {L"a"}}), "BOOL -1");
  }
  check("and is gone", can_unload());
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  if (count != 3) return std::puts("usage: hedro34_windows_host EXAMPLES HEDRO34.DLL"), 2;
  examples = arguments[1];
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  registering(arguments[2]);
  classes_are_registered();
  types_are_those_of_the_library();
  calls();
  host_objects();
  threads();
  unloading(arguments[2]);
  apartments();  // the last: Wine keeps the class factory of such an object
  // The process ends with a box and an error object held.
  run(create(L"Platform").get(),
      {L"MessageBox", write_object, {Host::create(L"Show", [](const auto&) { return Value(1); })}});
  run(create(L"clsHEDRO").get(),
      {L"SetError", read, {Host::create(L"RaiseError", [](const auto&) { return Value(0); })}});
  if (failed == 0) std::printf("passed %d\n", passed);
  return failed;
}
