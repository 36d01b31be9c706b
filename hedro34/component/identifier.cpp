#include "hedro34/component/identifier.h"

namespace hedro34 {

String identifier_text(const binary::GUID& id) {
  const auto byte = [](std::uint32_t value, int shift) { return static_cast<std::uint8_t>(value >> shift); };
  std::array<std::uint8_t, 16> bytes{byte(id.Data1, 24), byte(id.Data1, 16), byte(id.Data1, 8), byte(id.Data1, 0),
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

}  // namespace hedro34
