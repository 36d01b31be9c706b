#include <algorithm>
#include <array>

#include "hedro34/report/version_keys.h"
#include "host/show.h"
#include "host/terminal_text.h"
#include "host/text_lines.h"

namespace host {
namespace {

using namespace hedro34;

constexpr std::size_t widest_line = 80;

// The fields of one version from left to right, as many in a row as a line takes: field, question and key below each other.
class VersionText {
 public:
  VersionText(TextLines& out, const VersionKey& version) : out_(out), version_(version) {}

  void write() {
    start_rows();
    for (const KeyPlace& place : version_.places) add(place);
    end_rows();
    for (const KeyPlace& place : version_.places) {
      if (place.fault == KeyFault::None) continue;
      out_.lines("  Field " + std::to_string(place.field) + ": ", words_of(place.fault));
    }
    if (version_.missing > 0) out_.lines("  Further fields: ", words_on_missing(version_.missing));
  }

 private:
  static std::string key_of(const KeyPlace& place) {
    std::string key = plain_line(place.key);
    if (key.empty()) key = place.graded || place.subjective ? "none" : "-";
    return place.fault == KeyFault::None ? key : key + '!';
  }

  void start_rows() {
    for (std::size_t i = 0; i < rows_.size(); ++i) rows_[i] = padded(std::string("  ").append(names[i]), 12);
    width_ = 12;
    empty_ = true;
  }

  void end_rows() {
    if (empty_) return;
    out_.empty_line();
    for (const std::string& row : rows_) out_.line(row);
  }

  void add(const KeyPlace& place) {
    const std::array<std::string, 3> cells = {std::to_string(place.field),
                                              place.question > 0 ? std::to_string(place.question) : "-", key_of(place)};
    std::size_t width = 0;
    for (const std::string& cell : cells) width = std::max(width, columns(cell));
    if (!empty_ && width_ + width > widest_line) {
      end_rows();
      start_rows();
    }
    for (std::size_t i = 0; i < cells.size(); ++i) rows_[i] += padded(cells[i], width + 2);
    width_ += width + 2;
    empty_ = false;
  }

  static constexpr std::array<std::string_view, 3> names = {"Field", "ID", "Key"};

  TextLines& out_;
  const VersionKey& version_;
  std::array<std::string, 3> rows_;
  std::size_t width_ = 0;
  bool empty_ = true;
};

}  // namespace

std::string versions_as_text(DataDocument& document) {
  TextLines out;
  const DocumentKeys keys = document_keys(document);
  for (const String& fault : keys.faults) {
    out.empty_line();
    out.lines({}, fault);
  }
  for (const VersionKey& version : keys.versions) {
    out.empty_line();
    if (document.Versions()->VersionMode() != 2) {
      out.line("Keys by field");
    } else {
      out.lines("Version ", version.label.empty() ? StringView(u"without an identifier") : StringView(version.label));
    }
    VersionText(out, version).write();
  }
  return std::move(out).str();
}

}  // namespace host
