#include "hedro34/json/json_writer.h"

#include <array>
#include <charconv>
#include <cmath>

#include "hedro34/platform/file_error.h"
#include "hedro34/platform/files.h"

namespace hedro34 {
namespace {

constexpr std::size_t part_size = std::size_t{1} << 16;

// Gathers the text and hands it on in parts.
class Writer {
 public:
  explicit Writer(const PendingFile::Writer& target) : target_(target) { out_.reserve(part_size + part_size / 4); }

  // False when the target takes no more, or when something cannot be written: `error()` says what, with the pointer from this
  // object on.
  bool write(const JsonTable& table, Object& object) {
    if (table.check != nullptr) {
      if (auto error = table.check(object)) {
        error_ = std::move(*error);
        return false;
      }
    }
    out_ += '{';
    ++depth_;
    bool first = true;
    for (const JsonRow& row : table.rows) {
      if (!first) out_ += ',';
      first = false;
      if (!new_line()) return false;
      out_ += '"';
      out_ += row.name;
      out_ += "\": ";
      if (!std::visit([&](const auto& field) { return value(field, object); }, row.field)) {
        return inside(row.name);
      }
    }
    --depth_;
    if (!new_line()) return false;
    out_ += '}';
    return true;
  }

  // The line feed at the end, and the last part.
  bool finish() {
    out_ += '\n';
    return hand_on();
  }

  bool stopped() const noexcept { return stopped_; }
  JsonError& error() noexcept { return error_; }

 private:
  bool hand_on() {
    stopped_ = stopped_ || !target_(out_);
    out_.clear();
    return !stopped_;
  }

  bool new_line() {
    if (out_.size() >= part_size && !hand_on()) return false;
    out_ += '\n';
    out_.append(2 * depth_, ' ');
    return true;
  }

  bool inside(std::string_view part) {
    error_.pointer.insert(0, part);
    error_.pointer.insert(0, 1, '/');
    return false;
  }

  template <class Number>
  void number(Number value) {
    std::array<char, 32> digits{};
    out_.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr);
  }

  void text(StringView text) {
    constexpr std::string_view hex = "0123456789abcdef";
    out_ += '"';
    std::size_t start = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
      const char16_t unit = text[i];
      if (unit >= 0x20 && unit != u'"' && unit != u'\\') continue;
      append_utf8(out_, text.substr(start, i - start));
      start = i + 1;
      out_ += '\\';
      switch (unit) {
        case u'"':
        case u'\\': out_ += static_cast<char>(unit); break;
        case u'\b': out_ += 'b'; break;
        case u'\f': out_ += 'f'; break;
        case u'\n': out_ += 'n'; break;
        case u'\r': out_ += 'r'; break;
        case u'\t': out_ += 't'; break;
        default:
          out_ += "u00";
          out_ += hex[unit >> 4];
          out_ += hex[unit & 15];
      }
    }
    append_utf8(out_, text.substr(start));
    out_ += '"';
  }

  // Plain values on one line.
  void list(std::size_t count, auto&& element) {
    out_ += '[';
    for (std::size_t i = 0; i < count; ++i) {
      if (i > 0) out_ += ", ";
      element(i);
    }
    out_ += ']';
  }

  // One element a line; stops at one that cannot be written.
  bool lines(std::size_t count, auto&& element) {
    out_ += '[';
    ++depth_;
    for (std::size_t i = 0; i < count; ++i) {
      if (i > 0) out_ += ',';
      if (!new_line()) return false;
      if (!element(i)) return inside(std::to_string(i));
    }
    --depth_;
    if (count > 0 && !new_line()) return false;
    out_ += ']';
    return true;
  }

  bool value(JsonFieldOf<String> field, Object& object) {
    text(field(object));
    return true;
  }
  bool value(JsonFieldOf<bool> field, Object& object) {
    out_ += field(object) ? "true" : "false";
    return true;
  }
  bool value(JsonFieldOf<std::int16_t> field, Object& object) {
    number(field(object));
    return true;
  }
  bool value(JsonFieldOf<std::int32_t> field, Object& object) {
    number(field(object));
    return true;
  }
  bool value(JsonFieldOf<double> field, Object& object) {
    const double held = field(object);
    if (!std::isfinite(held)) {
      error_ = {"", "the number is not finite"};
      return false;
    }
    number(held);
    return true;
  }
  bool value(const JsonTexts& field, Object& object) {
    list(field.count(object), [&](std::size_t i) { text(field.at(object, i)); });
    return true;
  }
  bool value(const JsonFlags& field, Object& object) {
    const std::vector<bool>* flags = field.all(object);
    list(flags == nullptr ? 0 : flags->size(), [&](std::size_t i) { out_ += (*flags)[i] ? "true" : "false"; });
    return true;
  }
  bool value(const JsonNumberLists& field, Object& object) {
    return lines(field.count(object), [&](std::size_t i) {
      const auto& numbers = field.at(object, i);
      list(numbers.size(), [&](std::size_t k) { number(numbers[k]); });
      return true;
    });
  }
  bool value(const JsonObject& field, Object& object) { return write(*field.table, field.at(object)); }
  bool value(const JsonObjects& field, Object& object) {
    return lines(field.count(object), [&](std::size_t i) { return write(*field.table, field.at(object, i)); });
  }
  bool value(const JsonFixed& fixed, Object&) {
    if (const auto* fixed_text = std::get_if<std::string_view>(&fixed)) {
      out_ += '"';
      out_ += *fixed_text;
      out_ += '"';
    } else {
      number(std::get<std::int32_t>(fixed));
    }
    return true;
  }

  const PendingFile::Writer& target_;
  std::string out_;  // what was not handed on yet
  bool stopped_ = false;
  std::size_t depth_ = 0;
  JsonError error_;
};

bool stream_json(const JsonTable& table, Object& root, StringView path, const PendingFile::Writer& target) {
  Writer writer(target);
  if (writer.write(table, root)) return writer.finish();
  if (!writer.stopped()) {
    FileError error;
    error.kind = FileError::Kind::Unwritable;
    error.path = path;
    error.pointer = std::move(writer.error().pointer);
    error.reason = std::move(writer.error().reason);
    set_file_error(std::move(error));
  }
  return false;
}

}  // namespace

std::optional<std::string> write_json(const JsonTable& table, Object& root, StringView path) {
  clear_file_error();
  std::string text;
  const bool written = stream_json(table, root, path, [&](std::string_view part) {
    text += part;
    return true;
  });
  return written ? std::optional(std::move(text)) : std::nullopt;
}

std::optional<PendingFile> prepare_json(const JsonTable& table, Object& root, StringView path) {
  clear_file_error();
  return PendingFile::write(path,
                            [&](const PendingFile::Writer& target) { return stream_json(table, root, path, target); });
}

bool save_json(const JsonTable& table, Object& root, StringView path) {
  auto file = prepare_json(table, root, path);
  return file && file->commit();
}

}  // namespace hedro34
