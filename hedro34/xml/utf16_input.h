// Guards a parser that takes any two bytes behind the first half of a surrogate pair for the second: in a document in
// UTF-16 each half that has no other becomes U+FFFF, which cannot stand anywhere in XML, so that the parser rejects it
// at its place.
#pragma once

#include <array>
#include <cstddef>
#include <cstring>

namespace hedro34 {

class Utf16Input {
 public:
  static constexpr std::size_t most_held = 3;  // bytes of a character whose end has not come yet

  // Puts what was held back before the bytes that are read next, and gives how many that are.
  std::size_t put_held(char* target) const noexcept {
    std::memcpy(target, held_.data(), held_count_);
    return held_count_;
  }

  bool is_utf16() const noexcept { return is_utf16_; }
  char16_t unit_at(const char* bytes) const noexcept {
    const auto high = static_cast<unsigned char>(bytes[high_]);
    const auto low = static_cast<unsigned char>(bytes[1 - high_]);
    return static_cast<char16_t>(high << 8 | low);
  }

  // Checks `size` bytes, the held ones included, and gives how many of them the parser may see now.
  std::size_t check(char* bytes, std::size_t size, bool last) noexcept {
    if (first_) find_encoding(bytes, size);
    held_count_ = 0;
    if (!is_utf16_) return size;
    std::size_t end = 0;
    while (size - end >= 2) {
      const unsigned kind = half_at(bytes + end);
      if (kind == first_half && size - end < 4 && !last) break;
      if (kind == first_half && size - end >= 4 && half_at(bytes + end + 2) == second_half) {
        end += 4;
        continue;
      }
      if (kind != 0) std::memset(bytes + end, 0xFF, 2);
      end += 2;
    }
    if (last) return size;
    held_count_ = size - end;
    std::memcpy(held_.data(), bytes + end, held_count_);
    return end;
  }

 private:
  static constexpr unsigned first_half = 0xD8;
  static constexpr unsigned second_half = 0xDC;

  // As a parser finds it: by a byte-order mark, or by the zero in the first character.
  void find_encoding(const char* bytes, std::size_t size) noexcept {
    first_ = false;
    if (size < 2) return;
    const auto a = static_cast<unsigned char>(bytes[0]);
    const auto b = static_cast<unsigned char>(bytes[1]);
    high_ = a == 0xFE || a == 0 ? 0 : 1;
    is_utf16_ = (a == 0xFE && b == 0xFF) || (a == 0xFF && b == 0xFE) || a == 0 || b == 0;
  }

  // 0 when what stands there is no half of a pair.
  unsigned half_at(const char* unit) const noexcept {
    const unsigned bits = static_cast<unsigned char>(unit[high_]) & 0xFCU;
    return bits == first_half || bits == second_half ? bits : 0;
  }

  bool first_ = true;  // nothing has come yet
  bool is_utf16_ = false;
  std::size_t high_ = 0;  // where the high byte of a unit stands
  std::array<char, most_held> held_{};
  std::size_t held_count_ = 0;
};

}  // namespace hedro34
