#include "fuzz/support/support.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "hedro34/platform/platform.h"
#include "hedro34/runtime/basError.h"

namespace hedro34::fuzz {
namespace {

namespace fs = std::filesystem;

struct Errors final : Object {
  explicit Errors(Listener& heard_by) : listener(heard_by) {}
  Variant Call(StringView name, std::span<Variant> arguments) override {
    expect(name == u"RaiseError" && arguments.size() == 13, "a report has 13 arguments");
    listener.failures.push_back(to_utf8(to_text(arguments[0]) + u" " + to_text(arguments[3])));
    return std::int16_t{0};
  }
  Listener& listener;
};

struct Folder {
  Folder() {
    const fs::path memory = "/dev/shm";
    std::error_code none;
    std::string name =
        ((fs::is_directory(memory, none) ? memory : fs::temp_directory_path()) / "hedro34-XXXXXX").string();
    expect(::mkdtemp(name.data()) != nullptr, "there is a folder for scratch files");
    path = name;
  }
  ~Folder() {
    std::error_code ignored;
    fs::remove_all(path, ignored);
  }
  fs::path path;
};

}  // namespace

void expect(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

Listener::Listener() : former_(platform().message_box) {
  platform().message_box = this;
  set_error_object(make<Errors>(*this));
}

Listener::~Listener() {
  platform().message_box = former_;
  set_error_object(nullptr);
}

std::int32_t Listener::Show(StringView text, std::int32_t flags, StringView title) {
  boxes.push_back(to_utf8(title) + ": " + to_utf8(text));
  return (flags & box_buttons_mask) == box_ok_cancel ? answer : answer_ok;
}

bool Listener::heard(std::string_view failure) const {
  return std::any_of(failures.begin(), failures.end(), [&](const auto& each) { return each.starts_with(failure); });
}

const fs::path& Scratch::folder() {
  static const Folder folder;
  return folder.path;
}

String Scratch::path(std::string_view name) { return from_utf8((folder() / name).string()); }

String Scratch::write(std::string_view name, std::string_view bytes) {
  std::ofstream(folder() / name, std::ios::binary) << bytes;
  return path(name);
}

InScratch::InScratch() : former_(::open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  for (const auto& entry : fs::directory_iterator(Scratch::folder())) fs::remove_all(entry);
  expect(former_ >= 0 && ::chdir(Scratch::folder().c_str()) == 0, "the scratch folder can be the current one");
}

InScratch::~InScratch() {
  expect(::fchdir(former_) == 0, "the former folder is the current one again");
  ::close(former_);
}

std::uint8_t Reader::byte() {
  const std::string_view taken = bytes(1);
  return taken.empty() ? std::uint8_t{0} : static_cast<std::uint8_t>(taken.front());
}

std::string_view Reader::bytes(std::size_t count) {
  const std::string_view taken = rest_.substr(0, count);
  rest_.remove_prefix(taken.size());
  return taken;
}

}  // namespace hedro34::fuzz
