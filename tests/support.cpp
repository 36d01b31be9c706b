#include "tests/support.h"

#include <atomic>
#include <fstream>
#include <ostream>
#include <random>

namespace hedro34 {

void PrintTo(const String& text, std::ostream* out) { *out << '"' << to_utf8(text) << '"'; }

namespace testing {
namespace {

class Errors : public Object {
 public:
  explicit Errors(Recorder& recorder) : recorder_(recorder) {}
  Variant Call(StringView name, std::span<Variant> arguments) override {
    if (name != u"RaiseError" || arguments.size() != 13) fail(FailureNumber::NoSuchMember);
    recorder_.lines.push_back(
        to_utf8(to_text(arguments[0]) + u" " + to_text(arguments[2]) + u": " + to_text(arguments[3])));
    return std::int16_t{0};
  }

 private:
  Recorder& recorder_;
};

}  // namespace

Recorder::Recorder() : former_(platform().message_box) {
  platform().message_box = this;
  set_error_object(make<Errors>(*this));
}

Recorder::~Recorder() {
  platform().message_box = former_;
  set_error_object(nullptr);
}

std::int32_t Recorder::Show(StringView text, std::int32_t flags, StringView title) {
  lines.push_back("box " + std::to_string(flags) + " \"" + to_utf8(title) + "\": " + to_utf8(text));
  return answer;
}

std::vector<std::string> Recorder::take() { return std::exchange(lines, {}); }

std::string repeat(std::string_view text, std::size_t times) {
  std::string result;
  for (std::size_t i = 0; i < times; ++i) result += text;
  return result;
}

std::int32_t failure_of(const std::function<void()>& statement) {
  try {
    statement();
  } catch (const Failure& failure) {
    return failure.number;
  }
  return 0;
}

Folder::Folder() {
  static std::atomic<unsigned> number = std::random_device()();
  do {
    path_ = std::filesystem::temp_directory_path() / ("hedro34-" + std::to_string(number++));
  } while (!std::filesystem::create_directory(path_));
}

Folder::~Folder() {
  std::error_code error;
  std::filesystem::remove_all(path_, error);
  EXPECT_FALSE(error) << path_ << " stays behind: " << error.message();
}

String Folder::path(const std::string& name) const { return path_.u16string() + u"/" + from_utf8(name); }

String Folder::write(const std::string& name, std::string_view bytes) const {
  String file = path(name);
  std::ofstream(std::filesystem::path(file), std::ios::binary)
      .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return file;
}

String source_path(const std::string& name) { return from_utf8(HEDRO34_SOURCE_DIR "/" + name); }

}  // namespace testing
}  // namespace hedro34
