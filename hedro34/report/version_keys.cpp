#include "hedro34/report/version_keys.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <unordered_map>
#include <unordered_set>

#include "hedro34/base/text_hash.h"

namespace hedro34 {
namespace {

// What the keys need of a question, read once.
struct Source {
  std::vector<String> labels;
  std::vector<bool> doubtful;              // for each label, whether it stands twice or holds a comma
  std::vector<StringView> several_in_one;  // the labels that hold a comma, sorted
  String label_key;
  std::vector<std::int32_t> answers;
  bool graded = false;
  bool subjective = false;
  KeyFault fault = KeyFault::None;  // of the key, wherever the question stands
};

// A key without the brackets around several answers, and without blanks.
StringView inside(StringView key) {
  key = trim(key);
  if (key.size() > 1 && key.front() == u'(' && key.back() == u')') key = trim(key.substr(1, key.size() - 2));
  return key;
}

// The parts of a key: "A" and "C" of "(A,C)", without blanks around them; none of an empty one.
std::vector<StringView> parts_of(StringView key) {
  key = inside(key);
  std::vector<StringView> parts;
  if (key.empty()) return parts;
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
  std::unordered_map<StringView, std::int32_t, TextHash> positions;
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

void find_doubtful(Source& source) {
  source.doubtful.resize(source.labels.size());
  std::unordered_map<StringView, std::size_t, TextHash> first;
  for (std::size_t i = 0; i < source.labels.size(); ++i) {
    const StringView label = trim(source.labels[i]);
    if (label.empty()) continue;
    const auto [place, is_new] = first.emplace(label, i);
    if (!is_new) source.doubtful[i] = source.doubtful[place->second] = true;
    if (label.find(u',') == StringView::npos) continue;
    source.doubtful[i] = true;
    source.several_in_one.push_back(label);
  }
  std::sort(source.several_in_one.begin(), source.several_in_one.end());
}

// Whether who reads the key at that field can take it for other choices.
bool is_ambiguous(const Source& at_field, const std::vector<std::int32_t>& answers, StringView key) {
  const auto is_doubtful = [&](std::int32_t answer) {
    const auto offset = static_cast<std::size_t>(answer - 1);
    return offset < at_field.doubtful.size() && at_field.doubtful[offset];
  };
  if (std::any_of(answers.begin(), answers.end(), is_doubtful)) return true;
  return std::binary_search(at_field.several_in_one.begin(), at_field.several_in_one.end(), inside(key));
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
  if (!numeric && is_ambiguous(source, *numbers, source.label_key)) {
    source.fault = KeyFault::Ambiguous;
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
    find_doubtful(source);
    source.label_key = first_of(*question->AnswerKey());
    read_key(source, first_of(*question->NumericAnswerKey()));
  }
  return sources;
}

// Fills in the key of the question that stands at a field.
void set_key(KeyPlace& place, const Source& source, const Source& at_field) {
  const bool is_own_field = &source == &at_field;
  const std::vector<String>& labels = at_field.labels;
  place.fault = source.fault;
  place.answers = source.answers;
  const bool unlabelled = is_own_field && labels.empty() && !source.label_key.empty();
  if (is_own_field && (unlabelled || source.fault != KeyFault::None || has_labels(labels, source.answers))) {
    place.key = inside(source.label_key).empty() ? key_of(labels, source.answers) : source.label_key;
    if (unlabelled) place.fault = KeyFault::None;  // there is nothing to hold it against
  } else {
    place.key = key_of(labels, source.answers);
    if (place.fault == KeyFault::None && !has_labels(labels, source.answers)) place.fault = KeyFault::NoLabel;
  }
  if (place.fault == KeyFault::None && is_ambiguous(at_field, source.answers, place.key)) {
    place.fault = KeyFault::Ambiguous;
  }
}

std::vector<KeyPlace> own_places(const std::vector<Source>& sources) {
  std::vector<KeyPlace> places;
  places.reserve(sources.size());
  for (const Source& source : sources) {
    KeyPlace& place = places.emplace_back();
    place.field = place.question = static_cast<std::int32_t>(places.size());
    place.graded = source.graded;
    place.subjective = source.subjective;
    if (source.graded) set_key(place, source, source);
  }
  return places;
}

// Fills in the keys of one version after the other.
class Versions {
 public:
  explicit Versions(const std::vector<Source>& sources)
      : sources_(sources), seen_(sources.size()), graded_from_(seen_.size() + 1) {
    for (std::size_t i = sources.size(); i > 0; --i) {
      graded_from_[i - 1] = graded_from_[i] + (sources[i - 1].graded ? 1 : 0);
    }
  }

  VersionKey next(WENKtdOrder& order) {
    ++number_;
    VersionKey version;
    const std::size_t entries = std::min(static_cast<std::size_t>(std::max(order.Count(), 0)), sources_.size());
    version.places.resize(entries);
    version.missing = graded_from_[entries];
    for (std::size_t i = 0; i < entries; ++i) {
      const Source& at_field = sources_[i];
      KeyPlace& place = version.places[i];
      place.field = static_cast<std::int32_t>(i + 1);
      place.graded = at_field.graded;
      const std::int32_t question = order.Item(place.field);
      if (question < 1 || static_cast<std::size_t>(question) > sources_.size()) {
        place.fault = KeyFault::NoQuestion;
        continue;
      }
      place.question = question;
      const Source& source = sources_[static_cast<std::size_t>(question - 1)];
      place.subjective = source.subjective;
      if (at_field.graded && source.graded) set_key(place, source, at_field);
      if (at_field.graded != source.graded) place.fault = KeyFault::Misplaced;
      Seen& seen = seen_[static_cast<std::size_t>(question - 1)];
      if (seen.version == number_) place.fault = version.places[seen.place].fault = KeyFault::Misplaced;
      seen = {number_, i};
    }
    return version;
  }

 private:
  // Where a question stood last.
  struct Seen {
    std::int32_t version = 0;
    std::size_t place = 0;
  };

  const std::vector<Source>& sources_;
  std::vector<Seen> seen_;
  std::vector<std::int32_t> graded_from_;  // for each field, how many from it on are graded
  std::int32_t number_ = 0;
};

String counted(std::int32_t count, StringView one, StringView many) {
  return decimal(count).append(u" ").append(count == 1 ? one : many);
}

std::vector<String> faults_of(WENKtdVersions& held, const std::vector<VersionKey>& versions) {
  std::vector<String> faults;
  const std::int32_t orders = held.Orders()->Count();
  const std::int32_t labels = held.VersionAnswers()->Count();
  if (held.VersionMode() != 2 && (labels > 0 || orders > 1)) {
    faults.push_back(u"The document has " + counted(orders, u"order of a version", u"orders of versions") + u" and " +
                     counted(labels, u"version identifier", u"version identifiers") +
                     u": its versions are not read, and the key is that of the first one.");
  }
  std::unordered_set<StringView, IgnoringCase, IgnoringCase> seen;
  for (const VersionKey& version : versions) {
    if (seen.insert(version.label).second) continue;
    faults.emplace_back(u"Two versions bear the same identifier: nobody can tell which key a sheet of theirs takes.");
    break;
  }
  return faults;
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
    case KeyFault::Ambiguous: return u"the key can be read as other choices: a label stands twice or holds a comma";
  }
  return {};
}

String words_on_missing(std::int32_t graded_fields) {
  return u"the order of the version names no question for " + decimal(graded_fields) +
         (graded_fields == 1 ? u" graded field" : u" graded fields");
}

DocumentKeys document_keys(WENKtdDocument& document) {
  const std::vector<Source> sources = read_questions(document);
  DocumentKeys keys;
  keys.own = own_places(sources);
  const Ref<WENKtdVersions> held = document.Versions();
  const Ref<WENKtdOrders> orders = held->Orders();
  const Ref<WENKtdStrings> labels = held->VersionAnswers();
  const std::int32_t count = held->VersionMode() == 2 ? orders->Count() : 0;
  if (count == 0) keys.versions.emplace_back().places = keys.own;
  Versions versions(sources);
  for (std::int32_t v = 1; v <= count; ++v) {
    keys.versions.push_back(versions.next(*orders->Item(v)));
    if (v <= labels->Count()) keys.versions.back().label = labels->Item(v);
  }
  keys.faults = faults_of(*held, keys.versions);
  return keys;
}

}  // namespace hedro34
