// How a test's scales get their contents, the scale of one question, and its correct answers as labels or numbers.
#include <algorithm>
#include <limits>

#include "hedro34/model/basPublic.h"
#include "hedro34/model/clsHEDROTest.h"
#include "hedro34/xml/xml_document.h"

namespace hedro34 {
namespace {

constexpr Location here(const char16_t* operation) { return {u"clsHEDROTest", operation}; }

constexpr std::size_t least_letters = 5;

Array<String> one_by_one(StringView letters) {
  std::vector<String> strings;
  for (const char16_t letter : letters) strings.emplace_back(1, letter);
  return Array<String>::of(std::move(strings), 0);
}

void shorten(const Ref<clsHEDROTestStrings>& scale, std::int32_t length) {
  for (std::int32_t i = scale->Count(); i > length; --i) scale->Remove(i);
}

// The number at a position of the set; positions are 16 bits wide there.
std::int16_t answer_at(const Ref<clsHEDROTestCorrect>& answers, std::int32_t position) {
  return answers->Item(to_int16(position));
}

}  // namespace

bool clsHEDROTest::PopulateMultipleChoiceScales(const Ref<IXMLDOMNode>& oNode, bool bOddDistractorsOnly) {
  return trap<bool>(here(u"PopulateMultipleChoiceScales"), [&](auto& result) {
    if (!oNode) return;
    const Ref<IXMLDOMNamedNodeMap> attributes = oNode->attributes();
    if (!attributes || attributes->length() == 0) return;
    const String letters = upper(to_text(attributes->item(0)->nodeTypedValue()));
    StringView odd = letters;
    StringView even = letters;
    if (const std::size_t border = letters.find(u'_'); border != String::npos) {
      odd = StringView(letters).substr(0, border);
      even = StringView(letters).substr(border + 1);
    }
    if (bOddDistractorsOnly) even = odd;
    if (odd == even && odd == u"ABCDE") odd = even = u"ABCDEFGH";
    if (odd.size() != even.size() || odd.size() < least_letters) return;
    MultipleChoiceOddScale->RemoveAll();
    MultipleChoiceEvenScale->RemoveAll();
    const bool odd_added = MultipleChoiceOddScale->AddArray(one_by_one(odd));
    const bool even_added = MultipleChoiceEvenScale->AddArray(one_by_one(even));
    result = odd_added && even_added;
  });
}

bool clsHEDROTest::TrimScales() {
  return trap<bool>(here(u"TrimScales"), [&](auto& result) {
    std::int32_t longest = 0;
    for (std::int32_t i = 1; i <= Questions->Count(); ++i) {
      longest = std::max(longest, Questions->Item(i)->Answers->Count());
    }
    shorten(MultipleChoiceEvenScale, longest);
    shorten(MultipleChoiceOddScale, longest);
    result = true;
  });
}

Ref<clsHEDROTestStrings> clsHEDROTest::QuestionScale(const Variant& vQuestionIndex,
                                                     const Variant& vIsOddOverride) const {
  return trap<Ref<clsHEDROTestStrings>>(here(u"QuestionScale"), [&](auto& result) {
    if (!Questions->Exists(vQuestionIndex)) return;
    const Ref<clsHEDROTestQuestion> question = Questions->Item(vQuestionIndex);
    switch (question->QuestionType) {
      case HEDROTestQuestionTypeTrueFalse: result = TrueFalseScale->Copy(); return;
      case HEDROTestQuestionTypeYesNo: result = YesNoScale->Copy(); return;
      case HEDROTestQuestionTypeMultipleChoice: break;
      default: result = make<clsHEDROTestStrings>(); return;
    }
    const bool is_odd = vIsOddOverride.is<Missing>() ? Questions->first_position(vQuestionIndex) % 2 == 1
                                                     : to_boolean(CString(vIsOddOverride));
    const Ref<clsHEDROTestStrings> scale = (is_odd ? MultipleChoiceOddScale : MultipleChoiceEvenScale)->Copy();
    const std::int32_t answers = question->Answers->Count();
    shorten(scale, answers);
    for (std::int32_t i = scale->Count(); i < answers; ++i) scale->Add({});
    result = scale;
  });
}

String clsHEDROTest::CorrectAnswersAsString(const Variant& vQuestionIndex, StringView sDelimiter,
                                            bool bEnclosedByParens, bool bNumeric) const {
  return trap<String>(here(u"CorrectAnswersAsString"), [&](auto& result) {
    if (!Questions->Exists(vQuestionIndex)) return;
    const Ref<clsHEDROTestStrings> scale = QuestionScale(vQuestionIndex);
    const Ref<clsHEDROTestCorrect> correct = Questions->Item(vQuestionIndex)->CorrectAnswers;
    String text;
    for (std::int32_t i = 1; i <= correct->Count(); ++i) {
      const std::int16_t number = answer_at(correct, i);
      text.append(bNumeric ? decimal(number) : scale->Item(number)).append(sDelimiter);
    }
    if (!text.empty()) {
      text.resize(text.size() - sDelimiter.size());
      if (correct->Count() >= 2 && bEnclosedByParens) text = u"(" + text + u")";
    }
    result = std::move(text);
  });
}

Array<String> clsHEDROTest::CorrectAnswersAsArray(const Variant& vQuestionIndex, bool bAsString) const {
  return trap<Array<String>>(here(u"CorrectAnswersAsArray"), [&](auto& result) {
    if (!Questions->Exists(vQuestionIndex)) return;
    const Ref<clsHEDROTestStrings> scale = QuestionScale(vQuestionIndex);
    const Ref<clsHEDROTestCorrect> correct = Questions->Item(vQuestionIndex)->CorrectAnswers;
    if (correct->Count() < 1) return;
    Array<String> answers(0, correct->Count() - 1);
    for (std::int32_t i = 1; i <= correct->Count(); ++i) {
      const std::int16_t number = answer_at(correct, i);
      answers[i - 1] = bAsString ? scale->Item(number) : decimal(number);
    }
    result = std::move(answers);
  });
}

}  // namespace hedro34
