// An object of the host, held by the library and called by name. A call that the object refuses or that fails throws: the
// failure that the object tells of, number and description unchanged; else, for the customary result codes, failure
// 438 (no such member), 450 (arguments), 13 (type), 6 (overflow), 9 (index), 7 (memory); else the result code itself as
// number. Nothing of the object is remembered between two calls: members are looked up each time.
#pragma once

#include <initializer_list>
#include <span>

#include "hedro34/component/conversion.h"

namespace hedro34 {

// An argument on its way to the host: by value, or a reference to a value that lives until the call is over.
class HostArgument {
 public:
  template <class T>
  HostArgument(const T& value) {
    put(*value_, value);
  }
  template <class T>
  HostArgument(const Ref<T>& object) {
    put_object(*value_, object);
  }
  HostArgument(const String& text) { put(*value_, StringView(text)); }
  static HostArgument by_reference(HostArgument& target);

  binary::VARIANT& operator*() noexcept { return *value_; }

 private:
  HostArgument() = default;
  OwnedVariant value_;
};

class HostSide {
 public:
  explicit HostSide(Held<binary::IDispatch> host) noexcept : host_(std::move(host)) {}
  binary::IDispatch* host() const noexcept { return host_.get(); }

 protected:
  virtual ~HostSide() = default;

  // Calls a member, the default member for an empty name, with the flags of its kind. A put has its value last.
  OwnedVariant invoke(StringView name, std::uint16_t flags, std::span<HostArgument> arguments) const;

  // Reads a property, or calls a method for its result.
  template <class R, class... T>
  R get(StringView name, const T&... arguments) const {
    return value_as<R>(*invoked(name, binary::DISPATCH_METHOD | binary::DISPATCH_PROPERTYGET, arguments...));
  }
  template <class... T>
  void call(StringView name, const T&... arguments) const {
    invoked(name, binary::DISPATCH_METHOD, arguments...);
  }
  // As `call`, without the trailing arguments that are missing.
  void call_without_missing(StringView name, const Ref<Object>& object, const Variant& first,
                            const Variant& second = missing) const;
  void call_without_missing(StringView name, const String& text, const Variant& option) const;
  template <class T>
  void call_by_reference(StringView name, const T& argument) const {
    HostArgument value(argument);
    HostArgument reference = HostArgument::by_reference(value);
    invoke(name, binary::DISPATCH_METHOD, {&reference, 1});
  }
  template <class... T>
  void write(StringView name, const T&... arguments) const {
    invoked(name, binary::DISPATCH_PROPERTYPUT, arguments...);
  }
  // Assigns an object, itself passed by reference.
  void write_reference(StringView name, const Ref<Object>& object) const;

 private:
  template <class... T>
  OwnedVariant invoked(StringView name, std::uint16_t flags, const T&... arguments) const {
    if constexpr (sizeof...(T) == 0) {
      return invoke(name, flags, {});
    } else {
      HostArgument values[] = {HostArgument(arguments)...};
      return invoke(name, flags, values);
    }
  }

  Held<binary::IDispatch> host_;
};

// An object of the host of no particular kind, such as its error object. `Call` passes every argument by reference: the first
// as a variant, the others as what they hold, which is what a method "RaiseError" takes.
template <>
struct Adapter<Object> final : Object, HostSide {
  using HostSide::HostSide;
  Variant Call(StringView name, std::span<Variant> arguments) override;

  // For services that are made of a host's object.
  using HostSide::call;
  using HostSide::get;
};
using HostObject = Adapter<Object>;

}  // namespace hedro34
