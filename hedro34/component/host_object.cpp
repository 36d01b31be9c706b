#include "hedro34/component/host_object.h"

#include <vector>

#include "hedro34/component/host_member.h"

namespace hedro34 {
namespace {

using namespace binary;

std::int32_t number_of(HRESULT code) noexcept {
  constexpr std::uint32_t facility_mask = 0xFFFF0000u;
  constexpr std::uint32_t failures = 0x800A0000u;  // the low 16 bits are a failure number
  const auto bits = static_cast<std::uint32_t>(code);
  if ((bits & facility_mask) == failures) return static_cast<std::int32_t>(bits & 0xFFFF);
  switch (code) {
    case DISP_E_UNKNOWNNAME:
    case DISP_E_MEMBERNOTFOUND: return 438;
    case DISP_E_BADPARAMCOUNT:
    case DISP_E_PARAMNOTFOUND:
    case DISP_E_PARAMNOTOPTIONAL:
    case DISP_E_NONAMEDARGS: return 450;
    case DISP_E_TYPEMISMATCH:
    case DISP_E_BADVARTYPE: return 13;
    case DISP_E_OVERFLOW: return 6;
    case DISP_E_BADINDEX: return 9;
    case E_OUTOFMEMORY: return 7;
    default: return code;
  }
}

String hexadecimal(HRESULT code) {
  String result = u"0x";
  for (int shift = 28; shift >= 0; shift -= 4) {
    result += u"0123456789ABCDEF"[(static_cast<std::uint32_t>(code) >> shift) & 0xF];
  }
  return result;
}

[[noreturn]] void fail_with(HRESULT code) {
  const std::int32_t number = number_of(code);
  if (number == code) throw Failure(number, u"The object's call failed with result code " + hexadecimal(code));
  throw Failure(number, failure_text(number));
}

// What the host's object says of its failure, freed at the end.
struct Exception : EXCEPINFO {
  Exception() : EXCEPINFO{} {}
  Exception(const Exception&) = delete;
  Exception& operator=(const Exception&) = delete;
  ~Exception() {
    SysFreeString(bstrSource);
    SysFreeString(bstrDescription);
    SysFreeString(bstrHelpFile);
  }

  [[noreturn]] void fail(const HostCall& running) {
    if (pfnDeferredFillIn != nullptr) running.make([this] { pfnDeferredFillIn(this); });
    if (wCode == 0 && scode >= 0) fail_with(DISP_E_EXCEPTION);  // it says nothing
    const std::int32_t number = wCode != 0 ? std::int32_t{wCode} : number_of(scode);
    const String words(bstrDescription != nullptr ? StringView(bstrDescription, SysStringLen(bstrDescription))
                                                  : failure_text(number));
    throw Failure(number, words);
  }
};

}  // namespace

HostArgument HostArgument::by_reference(HostArgument& target) {
  HostArgument result;
  VARIANT& value = *target;
  result.value_->vt = static_cast<VARTYPE>(VT_BYREF | value.vt);
  result.value_->byref = &value.llVal;
  return result;
}

OwnedVariant HostSide::invoke(StringView name, std::uint16_t flags, std::span<HostArgument> arguments) const {
  const Held<IDispatch> host = host_;  // lives through the call, whatever the call does
  if (!host) hedro34::fail(FailureNumber::ObjectNotSet);
  const HostCall running;
  DISPID id = DISPID_VALUE;
  if (!name.empty()) {
    const HRESULT found = find_member(running, host.get(), name, id);
    if (found < 0) fail_with(found);
  }
  std::vector<VARIANT> backwards;
  backwards.reserve(arguments.size());
  for (auto argument = arguments.rbegin(); argument != arguments.rend(); ++argument) backwards.push_back(**argument);
  const bool writes = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS parameters = {backwards.data(), writes ? &put : nullptr, static_cast<std::uint32_t>(backwards.size()),
                           writes ? 1u : 0u};
  OwnedVariant result;
  Exception exception;
  std::uint32_t bad_argument = 0;
  const HRESULT code = running.make([&] {
    return host->Invoke(id, IID_NULL, 0, flags, &parameters, writes ? nullptr : result.get(), &exception,
                        &bad_argument);
  });
  if (code == DISP_E_EXCEPTION) exception.fail(running);
  if (code < 0) fail_with(code);
  return result;
}

void HostSide::call_without_missing(StringView name, const Ref<Object>& object, const Variant& first,
                                    const Variant& second) const {
  HostArgument values[] = {object, first, second};
  const std::size_t count = !second.is<Missing>() ? 3 : !first.is<Missing>() ? 2 : 1;
  invoke(name, DISPATCH_METHOD, std::span(values).first(count));
}

void HostSide::call_without_missing(StringView name, const String& text, const Variant& option) const {
  HostArgument values[] = {text, option};
  invoke(name, DISPATCH_METHOD, std::span(values).first(option.is<Missing>() ? 1 : 2));
}

void HostSide::write_reference(StringView name, const Ref<Object>& object) const {
  HostArgument value(object);
  HostArgument reference = HostArgument::by_reference(value);
  invoke(name, DISPATCH_PROPERTYPUTREF, {&reference, 1});
}

Variant HostObject::Call(StringView name, std::span<Variant> arguments) {
  std::vector<HostArgument> values;
  values.reserve(arguments.size());
  for (const Variant& argument : arguments) values.emplace_back(argument);
  std::vector<HostArgument> references;
  references.reserve(values.size());
  for (HostArgument& value : values) references.push_back(HostArgument::by_reference(value));
  if (!references.empty()) {
    VARIANT& first = *references.front();
    first.vt = VT_BYREF | VT_VARIANT;
    first.pvarVal = &*values.front();
  }
  const OwnedVariant result = invoke(name, DISPATCH_METHOD | DISPATCH_PROPERTYGET, references);
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    quietly([&] { arguments[i] = variant_of(*values[i]); });  // what cannot be read back stays as it was
  }
  return variant_of(*result);
}

}  // namespace hedro34
