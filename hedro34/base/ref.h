// `Object` is the base of everything that is shared by counted reference; `Ref<T>` is such a reference. A count belongs to
// one thread: an object is used, held and released on the thread that made it.
// `->` and `*` on an empty reference are failure 91 "Object variable not set", not a crash.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <type_traits>
#include <utility>

#include "hedro34/base/failure.h"
#include "hedro34/base/text.h"

namespace hedro34 {

class Variant;

class Object {
 public:
  Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  // Calls a method of the object by its name, with the arguments by reference: the method may change them. Throws failure
  // 438 when there is no method of that name, which is all that this default does.
  virtual Variant Call(StringView name, std::span<Variant> arguments);

  // Who holds the object for callers outside the library; null while nobody does. The holder sets it, and sets it back to
  // null when it goes; the object does nothing with it.
  void* outside_holder() const noexcept { return outside_holder_; }
  void set_outside_holder(void* holder) noexcept { outside_holder_ = holder; }

  // Whether more than one reference holds the object.
  bool shared() const noexcept { return count_ > 1; }

  void retain() const noexcept { ++count_; }
  void release() const noexcept {
    if (--count_ == 0) std::unique_ptr<const Object>(this).reset();
  }

 protected:
  virtual ~Object() = default;
  friend struct std::default_delete<const Object>;

 private:
  void* outside_holder_ = nullptr;
  mutable std::int32_t count_ = 0;
};

// A class whose objects can be held as `T`.
template <class U, class T>
concept IsA = std::is_convertible_v<U*, T*>;

template <class T>
class Ref {
 public:
  Ref() noexcept = default;
  Ref(std::nullptr_t) noexcept {}
  explicit Ref(T* object) noexcept : object_(object) {
    if (object_ != nullptr) object_->retain();
  }
  Ref(const Ref& other) noexcept : Ref(other.object_) {}
  Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  template <IsA<T> U>
  Ref(const Ref<U>& other) noexcept : Ref(static_cast<T*>(other.get())) {}
  template <IsA<T> U>
  Ref(Ref<U>&& other) noexcept : object_(other.detach()) {}
  ~Ref() {
    if (object_ != nullptr) object_->release();
  }

  Ref& operator=(Ref other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }

  T* get() const noexcept { return object_; }
  T* detach() noexcept { return std::exchange(object_, nullptr); }  // the caller takes over the count
  explicit operator bool() const noexcept { return object_ != nullptr; }
  T* operator->() const {
    if (object_ == nullptr) [[unlikely]]
      fail(FailureNumber::ObjectNotSet);
    return object_;
  }
  T& operator*() const { return *operator->(); }

  friend bool operator==(const Ref& a, const Ref& b) noexcept { return a.object_ == b.object_; }

 private:
  T* object_ = nullptr;
};

template <class T, class... Arguments>
Ref<T> make(Arguments&&... arguments) {
  return Ref<T>(std::make_unique<T>(std::forward<Arguments>(arguments)...).release());
}

// The same object as a `T`, such as the default class behind an interface; an empty reference when it is none.
template <class T, class U>
Ref<T> ref_cast(const Ref<U>& reference) noexcept {
  return Ref<T>(dynamic_cast<T*>(reference.get()));
}

}  // namespace hedro34
