// `Object` is the base of everything that is shared by counted reference; `Ref<T>` is such a reference. A count belongs to
// one thread: an object is used, held and released on the thread that made it.
// `->` and `*` on an empty reference are failure 91 "Object variable not set", not a crash.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <tuple>
#include <type_traits>
#include <utility>

#include "hedro34/base/failure.h"
#include "hedro34/base/text.h"

namespace hedro34 {

class Variant;

// The memory of objects that were made together. Each of them ends when nobody holds it any more, as every object does; the
// memory goes with the last one.
struct ObjectBlock {
  virtual ~ObjectBlock() = default;
  std::int32_t objects = 0;  // that have not ended
};

class HEDRO34_API Object {
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

  // Count one holder more and one less; the last one ends the object. `Ref` does both.
  void retain() const noexcept { ++count_; }
  void release() const noexcept {
    if (--count_ == 0) end();
  }

 protected:
  virtual ~Object() = default;
  friend struct std::default_delete<const Object>;

 private:
  template <class... T>
  friend class BlockOf;

  void end() const noexcept;

  void* outside_holder_ = nullptr;
  ObjectBlock* block_ = nullptr;  // that it lies in with others; null for an object by itself
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

// A new object, constructed with the arguments.
template <class T, class... Arguments>
Ref<T> make(Arguments&&... arguments) {
  return Ref<T>(std::make_unique<T>(std::forward<Arguments>(arguments)...).release());
}

template <class... T>
class BlockOf final : public ObjectBlock {
 public:
  static std::tuple<Ref<T>...> make() {
    static_assert((std::is_nothrow_default_constructible_v<T> && ...));
    BlockOf& block = *std::make_unique<BlockOf>().release();  // it belongs to the objects
    return std::apply([&](Room<T>&... rooms) { return std::tuple<Ref<T>...>{block.object_in(rooms)...}; },
                      block.rooms_);
  }

 private:
  template <class U>
  union Room {  // the object ends before its room does
    Room() noexcept {}
    ~Room() {}
    U object;
  };

  template <class U>
  Ref<U> object_in(Room<U>& room) noexcept {
    U* const object = std::construct_at(&room.object);
    object->Object::block_ = this;
    ++objects;
    return Ref<U>(object);
  }

  std::tuple<Room<T>...> rooms_;
};

// One object of each class, made in one block of memory.
template <class... T>
std::tuple<Ref<T>...> make_together() {
  return BlockOf<T...>::make();
}

// The same object as a `T`, such as the default class behind an interface; an empty reference when it is none.
template <class T, class U>
Ref<T> ref_cast(const Ref<U>& reference) noexcept {
  return Ref<T>(dynamic_cast<T*>(reference.get()));
}

}  // namespace hedro34
