// Objects of the test model in one expression, and what a collection or an array holds as one text.
#pragma once

#include <initializer_list>
#include <string>

#include "hedro34/model/clsHEDROTests.h"
#include "tests/support.h"

namespace hedro34::testing::model {

inline Ref<clsHEDROTestQuestion> question(StringView id) {
  auto result = make<clsHEDROTestQuestion>();
  result->ID = id;
  return result;
}

inline Ref<clsHEDROTestQuestions> questions(std::initializer_list<StringView> ids) {
  auto result = make<clsHEDROTestQuestions>();
  for (const StringView id : ids) EXPECT_TRUE(result->Add(question(id)));
  return result;
}

inline Ref<clsHEDROTestSequence> sequence(StringView answer, std::initializer_list<StringView> ids = {}) {
  auto result = make<clsHEDROTestSequence>();
  result->Answer = answer;
  for (const StringView id : ids) result->Order->Add(id);
  return result;
}

inline Ref<clsHEDROTestCorrect> correct(std::initializer_list<std::int16_t> numbers) {
  auto result = make<clsHEDROTestCorrect>();
  for (const std::int16_t number : numbers) EXPECT_TRUE(result->Add(number));
  return result;
}

inline Ref<clsHEDROTest> titled(StringView title) {
  auto result = make<clsHEDROTest>();
  result->Title = title;
  return result;
}

inline std::string label(const Ref<clsHEDROTestQuestion>& question) { return to_utf8(question->ID.str()); }
inline std::string label(const Ref<clsHEDROTest>& test) { return to_utf8(test->Title.str()); }
inline std::string label(const Ref<clsHEDROTestSequence>& sequence) { return to_utf8(sequence->Answer.str()); }
inline std::string label(const Variant& value) { return to_utf8(to_text(value)); }

// The elements of any collection, by position, as "2: a|b".
template <class C>
std::string dump(const Ref<C>& collection) {
  std::string text = std::to_string(collection->Count()) + ":";
  for (std::int16_t i = 1; i <= collection->Count(); ++i) text += (i == 1 ? " " : "|") + label(collection->Item(i));
  return text;
}

template <class T>
std::string dump(const Array<T>& array) {
  if (!array.has_bounds()) return "no bounds";
  std::string text = std::to_string(array.LBound()) + " to " + std::to_string(array.UBound()) + ":";
  for (const T& element : array.elements()) text += " " + label(element);
  return text;
}

}  // namespace hedro34::testing::model
