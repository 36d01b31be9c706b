// What the tests share: a recorder that stands in for the message box and the host's error object, and printers.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "hedro34/base/variant.h"
#include "hedro34/platform/message_box.h"
#include "hedro34/platform/platform.h"
#include "hedro34/runtime/basError.h"

namespace hedro34 {

// Texts in a test's failure message are shown as UTF-8.
void PrintTo(const String& text, std::ostream* out);

namespace testing {

// While it lives, every box and every reported failure of this thread is written down, as lines
//   box 48 "Title": text          (line breaks of the text as they are)
//   457 This key ...: HEDRO34 - clsHEDROTestQuestions.Add
class Recorder : public MessageBox {
 public:
  Recorder();
  ~Recorder() override;

  std::int32_t Show(StringView text, std::int32_t flags, StringView title) override;

  // The lines so far, which are then forgotten.
  std::vector<std::string> take();

  std::vector<std::string> lines;
  std::int32_t answer = answer_ok;

 private:
  MessageBox* former_;
};

using Lines = std::vector<std::string>;

// The line of a failure that was reported at a location such as "clsHEDROTest.Clear".
inline std::string reported(std::int32_t number, const std::string& location) {
  return std::to_string(number) + " " + to_utf8(failure_text(number)) + ": HEDRO34 - " + location;
}

std::string repeat(std::string_view text, std::size_t times);

// The number of the failure that the statement throws, 0 when it throws none.
std::int32_t failure_of(const std::function<void()>& statement);

// A folder of its own for one test, removed at its end.
class Folder {
 public:
  Folder();
  ~Folder();
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  String path(const std::string& name) const;
  String write(const std::string& name, std::string_view bytes) const;

 private:
  std::filesystem::path path_;
};

// A file of the sources, by its path from their top.
String source_path(const std::string& name);

}  // namespace testing
}  // namespace hedro34
