#include "hedro34/json/json_reader.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>

#include "hedro34/json/json_events.h"

namespace hedro34 {
namespace {

bool is_integer(std::string_view token) { return token.find_first_of(".eE") == std::string_view::npos; }

// Tells the events what the parser tells it, and says itself what is no JSON.
class Reader final : public nlohmann::json_sax<nlohmann::json> {
 public:
  Reader(const JsonTable& table, Object& root, std::string_view bytes) : events_(table, root), bytes_(bytes) {}

  bool read() {
    if (!nlohmann::json::sax_parse(bytes_.data(), bytes_.data() + bytes_.size(), this)) return false;
    // The parser takes a NUL for the end of the input.
    const std::size_t end = bytes_.find('\0');
    return end == std::string_view::npos || not_json(end, "unexpected NUL");
  }

  FileError& error() noexcept { return events_.error(); }

  bool null() override { return events_.null(); }
  bool boolean(bool value) override { return events_.boolean(value); }
  bool number_integer(std::int64_t value) override {  // only for a number with a sign, "-0" among them
    return events_.integer({value, value == 0 ? -0.0 : static_cast<double>(value), true});
  }
  bool number_unsigned(std::uint64_t value) override {
    return events_.integer({static_cast<std::int64_t>(value), static_cast<double>(value),
                            value <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())});
  }
  bool number_float(double value, const std::string& token) override {
    return is_integer(token) ? events_.integer({0, value, false}) : events_.fraction(value);
  }
  bool string(std::string& value) override { return events_.string(value); }
  bool binary(nlohmann::json::binary_t&) override { return events_.other("binary data"); }
  bool start_object(std::size_t) override { return events_.start_object(); }
  bool key(std::string& name) override { return events_.key(name); }
  bool end_object() override { return events_.end_object(); }
  bool start_array(std::size_t) override { return events_.start_array(); }
  bool end_array() override { return events_.end_array(); }

  bool parse_error(std::size_t position, const std::string& token, const nlohmann::detail::exception& error) override {
    if (error.id == 406) return events_.infinite(is_integer(token));
    std::string reason = error.what();
    const bool in_token = reason.find("; last read: '") != std::string::npos;
    reason.erase(std::min(reason.find("; last read: '"), reason.size()));  // may be long, or no UTF-8
    if (const auto dash = reason.find(" - "); dash != std::string::npos) reason.erase(0, dash + 3);
    const std::size_t last = position == 0 ? 0 : position - 1;
    return not_json(in_token ? last : last - token_tail(last, token), reason);
  }

 private:
  // The file is no JSON, for the byte at `offset`. Columns count characters.
  bool not_json(std::size_t offset, std::string_view reason) {
    const std::string_view before = bytes_.substr(0, std::min(offset, bytes_.size()));
    const std::size_t start = before.rfind('\n') + 1;  // 0 on the first line
    const bool marked = start == 0 && before.starts_with("\xEF\xBB\xBF");
    error().kind = FileError::Kind::Malformed;
    error().line = std::count(before.begin(), before.end(), '\n') + 1;
    error().column = std::count_if(before.begin() + static_cast<std::ptrdiff_t>(start), before.end(),
                                   [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }) +
                     (marked ? 0 : 1);
    error().reason = "not JSON: " + std::string(reason);
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

  JsonEvents events_;
  std::string_view bytes_;
};

}  // namespace

bool read_exactly(const JsonTable& table, Object& root, std::string_view bytes, StringView path) {
  Reader reader(table, root, bytes);
  if (reader.read()) return true;
  reader.error().path = path;
  set_file_error(std::move(reader.error()));
  return false;
}

}  // namespace hedro34
