#include "hedro34/base/text_hash.h"

#include <exception>
#include <random>

#include "hedro34/base/case_map.h"

namespace hedro34 {
namespace {

std::uint64_t drawn() noexcept {
  try {
    std::random_device source;
    return std::uint64_t{source()} << 32 | source();
  } catch (
      const std::exception&) {  // a system without a source of chance; where things lie differs from run to run, too
    static const char somewhere = 0;
    return reinterpret_cast<std::uintptr_t>(&somewhere) * 0x9E3779B97F4A7C15u;
  }
}

// What no file can know, drawn anew by each process.
struct Secret {
  std::uint64_t start = drawn();
  std::uint64_t factor = drawn() | 1;
};

// Each unit takes part in all bits of the state, in the high ones by the product, in the low ones by what those hand down.
template <class Unit>
std::size_t hash_of(StringView text, Unit unit_of) {
  static const Secret secret;
  std::uint64_t state = secret.start;
  for (const char16_t unit : text) {
    state = (state ^ unit_of(unit)) * secret.factor;
    state ^= state >> 32;
  }
  return static_cast<std::size_t>(state);
}

}  // namespace

std::size_t TextHash::operator()(StringView text) const {
  return hash_of(text, [](char16_t unit) { return unit; });
}

std::size_t IgnoringCase::operator()(StringView text) const {
  return hash_of(text, [](char16_t unit) {
    const unsigned capital = unit < 0x80 ? unit : upper(unit);  // or a small letter of ASCII, one bit away from it
    return capital - u'A' < 26 ? capital | 0x20u : capital;
  });
}

}  // namespace hedro34
