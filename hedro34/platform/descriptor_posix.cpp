#include "hedro34/platform/descriptor_posix.h"

#include <algorithm>
#include <system_error>

namespace hedro34::posix {
namespace {

namespace fs = std::filesystem;

constexpr int most_links = 40;  // links that lead to links: as many as the system follows before it gives up

}  // namespace

std::string system_reason(int error) { return std::system_category().message(error); }

std::string_view impossible(StringView path) noexcept {
  if (path.empty()) return "the path is empty";
  if (path.find(u'\0') != StringView::npos) return "the path has a zero character in it";
  return {};
}

std::string with_slashes(std::string path) {
  std::replace(path.begin(), path.end(), '\\', '/');
  return path;
}

fs::path behind_links(fs::path path) {
  std::error_code error;
  for (int i = 0; i < most_links && fs::is_symlink(fs::symlink_status(path, error)); ++i) {
    const fs::path next = fs::read_symlink(path, error);
    if (error) break;
    path = path.parent_path() / next;  // an absolute `next` stands alone
  }
  return path;
}

bool write_all(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto written = uninterrupted([&] { return ::write(descriptor, bytes.data(), bytes.size()); });
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

}  // namespace hedro34::posix
