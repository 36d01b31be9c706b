// What loads and saves have in common about the paths that they are given.
#pragma once

#include <algorithm>
#include <string_view>

#include "hedro34/platform/system_files.h"

namespace hedro34 {

// Why no file can have this path; empty when one can.
inline std::string_view impossible(StringView path) {
  if (path.empty()) return "the path is empty";
  if (path.find(u'\0') != StringView::npos) return "the path has a zero character in it";
  return system::never_a_file(path);
}

inline system::Path with_slashes(StringView path) {
  String form(path);
  std::replace(form.begin(), form.end(), u'\\', u'/');
  return system::to_path(form);
}

}  // namespace hedro34
