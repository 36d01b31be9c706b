#include "host/merge.h"

#include <algorithm>
#include <iostream>
#include <memory>

#include "hedro34/base/immortal.h"
#include "hedro34/documents/data_document.h"
#include "hedro34/documents/form_template.h"
#include "hedro34/merge/clsHEDRO.h"
#include "hedro34/merge/version_differences.h"
#include "hedro34/report/Report.h"
#include "host/compare.h"
#include "host/hints.h"
#include "host/input.h"
#include "host/left_out.h"
#include "host/load.h"
#include "host/outputs.h"
#include "host/stop.h"

namespace host {
namespace {

using namespace hedro34;

std::string shown(const String& path) { return to_utf8(input_name(path)); }

class MergeRoad {
 public:
  MergeRoad(const MergeCommand& command, Messages& messages) : command_(command), messages_(messages) {}

  void run() {
    prepare();
    load_tests();
    const bool removed = asked([&] { return merge_->RemoveInvalid(command_.max_questions); });
    for (std::size_t i = 0; i < tests_.size(); ++i) keep_notes(messages_, *tests_[i], noted_[i], file_of_note(i));
    if (!removed) answered_false("RemoveInvalid", emptied_test());
    if (command_.tests.size() > 1) compare_versions();
    merge_->SequenceQuestion = command_.sequence_question;
    if (!asked([&] { return merge_->Merge(); })) {
      answered_false("Merge", shown(command_.tests.front()) + " with " + shown(command_.form),
                     version_field_hint(*merge_, command_));
    }
    stop_after_failures();
    const std::string summary = summarize();
    const std::string left_out = left_out_lines(tests_, command_.tests);
    stop_after_failures();  // of the summary
    write();
    if (writes_standard_output(command_)) {
      std::cerr << left_out << std::flush;
    } else {
      print(summary + left_out);
    }
  }

 private:
  void prepare() {
    const Input input("form", command_.form);
    const auto form = make<FormTemplate>();
    if (!form->Load(input.path())) input.cannot_read();
    merge_->Verbose = !command_.quiet;
    merge_->TemplateIn = form;
    merge_->TemplateOut = make<FormTemplate>();
  }

  void load_tests() {
    for (const String& path : command_.tests) {
      const auto test = tests_.emplace_back(load_test(path, command_.import, messages_));
      keep_notes(messages_, *test, 0, file_of_note(tests_.size() - 1));
      noted_.push_back(test->left_out().size());
      const std::int32_t before = merge_->Tests->Count();
      if (!asked([&] { return merge_->Tests->Add(test), merge_->Tests->Count() > before; })) {
        answered_false("Tests.Add", shown(path));
      }
    }
  }

  const String* file_of_note(std::size_t test) const {
    return command_.tests.size() > 1 ? &command_.tests[test] : nullptr;
  }

  void compare_versions() {
    const auto first = merge_->Tests->Item(1);
    const std::string first_path = shown(command_.tests.front());
    const VersionComparison comparison(first);  // before there are sequences of further versions
    if (!asked([&] { return merge_->ValidTestVersions(); })) {
      answered_false("ValidTestVersions", "the versions of " + first_path, first_difference(comparison, true));
    }
    if (first->Sequences->Count() == 0 &&
        !asked([&] { return first->Sequences->AddDefault(first->Questions, first->Version); })) {
      answered_false("Sequences.AddDefault", first_path);
    }
    for (std::size_t i = 1; i < command_.tests.size(); ++i) {
      const auto version = merge_->Tests->Item(static_cast<std::int32_t>(i + 1));
      if (!asked([&] { return first->AddSequence(version); })) {
        answered_false("AddSequence", shown(command_.tests[i]) + " as a version of " + first_path,
                       first_difference(comparison, false));
      }
    }
  }

  // Whether `--max-questions` removed a question: one of a type that a merge takes, noted behind the load.
  bool removed_as_surplus() const {
    for (std::size_t i = 0; i < tests_.size(); ++i) {
      const std::vector<LeftOut>& all = tests_[i]->left_out();
      const auto from = all.begin() + static_cast<std::ptrdiff_t>(noted_[i]);
      if (std::any_of(from, all.end(), [](const LeftOut& lost) { return is_supported(lost.type); })) return true;
    }
    return false;
  }

  // The first difference at which an operation answers False, as the end of a line; empty when there is none.
  std::string first_difference(VersionComparison comparison, bool in_validation) const {
    std::string first;
    std::size_t count = 0;
    std::string hint;
    if (removed_as_surplus()) {
      const std::string most = std::to_string(command_.max_questions);
      hint = "; --max-questions " + most + " kept only the first " + most + " of each TEST";
    }
    for (std::size_t i = 1; i < command_.tests.size(); ++i) {
      for (const VersionDifference& each : comparison.next(*merge_->Tests->Item(static_cast<std::int32_t>(i + 1)))) {
        if (first.empty() && refuses_validation(each.kind) == in_validation) {
          first = "; " + line_of(each, command_.tests, i);
        }
        ++count;
      }
    }
    if (first.empty()) return first;
    if (count > 1)
      first += " (and " + std::to_string(count - 1) + (hint.empty() ? " more: hedro34 compare lists them)" : " more)");
    return first + hint;
  }

  // Runs an operation and gives its answer; what the library says from here on belongs to it.
  template <class Operation>
  bool asked(Operation operation) {
    said_before_ = messages_.count();
    return operation();
  }

  [[noreturn]] void answered_false(const std::string& operation, const std::string& where,
                                   const std::string& more = {}) const {
    const char* reason = "it gave no reason";
    if (messages_.count() > said_before_) {
      reason = "the message above says why";
    } else if (command_.quiet) {
      reason = "run it without --quiet to see why";
    }
    throw Stop(ExitCode::AnsweredFalse, operation + " answered False: " + where + ": " + reason + more);
  }

  void stop_after_failures() const {
    if (messages_.failures() == 0 || command_.keep_going) return;
    throw Stop(ExitCode::FailuresReported, std::string(failures_reported) +
                                               "; nothing is written: mend what they name, or write with --keep-going");
  }

  // The test at which the removal stopped: no test was without questions before.
  std::string emptied_test() const {
    for (std::size_t i = 0; i < command_.tests.size(); ++i) {
      const auto test = merge_->Tests->Item(static_cast<std::int32_t>(i + 1));
      if (test->Questions->Count() == 0) return shown(command_.tests[i]);
    }
    return shown(command_.tests.front());
  }

  std::string summarize() const {
    const auto test = merge_->Tests->Item(1);
    const std::int32_t subjective = test->Questions->TypeCount(HEDROTestQuestionTypeSubjective);
    const std::int32_t graded = test->Questions->Count() - subjective;
    const std::int32_t objectives = merge_->WENKTD->Objectives()->Count() - 1;  // without the default one
    const auto line = [](const char* name, const std::string& value) { return name + value + '\n'; };
    return line("Questions merged          ", std::to_string(graded)) +
           line("Fields no longer graded   ", std::to_string(merge_->TemplateIn->GradedQuestionCount() - graded)) +
           line("Subjective regions added  ", std::to_string(subjective)) +
           line("Objectives                ", std::to_string(objectives)) +
           line("Versions                  ", std::to_string(merge_->WENKTD->Versions()->Orders()->Count())) +
           line("Form                      ", one_line(to_utf8(command_.form_out))) +
           line("Document                  ", one_line(to_utf8(command_.document_out))) +
           (command_.report ? line("Report                    ", one_line(to_utf8(*command_.report))) : std::string());
  }

  void write() const {
    Outputs outputs;
    outputs.add("form", dynamic_cast<FormTemplate&>(*merge_->TemplateOut), command_.form_out);
    outputs.add("document", dynamic_cast<DataDocument&>(*merge_->WENKTD), command_.document_out);
    if (command_.report) outputs.add("report", page(), *command_.report);
    stop_after_failures();  // of what was to be written
    outputs.commit();
  }

  std::string page() const {
    const auto report = make<Report>();
    report->Document = merge_->WENKTD;
    report->Form = merge_->TemplateOut;
    for (std::int32_t i = 1; i <= merge_->Tests->Count(); ++i) report->AddTest(merge_->Tests->Item(i));
    for (const String& said : messages_.said()) report->AddMessage(said);
    return report->to_html();
  }

  const MergeCommand& command_;
  Messages& messages_;
  Ref<clsHEDRO> merge_ = make<clsHEDRO>();
  std::vector<Ref<clsHEDROTest>> tests_;  // as many as the files so far
  std::vector<std::size_t> noted_;        // of each how much of what it left out the messages have
  std::size_t said_before_ = 0;
};

}  // namespace

void merge(const MergeCommand& command, Messages& messages) {
  // The last one lives until the process ends: releasing a large test object by object takes as long as merging it.
  static auto& road = hedro34::immortal<std::unique_ptr<MergeRoad>>();
  road = std::make_unique<MergeRoad>(command, messages);
  road->run();
}

}  // namespace host
