#include "hedro34/platform/refusal.h"

#include <utility>

namespace hedro34 {
namespace {

thread_local Refusal last;

}  // namespace

const Refusal& last_refusal() noexcept { return last; }

void refuse(Refusal refusal) noexcept { last = std::move(refusal); }

void forget_refusal() noexcept { last.kind = Refusal::Kind::None; }

std::string to_line(const Refusal& refusal) {
  std::string line = to_utf8(refusal.path);
  if (refusal.line > 0) {
    line += ": line " + std::to_string(refusal.line) + ", column " + std::to_string(refusal.column);
  }
  if (!refusal.pointer.empty()) line += ": " + refusal.pointer;
  return line + ": " + refusal.reason;
}

}  // namespace hedro34
