#include "hedro34/merge/version_differences.h"

#include "hedro34/base/text_hash.h"
#include "hedro34/runtime/basError.h"

namespace hedro34 {
namespace {

using Kind = VersionDifference::Kind;

constexpr Location here(const char16_t* operation) { return {u"VersionComparison", operation}; }

std::int32_t number_of(const clsHEDROTestQuestion& question, std::int32_t position) {
  return question.number_in_file > 0 ? question.number_in_file : position;
}

String key_of(const clsHEDROTest& test, const Variant& id, bool numeric) {
  return test.CorrectAnswersAsString(id, u",", true, numeric);
}

// "26" as "[26]", "(1,3)" as "([1],[3])".
String in_brackets(const String& numbers) {
  String result;
  bool open = false;
  for (const char16_t unit : numbers) {
    const bool is_number = unit != u'(' && unit != u',' && unit != u')';
    if (is_number != open) result += open ? u']' : u'[';
    open = is_number;
    result += unit;
  }
  if (open) result += u']';
  return result;
}

// Letters are those of the question's place, so that they may be the same for other answers, or not be there.
void tell_keys(VersionDifference& difference, const clsHEDROTest& first, const clsHEDROTest& version) {
  const Variant id = difference.id;
  difference.first = key_of(first, id, false);
  difference.here = key_of(version, id, false);
  const auto lacks_letters = [&](const String& key, const clsHEDROTest& test) {
    return key.empty() && test.Questions->Item(id)->CorrectAnswers->Count() > 0;
  };
  if (difference.first != difference.here && !lacks_letters(difference.first, first) &&
      !lacks_letters(difference.here, version)) {
    return;
  }
  difference.first = in_brackets(key_of(first, id, true));
  difference.here = in_brackets(key_of(version, id, true));
}

}  // namespace

StringView name_of(VersionDifference::Kind kind) noexcept {
  switch (kind) {
    case Kind::Count: return u"count";
    case Kind::Missing: return u"missing";
    case Kind::New: return u"new";
    case Kind::Answers: return u"answers";
    case Kind::Key: return u"key";
    case Kind::Label: return u"label";
    case Kind::Type: break;
  }
  return u"type";
}

bool refuses_validation(VersionDifference::Kind kind) noexcept {
  return kind == Kind::Count || kind == Kind::Missing || kind == Kind::Answers || kind == Kind::Key;
}

VersionComparison::VersionComparison(Ref<clsHEDROTest> first) : first_(std::move(first)) {
  trap(here(u"VersionComparison"), [&] {
    const Ref<clsHEDROTestSequences> sequences = first_->Sequences;
    for (std::int32_t i = 1; i <= sequences->Count(); ++i) labels_.try_emplace(sequences->Item(i)->Answer, 1);
    if (sequences->Count() == 0) labels_.try_emplace(first_->Version, 1);
  });
}

std::vector<VersionDifference> VersionComparison::next(const clsHEDROTest& version) {
  return trap<std::vector<VersionDifference>>(here(u"next"), [&](auto& result) {
    ++tests_;
    const clsHEDROTestQuestions& base = *first_->Questions;
    const clsHEDROTestQuestions& questions = *version.Questions;
    if (base.Count() != questions.Count()) {
      result.push_back({Kind::Count, 0, {}, decimal(base.Count()), decimal(questions.Count())});
    }
    bool same_questions = result.empty();
    std::vector<VersionDifference> added;
    std::vector<VersionDifference> displaced;
    std::unordered_map<String, std::int32_t, TextHash> numbers;  // in the version's file
    for (std::int32_t i = 1; i <= questions.Count(); ++i) {
      const Ref<clsHEDROTestQuestion> question = questions.Item(i);
      const String& id = question->ID;
      const std::int32_t number = number_of(*question, i);
      numbers.try_emplace(id, number);
      const Ref<clsHEDROTestQuestion> original = base.Item(Variant(id));
      if (!original) {
        added.push_back({Kind::New, number, id, {}, decimal(number)});
      } else if (const Ref<clsHEDROTestQuestion> at_place = base.Item(i); at_place) {
        if (original->QuestionType == at_place->QuestionType) continue;
        displaced.push_back({Kind::Type, number, id, String(question_type_name(at_place->QuestionType)),
                             String(question_type_name(original->QuestionType))});
      }
    }
    for (std::int32_t i = 1; i <= base.Count(); ++i) {
      const Ref<clsHEDROTestQuestion> expected = base.Item(i);
      const String& id = expected->ID;
      const Ref<clsHEDROTestQuestion> found = questions.Item(Variant(id));
      if (!found) {
        const std::int32_t number = number_of(*expected, i);
        result.push_back({Kind::Missing, number, id, decimal(number), {}});
        same_questions = false;
        continue;
      }
      const std::int32_t number = numbers.at(found->ID);
      if (expected->Answers->Count() != found->Answers->Count()) {
        result.push_back(
            {Kind::Answers, number, id, decimal(expected->Answers->Count()), decimal(found->Answers->Count())});
      }
      if (expected->CorrectAnswers->bits() != found->CorrectAnswers->bits()) {
        tell_keys(result.emplace_back(VersionDifference{Kind::Key, number, id, {}, {}}), *first_, version);
      }
    }
    if (!added.empty()) same_questions = false;
    result.insert(result.end(), added.begin(), added.end());
    const auto [used, is_new] = labels_.try_emplace(version.Version, tests_);
    if (!is_new && !version.Version.empty()) {
      result.push_back({Kind::Label, 0, {}, used->first, version.Version, used->second});
    }
    if (same_questions) result.insert(result.end(), displaced.begin(), displaced.end());
  });
}

}  // namespace hedro34
