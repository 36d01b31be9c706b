#include "hedro34/json/json_events.h"

#include <iterator>
#include <limits>

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

}  // namespace

// The field of a value that is a member itself, when it is of that kind.
template <class Field>
const Field* JsonEvents::member() const noexcept {
  if (frames_.empty() || frames_.back().list != List::None) return nullptr;
  return std::get_if<Field>(&frames_.back().row->field);
}

// The field of a value that is an element of a member's list.
template <class Field>
const Field* JsonEvents::element() const noexcept {
  if (frames_.empty() || frames_.back().list != List::Elements) return nullptr;
  return std::get_if<Field>(&frames_.back().row->field);
}

template <class Width>
bool JsonEvents::keep(const JsonInteger& number, Width& target) {
  if (!number.fits || number.value < std::numeric_limits<Width>::min() ||
      number.value > std::numeric_limits<Width>::max()) {
    return wrong_value(FileError::Kind::Malformed, pointer(),
                       "the integer does not fit in " + std::to_string(8 * sizeof(Width)) + " bits");
  }
  target = static_cast<Width>(number.value);
  return true;
}

bool JsonEvents::boolean(bool value) {
  if (const auto* field = member<JsonFieldOf<bool>>()) {
    (*field)(*frames_.back().object) = value;
    return true;
  }
  if (!element<JsonFlags>()) return wrong_type(value ? "true" : "false");
  flags_.push_back(value);
  ++frames_.back().index;
  return true;
}

bool JsonEvents::integer(const JsonInteger& number) {
  if (const auto* narrow = member<JsonFieldOf<std::int16_t>>()) return keep(number, (*narrow)(*frames_.back().object));
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

bool JsonEvents::fraction(double value) {
  const auto* field = member<JsonFieldOf<double>>();
  if (field == nullptr) return wrong_type("a fraction");
  (*field)(*frames_.back().object) = value;
  return true;
}

bool JsonEvents::infinite(bool is_integer) {
  if (member<JsonFieldOf<double>>()) {
    return wrong_value(FileError::Kind::Malformed, pointer(), "the number is too large for a 64-bit float");
  }
  return is_integer ? integer({0, 0, false}) : wrong_type("a fraction");
}

bool JsonEvents::string(std::string_view value) {
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

bool JsonEvents::start_object() {
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

bool JsonEvents::key(std::string_view name) {
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

bool JsonEvents::end_object() {
  Frame& top = frames_.back();
  top.row = nullptr;
  const auto rows = top.table->rows;
  for (std::size_t i = 0; i < rows.size() && std::holds_alternative<JsonFixed>(rows[i].field); ++i) {
    if ((top.seen >> i & 1) == 0) {
      return wrong_value(FileError::Kind::WrongKind, pointer() + pointer_part(rows[i].name), "this member is missing");
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

bool JsonEvents::start_array() {
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

bool JsonEvents::end_array() {
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

// The pointer of the value that is being read.
std::string JsonEvents::pointer() const {
  std::string text;
  for (const Frame& frame : frames_) {
    if (frame.row == nullptr) break;
    text += pointer_part(frame.row->name);
    if (frame.list != List::None) text += '/' + std::to_string(frame.index);
    if (frame.list == List::Numbers) text += '/' + std::to_string(frame.inner_index);
  }
  return text;
}

std::string JsonEvents::expected() const {
  if (frames_.empty()) return "an object";
  const Frame& top = frames_.back();
  if (top.list == List::Numbers) return "an integer";
  return std::visit(Expected{top.list == List::Elements}, top.row->field);
}

bool JsonEvents::wrong_type(std::string_view found) {
  return wrong_value(FileError::Kind::Malformed, pointer(), "must be " + expected() + ", not " + std::string(found));
}

bool JsonEvents::wrong_kind(const JsonFixed& fixed) {
  const auto* text = std::get_if<std::string_view>(&fixed);
  return wrong_value(
      FileError::Kind::WrongKind, pointer(),
      "must be " + (text != nullptr ? '"' + std::string(*text) + '"' : std::to_string(std::get<std::int32_t>(fixed))));
}

bool JsonEvents::wrong_value(FileError::Kind kind, std::string pointer, std::string reason) {
  error_.kind = kind;
  error_.pointer = std::move(pointer);
  error_.reason = std::move(reason);
  return false;
}

}  // namespace hedro34
