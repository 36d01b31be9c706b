// What merging and the conversion of a document into a test need of a data document, as interfaces. `DataDocument` is a
// default that can be loaded and saved. Positions count from 1. A call that fails throws a `Failure`.
#pragma once

#include <cstdint>

#include "hedro34/base/variant.h"

namespace hedro34 {

class WENKtdObjective;
class WENKtdObjectiveFlag;
class WENKtdObjectiveFlags;
class WENKtdObjectives;
class WENKtdOrder;
class WENKtdOrders;
class WENKtdQuestion;
class WENKtdQuestions;
class WENKtdStrings;
class WENKtdVersions;

class HEDRO34_API WENKtdDocument : public Object {
 public:
  virtual Ref<WENKtdQuestions> Questions() = 0;  // one for each field; the position is the field number
  virtual Ref<WENKtdVersions> Versions() = 0;
  virtual Ref<WENKtdObjectives> Objectives() = 0;  // position 1 holds the default objective
  virtual void Clear() = 0;
  virtual bool Load(const String& path) = 0;  // True when the file could be read; else `last_file_error()` says why
  virtual String Description() = 0;
  virtual String Notes() = 0;
  virtual void SetDocumentKind(std::int32_t value) = 0;
  virtual void SetPageCount(std::int32_t value) = 0;
  virtual void PrepareDefaults() = 0;
};

// The questions of a document.
class HEDRO34_API WENKtdQuestions : public Object {
 public:
  virtual std::int32_t Count() = 0;
  virtual void Add(const Ref<WENKtdQuestion>& question) = 0;
  virtual Ref<WENKtdQuestion> Item(const Variant& Index) = 0;
};

// A question of a document: its field, its key and its texts.
class HEDRO34_API WENKtdQuestion : public Object {
 public:
  virtual Ref<WENKtdStrings> ChoiceLabels() = 0;
  virtual Ref<WENKtdStrings> ChoiceValues() = 0;
  virtual Ref<WENKtdObjectiveFlags> ObjectiveFlags() = 0;  // one flag for each objective of the document
  virtual Ref<WENKtdStrings> AnswerKey() = 0;              // entry 1: the correct answers as labels, "(A,C)"
  virtual Ref<WENKtdStrings> NumericAnswerKey() = 0;       // entry 1: the same as numbers, "(1,3)"
  virtual void SetName(const String& value) = 0;
  virtual String QuestionText() = 0;
  virtual void SetQuestionText(const String& value) = 0;
  virtual bool Graded() = 0;
  virtual void SetGraded(bool value) = 0;
  virtual void SetItemOption(std::int16_t value) = 0;
  virtual void SetValueKind(std::int32_t value) = 0;
  virtual String TextValue() = 0;  // not interpreted, as is the float value
  virtual void SetTextValue(const String& value) = 0;
  virtual double FloatValue() = 0;
  virtual void SetFloatValue(double value) = 0;
  virtual void SetMultiplesAllowed(std::int16_t value) = 0;
  virtual void SetScaleOption(std::int16_t value) = 0;
  virtual bool Subjective() = 0;
  virtual void SetSubjective(bool value) = 0;
  virtual void SetCorrectAnswerCount(std::int32_t value) = 0;
  virtual bool CorrectAnd() = 0;
  virtual void SetCorrectAnd(bool value) = 0;
  virtual double CorrectPoints() = 0;
  virtual void SetCorrectPoints(double value) = 0;
  virtual double IncorrectPoints() = 0;
  virtual void SetIncorrectPoints(double value) = 0;
  virtual double NoResponsePoints() = 0;
  virtual void SetNoResponsePoints(double value) = 0;
  virtual double SubjectivePoints() = 0;
  virtual String Difficulty() = 0;
  virtual void SetDifficulty(const String& value) = 0;
  virtual String Reference() = 0;
  virtual void SetReference(const String& value) = 0;
  virtual String Topic() = 0;
  virtual void SetTopic(const String& value) = 0;
  virtual String Keywords() = 0;
  virtual void SetKeywords(const String& value) = 0;
  virtual String Miscellaneous() = 0;
  virtual void SetMiscellaneous(const String& value) = 0;
  virtual String Notes() = 0;
  virtual void SetNotes(const String& value) = 0;
};

// Texts in order; one that was added with a key has that as well.
class HEDRO34_API WENKtdStrings : public Object {
 public:
  virtual std::int32_t Count() = 0;
  virtual void Add(const String& text, const Variant& key = missing) = 0;
  virtual void AddArray(const Array<String>& texts) = 0;  // an array without bounds adds nothing
  virtual String Item(const Variant& Index) = 0;
  virtual Array<String> AsArray() = 0;
};

// The objectives of a document.
class HEDRO34_API WENKtdObjectives : public Object {
 public:
  virtual std::int32_t Count() = 0;  // the default objective included
  virtual void Add(const Ref<WENKtdObjective>& objective, const Variant& key) = 0;
  virtual Ref<WENKtdObjective> Item(const Variant& Index) = 0;
  virtual bool Exists(const Variant& key) = 0;
};

// An objective of a document.
class HEDRO34_API WENKtdObjective : public Object {
 public:
  virtual String Name() = 0;
  virtual void SetName(const String& value) = 0;
};

// Which objectives of the document a question has, by their positions.
class HEDRO34_API WENKtdObjectiveFlags : public Object {
 public:
  virtual void Add(const Variant& value) = 0;
  virtual Ref<WENKtdObjectiveFlag> Item(std::int32_t position) = 0;
};

// Whether a question has one objective.
class HEDRO34_API WENKtdObjectiveFlag : public Object {
 public:
  virtual Variant Value() = 0;  // a Boolean; a null counts as False
  virtual void SetValue(const Variant& value) = 0;
};

// The versions of the test.
class HEDRO34_API WENKtdVersions : public Object {
 public:
  virtual Ref<WENKtdOrders> Orders() = 0;
  virtual Ref<WENKtdStrings> VersionAnswers() = 0;  // the identifier of each version, at the position of its order
  virtual void SetSequenceQuestion(std::int32_t value) = 0;
  virtual std::int32_t VersionMode() = 0;  // 2: the orders are to be read
};

// The orders of the versions.
class HEDRO34_API WENKtdOrders : public Object {
 public:
  virtual std::int32_t Count() = 0;
  virtual void Add(const Ref<WENKtdOrder>& order) = 0;
  virtual void AddDefault(std::int32_t questions) = 0;  // appends the order of the merged test itself
  virtual Ref<WENKtdOrder> Item(const Variant& Index) = 0;
};

// The order of one version: for each of its fields the question that stands there.
class HEDRO34_API WENKtdOrder : public Object {
 public:
  virtual std::int32_t Count() = 0;
  virtual std::int32_t Item(std::int32_t position) = 0;  // a position in the document's questions
  virtual void FromArray(const Array<std::int32_t>& entries) = 0;
};

// Makes documents, and the objects that are added to them.
class HEDRO34_API DocumentFactory {
 public:
  virtual ~DocumentFactory() = default;
  virtual Ref<WENKtdDocument> document() = 0;
  // A new object that the document `of` can take.
  virtual Ref<WENKtdQuestion> question(const Ref<WENKtdDocument>& of) = 0;
  virtual Ref<WENKtdObjective> objective(const Ref<WENKtdDocument>& of) = 0;
  virtual Ref<WENKtdOrder> order(const Ref<WENKtdDocument>& of) = 0;
};

}  // namespace hedro34
