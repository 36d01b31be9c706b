// Elements in a row with a gap between two of them, where elements come and go: the cost of an insertion or a removal is the
// distance from the last one. A place says where an element lies, whatever happens on the other side of the gap: from 0 for
// the first element, before the gap; from -1 for the last one, behind it. A few elements need no memory of their own.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <utility>

namespace hedro34 {

template <class T>
class GapBuffer {
 public:
  GapBuffer() = default;
  GapBuffer(const GapBuffer&) = delete;
  GapBuffer& operator=(const GapBuffer&) = delete;

  std::int32_t size() const noexcept { return front_ + back_; }

  std::int32_t place(std::int32_t from_0) const noexcept { return from_0 < front_ ? from_0 : from_0 - size(); }
  T& operator[](std::int32_t place) noexcept { return start()[offset(place)]; }
  const T& operator[](std::int32_t place) const noexcept { return start()[offset(place)]; }

  // Makes room for one more element, so that what follows cannot fail.
  void reserve_one() {
    if (static_cast<std::size_t>(size()) < capacity_) return;
    auto more = std::make_unique<T[]>(2 * capacity_);
    std::move(start(), start() + front_, more.get());
    std::move_backward(start() + front_, start() + capacity_, more.get() + 2 * capacity_);
    more_ = std::move(more);
    capacity_ *= 2;
  }

  // Moves the gap behind the first `front` elements. For each that changes its place `moved(element, from, to)` is called.
  template <class Moved>
  void move_gap(std::int32_t front, Moved moved) {
    for (; front_ > front; --front_, ++back_) move(front_ - 1, -1 - back_, moved);
    for (; front_ < front; ++front_, --back_) move(-back_, front_, moved);
  }

  // Puts an element in front of the gap. There is room for it.
  void push(T value) { (*this)[front_++] = std::move(value); }

  // Takes away the element in front of the gap.
  T pop() { return std::exchange((*this)[--front_], T{}); }

  void clear() {
    if constexpr (!std::is_trivially_destructible_v<T>) few_ = {};
    more_ = nullptr;
    capacity_ = few;
    front_ = back_ = 0;
  }

 private:
  static constexpr std::size_t few = 5;

  T* start() noexcept { return more_ ? more_.get() : few_.data(); }
  const T* start() const noexcept { return more_ ? more_.get() : few_.data(); }
  std::size_t offset(std::int32_t place) const noexcept {
    return static_cast<std::size_t>(place) + (place < 0 ? capacity_ : 0);
  }

  template <class Moved>
  void move(std::int32_t from, std::int32_t to, Moved moved) {
    T& target = (*this)[to];
    target = std::move((*this)[from]);
    moved(std::as_const(target), from, to);
  }

  std::unique_ptr<T[]> more_;  // in place of the few, once there are more
  std::size_t capacity_ = few;
  std::int32_t front_ = 0;  // elements before the gap
  std::int32_t back_ = 0;   // elements behind it
  std::array<T, few> few_{};
};

}  // namespace hedro34
