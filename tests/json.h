// JSON of the tests: a value that is written in braces, compared and printed. Members of an object keep their order. The
// library behind it is read in json.cpp alone, since its header costs every source seconds.
#pragma once

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace hedro34::testing {

class Json {
 public:
  using List = std::vector<Json>;
  using Members = std::vector<std::pair<std::string, Json>>;

  Json() = default;
  Json(std::same_as<bool> auto value) : value_(value) {}
  Json(double value) : value_(value) {}
  Json(const char* text) : value_(std::string(text)) {}
  Json(std::string text) : value_(std::move(text)) {}
  template <std::integral Number>
  requires(!std::same_as<Number, bool>) Json(Number number) : value_(static_cast<std::int64_t>(number)) {}
  // An object when each element is a list of a name and a value, else a list.
  Json(std::initializer_list<Json> elements);
  template <class Element>
  explicit Json(const std::vector<Element>& elements) : Json(array()) {
    for (const Element& element : elements) push_back(element);
  }
  static Json array(std::initializer_list<Json> elements = {});
  static Json object();

  static Json parse(std::string_view text);
  std::string dump() const;
  // What has to be done to `from` to make it `to`, as a list of operations (JSON Patch).
  static Json diff(const Json& from, const Json& to);
  friend bool operator==(const Json& left, const Json& right);
  friend std::ostream& operator<<(std::ostream& out, const Json& value) { return out << value.dump(); }

  // Of a list; an index beyond its end throws.
  std::size_t size() const;
  const Json* begin() const;
  const Json* end() const { return begin() + size(); }
  const Json& at(std::size_t index) const;
  void push_back(Json element);

  // Of an object; a member that is asked for and not there throws, one that is written to is made.
  const Members& members() const;
  bool contains(std::string_view name) const;
  const Json& operator[](std::string_view name) const;
  Json& operator[](std::string_view name);
  void update(const Json& members);

  // The value as C++ has it; one of another kind throws.
  const std::string& text() const;
  bool truth() const;
  std::int64_t integer() const;
  double number() const;

 private:
  friend struct JsonTree;
  std::variant<std::monostate, bool, std::int64_t, double, std::string, List, Members> value_;
};

}  // namespace hedro34::testing
