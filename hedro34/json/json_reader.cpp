#include "hedro34/json/json_reader.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <nlohmann/json.hpp>

#include "hedro34/platform/file_error.h"

namespace hedro34 {
namespace {

// A name as a part of a JSON pointer, on one line.
std::string pointer_part(std::string_view name) {
  constexpr std::string_view hex = "0123456789abcdef";
  std::string part = "/";
  for (const char c : name) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '~') {
      part += "~0";
    } else if (c == '/') {
      part += "~1";
    } else if (byte < 0x20) {
      part += "\\u00";
      part += hex[byte >> 4];
      part += hex[byte & 15];
    } else {
      part += c;
    }
  }
  return part;
}

// What a member takes, or an element of its list.
struct Expected {
  bool in_list;

  const char* operator()(JsonFieldOf<String>) const { return "a string"; }
  const char* operator()(JsonFieldOf<bool>) const { return "true or false"; }
  const char* operator()(JsonFieldOf<std::int16_t>) const { return "an integer"; }
  const char* operator()(JsonFieldOf<std::int32_t>) const { return "an integer"; }
  const char* operator()(JsonFieldOf<double>) const { return "a number"; }
  const char* operator()(const JsonTexts&) const { return in_list ? "a string" : "a list"; }
  const char* operator()(const JsonFlags&) const { return in_list ? "true or false" : "a list"; }
  const char* operator()(const JsonNumberLists&) const { return "a list"; }
  const char* operator()(const JsonObject&) const { return "an object"; }
  const char* operator()(const JsonObjects&) const { return in_list ? "an object" : "a list"; }
  const char* operator()(const JsonFixed& fixed) const { return fixed.index() == 0 ? "a string" : "an integer"; }
};

// An integer as it stands in the file.
struct Integer {
  std::int64_t value;
  double as_float;
  bool fits;  // in 64 bits; `value` means nothing otherwise
};

class Reader final : public nlohmann::json_sax<nlohmann::json> {
 public:
  Reader(const JsonTable& table, Object& root, std::string_view bytes) : table_(table), root_(root), bytes_(bytes) {}

  bool read() {
    frames_.reserve(8);
    if (!nlohmann::json::sax_parse(bytes_.data(), bytes_.data() + bytes_.size(), this)) return false;
    // The parser takes a NUL for the end of the input.
    const std::size_t end = bytes_.find('\0');
    return end == std::string_view::npos || not_json(end, "unexpected NUL");
  }

  FileError& error() noexcept { return error_; }

  bool null() override { return wrong_type("null"); }

  bool boolean(bool value) override {
    if (const auto* field = member<JsonFieldOf<bool>>()) {
      (*field)(*frames_.back().object) = value;
      return true;
    }
    if (!element<JsonFlags>()) return wrong_type(value ? "true" : "false");
    flags_.push_back(value);
    ++frames_.back().index;
    return true;
  }

  bool number_integer(std::int64_t value) override {  // only for a number with a sign, "-0" among them
    return integer({value, value == 0 ? -0.0 : static_cast<double>(value), true});
  }
  bool number_unsigned(std::uint64_t value) override {
    return integer({static_cast<std::int64_t>(value), static_cast<double>(value),
                    value <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())});
  }
  bool number_float(double value, const std::string& token) override {
    if (is_integer(token)) return integer({0, value, false});
    const auto* field = member<JsonFieldOf<double>>();
    if (field == nullptr) return wrong_type("a fraction");
    (*field)(*frames_.back().object) = value;
    return true;
  }

  bool string(std::string& value) override {
    if (const auto* field = member<JsonFieldOf<String>>()) {
      String& text = (*field)(*frames_.back().object);
      text.clear();
      append_utf16(text, value);
      return true;
    }
    if (const auto* fixed = member<JsonFixed>()) {
      const auto* expected = std::get_if<std::string_view>(fixed);
      if (expected == nullptr) return wrong_type("a string");
      return value == *expected || wrong_kind(*fixed);
    }
    if (!element<JsonTexts>()) return wrong_type("a string");
    append_utf16(texts_.emplace_back(), value);
    ++frames_.back().index;
    return true;
  }

  bool binary(nlohmann::json::binary_t&) override { return wrong_type("binary data"); }

  bool start_object(std::size_t) override {
    if (frames_.empty()) {
      frames_.push_back({&table_, &root_});
    } else if (const auto* child = member<JsonObject>()) {
      frames_.push_back({child->table, &child->at(*frames_.back().object)});
    } else if (const auto* children = element<JsonObjects>()) {
      frames_.push_back({children->table, &children->add(*frames_.back().object)});
    } else {
      return wrong_type("an object");
    }
    return true;
  }

  bool key(std::string& name) override {
    Frame& top = frames_.back();
    const auto rows = top.table->rows;
    std::size_t at = top.next;
    if (at >= rows.size() || rows[at].name != name) {
      at = 0;
      while (at < rows.size() && rows[at].name != name) ++at;
      if (at == rows.size()) {
        top.row = nullptr;
        return wrong_value(FileError::Kind::Malformed, pointer() + pointer_part(name), "unknown member");
      }
    }
    top.row = &rows[at];
    top.next = at + 1;
    const std::uint64_t bit = std::uint64_t{1} << at;
    if ((top.seen & bit) != 0) return wrong_value(FileError::Kind::Malformed, pointer(), "this member stands twice");
    top.seen |= bit;
    return true;
  }

  bool end_object() override {
    Frame& top = frames_.back();
    top.row = nullptr;
    const auto rows = top.table->rows;
    for (std::size_t i = 0; i < rows.size() && std::holds_alternative<JsonFixed>(rows[i].field); ++i) {
      if ((top.seen >> i & 1) == 0) {
        return wrong_value(FileError::Kind::WrongKind, pointer() + pointer_part(rows[i].name),
                           "this member is missing");
      }
    }
    if (top.table->check != nullptr) {
      if (auto error = top.table->check(*top.object)) {
        return wrong_value(FileError::Kind::Malformed, pointer() + error->pointer, std::move(error->reason));
      }
    }
    frames_.pop_back();
    if (!frames_.empty() && frames_.back().list == List::Elements) ++frames_.back().index;
    return true;
  }

  bool start_array(std::size_t) override {
    if (element<JsonNumberLists>()) {
      frames_.back().list = List::Numbers;
      frames_.back().inner_index = 0;
      return true;
    }
    if (!member<JsonTexts>() && !member<JsonFlags>() && !member<JsonNumberLists>() && !member<JsonObjects>()) {
      return wrong_type("a list");
    }
    frames_.back().list = List::Elements;
    frames_.back().index = 0;
    return true;
  }

  bool end_array() override {
    Frame& top = frames_.back();
    const JsonField& field = top.row->field;
    if (top.list == List::Numbers) {
      std::get<JsonNumberLists>(field).add(*top.object, numbers_);
      numbers_.clear();
      top.list = List::Elements;
      ++top.index;
      return true;
    }
    if (const auto* texts = std::get_if<JsonTexts>(&field)) {
      texts->store(*top.object, {std::move_iterator(texts_.begin()), std::move_iterator(texts_.end())});
      texts_.clear();
    } else if (const auto* flags = std::get_if<JsonFlags>(&field)) {
      flags->store(*top.object, flags_);
      flags_.clear();
    }
    top.list = List::None;
    return true;
  }

  bool parse_error(std::size_t position, const std::string& token, const nlohmann::detail::exception& error) override {
    if (error.id == 406) {  // well-formed, but infinite as a float
      if (member<JsonFieldOf<double>>()) {
        return wrong_value(FileError::Kind::Malformed, pointer(), "the number is too large for a 64-bit float");
      }
      return is_integer(token) ? integer({0, 0, false}) : wrong_type("a fraction");
    }
    std::string reason = error.what();
    const bool in_token = reason.find("; last read: '") != std::string::npos;
    reason.erase(std::min(reason.find("; last read: '"), reason.size()));  // may be long, or no UTF-8
    if (const auto dash = reason.find(" - "); dash != std::string::npos) reason.erase(0, dash + 3);
    const std::size_t last = position == 0 ? 0 : position - 1;
    return not_json(in_token ? last : last - token_tail(last, token), reason);
  }

 private:
  // Where the values of a member stand: itself, in its list, in a list of that.
  enum class List { None, Elements, Numbers };

  struct Frame {  // an object that was begun
    const JsonTable* table;
    Object* object;
    const JsonRow* row = nullptr;  // the member that was begun
    std::uint64_t seen = 0;        // bit i: row i was there
    std::size_t next = 0;          // the row that is expected
    List list = List::None;
    std::size_t index = 0;  // in the list
    std::size_t inner_index = 0;
  };

  static bool is_integer(std::string_view token) { return token.find_first_of(".eE") == std::string_view::npos; }

  // The field of a value that is a member itself, when it is of that kind.
  template <class Field>
  const Field* member() const noexcept {
    if (frames_.empty() || frames_.back().list != List::None) return nullptr;
    return std::get_if<Field>(&frames_.back().row->field);
  }

  // The field of a value that is an element of a member's list.
  template <class Field>
  const Field* element() const noexcept {
    if (frames_.empty() || frames_.back().list != List::Elements) return nullptr;
    return std::get_if<Field>(&frames_.back().row->field);
  }

  template <class Width>
  bool keep(const Integer& number, Width& target) {
    if (!number.fits || number.value < std::numeric_limits<Width>::min() ||
        number.value > std::numeric_limits<Width>::max()) {
      return wrong_value(FileError::Kind::Malformed, pointer(),
                         "the integer does not fit in " + std::to_string(8 * sizeof(Width)) + " bits");
    }
    target = static_cast<Width>(number.value);
    return true;
  }

  bool integer(const Integer& number) {
    if (const auto* narrow = member<JsonFieldOf<std::int16_t>>())
      return keep(number, (*narrow)(*frames_.back().object));
    if (const auto* wide = member<JsonFieldOf<std::int32_t>>()) return keep(number, (*wide)(*frames_.back().object));
    if (const auto* real = member<JsonFieldOf<double>>()) {
      (*real)(*frames_.back().object) = number.as_float;
      return true;
    }
    if (const auto* fixed = member<JsonFixed>()) {
      const auto* expected = std::get_if<std::int32_t>(fixed);
      if (expected == nullptr) return wrong_type("a number");
      return (number.fits && number.value == *expected) || wrong_kind(*fixed);
    }
    if (!frames_.empty() && frames_.back().list == List::Numbers) {
      std::int32_t value = 0;
      if (!keep(number, value)) return false;
      numbers_.push_back(value);
      ++frames_.back().inner_index;
      return true;
    }
    return wrong_type("a number");
  }

  // The pointer of the value that is being read.
  std::string pointer() const {
    std::string text;
    for (const Frame& frame : frames_) {
      if (frame.row == nullptr) break;
      text += pointer_part(frame.row->name);
      if (frame.list != List::None) text += '/' + std::to_string(frame.index);
      if (frame.list == List::Numbers) text += '/' + std::to_string(frame.inner_index);
    }
    return text;
  }

  std::string expected() const {
    if (frames_.empty()) return "an object";
    const Frame& top = frames_.back();
    if (top.list == List::Numbers) return "an integer";
    return std::visit(Expected{top.list == List::Elements}, top.row->field);
  }

  bool wrong_type(std::string_view found) {
    return wrong_value(FileError::Kind::Malformed, pointer(), "must be " + expected() + ", not " + std::string(found));
  }

  bool wrong_kind(const JsonFixed& fixed) {
    const auto* text = std::get_if<std::string_view>(&fixed);
    return wrong_value(FileError::Kind::WrongKind, pointer(),
                       "must be " + (text != nullptr ? '"' + std::string(*text) + '"'
                                                     : std::to_string(std::get<std::int32_t>(fixed))));
  }

  bool wrong_value(FileError::Kind kind, std::string pointer, std::string reason) {
    error_.kind = kind;
    error_.pointer = std::move(pointer);
    error_.reason = std::move(reason);
    return false;
  }

  // The file is no JSON, for the byte at `offset`. Columns count characters.
  bool not_json(std::size_t offset, std::string_view reason) {
    const std::string_view before = bytes_.substr(0, std::min(offset, bytes_.size()));
    const std::size_t start = before.rfind('\n') + 1;  // 0 on the first line
    const bool marked = start == 0 && before.starts_with("\xEF\xBB\xBF");
    error_.kind = FileError::Kind::Malformed;
    error_.line = std::count(before.begin(), before.end(), '\n') + 1;
    error_.column = std::count_if(before.begin() + static_cast<std::ptrdiff_t>(start), before.end(),
                                  [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }) +
                    (marked ? 0 : 1);
    error_.reason = "not JSON: " + std::string(reason);
    return false;
  }

  // The length of the token that ends at `last`, less one: a whole token that should not stand there is pointed at where
  // it begins. Of strings and numbers the parser knows the text.
  std::size_t token_tail(std::size_t last, std::string_view token) const {
    if (last >= bytes_.size()) return 0;
    const std::string_view read = bytes_.substr(0, last + 1);
    if (read.ends_with("true") || read.ends_with("null")) return 3;
    if (read.ends_with("false")) return 4;
    const char end = read.back();
    const bool known = end == '"' || (end >= '0' && end <= '9');
    return known && !token.empty() && token.size() <= read.size() ? token.size() - 1 : 0;
  }

  const JsonTable& table_;
  Object& root_;
  std::string_view bytes_;
  std::vector<Frame> frames_;
  std::vector<String> texts_;  // the list that is being read, as are the next two
  std::vector<bool> flags_;
  std::vector<std::int32_t> numbers_;
  FileError error_;
};

}  // namespace

bool read_json(const JsonTable& table, Object& root, std::string_view bytes, StringView path) {
  clear_file_error();
  Reader reader(table, root, bytes);
  if (reader.read()) return true;
  reader.error().path = path;
  set_file_error(std::move(reader.error()));
  return false;
}

}  // namespace hedro34
