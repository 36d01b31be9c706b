#include <algorithm>
#include <array>
#include <charconv>

#include "host/show.h"
#include "host/terminal_text.h"
#include "host/text_lines.h"

namespace host {
namespace {

using namespace hedro34;

constexpr std::size_t widest_name = 24;  // a longer one pushes its own line only

std::string shortest(double number) {
  std::array<char, 32> digits;
  return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr};
}

std::string points(double number) { return shortest(number) + (number == 1 ? " point" : " points"); }

class FormText {
 public:
  explicit FormText(FormTemplate& form) : form_(form) {}

  std::string write() {
    measure();
    out_.heading(u"Form template");
    out_.row("Pages", decimal(form_.PageCount()));
    out_.row("Regions", decimal(regions_));
    out_.row("Fields", decimal(form_.QuestionCount()));
    out_.row("Graded", decimal(form_.GradedQuestionCount()));
    out_.row("Subjective", decimal(subjective_));
    std::int16_t group = 0;  // of the region before
    std::int32_t number = 0;
    for (const auto& page : form_.pages().all()) {
      out_.empty_line();
      out_.line("Page " + std::to_string(++number));
      for (const auto& region : page->regions().all()) {
        const bool continued = region->GroupNumber() != 0 && region->GroupNumber() == group;
        group = region->GroupNumber();
        show(*region, continued);
      }
    }
    return std::move(out_).str();
  }

 private:
  void measure() {
    for (const auto& page : form_.pages().all()) {
      for (const auto& region : page->regions().all()) {
        ++regions_;
        for (const auto& field : region->questions().all()) {
          names_ = std::max(names_, std::min(columns(name(*region, *field)), widest_name));
          marks_ = std::max(marks_, mark(*region, *field).size());
          if (is_subjective(*region, *field)) ++subjective_;
        }
      }
    }
  }

  static bool is_subjective(FormRegion& region, FormQuestion& field) {
    return region.SubjectiveRegion() || field.SubjectiveQuestion();
  }

  static std::string name(FormRegion& region, FormQuestion& field) {
    return plain_line(field.Name().empty() ? region.Name() : field.Name());
  }

  // What a mark in the field counts.
  static std::string mark(FormRegion& region, FormQuestion& field) {
    if (is_subjective(region, field)) return "subjective, " + points(field.CorrectPoints());
    if (!field.Graded()) return "not graded";
    std::string text = "graded, " + points(field.CorrectPoints());
    if (field.IncorrectPoints() != 0) text += ", " + shortest(field.IncorrectPoints()) + " if wrong";
    if (field.NoResponsePoints() != 0) text += ", " + shortest(field.NoResponsePoints()) + " if blank";
    return text;
  }

  void show(FormRegion& region, bool continued) {
    std::string kinds = ", kind " + std::to_string(region.RegionKind());
    if (region.ResponseKind() != 1) kinds += ", response " + std::to_string(region.ResponseKind());
    if (region.ValueKind() != 1) kinds += ", value " + std::to_string(region.ValueKind());
    if (region.GroupNumber() != 0) kinds += ", group " + std::to_string(region.GroupNumber());
    if (continued) kinds += ", continued";
    const std::string named = region.Name().empty() ? "without a name" : plain_line(region.Name());
    out_.line("  Region " + named + kinds);
    for (const auto& field : region.questions().all()) show(region, *field);
  }

  void show(FormRegion& region, FormQuestion& field) {
    constexpr std::size_t numbers = 10;
    String labels;
    for (const String& label : static_cast<FormChoiceList&>(*field.ChoiceLabels()).all()) {
      if (!labels.empty()) labels += u' ';
      labels += label.empty() ? String(u"-") : label;
    }
    out_.lines(padded("    " + std::to_string(field.FieldNumber(true)) + ". ", numbers) +
                   padded(name(region, field), names_) + "  " + padded(mark(region, field), marks_) + "  ",
               labels);
    if (!field.QuestionText().empty()) out_.lines(std::string(numbers, ' '), field.QuestionText());
  }

  FormTemplate& form_;
  std::size_t names_ = 0, marks_ = 0;  // columns
  std::int32_t regions_ = 0, subjective_ = 0;
  TextLines out_;
};

}  // namespace

std::string as_text(FormTemplate& form) { return FormText(form).write(); }

}  // namespace host
