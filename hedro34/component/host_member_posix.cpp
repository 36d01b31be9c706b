#include "hedro34/component/host_member.h"

namespace hedro34 {

binary::HRESULT find_member(const HostCall& running, binary::IDispatch* host, StringView name, binary::DISPID& id) {
  String named(name);
  binary::OLECHAR* names[] = {named.data()};
  return running.make([&] { return host->GetIDsOfNames(binary::IID_NULL, names, 1, 0, &id); });
}

}  // namespace hedro34
