// What the fuzz targets share. Each has a function `run`; what it expects and does not hold ends the run as a crash.
#pragma once

#include <filesystem>
#include <string_view>

#include "tests/support.h"

namespace hedro34::fuzz {

using namespace testing;

void run(std::string_view input);

// A folder with the files of fuzz/files, which is the current one while it lives.
class Scratch : public Folder {
 public:
  Scratch() {
    std::filesystem::copy(to_utf8(source_path("fuzz/files")), to_utf8(path("")));
    std::filesystem::current_path(to_utf8(path("")));
  }
  ~Scratch() { std::filesystem::current_path(former_); }

 private:
  const std::filesystem::path former_ = std::filesystem::current_path();
};

}  // namespace hedro34::fuzz
