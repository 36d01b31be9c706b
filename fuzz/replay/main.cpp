// Runs a fuzz target once over an empty input and over each file given, a folder standing for the files in it.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

bool replay(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(in), {}};
  if (!in.is_open() || in.bad()) {
    std::fprintf(stderr, "%s: cannot be read\n", path.string().c_str());
    return false;
  }
  std::printf("%s\n", path.string().c_str());
  std::fflush(stdout);  // names the culprit when the target crashes
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  const std::uint8_t nothing = 0;
  LLVMFuzzerTestOneInput(&nothing, 0);

  bool good = true;
  std::size_t count = 0;
  for (int i = 1; i < argc; ++i) {
    std::error_code error;
    if (std::filesystem::is_directory(argv[i], error)) {
      for (const auto& entry : std::filesystem::directory_iterator(argv[i], error)) {
        good = replay(entry.path()) && good;
        ++count;
      }
    } else {
      good = replay(argv[i]) && good;
      ++count;
    }
  }
  std::printf("%zu inputs\n", count);
  if (count == 0) std::fprintf(stderr, "no input to replay\n");
  return good && count > 0 ? 0 : 1;
}
