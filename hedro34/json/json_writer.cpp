#include "hedro34/json/json_writer.h"

#include <cmath>

#include "hedro34/json/json_text.h"
#include "hedro34/platform/abandoned_files.h"
#include "hedro34/platform/file_error.h"

namespace hedro34 {
namespace {

using Layout = JsonText::Layout;

// Writes live objects by their tables.
class Writer {
 public:
  explicit Writer(JsonText& json) : json_(json) {}

  // False when the text is taken no further, or when something cannot be written: `error()` says what, with the pointer from
  // this object on.
  bool write(const JsonTable& table, Object& object) {
    if (table.check != nullptr) {
      if (auto error = table.check(object)) {
        error_ = std::move(*error);
        return false;
      }
    }
    json_.begin_object();
    for (const JsonRow& row : table.rows) {
      json_.key(row.name);
      if (!std::visit([&](const auto& field) { return value(field, object); }, row.field)) return inside(row.name);
    }
    json_.end();
    return !json_.stopped();
  }

  JsonError& error() noexcept { return error_; }

 private:
  bool inside(std::string_view part) {
    error_.pointer.insert(0, part);
    error_.pointer.insert(0, 1, '/');
    return false;
  }

  // Plain values on one line.
  bool list(std::size_t count, auto&& element) {
    json_.begin_array(Layout::Spaced);
    for (std::size_t i = 0; i < count; ++i) element(i);
    json_.end();
    return true;
  }

  // One element a line; stops at one that cannot be written.
  bool lines(std::size_t count, auto&& element) {
    json_.begin_array();
    for (std::size_t i = 0; i < count; ++i) {
      if (!element(i)) return inside(std::to_string(i));
    }
    json_.end();
    return true;
  }

  template <class Value>
  bool value(JsonFieldOf<Value> field, Object& object) {
    json_.value(field(object));
    return true;
  }
  bool value(JsonFieldOf<double> field, Object& object) {
    const double held = field(object);
    json_.value(held);
    if (std::isfinite(held)) return true;
    error_ = {"", "the number is not finite"};
    return false;
  }
  bool value(const JsonTexts& field, Object& object) {
    return list(field.count(object), [&](std::size_t i) { json_.value(field.at(object, i)); });
  }
  bool value(const JsonFlags& field, Object& object) {
    const std::vector<bool>* flags = field.all(object);
    return list(flags == nullptr ? 0 : flags->size(), [&](std::size_t i) { json_.value(bool{(*flags)[i]}); });
  }
  bool value(const JsonNumberLists& field, Object& object) {
    return lines(field.count(object), [&](std::size_t i) {
      const auto& numbers = field.at(object, i);
      return list(numbers.size(), [&](std::size_t k) { json_.value(numbers[k]); });
    });
  }
  bool value(const JsonObject& field, Object& object) { return write(*field.table, field.at(object)); }
  bool value(const JsonObjects& field, Object& object) {
    return lines(field.count(object), [&](std::size_t i) { return write(*field.table, field.at(object, i)); });
  }
  bool value(const JsonFixed& fixed, Object&) {
    std::visit([&](const auto& held) { json_.value(held); }, fixed);
    return true;
  }

  JsonText& json_;
  JsonError error_;
};

bool stream_json(const JsonTable& table, Object& root, StringView path, JsonText& json) {
  Writer writer(json);
  if (writer.write(table, root)) return json.finish();
  if (!json.stopped()) {
    set_file_error({.kind = FileError::Kind::Unwritable,
                    .path = String(path),
                    .pointer = std::move(writer.error().pointer),
                    .reason = std::move(writer.error().reason)});
  }
  return false;
}

}  // namespace

std::optional<std::string> write_json(const JsonTable& table, Object& root, StringView path) {
  clear_file_error();
  JsonText json(Layout::Indented);
  return stream_json(table, root, path, json) ? std::optional(std::move(json).str()) : std::nullopt;
}

std::optional<PendingFile> prepare_json(const JsonTable& table, Object& root, StringView path) {
  clear_file_error();
  return PendingFile::write(path, [&](const PendingFile::Writer& target) {
    JsonText json(Layout::Indented, target);
    return stream_json(table, root, path, json);
  });
}

bool save_json(const JsonTable& table, Object& root, StringView path) {
  remove_abandoned_files_once(path);
  auto file = prepare_json(table, root, path);
  return file && file->commit();
}

}  // namespace hedro34
