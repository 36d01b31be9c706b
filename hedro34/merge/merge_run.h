// One call of `Merge`: its working state and its phases. A phase answers False when it refuses; a failing statement in it is
// a failure of `Merge`. Nothing of it outlives the call.
#pragma once

#include <unordered_map>

#include "hedro34/merge/clsHEDRO.h"

namespace hedro34 {

class MergeRun {
 public:
  explicit MergeRun(clsHEDRO& host);  // failure 5 while another one of that object lives
  ~MergeRun() { host_.merging_ = false; }
  MergeRun(const MergeRun&) = delete;
  MergeRun& operator=(const MergeRun&) = delete;

  bool run();

 private:
  bool check_preconditions();
  void copy_template();
  void read_field_names();
  void start_document();
  bool fit_graded_fields();
  bool walk_fields();
  void add_subjective_questions();

  // From the last page, region and field on, through all regions: a graded field of a continuation counts here but not in
  // `GradedQuestionCount`, so the numbers may still differ behind it, which `fit_graded_fields` refuses. `SequenceQuestion` is
  // lowered by each field at or before it.
  void ungrade_last_fields(std::int32_t surplus);
  bool visit_field(TIBRegion& region, const Ref<TIBQuestion>& field);
  bool take_question(TIBRegion& region, TIBQuestion& field, WENKtdQuestion& question);
  void rewrite_choices(TIBQuestion& field, const clsHEDROTestQuestion& asked, WENKtdQuestion& question);
  void set_objective_flags(const clsHEDROTestQuestion& asked, WENKtdQuestion& question);
  std::int32_t objective_position(StringView name);  // 0 when there is none of that name
  bool refuse(StringView title, StringView text) const;

  clsHEDRO& host_;
  Ref<clsHEDROTest> test_;                 // the test that is merged
  std::int32_t subjective_count_ = 0;      // its subjective questions
  std::int32_t graded_count_ = 0;          // all others
  Ref<WENKtdObjectives> objectives_;       // of the document, as soon as it is prepared
  Ref<WENKtdQuestions> questions_;         // likewise
  Variant field_names_;                    // strings, by field number
  KeyedList<std::int32_t> field_numbers_;  // of graded questions, by question ID
  std::int32_t field_number_ = 0;          // of the visited field
  std::int32_t question_number_ = 0;       // in the test

  // The first position of each objective's name, as far as the document's objectives were read: a name is read when a search
  // first comes to it, and once.
  std::unordered_map<String, std::int32_t, IgnoringCase, IgnoringCase> objective_positions_;
  std::int32_t objectives_read_ = 0;
};

}  // namespace hedro34
