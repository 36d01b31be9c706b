#include "hedro34/base/key_index.h"

#include <exception>
#include <random>

namespace hedro34 {
namespace {

std::uint64_t drawn() noexcept {
  try {
    std::random_device source;
    return std::uint64_t{source()} << 32 | source() | 1;
  } catch (
      const std::exception&) {  // a system without a source of chance; where things lie differs from run to run, too
    static const char somewhere = 0;
    return reinterpret_cast<std::uintptr_t>(&somewhere) * 0x9E3779B97F4A7C15u | 1;
  }
}

}  // namespace

std::uint64_t KeyIndex::seed() noexcept {
  static const std::uint64_t value = drawn();
  return value;
}

}  // namespace hedro34
