#include "hedro34/component/host_member.h"

#include "hedro34/component/held.h"
#include "hedro34/component/system_text_windows.h"

#include <windows.h>

#include <dispex.h>

#include <bit>

namespace hedro34 {

binary::HRESULT find_member(binary::IDispatch* host, StringView name, binary::DISPID& id) {
  String named(name);
  binary::OLECHAR* names[] = {named.data()};
  const HRESULT found = host->GetIDsOfNames(binary::GUID{}, names, 1, 0, &id);
  if (found != E_NOTIMPL) return found;
  void* wider = nullptr;  // IDispatchEx, whose numbers Invoke takes as well
  if (host->QueryInterface(std::bit_cast<binary::GUID>(__uuidof(IDispatchEx)), &wider) < 0) return found;
  auto* const object = static_cast<IDispatchEx*>(wider);
  const BSTR text = ::SysAllocString(wide(named));
  DISPID number = DISPID_UNKNOWN;
  const HRESULT result = text != nullptr ? object->GetDispID(text, fdexNameCaseInsensitive, &number) : E_OUTOFMEMORY;
  id = static_cast<binary::DISPID>(number);
  ::SysFreeString(text);
  object->Release();
  return result;
}

}  // namespace hedro34
