// The default data document: the questions of a graded form, their objectives and the orders of the test's versions, loaded
// from and saved to a `*.ktd` file. Collections are live: a document keeps the same ones for life, and `Clear` and `Load`
// change their content. All that the interfaces only write can be read too:
//
//   auto document = make<DataDocument>();
//   if (!document->Load(path)) std::cerr << to_line(last_file_error());
//   for (const auto& question : document->questions().all()) use(question->Name());
//
// Adding an element that is no object of this default is failure 13, an empty reference failure 91; an index is a position,
// and for objectives also a key: failure 9 or 5 when it is not there, 13 for an index of another kind. Memory that runs out
// leaves what was there: `Load`, `read`, `to_json`, `prepare` and `Save` answer with a file error, all else throws
// std::bad_alloc, which a trap reports as failure 7.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "hedro34/documents/data_question.h"
#include "hedro34/platform/pending_file.h"

namespace hedro34 {

class HEDRO34_API DataQuestions final : public WENKtdQuestions {
 public:
  DataQuestions() = default;

  std::int32_t Count() override { return static_cast<std::int32_t>(questions_.size()); }
  void Add(const Ref<WENKtdQuestion>& question) override;
  Ref<WENKtdQuestion> Item(const Variant& Index) override;

  Ref<DataQuestion> add();  // appends a new question
  std::vector<Ref<DataQuestion>> take_all() noexcept { return std::exchange(questions_, {}); }  // leaves none
  const std::vector<Ref<DataQuestion>>& all() const noexcept { return questions_; }

 private:
  friend class DataDocument;
  std::vector<Ref<DataQuestion>> questions_;
};

class HEDRO34_API DataObjective final : public WENKtdObjective {
 public:
  DataObjective() = default;
  explicit DataObjective(String name) : name_(std::move(name)) {}

  String Name() override { return name_; }
  void SetName(const String& value) override { name_ = value; }

  const String& name() const noexcept { return name_; }

 private:
  String name_;
};

// Objectives in order, those with a key under that as well. The default objective stands at position 1, under no key: the
// one that `PrepareDefaults` puts there, the first one of a file, or a first one that is added with neither name nor key.
class HEDRO34_API DataObjectives final : public WENKtdObjectives {
 public:
  DataObjectives() = default;

  std::int32_t Count() override { return static_cast<std::int32_t>(objectives_.size()); }

  // A key is text, or missing; an empty one is none. Failure 457 for a key in use.
  void Add(const Ref<WENKtdObjective>& objective, const Variant& key) override;
  Ref<WENKtdObjective> Item(const Variant& Index) override;

  // For the empty string: whether the default objective is there.
  bool Exists(const Variant& key) override;

  const std::vector<Ref<DataObjective>>& all() const noexcept { return objectives_; }

 private:
  friend class DataDocument;
  void append(Ref<DataObjective> objective, const String& key);
  void swap(DataObjectives& other) noexcept;

  std::vector<Ref<DataObjective>> objectives_;
  DataKeys keys_;
  bool has_default_ = false;
};

class HEDRO34_API DataOrder final : public WENKtdOrder {
 public:
  DataOrder() = default;
  explicit DataOrder(std::vector<std::int32_t> entries) : entries_(std::move(entries)) {}

  std::int32_t Count() override { return static_cast<std::int32_t>(entries_.size()); }
  std::int32_t Item(std::int32_t position) override;
  void FromArray(const Array<std::int32_t>& entries) override { entries_ = entries.elements(); }  // replaces all

  const std::vector<std::int32_t>& all() const noexcept { return entries_; }

 private:
  std::vector<std::int32_t> entries_;
};

class HEDRO34_API DataOrders final : public WENKtdOrders {
 public:
  DataOrders() = default;

  std::int32_t Count() override { return static_cast<std::int32_t>(orders_.size()); }
  void Add(const Ref<WENKtdOrder>& order) override;

  // Appends the order 1, 2, 3 up to `questions`. Failure 5 for a number below 0, 6 for one above 10,000,000.
  void AddDefault(std::int32_t questions) override;
  Ref<WENKtdOrder> Item(const Variant& Index) override;

  const std::vector<Ref<DataOrder>>& all() const noexcept { return orders_; }

 private:
  friend class DataVersions;
  std::vector<Ref<DataOrder>> orders_;
};

class HEDRO34_API DataVersions final : public WENKtdVersions {
 public:
  DataVersions() : orders_(make<DataOrders>()), version_answers_(make<DataStrings>()) {}

  Ref<WENKtdOrders> Orders() override { return orders_; }
  Ref<WENKtdStrings> VersionAnswers() override { return version_answers_; }
  std::int32_t SequenceQuestion() { return sequence_question_; }
  void SetSequenceQuestion(std::int32_t value) override { sequence_question_ = value; }

  // 2 when there are identifiers, and as many as orders; else 0.
  std::int32_t VersionMode() override;

  DataOrders& orders() { return *orders_; }
  DataStrings& version_answers() { return *version_answers_; }

  static const JsonTable json;

 private:
  friend class DataDocument;
  struct Json;
  void swap(DataVersions& other) noexcept;

  Ref<DataOrders> orders_;
  Ref<DataStrings> version_answers_;
  std::int32_t sequence_question_ = 0;
};

class HEDRO34_API DataDocument final : public WENKtdDocument {
 public:
  DataDocument();

  Ref<WENKtdQuestions> Questions() override { return questions_; }
  Ref<WENKtdVersions> Versions() override { return versions_; }
  Ref<WENKtdObjectives> Objectives() override { return objectives_; }
  String Description() override { return description_; }
  void SetDescription(const String& value) { description_ = value; }
  String Notes() override { return notes_; }
  void SetNotes(const String& value) { notes_ = value; }
  std::int32_t DocumentKind() { return document_kind_; }
  void SetDocumentKind(std::int32_t value) override { document_kind_ = value; }
  std::int32_t PageCount() { return page_count_; }
  void SetPageCount(std::int32_t value) override { page_count_ = value; }

  // Back to a new document; what was in it and is held by somebody else keeps its content.
  void Clear() override;

  // Puts the default objective, without a name, at position 1 when there are no objectives.
  void PrepareDefaults() override;

  DataQuestions& questions() { return *questions_; }
  DataVersions& versions() { return *versions_; }
  DataObjectives& objectives() { return *objectives_; }

  // Replaces the content by that of a file, or of the bytes of one. False when it cannot be used: `last_file_error()` says why,
  // with `path` for the file, and the document keeps what it had. The first objective becomes the default one, whatever its
  // name; the others stand under their names as keys.
  bool Load(const String& path) override;
  bool read(std::string_view bytes, StringView path = {});

  // The text of a file with this content. Nothing when it could not be read back: a number is not finite, or two objectives
  // bear the same name in any case of its letters; `last_file_error()` says which, with `path` for the file.
  std::optional<std::string> to_json(StringView path = {});

  // Writes that text to a file beside its target, ready to take its place. Nothing: `last_file_error()` says why.
  std::optional<PendingFile> prepare(const String& path);

  // Writes that text, whole or not at all. False: `last_file_error()` says why.
  bool Save(const String& path);

  static const JsonTable json;

 private:
  struct Json;
  bool take(std::string_view bytes, StringView path,
            std::size_t room);  // `room`: bytes behind that may be read as well
  void swap(DataDocument& other) noexcept;

  Ref<DataQuestions> questions_;
  Ref<DataVersions> versions_;
  Ref<DataObjectives> objectives_;
  String description_;
  String notes_;
  std::int32_t document_kind_ = 0;
  std::int32_t page_count_ = 0;
};

// Makes the objects above.
HEDRO34_API DocumentFactory& data_objects() noexcept;

}  // namespace hedro34
