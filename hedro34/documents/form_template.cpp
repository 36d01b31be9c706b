#include "hedro34/documents/form_template.h"

#include <algorithm>
#include <limits>

#include "hedro34/documents/position.h"
#include "hedro34/json/json_reader.h"
#include "hedro34/json/json_writer.h"
#include "hedro34/platform/files.h"

namespace hedro34 {
namespace {

constexpr std::int32_t most = std::numeric_limits<std::int16_t>::max();

std::int16_t as_count(std::int32_t count) {
  if (count > most) fail(FailureNumber::Overflow);
  return static_cast<std::int16_t>(count);
}

class FormObjects final : public TemplateFactory {
 public:
  Ref<TIBRegion> region(const Ref<TIBTemplate>&) override { return make<FormRegion>(); }
};

}  // namespace

TemplateFactory& form_objects() noexcept {
  static FormObjects objects;
  return objects;
}

FormRegion::FormRegion() : questions_(make<FormQuestions>()) { questions_->region_ = this; }

FormRegion::~FormRegion() { questions_->region_ = nullptr; }

FormTemplate* FormRegion::form() const noexcept { return regions_ == nullptr ? nullptr : regions_->form_; }

std::int16_t FormRegion::QuestionCount() { return as_count(questions_->Count()); }

void FormRegion::SetGroupNumber(std::int16_t value) {
  if (value == data_.group_number) return;
  data_.group_number = value;
  if (FormTemplate* held_by = form()) held_by->group_changed();
}

FormRegions::~FormRegions() {
  for (const auto& region : regions_) region->regions_ = nullptr;
}

Ref<TIBRegion> FormRegions::Item(const Variant& Index) { return regions_[offset_of(Index, regions_.size())]; }

std::int16_t FormRegions::Add(const Ref<TIBRegion>& region, const Variant&, const Variant&) {
  auto* own = dynamic_cast<FormRegion*>(&*region);
  if (own == nullptr) fail(FailureNumber::TypeMismatch);
  if (own->regions_ != nullptr) fail(FailureNumber::InvalidCall);
  append(Ref<FormRegion>(own));
  return static_cast<std::int16_t>(std::min(Count(), most));
}

Ref<FormRegion> FormRegions::add() {
  auto region = make<FormRegion>();
  append(region);
  return region;
}

void FormRegions::append(Ref<FormRegion> region) {
  FormRegion& added = *region;
  regions_.push_back(std::move(region));
  added.regions_ = this;
  if (form_ != nullptr) form_->region_added(*this, added);
}

Ref<TIBPage> FormPages::Item(const Variant& Index) { return pages_[offset_of(Index, pages_.size())]; }

Ref<FormPage> FormPages::add() {
  auto page = make<FormPage>();
  pages_.push_back(page);
  page->regions().form_ = form_;
  return page;
}

FormTemplate::FormTemplate() : pages_(make<FormPages>()) { pages_->form_ = this; }

FormTemplate::~FormTemplate() {
  pages_->form_ = nullptr;
  detach_pages();
}

void FormTemplate::detach_pages() noexcept {
  for (const auto& page : pages_->pages_) page->regions().form_ = nullptr;
  numbered_ = false;
}

void FormTemplate::Clear() {
  detach_pages();
  pages_->pages_.clear();
}

std::int16_t FormTemplate::PageCount() { return as_count(pages_->Count()); }

std::int16_t FormTemplate::QuestionCount() {
  number();
  return as_count(fields_);
}

std::int16_t FormTemplate::GradedQuestionCount() {
  number();
  return as_count(graded_);
}

Variant FormTemplate::QuestionNames(std::int16_t iFirst, std::int16_t iLast, bool, const String&, bool) {
  const std::int16_t count = QuestionCount();
  if (iFirst < 1 || iLast > count) fail(FailureNumber::SubscriptOutOfRange);
  std::vector<String> names;
  if (iFirst <= iLast) names.reserve(static_cast<std::size_t>(iLast - iFirst) + 1);
  const auto starts_behind = [](std::int32_t wanted, const FormRegion* region) { return wanted < region->start_; };
  auto region = std::upper_bound(walk_.begin(), walk_.end(), std::int32_t{iFirst}, starts_behind);
  std::int32_t number = iFirst;
  if (number <= iLast) --region;
  for (; number <= iLast; ++region) {
    const auto& fields = (*region)->questions_->all();
    for (auto i = static_cast<std::size_t>(number - (*region)->start_); i < fields.size() && number <= iLast; ++i) {
      const String& name = fields[i]->data_.name;
      names.push_back(name.empty() ? (*region)->data_.name : name);
      ++number;
    }
  }
  return Array<String>::of(std::move(names), 1);
}

Ref<TIBTemplate> FormTemplate::Copy(bool) {
  auto copy = make<FormTemplate>();
  copy->pages_->pages_.reserve(pages_->pages_.size());
  for (const auto& page : pages_->pages_) {
    FormRegions& regions = copy->pages_->add()->regions();
    regions.regions_.reserve(page->regions().regions_.size());
    for (const auto& region : page->regions().regions_) {
      auto region_copy = regions.add();
      region_copy->data_ = region->data_;
      region_copy->questions_->fields_.reserve(region->questions_->all().size());
      for (const auto& field : region->questions_->all()) field->copy_to(*region_copy->questions_->add());
      copy->number_next(*region_copy);
    }
  }
  copy->numbered_ = true;
  return copy;
}

void FormTemplate::number() {
  if (numbered_) return;
  walk_.clear();
  last_ = nullptr;
  fields_ = 0;
  graded_ = 0;
  for (const auto& page : pages_->pages_) {
    for (const auto& region : page->regions().regions_) number_next(*region);
  }
  numbered_ = true;
}

// Numbers the region that follows `last_` in the walk.
void FormTemplate::number_next(FormRegion& region) {
  const bool continues =
      last_ != nullptr && region.data_.group_number != 0 && region.data_.group_number == last_->data_.group_number;
  if (continues) {
    region.first_ = last_->first_;
  } else {
    const auto& fields = region.questions_->all();
    walk_.push_back(&region);
    region.first_ = &region;
    region.start_ = fields_ + 1;
    fields_ += region.questions_->Count();
    for (const auto& field : fields) graded_ += field->data_.graded ? 1 : 0;
  }
  last_ = &region;
}

void FormTemplate::region_added(const FormRegions& page, FormRegion& region) {
  if (!numbered_) return;
  numbered_ = false;
  if (&page != &pages_->pages_.back()->regions()) return;
  number_next(region);
  numbered_ = true;
}

void FormTemplate::field_added(const FormRegion& region) {
  if (!numbered_ || region.first_ != &region) return;  // a continuation is not visited
  if (&region == last_) {
    ++fields_;
  } else {
    numbered_ = false;
  }
}

void FormTemplate::graded_changed(const FormRegion& region, bool graded) noexcept {
  if (numbered_ && region.first_ == &region) graded_ += graded ? 1 : -1;
}

bool FormTemplate::take(std::string_view bytes, StringView path, std::size_t room) {
  return unless_out_of_memory(FileError::Kind::NoMemory, path, [&] {
    const auto loaded = read_json<FormTemplate>(json, bytes, path, room);
    if (!loaded) return false;
    Clear();
    pages_->pages_.swap(loaded->pages_->pages_);
    for (const auto& page : pages_->pages_) page->regions().form_ = this;
    return true;
  });
}

bool FormTemplate::read(std::string_view bytes, StringView path) { return take(bytes, path, 0); }

bool FormTemplate::Load(const String& path) {
  clear_file_error();
  return unless_out_of_memory(FileError::Kind::NoMemory, path, [&] {
    const auto bytes = read_file(path);
    return bytes && take(*bytes, path, bytes->capacity() - bytes->size());
  });
}

std::optional<std::string> FormTemplate::to_json(StringView path) {
  return unless_out_of_memory(FileError::Kind::Unwritable, path, [&] { return write_json(json, *this, path); });
}

std::optional<PendingFile> FormTemplate::prepare(const String& path) {
  return unless_out_of_memory(FileError::Kind::Unwritable, path, [&] { return prepare_json(json, *this, path); });
}

bool FormTemplate::Save(const String& path) {
  return unless_out_of_memory(FileError::Kind::Unwritable, path, [&] { return save_json(json, *this, path); });
}

struct FormRegion::Json {
  template <auto member>
  static constexpr JsonRow row(std::string_view name) {
    return json_row<&FormRegion::data_, member>(name);
  }

  static const JsonRow rows[7];
};

constexpr JsonRow FormRegion::Json::rows[7] = {
    row<&Data::name>("name"),
    row<&Data::region_kind>("regionKind"),
    row<&Data::response_kind>("responseKind"),
    row<&Data::value_kind>("valueKind"),
    row<&Data::group_number>("groupNumber"),
    row<&Data::subjective>("subjectiveRegion"),
    json_objects<&FormRegion::questions_>("questions", FormQuestion::json),
};

constinit const JsonTable FormRegion::json{Json::rows};

struct FormPage::Json {
  static constexpr JsonRow rows[] = {json_objects<&FormPage::regions_>("regions", FormRegion::json)};
};

constinit const JsonTable FormPage::json{Json::rows};

struct FormTemplate::Json {
  // Counts all fields, those of continuations too.
  static std::optional<JsonError> check(Object& object) {
    const auto& all = static_cast<FormTemplate&>(object).pages().all();
    const std::string reason = "a form has no more than " + std::to_string(most);
    if (all.size() > static_cast<std::size_t>(most))
      return JsonError{"/pages/" + std::to_string(most), reason + " pages"};
    auto fields_left = static_cast<std::size_t>(most);
    for (std::size_t p = 0; p < all.size(); ++p) {
      const auto& regions = all[p]->regions().all();
      for (std::size_t r = 0; r < regions.size(); ++r) {
        const std::size_t fields = regions[r]->questions().all().size();
        if (fields > fields_left) {
          return JsonError{"/pages/" + std::to_string(p) + "/regions/" + std::to_string(r) + "/questions/" +
                               std::to_string(fields_left),
                           reason + " fields"};
        }
        fields_left -= fields;
      }
    }
    return std::nullopt;
  }

  static constexpr JsonRow rows[] = {
      {"format", JsonFixed("hedro34-form")},
      {"version", JsonFixed(1)},
      json_objects<&FormTemplate::pages_>("pages", FormPage::json),
  };
};

constinit const JsonTable FormTemplate::json{Json::rows, &Json::check};

}  // namespace hedro34
