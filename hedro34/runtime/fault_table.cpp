#include "hedro34/runtime/fault_table.h"

#include <cstring>

namespace hedro34 {
namespace {

// Reader of the table, in the two encodings that compilers use.
class Table {
 public:
  explicit Table(const void* at) : at_(static_cast<const std::uint8_t*>(at)) {}

  const std::uint8_t* at() const { return at_; }
  std::uint8_t byte() { return *at_++; }

  std::uintptr_t leb128() {
    std::uintptr_t value = 0;
    for (unsigned shift = 0;; shift += 7) {
      const std::uintptr_t next = byte();
      value |= (next & 0x7F) << shift;
      if ((next & 0x80) == 0) return value;
    }
  }

  std::uintptr_t number(std::uint8_t encoding) {
    if (encoding == encoding_leb128) return leb128();
    std::uint32_t value = 0;
    std::memcpy(&value, at_, sizeof value);
    at_ += sizeof value;
    return value;
  }

  static constexpr std::uint8_t omitted = 0xFF;
  static constexpr std::uint8_t encoding_leb128 = 0x01;
  static constexpr std::uint8_t encoding_four_bytes = 0x03;

 private:
  const std::uint8_t* at_;
};

}  // namespace

CallSite call_site(const void* table, std::uintptr_t offset) noexcept {
  if (table == nullptr) return {};
  Table reader(table);
  // A start of its own for handlers: no table of these compilers.
  if (reader.byte() != Table::omitted) return {};
  if (reader.byte() != Table::omitted) reader.leb128();
  const std::uint8_t encoding = reader.byte();
  if (encoding != Table::encoding_leb128 && encoding != Table::encoding_four_bytes) return {};
  const std::uintptr_t size = reader.leb128();
  const std::uint8_t* const end = reader.at() + size;
  while (reader.at() < end) {
    const std::uintptr_t start = reader.number(encoding);
    const std::uintptr_t length = reader.number(encoding);
    reader.number(encoding);  // where the handler is
    const std::uintptr_t action = reader.leb128();
    if (offset < start) break;
    if (offset < start + length) return {action == 0 ? Passage::Free : Passage::Caught, start, length};
  }
  return {Passage::Ends};
}

}  // namespace hedro34
