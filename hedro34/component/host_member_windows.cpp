#include "hedro34/component/host_member.h"

#include "hedro34/component/held.h"
#include "hedro34/component/system_text_windows.h"

#include <windows.h>

#include <dispex.h>

#include <bit>
#include <memory>

namespace hedro34 {
namespace {

struct FreeText {
  void operator()(wchar_t* text) const noexcept { ::SysFreeString(text); }
};

}  // namespace

binary::HRESULT find_member(const HostCall& running, binary::IDispatch* host, StringView name, binary::DISPID& id) {
  String named(name);
  binary::OLECHAR* names[] = {named.data()};
  const HRESULT found = running.make([&] { return host->GetIDsOfNames(binary::GUID{}, names, 1, 0, &id); });
  if (found != E_NOTIMPL) return found;
  void* wider = nullptr;  // IDispatchEx, whose numbers Invoke takes as well
  constexpr auto iid = std::bit_cast<binary::GUID>(__uuidof(IDispatchEx));
  if (running.make([&] { return host->QueryInterface(iid, &wider); }) < 0) return found;
  const auto object = Held<IDispatchEx>::taken(static_cast<IDispatchEx*>(wider));
  const std::unique_ptr<wchar_t, FreeText> text(::SysAllocString(wide(named)));
  if (!text) return E_OUTOFMEMORY;
  DISPID number = DISPID_UNKNOWN;
  const HRESULT result = running.make([&] { return object->GetDispID(text.get(), fdexNameCaseInsensitive, &number); });
  id = static_cast<binary::DISPID>(number);
  return result;
}

}  // namespace hedro34
