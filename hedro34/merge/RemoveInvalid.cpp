// Removal of the questions that a merge cannot carry.
#include <vector>

#include "hedro34/merge/clsHEDRO.h"
#include "hedro34/merge/here.h"

namespace hedro34 {
namespace {

String lines(std::initializer_list<StringView> texts) {
  String result;
  for (const StringView& text : texts) {
    if (&text != texts.begin()) result += line_break;
    result += text;
  }
  return result;
}

String counts(std::int32_t total, std::int32_t removed, std::int32_t remaining) {
  return lines({u"Total Questions: " + decimal(total), u"Removed Questions: " + decimal(removed),
                u"Remaining Questions: " + decimal(remaining)});
}

constexpr StringView supported_types =
    u"\r\nSupported Question Types: Multiple Choice, True/False, Yes/No\r\n\r\n"
    u"\tNote: Modified True/False questions are NOT supported.\r\n";

// The numbers in rising order; the walk found them from the last down.
String joined(const std::vector<std::int32_t>& falling) {
  String result;
  for (auto number = falling.rbegin(); number != falling.rend(); ++number) {
    if (!result.empty()) result += u", ";
    result += decimal(*number);
  }
  return result;
}

Leaving unsupported_in(const clsHEDROTestQuestions& questions) {
  Leaving found;
  for (std::int32_t i = questions.Count(); i >= 1; --i) {
    const clsHEDROTestQuestion& question = questions.at(i);
    if (!is_supported(question.QuestionType)) found.add(i, question);
  }
  return found;
}

}  // namespace

bool clsHEDRO::RemoveInvalid(std::int32_t lMaxQuestions) {
  return trap<bool>(here(u"RemoveInvalid"), [&](auto& result) {
    const std::int32_t tests = Tests->Count();
    for (std::int32_t n = 1; n <= tests; ++n) {
      const Ref<clsHEDROTest> test = Tests->Item(n);
      if (!test) {
        if (Verbose) {
          show_warning(u"Invalid File",
                       u"An error occurred while removing invalid question types from the file. The file is invalid. "
                       u"Operation aborted.");
        }
        break;
      }
      const Ref<clsHEDROTestQuestions> questions = test->Questions;
      std::int32_t total = questions->Count();
      Leaving unsupported = unsupported_in(*questions);
      test->remove_noted(*questions, unsupported);
      const auto unsupported_count = static_cast<std::int32_t>(unsupported.positions.size());
      if (unsupported_count > 0) {
        const String numbers = counts(total, unsupported_count, questions->Count());
        if (Verbose && total > unsupported_count) {
          show_warning(u"Invalid Question Type(s)",
                       lines({u"Warning: The file contains one or more question types that are not supported. The "
                              u"unsupported question types were removed.",
                              supported_types, u"Unsupported Question Number(s): " + joined(unsupported.positions), u"",
                              numbers}));
        } else if (Verbose) {
          platform().message_box->Show(
              lines({u"An error occurred importing the test. The file does not contain any supported questions.",
                     supported_types, numbers}),
              box_stop, u"No Supported Questions");
        }
        if (total <= unsupported_count) return;
      }
      std::int32_t surplus = 0;
      if (lMaxQuestions > 0) {
        total = questions->Count();
        Leaving last;
        for (std::int32_t i = total; i > lMaxQuestions; --i) last.add(i, questions->at(i));
        test->remove_noted(*questions, last);
        surplus = static_cast<std::int32_t>(last.positions.size());
        if (surplus > 0 && Verbose) {
          show_warning(
              u"Maximum Number of Questions",
              lines({u"Warning: The file contains more questions than are supported. One or more questions were "
                     u"removed.",
                     u"", u"Number of Supported Questions: " + decimal(lMaxQuestions), u"",
                     counts(total, surplus, questions->Count())}));
        }
      }
      if (unsupported_count > 0 || surplus > 0) {
        test->Sequences->RemoveAll();
        test->Sequences->AddDefault(questions, test->Version);
      }
    }
    result = true;
  });
}

}  // namespace hedro34
