// The default form template: pages with regions with fields, loaded from and saved to a `*.form.json` file. Objects are live
// and shared by counted reference; each stays usable when what holds it is gone. Beside the interfaces a program can add
// pages, regions and fields, set what the merge only reads, and read what it only sets:
//
//   auto form = make<FormTemplate>();
//   auto region = form->pages().add()->regions().add();
//   region->SetName(u"Q1");
//   region->questions().add()->SetGraded(true);
//   bool saved = form->Save(u"quiz.form.json");
//
// Counts are 16 bits wide: reading one that is above 32,767 is failure 6, and a form of more fields or pages is neither
// loaded nor saved. Memory that runs out is a file error of `Load`, `read`, `to_json`, `prepare` and `Save`; all else throws
// std::bad_alloc then, which a trap reports as failure 7.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hedro34/documents/form_field.h"
#include "hedro34/platform/pending_file.h"

namespace hedro34 {

class FormRegions;
class FormTemplate;

class HEDRO34_API FormRegion final : public TIBRegion {
 public:
  FormRegion();
  ~FormRegion() override;

  Ref<TIBQuestions> Questions() override { return questions_; }
  std::int32_t RegionKind() override { return data_.region_kind; }
  void SetRegionKind(std::int32_t value) override { data_.region_kind = value; }
  std::int32_t ResponseKind() override { return data_.response_kind; }
  void SetResponseKind(std::int32_t value) override { data_.response_kind = value; }
  std::int32_t ValueKind() override { return data_.value_kind; }
  void SetValueKind(std::int32_t value) override { data_.value_kind = value; }
  std::int16_t QuestionCount() override;
  String Name() override { return data_.name; }
  void SetName(const String& value) override { data_.name = value; }
  std::int16_t GroupNumber() override { return data_.group_number; }
  void SetGroupNumber(std::int16_t value);
  bool SubjectiveRegion() { return data_.subjective; }
  void SetSubjectiveRegion(bool value) override { data_.subjective = value; }

  FormQuestions& questions() { return *questions_; }

  static const JsonTable json;

 private:
  friend class FormQuestion;
  friend class FormQuestions;
  friend class FormRegions;
  friend class FormTemplate;
  struct Json;
  struct Data {
    String name;
    std::int32_t region_kind = 1;
    std::int32_t response_kind = 1;
    std::int32_t value_kind = 1;
    std::int16_t group_number = 0;
    bool subjective = false;
  };

  FormTemplate* form() const noexcept;

  Data data_;
  Ref<FormQuestions> questions_;
  FormRegions* regions_ = nullptr;  // empty when that is gone
  // As the template's numbering has them:
  FormRegion* first_ = nullptr;  // the first region of the group; this one unless it is a continuation
  std::int32_t start_ = 0;       // the number of this region's first field
};

class HEDRO34_API FormRegions final : public TIBRegions {
 public:
  FormRegions() = default;
  ~FormRegions() override;

  std::int32_t Count() override { return static_cast<std::int32_t>(regions_.size()); }
  Ref<TIBRegion> Item(const Variant& Index) override;

  // Gives the new region's position, at most 32,767. Failure 13 for a region that is no `FormRegion`, 91 for an empty
  // reference, 5 for one that stands on a page already.
  std::int16_t Add(const Ref<TIBRegion>& region, const Variant& option1 = missing,
                   const Variant& option2 = missing) override;

  Ref<FormRegion> add();  // appends a new region
  const std::vector<Ref<FormRegion>>& all() const noexcept { return regions_; }

 private:
  friend class FormPages;
  friend class FormRegion;
  friend class FormTemplate;

  void append(Ref<FormRegion> region);

  std::vector<Ref<FormRegion>> regions_;
  FormTemplate* form_ = nullptr;  // empty when that is gone or has dropped the page
};

class HEDRO34_API FormPage final : public TIBPage {
 public:
  FormPage() : regions_(make<FormRegions>()) {}

  Ref<TIBRegions> Regions() override { return regions_; }
  FormRegions& regions() { return *regions_; }

  static const JsonTable json;

 private:
  struct Json;
  Ref<FormRegions> regions_;
};

class HEDRO34_API FormPages final : public TIBPages {
 public:
  FormPages() = default;

  std::int32_t Count() override { return static_cast<std::int32_t>(pages_.size()); }
  Ref<TIBPage> Item(const Variant& Index) override;

  Ref<FormPage> add();  // appends a new page
  const std::vector<Ref<FormPage>>& all() const noexcept { return pages_; }

 private:
  friend class FormTemplate;

  std::vector<Ref<FormPage>> pages_;
  FormTemplate* form_ = nullptr;  // empty when that is gone
};

class HEDRO34_API FormTemplate final : public TIBTemplate {
 public:
  FormTemplate();
  ~FormTemplate() override;

  Ref<TIBPages> Pages() override { return pages_; }
  std::int16_t PageCount() override;
  std::int16_t QuestionCount() override;
  std::int16_t GradedQuestionCount() override;

  // Drops all pages; one that somebody else holds keeps its content.
  void Clear() override;

  // The names of the fields `iFirst` to `iLast` with lower bound 1; no bounds when `iLast` is less. An unnamed field bears
  // the name of its region. The other arguments play no part. Failure 9 when the template has no such fields, 6 when it has
  // more fields than a count can say.
  Variant QuestionNames(std::int16_t iFirst, std::int16_t iLast, bool bOption1, const String& sDelimiter,
                        bool bOption2) override;

  Ref<TIBTemplate> Copy(bool bOption) override;

  FormPages& pages() { return *pages_; }

  // Replaces the content by that of a file, or of the bytes of one. False when it cannot be used: `last_file_error()` says why,
  // with `path` for the file, and the template keeps what it had.
  bool Load(const String& path);
  bool read(std::string_view bytes, StringView path = {});

  // The text of a file with this content. Nothing when it could not be read back: a number is not finite, the lists of a
  // field's choices differ in length, or there are too many fields or pages; `last_file_error()` says which, with `path` for
  // the file.
  std::optional<std::string> to_json(StringView path = {});

  // Writes that text to a file beside its target, ready to take its place. Nothing: `last_file_error()` says why.
  std::optional<PendingFile> prepare(const String& path);

  // Writes that text, whole or not at all. False: `last_file_error()` says why.
  bool Save(const String& path);

  static const JsonTable json;

 private:
  friend class FormQuestion;
  friend class FormQuestions;
  friend class FormRegion;
  friend class FormRegions;
  struct Json;
  bool take(std::string_view bytes, StringView path,
            std::size_t room);  // `room`: bytes behind that may be read as well

  void detach_pages() noexcept;

  // The numbering: made when it is asked for, kept current at the end of the form, dropped by changes elsewhere.
  void number();
  void number_next(FormRegion& region);
  void region_added(const FormRegions& page, FormRegion& region);
  void field_added(const FormRegion& region);
  void group_changed() noexcept { numbered_ = false; }
  void graded_changed(const FormRegion& region, bool graded) noexcept;

  Ref<FormPages> pages_;
  bool numbered_ = false;
  std::vector<FormRegion*> walk_;  // the regions that the forward walk visits
  FormRegion* last_ = nullptr;     // the last region, visited or not
  std::int32_t fields_ = 0;
  std::int32_t graded_ = 0;
};

// Makes the objects above.
HEDRO34_API TemplateFactory& form_objects() noexcept;

}  // namespace hedro34
