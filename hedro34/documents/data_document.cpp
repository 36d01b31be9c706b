#include "hedro34/documents/data_document.h"

#include <type_traits>
#include <typeinfo>
#include <unordered_set>

#include "hedro34/documents/position.h"
#include "hedro34/json/json_reader.h"
#include "hedro34/json/json_writer.h"
#include "hedro34/platform/files.h"

namespace hedro34 {
namespace {

// Far more than a test can have questions; the order takes 40 MB.
constexpr std::int32_t most_in_default_order = 10'000'000;

// The element as one of this default's own, a class without further ones.
template <class Own, class Element>
Ref<Own> own(const Ref<Element>& element) {
  static_assert(std::is_final_v<Own>);
  Element& object = *element;
  if (typeid(object) != typeid(Own)) fail(FailureNumber::TypeMismatch);
  return Ref<Own>(static_cast<Own*>(&object));
}

class DataObjects final : public DocumentFactory {
 public:
  Ref<WENKtdDocument> document() override { return make<DataDocument>(); }
  Ref<WENKtdQuestion> question(const Ref<WENKtdDocument>&) override { return make<DataQuestion>(); }
  Ref<WENKtdObjective> objective(const Ref<WENKtdDocument>&) override { return make<DataObjective>(); }
  Ref<WENKtdOrder> order(const Ref<WENKtdDocument>&) override { return make<DataOrder>(); }
};

}  // namespace

DocumentFactory& data_objects() noexcept {
  static DataObjects objects;
  return objects;
}

void DataQuestions::Add(const Ref<WENKtdQuestion>& question) { questions_.push_back(own<DataQuestion>(question)); }

Ref<WENKtdQuestion> DataQuestions::Item(const Variant& Index) {
  return questions_[offset_of(Index, questions_.size())];
}

Ref<DataQuestion> DataQuestions::add() { return questions_.emplace_back(make<DataQuestion>()); }

void DataObjectives::Add(const Ref<WENKtdObjective>& objective, const Variant& key) {
  auto added = own<DataObjective>(objective);
  const String* name = key.text();
  if (name == nullptr && !key.is<Missing>()) fail(FailureNumber::TypeMismatch);
  append(std::move(added), name == nullptr ? String() : *name);
}

void DataObjectives::append(Ref<DataObjective> objective, const String& key) {
  reserve_one_more(objectives_);
  if (!key.empty() && !keys_.try_emplace(key, Count() + 1).second) fail(FailureNumber::DuplicateKey);
  if (objectives_.empty()) has_default_ = key.empty() && objective->name().empty();
  objectives_.push_back(std::move(objective));
}

Ref<WENKtdObjective> DataObjectives::Item(const Variant& Index) {
  if (const String* key = Index.text()) {
    const auto found = keys_.find(*key);
    if (found == keys_.end()) fail(FailureNumber::InvalidCall);
    return objectives_[static_cast<std::size_t>(found->second - 1)];
  }
  return objectives_[offset_of(Index, objectives_.size())];
}

bool DataObjectives::Exists(const Variant& key) {
  const String* name = key.text();
  return name != nullptr && (name->empty() ? has_default_ : keys_.contains(*name));
}

void DataObjectives::swap(DataObjectives& other) noexcept {
  objectives_.swap(other.objectives_);
  keys_.swap(other.keys_);
  std::swap(has_default_, other.has_default_);
}

std::int32_t DataOrder::Item(std::int32_t position) { return entries_[offset_of(position, entries_.size())]; }

void DataOrders::Add(const Ref<WENKtdOrder>& order) { orders_.push_back(own<DataOrder>(order)); }

void DataOrders::AddDefault(std::int32_t questions) {
  if (questions < 0) fail(FailureNumber::InvalidCall);
  if (questions > most_in_default_order) fail(FailureNumber::Overflow);
  std::vector<std::int32_t> entries(static_cast<std::size_t>(questions));
  for (std::int32_t i = 0; i < questions; ++i) entries[static_cast<std::size_t>(i)] = i + 1;
  orders_.push_back(make<DataOrder>(std::move(entries)));
}

Ref<WENKtdOrder> DataOrders::Item(const Variant& Index) { return orders_[offset_of(Index, orders_.size())]; }

std::int32_t DataVersions::VersionMode() {
  const std::int32_t answers = version_answers_->Count();
  return answers > 0 && answers == orders_->Count() ? 2 : 0;
}

void DataVersions::swap(DataVersions& other) noexcept {
  orders_->orders_.swap(other.orders_->orders_);
  version_answers_->swap(*other.version_answers_);
  std::swap(sequence_question_, other.sequence_question_);
}

DataDocument::DataDocument()
    : questions_(make<DataQuestions>()), versions_(make<DataVersions>()), objectives_(make<DataObjectives>()) {}

void DataDocument::swap(DataDocument& other) noexcept {
  questions_->questions_.swap(other.questions_->questions_);
  versions_->swap(*other.versions_);
  objectives_->swap(*other.objectives_);
  description_.swap(other.description_);
  notes_.swap(other.notes_);
  std::swap(document_kind_, other.document_kind_);
  std::swap(page_count_, other.page_count_);
}

void DataDocument::Clear() { swap(*make<DataDocument>()); }

void DataDocument::PrepareDefaults() {
  if (objectives_->Count() == 0) objectives_->append(make<DataObjective>(), {});
}

bool DataDocument::take(std::string_view bytes, StringView path, std::size_t room) {
  return unless_out_of_memory(FileError::Kind::NoMemory, path, [&] {
    const auto loaded = read_json<DataDocument>(json, bytes, path, room);
    if (!loaded) return false;
    swap(*loaded);
    return true;
  });
}

bool DataDocument::read(std::string_view bytes, StringView path) { return take(bytes, path, 0); }

bool DataDocument::Load(const String& path) {
  clear_file_error();
  return unless_out_of_memory(FileError::Kind::NoMemory, path, [&] {
    const auto bytes = read_file(path);
    return bytes && take(*bytes, path, bytes->capacity() - bytes->size());
  });
}

std::optional<std::string> DataDocument::to_json(StringView path) {
  return unless_out_of_memory(FileError::Kind::Unwritable, path, [&] { return write_json(json, *this, path); });
}

std::optional<PendingFile> DataDocument::prepare(const String& path) {
  return unless_out_of_memory(FileError::Kind::Unwritable, path, [&] { return prepare_json(json, *this, path); });
}

bool DataDocument::Save(const String& path) {
  return unless_out_of_memory(FileError::Kind::Unwritable, path, [&] { return save_json(json, *this, path); });
}

struct DataVersions::Json {
  static std::vector<Ref<DataOrder>>& orders(Object& object) {
    return static_cast<DataVersions&>(object).orders_->orders_;
  }

  static const JsonRow rows[3];
};

constexpr JsonRow DataVersions::Json::rows[3] = {
    json_row<&DataVersions::sequence_question_>("sequenceQuestion"),
    json_texts<&DataVersions::version_answers_>("versionAnswers"),
    {"orders", JsonNumberLists{[](Object& object, std::vector<std::int32_t> entries) {
                                 orders(object).push_back(make<DataOrder>(std::move(entries)));
                               },
                               [](Object& object) { return orders(object).size(); },
                               [](Object& object, std::size_t i) -> const std::vector<std::int32_t>& {
                                 return orders(object)[i]->all();
                               }}},
};

constinit const JsonTable DataVersions::json{Json::rows};

struct DataDocument::Json {
  static DataObjectives& objectives(Object& object) { return *static_cast<DataDocument&>(object).objectives_; }

  // Names are unique in a file, whatever keys the objectives have here.
  static std::optional<JsonError> check(Object& object) {
    const auto& all = objectives(object).objectives_;
    std::unordered_set<String, IgnoringCase, IgnoringCase> names;
    for (std::size_t i = 0; i < all.size(); ++i) {
      String name = from_utf8(to_utf8(all[i]->name()));  // as it stands in a file
      if (!name.empty() && !names.insert(std::move(name)).second) {
        return JsonError{"/objectives/" + std::to_string(i), "this name stands there twice"};
      }
    }
    return std::nullopt;
  }

  // A name that stands there twice is left to `check`.
  static void store(Object& object, std::vector<String> names) {
    DataObjectives& target = objectives(object);
    target.objectives_.reserve(names.size());
    for (String& name : names) {
      if (target.Count() > 0 && !name.empty()) target.keys_.try_emplace(name, target.Count() + 1);
      target.objectives_.push_back(make<DataObjective>(std::move(name)));
    }
    target.has_default_ = target.Count() > 0;
  }

  static const JsonRow rows[9];
};

constexpr JsonRow DataDocument::Json::rows[9] = {
    {"format", JsonFixed("hedro34-ktd")},
    {"version", JsonFixed(1)},
    json_row<&DataDocument::description_>("description"),
    json_row<&DataDocument::notes_>("notes"),
    json_row<&DataDocument::document_kind_>("documentKind"),
    json_row<&DataDocument::page_count_>("pageCount"),
    {"objectives",
     JsonTexts{&store, [](Object& object) { return objectives(object).all().size(); },
               [](Object& object, std::size_t i) { return StringView(objectives(object).all()[i]->name()); }}},
    json_objects<&DataDocument::questions_>("questions", DataQuestion::json),
    {"versions", JsonObject{[](Object& object) -> Object& { return *static_cast<DataDocument&>(object).versions_; },
                            &DataVersions::json}},
};

constinit const JsonTable DataDocument::json{Json::rows, &Json::check};

}  // namespace hedro34
