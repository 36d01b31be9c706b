#include "hedro34/runtime/fault_instruction.h"

#include <cstdint>

namespace hedro34 {
namespace {

bool is_prefix(std::uint8_t byte) {
  switch (byte) {
    case 0x26:
    case 0x2E:
    case 0x36:
    case 0x3E:
    case 0x64:
    case 0x65:
    case 0x66:
    case 0x67:
    case 0xF0:
    case 0xF2:
    case 0xF3: return true;
#ifdef __x86_64__
    default: return (byte & 0xF0) == 0x40;
#else
    default: return false;
#endif
  }
}

}  // namespace

bool is_privileged(const void* address) noexcept {
  const auto* instruction = static_cast<const std::uint8_t*>(address);
  for (int length = 0; length < 14 && is_prefix(*instruction); ++length) ++instruction;
  switch (*instruction) {
    case 0xF4:
    case 0xFA:
    case 0xFB: return true;  // hlt, cli, sti
    case 0x6C:
    case 0x6D:
    case 0x6E:
    case 0x6F:
    case 0xE4:
    case 0xE5:
    case 0xE6:
    case 0xE7:  // ports
    case 0xEC:
    case 0xED:
    case 0xEE:
    case 0xEF: return true;
    case 0x0F: break;
    default: return false;
  }
  switch (instruction[1]) {
    case 0x06:
    case 0x07:
    case 0x08:
    case 0x09:
    case 0x20:
    case 0x21:
    case 0x22:
    case 0x23:
    case 0x30:
    case 0x32:
    case 0x33:
    case 0x35: return true;  // clts, sysret, invd, wbinvd, control and debug registers, wrmsr, rdmsr, rdpmc, sysexit
    case 0x00: return ((instruction[2] >> 3) & 6) == 2;  // lldt, ltr
    case 0x01: {
      const int operation = (instruction[2] >> 3) & 7;
      const bool in_memory = (instruction[2] >> 6) != 3;
      return operation == 6 || (in_memory && (operation == 2 || operation == 3 || operation == 7)) ||
             instruction[2] == 0xD1 || instruction[2] == 0xF8;  // lmsw, lgdt, lidt, invlpg, xsetbv, swapgs
    }
    default: return false;
  }
}

}  // namespace hedro34
