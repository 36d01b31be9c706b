// Runs a fuzz target over an empty input and over the files of each folder given.
#include <cstdio>
#include <filesystem>
#include <span>

#include "hedro34/platform/files.h"
#include "fuzz/support/support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
  const std::uint8_t nothing = 0;
  LLVMFuzzerTestOneInput(&nothing, 0);
  std::size_t count = 0;
  for (const char* folder : std::span(argv, static_cast<std::size_t>(argc)).subspan(1)) {
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      std::printf("%s\n", entry.path().string().c_str());
      std::fflush(stdout);  // names the culprit when the target crashes
      const auto bytes = hedro34::read_file(entry.path().u16string()).value();
      LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
      ++count;
    }
  }
  std::printf("%zu inputs\n", count);
  return count > 0 ? 0 : 1;
}
