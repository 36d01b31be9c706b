// Finds an element of a keyed list by the hash of its key, in constant time: an open hash table of places in the list, which
// the list explains. It needs one block of memory whatever it holds, and none to change or to forget a place.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

namespace hedro34 {

class KeyIndex {
 public:
  static constexpr std::int32_t nowhere = std::numeric_limits<std::int32_t>::min();  // no place has this number

  // Makes room, so that there are no failures until the index holds so many places.
  void reserve(std::size_t places) {
    if (2 * places <= cells_.size()) return;
    KeyIndex larger;
    larger.cells_.resize(std::bit_ceil(2 * places));
    for (const Cell& cell : cells_) {
      if (cell.place != nowhere) larger.add(cell.hash, cell.place);
    }
    *this = std::move(larger);
  }

  // The place with this hash of which `is_it(place)` says that it is the one; `nowhere` when there is none.
  template <class IsIt>
  std::int32_t find(std::size_t hash, IsIt is_it) const noexcept {
    const auto part = static_cast<std::uint32_t>(hash);
    for (std::size_t i = home(part); cells_[i].place != nowhere; i = next(i)) {
      if (cells_[i].hash == part && is_it(cells_[i].place)) return cells_[i].place;
    }
    return nowhere;
  }

  // There is room for it.
  void add(std::size_t hash, std::int32_t place) {
    const auto part = static_cast<std::uint32_t>(hash);
    cells_[cell_of(part, nowhere)] = {part, place};
  }

  // The place is there.
  void change(std::size_t hash, std::int32_t place, std::int32_t to) {
    cells_[cell_of(static_cast<std::uint32_t>(hash), place)].place = to;
  }

  // The place is there. Whatever a search would have passed it for moves up, so that no gap ends the search.
  void remove(std::size_t hash, std::int32_t place) {
    std::size_t gap = cell_of(static_cast<std::uint32_t>(hash), place);
    for (std::size_t i = next(gap); cells_[i].place != nowhere; i = next(i)) {
      if (distance(home(cells_[i].hash), i) < distance(gap, i)) continue;
      cells_[gap] = cells_[i];
      gap = i;
    }
    cells_[gap].place = nowhere;
  }

 private:
  struct Cell {
    std::uint32_t hash = 0;  // the low half
    std::int32_t place = nowhere;
  };

  std::size_t home(std::uint32_t hash) const noexcept { return hash & (cells_.size() - 1); }
  std::size_t next(std::size_t i) const noexcept { return (i + 1) & (cells_.size() - 1); }
  std::size_t distance(std::size_t from, std::size_t to) const noexcept { return (to - from) & (cells_.size() - 1); }

  std::size_t cell_of(std::uint32_t hash, std::int32_t place) const noexcept {
    std::size_t i = home(hash);
    while (cells_[i].place != place) i = next(i);
    return i;
  }

  std::vector<Cell> cells_;  // a power of two, at most half of them in use
};

}  // namespace hedro34
