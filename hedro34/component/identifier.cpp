#include "hedro34/component/identifier.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>

namespace hedro34 {
namespace {

constexpr StringView identifier_shape = u"{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}";
using IdentifierBytes = std::array<std::uint8_t, 16>;  // in the order of the text

}  // namespace

String identifier_text(const binary::GUID& id) {
  const auto byte = [](std::uint32_t value, int shift) { return static_cast<std::uint8_t>(value >> shift); };
  IdentifierBytes bytes{byte(id.Data1, 24), byte(id.Data1, 16), byte(id.Data1, 8), byte(id.Data1, 0),
                        byte(id.Data2, 8),  byte(id.Data2, 0),  byte(id.Data3, 8), byte(id.Data3, 0)};
  std::copy(std::begin(id.Data4), std::end(id.Data4), bytes.begin() + 8);
  String text(identifier_shape);
  std::size_t digit = 0;
  for (char16_t& unit : text) {
    if (unit != u'x') continue;
    unit = u"0123456789ABCDEF"[bytes[digit / 2] >> (digit % 2 == 0 ? 4 : 0) & 15];
    ++digit;
  }
  return text;
}

std::optional<binary::GUID> identifier_of(StringView text) noexcept {
  if (text.size() != identifier_shape.size()) return std::nullopt;
  IdentifierBytes bytes{};
  std::size_t digit = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (identifier_shape[i] != u'x') {
      if (text[i] != identifier_shape[i]) return std::nullopt;
      continue;
    }
    const std::size_t found = StringView(u"0123456789ABCDEFabcdef").find(text[i]);
    if (found == StringView::npos) return std::nullopt;
    std::uint8_t& byte = bytes[digit++ / 2];
    byte = static_cast<std::uint8_t>(byte * 16U + (found < 16 ? found : found - 6));
  }
  const auto whole = [&](std::size_t first, std::size_t last) {
    std::uint32_t value = 0;
    for (std::size_t i = first; i <= last; ++i) value = value << 8 | bytes[i];
    return value;
  };
  binary::GUID id{whole(0, 3), static_cast<std::uint16_t>(whole(4, 5)), static_cast<std::uint16_t>(whole(6, 7)), {}};
  std::copy(bytes.begin() + 8, bytes.end(), std::begin(id.Data4));
  return id;
}

}  // namespace hedro34
