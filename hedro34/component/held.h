// What the library holds of the other side of the boundary: `Held<T>`, a counted reference to an interface, and
// `OwnedVariant`, a variant that is cleared at the end of its life. A release that fails on the other side stays there.
#pragma once

#include <optional>
#include <type_traits>
#include <utility>

#include "hedro34/component/binary.h"
#include "hedro34/runtime/basError.h"
#include "hedro34/runtime/hidden_traps.h"

namespace hedro34 {

// A call of the other side that is running. A native fault in it is a failure of the operation that makes the call. Where
// `faults_are_failures` is false, no trap of the library catches it: it goes to the handler that was there before, since an
// interpreter does not survive being left in the middle. The choice is one for the process.
class HostCall {
 public:
  HEDRO34_API HostCall() noexcept;

  HEDRO34_API static bool faults_are_failures() noexcept;
  HEDRO34_API static void set_faults_are_failures(bool yes) noexcept;

  // Makes the call itself, and gives what it gives.
  template <class Called>
  auto make(Called called) const -> decltype(called()) {
    using Result = decltype(called());
    if constexpr (std::is_void_v<Result>) {
      call_foreign([](void* context) { (*static_cast<Called*>(context))(); }, &called);
    } else {
      Result result{};
      const auto keep_result = [&] { result = called(); };
      make(keep_result);
      return result;
    }
  }

 private:
  std::optional<HiddenTraps> hidden_;
};

template <class T>
class Held {
 public:
  Held() noexcept = default;
  explicit Held(T* object) : object_(object) {
    if (object_ == nullptr) return;
    const HostCall running;
    running.make([this] { object_->AddRef(); });
  }
  // Takes over a count that the caller has.
  static Held taken(T* object) noexcept {
    Held result;
    result.object_ = object;
    return result;
  }
  Held(const Held& other) : Held(other.object_) {}
  Held(Held&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  ~Held() {
    if (object_ != nullptr) {
      quietly([this] {
        const HostCall running;
        running.make([this] { object_->Release(); });
      });
    }
  }
  Held& operator=(Held other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }

  T* get() const noexcept { return object_; }
  T* detach() noexcept { return std::exchange(object_, nullptr); }
  explicit operator bool() const noexcept { return object_ != nullptr; }
  T* operator->() const noexcept { return object_; }

 private:
  T* object_ = nullptr;
};

// The interface of an object that has it, else nothing.
template <class T>
Held<T> query(binary::IUnknown* object, const binary::GUID& iid) {
  void* found = nullptr;
  if (object == nullptr) return {};
  const HostCall running;
  if (running.make([&] { return object->QueryInterface(iid, &found); }) < 0) return {};
  return Held<T>::taken(static_cast<T*>(found));
}

class OwnedVariant {
 public:
  OwnedVariant() noexcept = default;
  OwnedVariant(OwnedVariant&& other) noexcept : value_(std::exchange(other.value_, binary::VARIANT{})) {}
  OwnedVariant& operator=(OwnedVariant other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }
  ~OwnedVariant() {
    if (value_.vt > binary::VT_R8) {
      quietly([this] {
        const HostCall running;
        running.make([this] { binary::VariantClear(&value_); });
      });
    }
  }

  binary::VARIANT& operator*() noexcept { return value_; }
  const binary::VARIANT& operator*() const noexcept { return value_; }
  binary::VARIANT* operator->() noexcept { return &value_; }
  binary::VARIANT* get() noexcept { return &value_; }
  binary::VARIANT detach() noexcept { return std::exchange(value_, binary::VARIANT{}); }

 private:
  binary::VARIANT value_{};
};

}  // namespace hedro34
