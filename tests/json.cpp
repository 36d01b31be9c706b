#include "tests/json.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace hedro34::testing {

using Tree = nlohmann::ordered_json;

// To the library's tree and back.
struct JsonTree {
  static Tree tree_of(const Json& json) {
    return std::visit([](const auto& value) { return made(value); }, json.value_);
  }

  static Json of(const Tree& tree) {
    Json json;
    if (tree.is_object()) {
      auto& members = json.value_.emplace<Json::Members>();
      for (const auto& [name, value] : tree.items()) members.emplace_back(name, of(value));
    } else if (tree.is_array()) {
      auto& list = json.value_.emplace<Json::List>();
      for (const Tree& element : tree) list.push_back(of(element));
    } else if (tree.is_string()) {
      json.value_ = tree.get<std::string>();
    } else if (tree.is_boolean()) {
      json.value_ = tree.get<bool>();
    } else if (tree.is_number_integer()) {
      json.value_ = tree.get<std::int64_t>();
    } else if (tree.is_number()) {
      json.value_ = tree.get<double>();
    }
    return json;
  }

 private:
  static Tree made(std::monostate) { return nullptr; }
  static Tree made(const Json::List& list) {
    Tree tree = Tree::array();
    for (const Json& element : list) tree.push_back(tree_of(element));
    return tree;
  }
  static Tree made(const Json::Members& members) {
    Tree tree = Tree::object();
    for (const auto& [name, value] : members) tree[name] = tree_of(value);
    return tree;
  }
  template <class T>
  static Tree made(const T& value) {
    return value;
  }
};

Json::Json(std::initializer_list<Json> elements) {
  const auto is_member = [](const Json& element) {
    const List* const list = std::get_if<List>(&element.value_);
    return list != nullptr && list->size() == 2 && std::holds_alternative<std::string>(list->front().value_);
  };
  if (elements.size() > 0 && std::all_of(elements.begin(), elements.end(), is_member)) {
    auto& members = value_.emplace<Members>();
    for (const Json& element : elements) members.emplace_back(element.at(0).text(), element.at(1));
  } else {
    value_ = List(elements);
  }
}

Json Json::array(std::initializer_list<Json> elements) {
  Json list;
  list.value_ = List(elements);
  return list;
}

Json Json::object() {
  Json object;
  object.value_ = Members();
  return object;
}

Json Json::parse(std::string_view text) { return JsonTree::of(Tree::parse(text)); }
std::string Json::dump() const { return JsonTree::tree_of(*this).dump(); }

Json Json::diff(const Json& from, const Json& to) {
  return JsonTree::of(Tree::diff(JsonTree::tree_of(from), JsonTree::tree_of(to)));
}

bool operator==(const Json& left, const Json& right) { return JsonTree::tree_of(left) == JsonTree::tree_of(right); }

std::size_t Json::size() const { return std::get<List>(value_).size(); }
const Json* Json::begin() const { return std::get<List>(value_).data(); }
const Json& Json::at(std::size_t index) const { return std::get<List>(value_).at(index); }
void Json::push_back(Json element) { std::get<List>(value_).push_back(std::move(element)); }

const Json::Members& Json::members() const { return std::get<Members>(value_); }

bool Json::contains(std::string_view name) const {
  return std::any_of(members().begin(), members().end(), [&](const auto& member) { return member.first == name; });
}

const Json& Json::operator[](std::string_view name) const {
  for (const auto& [member, value] : members()) {
    if (member == name) return value;
  }
  throw std::out_of_range("no member " + std::string(name));
}

Json& Json::operator[](std::string_view name) {
  auto& members = std::get<Members>(value_);
  for (auto& [member, value] : members) {
    if (member == name) return value;
  }
  return members.emplace_back(name, Json()).second;
}

void Json::update(const Json& members) {
  for (const auto& [name, value] : members.members()) (*this)[name] = value;
}

const std::string& Json::text() const { return std::get<std::string>(value_); }
bool Json::truth() const { return std::get<bool>(value_); }
std::int64_t Json::integer() const { return std::get<std::int64_t>(value_); }

double Json::number() const {
  const auto* const integer = std::get_if<std::int64_t>(&value_);
  return integer != nullptr ? static_cast<double>(*integer) : std::get<double>(value_);
}

}  // namespace hedro34::testing
