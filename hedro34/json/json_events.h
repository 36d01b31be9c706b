// What a table makes of a JSON file as a parser meets it, piece by piece: fills the table's object and says what is wrong with a
// value. Every parser tells it the same, in the order of the file; whether the bytes are JSON is the parser's to say.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "hedro34/json/json_table.h"
#include "hedro34/platform/file_error.h"

namespace hedro34 {

// An integer as it stands in the file.
struct JsonInteger {
  std::int64_t value;
  double as_float;
  bool fits;  // in 64 bits; `value` means nothing otherwise
};

class JsonEvents {
 public:
  JsonEvents(const JsonTable& table, Object& root) : table_(table), root_(root) { frames_.reserve(8); }

  // Each answers False for what does not stand there; `error` is then without its path, and nothing more is to be told.
  bool null() { return wrong_type("null"); }
  bool boolean(bool value);
  bool integer(const JsonInteger& number);
  bool fraction(double value);
  bool infinite(bool is_integer);       // a number that is well-formed and too large
  bool string(std::string_view value);  // UTF-8
  bool start_object();
  bool key(std::string_view name);
  bool end_object();
  bool start_array();
  bool end_array();
  bool other(std::string_view what) { return wrong_type(what); }

  FileError& error() noexcept { return error_; }

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

  template <class Field>
  const Field* member() const noexcept;
  template <class Field>
  const Field* element() const noexcept;
  template <class Width>
  bool keep(const JsonInteger& number, Width& target);
  std::string pointer() const;
  std::string expected() const;
  bool wrong_type(std::string_view found);
  bool wrong_kind(const JsonFixed& fixed);
  bool wrong_value(FileError::Kind kind, std::string pointer, std::string reason);

  const JsonTable& table_;
  Object& root_;
  std::vector<Frame> frames_;
  std::vector<String> texts_;  // the list that is being read, as are the next two
  std::vector<bool> flags_;
  std::vector<std::int32_t> numbers_;
  FileError error_;
};

}  // namespace hedro34
