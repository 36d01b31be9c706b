#include "generate.h"

#include <array>

namespace hedro34::bench {
namespace {

// The same numbers on every machine.
class Dice {
 public:
  std::uint32_t below(std::uint32_t limit) {
    state_ = state_ * 6364136223846793005u + 1442695040888963407u;
    return static_cast<std::uint32_t>(state_ >> 33) % limit;
  }

 private:
  std::uint64_t state_ = 34;
};

std::string words(Dice& dice, int count) {
  static constexpr std::array vocabulary = {"the",    "cell",  "membrane", "energy", "glucose", "oxygen",  "which",
                                            "of",     "in",    "to",       "plants", "during",  "process", "following",
                                            "carbon", "heart", "best",     "river",  "result",  "average"};
  std::string text;
  for (int i = 0; i < count; ++i) {
    if (i > 0) text += ' ';
    text += vocabulary[dice.below(vocabulary.size())];
  }
  return text;
}

void add_choices(std::string& xml, Dice& dice) {
  xml += "<choices columns='2'>\n";
  for (const char letter : {'a', 'b', 'c', 'd'}) {
    const std::string name = std::string("choice-") + letter;
    xml += "<" + name + "><font size='10'>" + words(dice, 4) + "</font>\n</" + name + ">\n";
  }
  xml += "</choices>\n";
}

}  // namespace

std::string test_xml(int questions, int objectives) {
  Dice dice;
  std::string xml =
      "<?xml version='1.0' encoding='UTF-8'?>\n<examview platform='Windows' version='6.2'>\n"
      "<header><title>Generated</title><version>A</version></header>\n"
      "<preferences><mc-choice-sequence value='abcde'/></preferences>\n<font-table><font-entry number='1'/></font-table>\n";
  for (int i = 1; i <= questions; ++i) {
    static constexpr std::array types = {"mc", "mc", "mc", "tf", "yn", "mr"};
    static constexpr std::array answers = {"B", "A", "D", "T", "N", "A,C"};
    const auto type = dice.below(types.size());
    const std::string number = std::to_string(i);
    xml += std::string("<question type='") + types[type] + "' question-id='" + number + "' bank-id='7' bank='unit'>\n";
    xml += "<text><para><font size='10'>" + words(dice, 14) + "</font>\n</para></text>\n";
    if (type < 3 || type == 5) add_choices(xml, dice);
    xml += std::string("<answer>") + answers[type] + "</answer>\n<rationale><font>" + words(dice, 8) +
           "</font></rationale>\n";
    xml += "<info>\n<points scoring-method='AllOrNothing'>1</points>\n<difficulty>Easy</difficulty>\n<reference>Page " +
           number + "</reference>\n<topic>" + words(dice, 2) + "</topic>\n<keywords>" + words(dice, 3) +
           "</keywords>\n<notes>" + words(dice, 5) + "</notes>\n";
    if (objectives > 0) {
      const auto any = [&] {
        return "Objective " + std::to_string(dice.below(static_cast<std::uint32_t>(objectives)));
      };
      xml += "<text-objective>" + any() + ", " + any() + "</text-objective>\n";
    }
    xml += "</info>\n</question>\n";
  }
  return xml + "</examview>\n";
}

Ref<FormTemplate> form(int fields) {
  const std::vector<String> labels = {u"A", u"B", u"C", u"D", u"E"};
  const std::vector<String> values = {u"1", u"2", u"3", u"4", u"5"};
  auto form = make<FormTemplate>();
  Ref<FormPage> page;
  for (int i = 0; i < fields; ++i) {
    if (i % 50 == 0) page = form->pages().add();
    const Ref<FormRegion> region = page->regions().add();
    region->SetName(u"Q" + decimal(i + 1));
    const Ref<FormQuestion> field = region->questions().add();
    field->SetGraded(true);
    field->SetChoiceLabels(make<FormChoiceList>(labels));
    field->SetChoiceValues(make<FormChoiceList>(values));
  }
  return form;
}

}  // namespace hedro34::bench
