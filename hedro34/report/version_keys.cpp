#include "hedro34/report/version_keys.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <unordered_map>

namespace hedro34 {
namespace {

// What the keys need of a question, read once.
struct Source {
  std::vector<String> labels;
  String label_key;
  std::vector<std::int32_t> answers;
  bool graded = false;
  bool subjective = false;
  KeyFault fault = KeyFault::None;  // of the key, wherever the question stands
};

// The parts of a key: "A" and "C" of "(A,C)", without blanks around them; none of an empty one.
std::vector<StringView> parts_of(StringView key) {
  key = trim(key);
  if (key.size() > 1 && key.front() == u'(' && key.back() == u')') key = key.substr(1, key.size() - 2);
  std::vector<StringView> parts;
  if (trim(key).empty()) return parts;
  for (;;) {
    const std::size_t end = key.find(u',');
    parts.push_back(trim(key.substr(0, end)));
    if (end == StringView::npos) return parts;
    key.remove_prefix(end + 1);
  }
}

// The number, from 1; nothing for any other text.
std::optional<std::int32_t> number_of(StringView digits) {
  std::int64_t number = 0;
  for (const char16_t digit : digits) {
    if (digit < u'0' || digit > u'9') return {};
    number = number * 10 + (digit - u'0');
    if (number > std::numeric_limits<std::int32_t>::max()) return {};
  }
  if (number < 1) return {};
  return static_cast<std::int32_t>(number);
}

std::optional<std::vector<std::int32_t>> numbers_of(StringView numeric_key) {
  std::vector<std::int32_t> numbers;
  for (const StringView part : parts_of(numeric_key)) {
    const auto number = number_of(part);
    if (!number) return {};
    numbers.push_back(*number);
  }
  return numbers;
}

// The numbers of the labels, the first one where several are alike; nothing when a label is not there.
std::optional<std::vector<std::int32_t>> numbers_of(StringView label_key, const std::vector<String>& labels) {
  std::unordered_map<StringView, std::int32_t> positions;
  for (std::size_t i = 0; i < labels.size(); ++i) positions.emplace(labels[i], static_cast<std::int32_t>(i + 1));
  std::vector<std::int32_t> numbers;
  for (const StringView part : parts_of(label_key)) {
    const auto found = positions.find(part);
    if (found == positions.end()) return {};
    numbers.push_back(found->second);
  }
  return numbers;
}

bool has_label(const std::vector<String>& labels, std::int32_t number) {
  return static_cast<std::size_t>(number) <= labels.size() && !labels[static_cast<std::size_t>(number - 1)].empty();
}

bool has_labels(const std::vector<String>& labels, const std::vector<std::int32_t>& numbers) {
  return std::all_of(numbers.begin(), numbers.end(), [&](std::int32_t number) { return has_label(labels, number); });
}

String key_of(const std::vector<String>& labels, const std::vector<std::int32_t>& numbers) {
  String key;
  for (const std::int32_t number : numbers) {
    if (!key.empty()) key += u',';
    if (has_label(labels, number)) {
      key += labels[static_cast<std::size_t>(number - 1)];
    } else {
      key.append(u"[").append(decimal(number)).append(u"]");
    }
  }
  return numbers.size() > 1 ? u"(" + key + u")" : key;
}

bool same_choices(StringView one, StringView other) {
  auto left = parts_of(one), right = parts_of(other);
  std::sort(left.begin(), left.end());
  std::sort(right.begin(), right.end());
  return left == right;
}

String first_of(WENKtdStrings& texts) { return texts.Count() > 0 ? texts.Item(1) : String(); }

// Takes the numbers from the numeric key or, where that has none, from the label key.
void read_key(Source& source, StringView numeric_key) {
  auto numbers = numbers_of(numeric_key);
  const bool numeric = numbers && !numbers->empty();
  if (!numeric && !parts_of(source.label_key).empty()) numbers = numbers_of(source.label_key, source.labels);
  if (!numbers) {
    source.fault = KeyFault::Unreadable;
    return;
  }
  source.answers = std::move(*numbers);
  if (numeric && !source.label_key.empty() && !source.labels.empty() && has_labels(source.labels, source.answers) &&
      !same_choices(source.label_key, key_of(source.labels, source.answers))) {
    source.fault = KeyFault::Disagrees;
  }
}

std::vector<Source> read_questions(WENKtdDocument& document) {
  const Ref<WENKtdQuestions> questions = document.Questions();
  const std::int32_t count = questions->Count();
  std::vector<Source> sources;
  for (std::int32_t n = 1; n <= count; ++n) {
    const Ref<WENKtdQuestion> question = questions->Item(n);
    Source& source = sources.emplace_back();
    source.subjective = question->Subjective();
    source.graded = question->Graded();
    source.labels = question->ChoiceLabels()->AsArray().elements();
    if (!source.graded) continue;
    source.label_key = first_of(*question->AnswerKey());
    read_key(source, first_of(*question->NumericAnswerKey()));
  }
  return sources;
}

// Fills in the key of the question that stands at a field with these labels.
void set_key(KeyPlace& place, const Source& source, const std::vector<String>& labels, bool is_own_field) {
  place.fault = source.fault;
  place.answers = source.answers;
  const bool unlabelled = is_own_field && labels.empty() && !source.label_key.empty();
  if (is_own_field && (unlabelled || source.fault != KeyFault::None || has_labels(labels, source.answers))) {
    place.key = source.label_key.empty() ? key_of(labels, source.answers) : source.label_key;
    if (unlabelled) place.fault = KeyFault::None;  // there is nothing to hold it against
    return;
  }
  place.key = key_of(labels, source.answers);
  if (place.fault == KeyFault::None && !has_labels(labels, source.answers)) place.fault = KeyFault::NoLabel;
}

VersionKey key_of_version(const std::vector<Source>& sources, WENKtdOrder* order) {
  VersionKey version;
  version.places.resize(sources.size());
  std::vector<std::int32_t> seen(sources.size());  // the field where each question stood first
  const std::int32_t entries = order == nullptr ? 0 : order->Count();
  for (std::size_t i = 0; i < sources.size(); ++i) {
    const Source& at_field = sources[i];
    KeyPlace& place = version.places[i];
    place.field = static_cast<std::int32_t>(i + 1);
    place.graded = at_field.graded;
    std::int64_t question = place.field;
    if (order != nullptr && place.field <= entries) {
      question = order->Item(place.field);
    } else if (order != nullptr && at_field.graded) {
      question = 0;
    }
    if (question < 1 || question > static_cast<std::int64_t>(sources.size())) {
      place.fault = KeyFault::NoQuestion;
      continue;
    }
    place.question = static_cast<std::int32_t>(question);
    const auto offset = static_cast<std::size_t>(question - 1);
    const Source& source = sources[offset];
    place.subjective = source.subjective;
    if (at_field.graded && source.graded) set_key(place, source, at_field.labels, offset == i);
    if (at_field.graded != source.graded) place.fault = KeyFault::Misplaced;
    if (seen[offset] != 0) {
      place.fault = version.places[static_cast<std::size_t>(seen[offset] - 1)].fault = KeyFault::Misplaced;
    }
    seen[offset] = place.field;
  }
  return version;
}

}  // namespace

StringView words_of(KeyFault fault) noexcept {
  switch (fault) {
    case KeyFault::None: return {};
    case KeyFault::NoLabel: return u"the field has no label for this answer";
    case KeyFault::NoQuestion: return u"the order of the version names no question here";
    case KeyFault::Misplaced: return u"the order of the version has this question at a wrong place";
    case KeyFault::Unreadable: return u"the choices that the key means cannot be told";
    case KeyFault::Disagrees: return u"the labels and the numbers of the key name different choices";
  }
  return {};
}

std::vector<VersionKey> version_keys(WENKtdDocument& document) {
  const std::vector<Source> sources = read_questions(document);
  std::vector<VersionKey> versions;
  const Ref<WENKtdVersions> held = document.Versions();
  const Ref<WENKtdOrders> orders = held->Orders();
  const Ref<WENKtdStrings> labels = held->VersionAnswers();
  const std::int32_t count = held->VersionMode() == 2 ? orders->Count() : 0;
  if (count == 0) versions.push_back(key_of_version(sources, nullptr));
  for (std::int32_t v = 1; v <= count; ++v) {
    const Ref<WENKtdOrder> order = orders->Item(v);
    versions.push_back(key_of_version(sources, order.get()));
    if (v <= labels->Count()) versions.back().label = labels->Item(v);
  }
  return versions;
}

}  // namespace hedro34
