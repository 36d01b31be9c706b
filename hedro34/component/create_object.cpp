#include "hedro34/component/create_object.h"

#include "hedro34/component/held.h"
#include "hedro34/component/result_of.h"

namespace hedro34 {

binary::HRESULT create_object(StringView name, binary::IDispatch** object) noexcept {
  if (object == nullptr) return binary::E_POINTER;
  *object = nullptr;
  binary::IClassFactory* made_by = nullptr;
  if (const binary::HRESULT result = class_factory(name, &made_by); result < 0) return result;
  return result_of([&]() -> binary::HRESULT {
    const HostCall running;
    const auto factory = Held<binary::IClassFactory>::taken(made_by);
    void* answer = nullptr;
    const binary::HRESULT result =
        running.make([&] { return factory->CreateInstance(nullptr, binary::IID_IDispatch, &answer); });
    if (result < 0) return result;
    *object = static_cast<binary::IDispatch*>(answer);
    return answer == nullptr ? binary::E_UNEXPECTED : result;
  });
}

}  // namespace hedro34
