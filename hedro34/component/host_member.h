// How a member of a host's object is found by its name. Some script engines leave that to the wider interface for calls by name
// that their objects have on Windows.
#pragma once

#include "hedro34/base/text.h"
#include "hedro34/component/binary.h"
#include "hedro34/component/held.h"

namespace hedro34 {

// The member's number in `id`, or the object's refusal. A native fault or an exception of the host leaves.
binary::HRESULT find_member(const HostCall& running, binary::IDispatch* host, StringView name, binary::DISPID& id);

}  // namespace hedro34
