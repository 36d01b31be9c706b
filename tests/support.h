// What the tests share: a recorder that stands in for the message box and the host's error object, and printers.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <ostream>
#include <string>
#include <vector>

#include "hedro34/base/variant.h"
#include "hedro34/platform/message_box.h"
#include "hedro34/platform/platform.h"
#include "hedro34/runtime/basError.h"

namespace hedro34 {

// Texts in a test's failure message are shown as UTF-8.
inline void PrintTo(const String& text, std::ostream* out) { *out << '"' << to_utf8(text) << '"'; }

namespace testing {

// While it lives, every box and every reported failure of this thread is written down, as lines
//   box 48 "Title": text          (line breaks of the text as they are)
//   457 This key ...: HEDRO34 - clsHEDROTestQuestions.Add
class Recorder : public MessageBox {
 public:
  Recorder() : former_(platform().message_box) {
    platform().message_box = this;
    set_error_object(make<Errors>(*this));
  }
  ~Recorder() override {
    platform().message_box = former_;
    set_error_object(nullptr);
  }

  std::int32_t Show(StringView text, std::int32_t flags, StringView title) override {
    lines.push_back("box " + std::to_string(flags) + " \"" + to_utf8(title) + "\": " + to_utf8(text));
    return answer;
  }

  // The lines so far, which are then forgotten.
  std::vector<std::string> take() { return std::exchange(lines, {}); }

  std::vector<std::string> lines;
  std::int32_t answer = answer_ok;

 private:
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

  MessageBox* former_;
};

using Lines = std::vector<std::string>;

// The line of a failure that was reported at a place such as "clsHEDROTest.Clear".
inline std::string reported(std::int32_t number, const std::string& place) {
  return std::to_string(number) + " " + to_utf8(failure_text(number)) + ": HEDRO34 - " + place;
}

// A folder of its own for one test, removed at its end.
class Folder {
 public:
  Folder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "hedro34-XXXXXX").string();
    path_ = mkdtemp(pattern.data());
  }
  ~Folder() { std::filesystem::remove_all(path_); }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  String path(const std::string& name) const { return from_utf8((path_ / name).string()); }
  String write(const std::string& name, std::string_view bytes) const {
    std::ofstream(path_ / name, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return path(name);
  }

 private:
  std::filesystem::path path_;
};

}  // namespace testing
}  // namespace hedro34
