// A one-dimensional array with a lower bound of its own. A new one has no bounds: it holds nothing, and asking for a bound
// or an element is failure 9. With bounds it holds `upper - lower + 1` elements, at least one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "hedro34/base/failure.h"

namespace hedro34 {

template <class T>
class Array {
 public:
  Array() = default;
  // Bounds from `lower` to `upper`; without bounds when `upper` is below `lower`.
  Array(std::int64_t lower, std::int64_t upper) {
    if (upper < lower) return;
    lower_ = lower;
    elements_.resize(static_cast<std::size_t>(upper - lower) + 1);
  }

  // The elements of a list, numbered from `lower`; a list without elements gives an array without bounds.
  static Array of(std::vector<T> elements, std::int64_t lower = 1) {
    Array result;
    if (!elements.empty()) result.lower_ = lower;
    result.elements_ = std::move(elements);
    return result;
  }

  bool has_bounds() const noexcept { return !elements_.empty(); }
  std::int32_t LBound() const { return static_cast<std::int32_t>(bounded().lower_); }
  std::int32_t UBound() const {
    return static_cast<std::int32_t>(bounded().lower_ + static_cast<std::int64_t>(elements_.size()) - 1);
  }

  T& operator[](std::int64_t index) { return elements_[offset(index)]; }
  const T& operator[](std::int64_t index) const { return elements_[offset(index)]; }

  // The elements in order, whatever the bounds are.
  const std::vector<T>& elements() const noexcept { return elements_; }

  friend bool operator==(const Array&, const Array&) = default;

 private:
  const Array& bounded() const {
    if (elements_.empty()) fail(FailureNumber::SubscriptOutOfRange);
    return *this;
  }
  std::size_t offset(std::int64_t index) const {
    if (index < lower_ || index - lower_ >= static_cast<std::int64_t>(elements_.size())) {
      fail(FailureNumber::SubscriptOutOfRange);
    }
    return static_cast<std::size_t>(index - lower_);
  }

  std::int64_t lower_ = 1;
  std::vector<T> elements_;
};

}  // namespace hedro34
