#include "hedro34/import/not_carried.h"

#include <algorithm>
#include <array>

namespace hedro34 {
namespace {

constexpr StringView element_part = u"element ";
constexpr StringView behind = u" after ";

bool is_picture(StringView base_name) {
  constexpr std::array names = {u"picture", u"pict", u"image", u"img", u"graphic", u"figure"};
  return std::any_of(names.begin(), names.end(), [&](const char16_t* name) { return lower_equals(base_name, name); });
}

bool is_equation(StringView base_name) { return lower_equals(base_name, u"equation"); }

String end_of(StringView name, std::size_t limit) {
  return String(name) + String(behind) + decimal(static_cast<std::int64_t>(limit)) + u" characters";
}

bool is_blank(std::string_view text) { return text.find_first_not_of(" \t\r\n") == std::string_view::npos; }

}  // namespace

void NotCarried::unknown_in_text(std::optional<XmlPlace> element, StringView base_name, bool has_children) {
  if (is_picture(base_name)) return add(u"picture");
  if (!has_children) return;
  if (element) return look_below(*element, base_name);
  this->element(base_name);
}

void NotCarried::unknown_in_question(std::optional<XmlPlace> child, StringView name) {
  const StringView base_name = name.substr(name.find(u':') + 1);
  if (is_picture(base_name)) return add(u"picture");
  if (is_equation(base_name)) return equation();
  if (name == u"question") return;  // a question itself
  if (child && !child->tree.is_text(child->node)) look_below(*child, base_name);
}

void NotCarried::cut_answer(std::int32_t position) {
  add(end_of(u"choice " + decimal(position), clsHEDROTestStrings::added_limit));
}

void NotCarried::cut_objective() { add(end_of(u"objective", clsHEDROTestStrings::added_limit)); }

void NotCarried::cut(StringView name, std::size_t limit) {
  const String part = end_of(name, limit);
  if (parts_.find(part) == parts_.end()) add(part);
}

// The nodes inside an element stand behind it in one row.
void NotCarried::look_below(XmlPlace element, StringView base_name) {
  const XmlTree& tree = element.tree;
  if (!is_blank(tree.text(element.node))) return this->element(base_name);
  for (XmlTree::Id node = element.node + 1; node != tree.end(element.node); ++node) {
    if (is_picture(tree.base_name(node))) return add(u"picture");
    if (is_equation(tree.base_name(node))) return equation();
  }
}

void NotCarried::element(StringView base_name) { add(String(element_part).append(u"\"").append(base_name) + u"\""); }

void NotCarried::add(StringView part) {
  const auto found = parts_.find(part);
  if (found != parts_.end()) {
    ++found->second;
  } else {
    in_order_.push_back(&*parts_.emplace(part, 1).first);
  }
}

std::vector<LeftOut> NotCarried::notes(const clsHEDROTestQuestion& question) const {
  std::vector<LeftOut> result;
  result.reserve(in_order_.size());
  for (const auto* each : in_order_) {
    const auto& [part, count] = *each;
    LeftOut& lost = result.emplace_back(note_of(LeftOut::What::NotCarried, question));
    if (count == 1) {
      lost.part = part;
    } else if (part.starts_with(element_part)) {
      lost.part = decimal(count) + u" elements " + part.substr(element_part.size());
    } else {
      lost.part = decimal(count) + u" " + part;
      lost.part.insert(std::min(lost.part.find(behind), lost.part.size()), u"s");
    }
  }
  return result;
}

}  // namespace hedro34
