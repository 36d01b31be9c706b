// Identifiers of 128 bits as text: {1A11377D-4B0A-4D1C-958B-625FA5F427D6}.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <optional>

#include "hedro34/base/text.h"
#include "hedro34/component/binary.h"

namespace hedro34 {

inline constexpr StringView identifier_shape = u"{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}";

// The text of an identifier, in braces and with capital letters.
String identifier_text(const binary::GUID& id);

// The identifier that a text of this form names, with letters in any case. Nothing when it is of another form.
constexpr std::optional<binary::GUID> identifier_of(StringView text) noexcept {
  if (text.size() != identifier_shape.size()) return std::nullopt;
  std::array<std::uint8_t, 16> bytes{};  // in the order of the text
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
