// What a merge needs of a form template, as interfaces. A template belongs to the host; `FormTemplate` is a default that can
// be loaded and saved. Positions count from 1, an index is a variant that holds a 16-bit or 32-bit integer, and what an
// `Item` returns is the live element. A call that fails throws a `Failure`.
#pragma once

#include <cstdint>

#include "hedro34/base/variant.h"

namespace hedro34 {

class TIBChoiceList;
class TIBPage;
class TIBPages;
class TIBQuestion;
class TIBQuestions;
class TIBRegion;
class TIBRegions;

class HEDRO34_API TIBTemplate : public Object {
 public:
  virtual Ref<TIBPages> Pages() = 0;
  virtual std::int16_t PageCount() = 0;            // the number of the last page
  virtual std::int16_t QuestionCount() = 0;        // fields that the forward walk visits
  virtual std::int16_t GradedQuestionCount() = 0;  // those among them with `Graded`; follows changes at once
  virtual void Clear() = 0;

  // The names of the fields `iFirst` to `iLast` in field order, as a variant that holds an array of strings. Its lower bound
  // is free. A merge fails at the first field that it visits whose name is missing, and not before.
  virtual Variant QuestionNames(std::int16_t iFirst, std::int16_t iLast, bool bOption1, const String& sDelimiter,
                                bool bOption2) = 0;
  virtual Ref<TIBTemplate> Copy(bool bOption) = 0;  // an independent copy
};

// The pages of a template.
class HEDRO34_API TIBPages : public Object {
 public:
  virtual std::int32_t Count() = 0;
  virtual Ref<TIBPage> Item(const Variant& Index) = 0;
};

// A page of a template.
class HEDRO34_API TIBPage : public Object {
 public:
  virtual Ref<TIBRegions> Regions() = 0;
};

// The regions of a page.
class HEDRO34_API TIBRegions : public Object {
 public:
  virtual std::int32_t Count() = 0;
  // Appends the region and keeps it; the optional arguments are left out by the merge.
  virtual std::int16_t Add(const Ref<TIBRegion>& region, const Variant& option1 = missing,
                           const Variant& option2 = missing) = 0;

  virtual Ref<TIBRegion> Item(const Variant& Index) = 0;
};

// A region of a page, with one field or several.
class HEDRO34_API TIBRegion : public Object {
 public:
  virtual Ref<TIBQuestions> Questions() = 0;
  virtual std::int32_t RegionKind() = 0;
  virtual void SetRegionKind(std::int32_t value) = 0;
  virtual std::int32_t ResponseKind() = 0;
  virtual void SetResponseKind(std::int32_t value) = 0;
  virtual std::int32_t ValueKind() = 0;
  virtual void SetValueKind(std::int32_t value) = 0;
  virtual std::int16_t QuestionCount() = 0;  // fields that the forward walk visits in this region
  virtual String Name() = 0;
  virtual void SetName(const String& value) = 0;
  virtual std::int16_t GroupNumber() = 0;  // 0: stands alone
  virtual void SetSubjectiveRegion(bool value) = 0;
};

// The fields of a region.
class HEDRO34_API TIBQuestions : public Object {
 public:
  virtual std::int32_t Count() = 0;
  virtual Ref<TIBQuestion> Item(const Variant& Index) = 0;
  virtual void Add() = 0;  // appends one new field
};

// A field: what is marked on the sheet for one question.
class HEDRO34_API TIBQuestion : public Object {
 public:
  virtual String QuestionText() = 0;
  virtual void SetQuestionText(const String& value) = 0;
  virtual std::int16_t ItemOption() = 0;
  virtual bool Graded() = 0;
  virtual void SetGraded(bool value) = 0;
  virtual double CorrectPoints() = 0;
  virtual void SetCorrectPoints(double value) = 0;
  virtual double IncorrectPoints() = 0;
  virtual double NoResponsePoints() = 0;
  virtual Ref<TIBChoiceList> ChoiceLabels() = 0;
  virtual void SetChoiceLabels(const Ref<TIBChoiceList>& value) = 0;
  virtual Ref<TIBChoiceList> ChoiceValues() = 0;
  virtual void SetChoiceValues(const Ref<TIBChoiceList>& value) = 0;
  virtual std::int16_t ScaleOption() = 0;
  virtual void SetSubjectiveQuestion(bool value) = 0;
  virtual std::int16_t MultiplesAllowed() = 0;
  virtual void SetMultiplesAllowed(std::int16_t value) = 0;
  virtual std::int32_t FieldNumber(bool bOption) = 0;  // places the field in the template
};

// The texts of a field's choices: what they bear, or what they stand for.
class HEDRO34_API TIBChoiceList : public Object {
 public:
  virtual std::int32_t Count() = 0;
  virtual void SetItem(const Variant& Index, const String& text) = 0;  // replaces the text of an entry that is there
  virtual Array<String> AsArray(std::int32_t lower_bound) = 0;
};

// Makes the regions that a merge adds to a template.
class HEDRO34_API TemplateFactory {
 public:
  virtual ~TemplateFactory() = default;
  // A new region without fields that the template `of` can take.
  virtual Ref<TIBRegion> region(const Ref<TIBTemplate>& of) = 0;
};

}  // namespace hedro34
