// What the page shows, read once from the document, the form and the tests: every call of an object of the host is made here.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "hedro34/model/clsHEDROTest.h"
#include "hedro34/report/report_form.h"
#include "hedro34/report/version_keys.h"

namespace hedro34 {

struct ReportQuestion {
  String name;  // of its field
  String text;
  std::vector<String> labels;
  std::vector<std::pair<const char*, String>> details;  // topic, difficulty and so on, those that are there
  std::vector<std::int32_t> objectives;                 // positions in the document's objectives, from 1
  Ref<clsHEDROTestQuestion> asked;                      // the test's question, where the tests are known
  double correct_points = 0;
  double incorrect_points = 0;
  double no_response_points = 0;
  double subjective_points = 0;
  bool graded = false;
  bool subjective = false;
};

// A sentence of our own with texts of files in it.
class Notice {
 public:
  struct Piece {
    String text;
    bool from_file;
  };

  Notice& say(StringView words) { return add(words, false); }
  Notice& name(StringView text) { return add(text, true); }

  const std::vector<Piece>& pieces() const noexcept { return pieces_; }

 private:
  Notice& add(StringView text, bool from_file) {
    pieces_.push_back({String(text), from_file});
    return *this;
  }

  std::vector<Piece> pieces_;
};

struct ReportData {
  // Reads all. A form that does not belong to the document is left out, with a notice.
  ReportData(WENKtdDocument& document, TIBTemplate* form, const std::vector<Ref<clsHEDROTest>>& of_tests);

  std::vector<ReportQuestion> questions;  // by field
  std::vector<KeyPlace> own_keys;         // of the questions, each at its own field
  std::vector<VersionKey> versions;       // at least one
  std::vector<String> objectives;         // by position; the default one first
  std::vector<ReportPage> pages;          // of the form; empty without one
  std::vector<Notice> notices;            // what a person should look at first
  const std::vector<Ref<clsHEDROTest>>& tests;
  String description;
  std::int32_t graded = 0;
  std::int32_t subjective = 0;

  const ReportQuestion& question(std::int32_t position) const {
    return questions[static_cast<std::size_t>(position - 1)];
  }
  const KeyPlace& own_key(std::int32_t position) const { return own_keys[static_cast<std::size_t>(position - 1)]; }

 private:
  void read_questions(WENKtdDocument& document);
  void read_objectives(WENKtdDocument& document);
  void read_form(WENKtdDocument& document, TIBTemplate& form);
  void find_asked();
  void note(StringView words) { notices.emplace_back().say(words); }
  void note_left_out();
  void note_versions(const std::vector<String>& faults);
  void note_keys(const VersionKey& version);
};

}  // namespace hedro34
