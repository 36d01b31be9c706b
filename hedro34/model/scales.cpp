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

clsHEDROTest::Labels clsHEDROTest::labels_of(const clsHEDROTestQuestion& question, const Variant& vQuestionIndex,
                                             const Variant& vIsOddOverride) const {
  const auto those_of = [](const Ref<clsHEDROTestStrings>& scale) { return Labels{Ref(&*scale), {}}; };
  switch (question.QuestionType) {
    case HEDROTestQuestionTypeTrueFalse: return those_of(TrueFalseScale);
    case HEDROTestQuestionTypeYesNo: return those_of(YesNoScale);
    case HEDROTestQuestionTypeMultipleChoice: break;
    default: return {};
  }
  const bool is_odd = vIsOddOverride.is<Missing>() ? Questions->first_position(vQuestionIndex) % 2 == 1
                                                   : to_boolean(CString(vIsOddOverride));
  Labels labels = those_of(is_odd ? MultipleChoiceOddScale : MultipleChoiceEvenScale);
  labels.count = question.Answers->Count();
  return labels;
}

std::vector<StringView> clsHEDROTest::Labels::texts() const {
  std::vector<StringView> result;
  if (scale) result = scale->in_copy();
  if (count) result.resize(static_cast<std::size_t>(*count));
  return result;
}

Ref<clsHEDROTestStrings> clsHEDROTest::QuestionScale(const Variant& vQuestionIndex,
                                                     const Variant& vIsOddOverride) const {
  return trap<Ref<clsHEDROTestStrings>>(here(u"QuestionScale"), [&](auto& result) {
    const Ref<clsHEDROTestQuestion> question = Questions->Item(vQuestionIndex);
    if (!question) return;
    const Labels labels = labels_of(*question, vQuestionIndex, vIsOddOverride);
    const Ref<clsHEDROTestStrings> scale = labels.scale ? labels.scale->Copy() : make<clsHEDROTestStrings>();
    if (labels.count) {
      shorten(scale, *labels.count);
      for (std::int32_t i = scale->Count(); i < *labels.count; ++i) scale->Add({});
    }
    result = scale;
  });
}

template <class Use>
void clsHEDROTest::each_correct_answer(const Variant& vQuestionIndex, bool numeric, Use use) const {
  const Ref<clsHEDROTestQuestion> question = Questions->Item(vQuestionIndex);
  if (!question) return;
  const auto labels = trap<std::optional<Labels>>(
      here(u"QuestionScale"), [&](auto& result) { result = labels_of(*question, vQuestionIndex, missing); });
  const auto texts = labels && !numeric ? labels->texts() : std::vector<StringView>();
  const Ref<clsHEDROTestCorrect> correct = question->CorrectAnswers;
  const std::int32_t count = correct->Count();
  for (std::int32_t i = 1; i <= count; ++i) {
    const std::int16_t number = correct->Item(to_int16(i));  // positions are 16 bits wide there
    if (numeric) {
      use(decimal(number));
    } else {
      if (!labels) fail(FailureNumber::ObjectNotSet);
      const bool has_label = number >= 1 && static_cast<std::size_t>(number) <= texts.size();
      use(has_label ? texts[static_cast<std::size_t>(number) - 1] : StringView());
    }
  }
}

String clsHEDROTest::CorrectAnswersAsString(const Variant& vQuestionIndex, StringView sDelimiter,
                                            bool bEnclosedByParens, bool bNumeric) const {
  return trap<String>(here(u"CorrectAnswersAsString"), [&](auto& result) {
    String text;
    int count = 0;
    each_correct_answer(vQuestionIndex, bNumeric, [&](StringView answer) {
      text.append(answer).append(sDelimiter);
      ++count;
    });
    if (!text.empty()) {
      text.resize(text.size() - sDelimiter.size());
      if (count >= 2 && bEnclosedByParens) text = u"(" + text + u")";
    }
    result = std::move(text);
  });
}

Array<String> clsHEDROTest::CorrectAnswersAsArray(const Variant& vQuestionIndex, bool bAsString) const {
  return trap<Array<String>>(here(u"CorrectAnswersAsArray"), [&](auto& result) {
    std::vector<String> answers;
    each_correct_answer(vQuestionIndex, !bAsString, [&](StringView answer) { answers.emplace_back(answer); });
    result = Array<String>::of(std::move(answers), 0);
  });
}

}  // namespace hedro34
