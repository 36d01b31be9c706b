// What the fuzz targets share: how they say what does not hold, who hears boxes and failures, a folder for files, and a reader
// that makes values of an input's bytes.
#pragma once

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "hedro34/base/variant.h"
#include "hedro34/platform/message_box.h"

namespace hedro34::fuzz {

// Ends the run as a crash, with what does not hold.
void expect(bool holds, const char* what);

// While it lives it hears every box and every reported failure of this thread.
class Listener : public MessageBox {
 public:
  Listener();
  ~Listener() override;

  std::int32_t Show(StringView text, std::int32_t flags, StringView title) override;
  bool heard(std::string_view failure) const;  // a report that begins so, such as "457 HEDRO34 - clsHEDRO.Merge"
  std::size_t count() const { return boxes.size() + failures.size(); }

  std::vector<std::string> boxes;     // title and text
  std::vector<std::string> failures;  // number and location
  std::int32_t answer = answer_ok;

 private:
  MessageBox* former_;
};

// A folder in memory where there is one, made at the first use and removed when the program ends.
class Scratch {
 public:
  static const std::filesystem::path& folder();
  static String path(std::string_view name);
  static String write(std::string_view name, std::string_view bytes);  // its path
};

// While it lives the scratch folder is the current one, and empty at its start.
class InScratch {
 public:
  InScratch();
  ~InScratch();
  InScratch(const InScratch&) = delete;
  InScratch& operator=(const InScratch&) = delete;

 private:
  int former_;
};

// Takes values from the front of an input; zeros when there is nothing left.
class Reader {
 public:
  explicit Reader(std::string_view bytes) : rest_(bytes) {}

  bool done() const { return rest_.empty(); }
  std::string_view rest() const { return rest_; }
  std::uint8_t byte();
  std::size_t below(std::size_t bound) { return bound == 0 ? 0 : byte() % bound; }
  std::string_view bytes(std::size_t count);  // or as many as there are
  template <class T>
  T raw() {
    T value{};
    const std::string_view taken = bytes(sizeof value);
    std::memcpy(&value, taken.data(), taken.size());
    return value;
  }

 private:
  std::string_view rest_;
};

}  // namespace hedro34::fuzz
