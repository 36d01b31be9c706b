#include "host/merge.h"

#include <memory>

#include "hedro34/documents/data_document.h"
#include "hedro34/documents/form_template.h"
#include "hedro34/merge/clsHEDRO.h"
#include "hedro34/platform/file_error.h"
#include "hedro34/platform/files.h"
#include "host/load.h"
#include "host/stop.h"

namespace host {
namespace {

using namespace hedro34;

class MergeRoad {
 public:
  MergeRoad(const MergeCommand& command, Messages& messages) : command_(command), messages_(messages) {}

  void run() {
    prepare();
    load_tests();
    if (!asked([&] { return merge_->RemoveInvalid(command_.max_questions); })) refused("RemoveInvalid", emptied_test());
    if (command_.tests.size() > 1) compare_versions();
    merge_->SequenceQuestion = command_.sequence_question;
    if (!asked([&] { return merge_->Merge(); })) {
      refused("Merge", to_utf8(command_.tests.front()) + " with " + to_utf8(command_.form));
    }
    const std::string summary = summarize();
    write();
    print(summary);
  }

 private:
  void prepare() {
    merge_->SetError(messages_.error_object());
    const auto form = make<FormTemplate>();
    clear_file_error();
    if (!form->Load(command_.form)) {
      throw Stop(ExitCode::BadInput, "cannot read the form: " + to_line(last_file_error()));
    }
    merge_->Verbose = !command_.quiet;
    merge_->TemplateIn = form;
    merge_->TemplateOut = make<FormTemplate>();
  }

  void load_tests() {
    for (const String& path : command_.tests) {
      const auto test = load_test(path, command_.import, messages_);
      const std::int32_t before = merge_->Tests->Count();
      if (!asked([&] { return merge_->Tests->Add(test), merge_->Tests->Count() > before; })) {
        refused("Tests.Add", to_utf8(path));
      }
    }
  }

  void compare_versions() {
    const auto first = merge_->Tests->Item(1);
    const std::string first_path = to_utf8(command_.tests.front());
    if (!asked([&] { return merge_->ValidTestVersions(); })) {
      refused("ValidTestVersions", "the versions of " + first_path);
    }
    if (first->Sequences->Count() == 0 &&
        !asked([&] { return first->Sequences->AddDefault(first->Questions, first->Version); })) {
      refused("Sequences.AddDefault", first_path);
    }
    for (std::size_t i = 1; i < command_.tests.size(); ++i) {
      const auto version = merge_->Tests->Item(static_cast<std::int32_t>(i + 1));
      if (!asked([&] { return first->AddSequence(version); })) {
        refused("AddSequence", to_utf8(command_.tests[i]) + " as a version of " + first_path);
      }
    }
  }

  // Runs an operation and gives its answer; what the library says from here on belongs to it.
  template <class Operation>
  bool asked(Operation operation) {
    said_before_ = messages_.count();
    return operation();
  }

  [[noreturn]] void refused(const std::string& operation, const std::string& where) const {
    const char* reason = "it gave no reason";
    if (messages_.count() > said_before_) {
      reason = "the message above says why";
    } else if (command_.quiet) {
      reason = "run it without --quiet to see why";
    }
    throw Stop(ExitCode::Refused, operation + " answered False: " + where + ": " + reason);
  }

  // The test at which the removal stopped: no test was without questions before.
  std::string emptied_test() const {
    for (std::size_t i = 0; i < command_.tests.size(); ++i) {
      const auto test = merge_->Tests->Item(static_cast<std::int32_t>(i + 1));
      if (test->Questions->Count() == 0) return to_utf8(command_.tests[i]);
    }
    return to_utf8(command_.tests.front());
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
           line("Document                  ", one_line(to_utf8(command_.document_out)));
  }

  // A file of the result, ready beside its target.
  template <class Result, class Held>
  static PendingFile prepared(const char* what, const Ref<Held>& result, const String& path) {
    clear_file_error();
    if (auto file = dynamic_cast<Result&>(*result).prepare(path)) return std::move(*file);
    unwritable(what, {});
  }

  [[noreturn]] static void unwritable(const char* what, const std::string& state) {
    throw Stop(ExitCode::BadOutput,
               std::string("cannot write the ") + what + ": " + to_line(last_file_error()) + state);
  }

  void write() const {
    PendingFile form = prepared<FormTemplate>("form", merge_->TemplateOut, command_.form_out);
    PendingFile document = prepared<DataDocument>("document", merge_->WENKTD, command_.document_out);
    if (!form.commit()) unwritable("form", {});
    if (!document.commit()) unwritable("document", "; the form is written: " + to_utf8(command_.form_out));
  }

  const MergeCommand& command_;
  Messages& messages_;
  Ref<clsHEDRO> merge_ = make<clsHEDRO>();
  std::size_t said_before_ = 0;
};

}  // namespace

void merge(const MergeCommand& command, Messages& messages) {
  // It lives until the process ends: releasing a large test object by object takes as long as merging it.
  static MergeRoad* const road = std::make_unique<MergeRoad>(command, messages).release();
  road->run();
}

}  // namespace host
