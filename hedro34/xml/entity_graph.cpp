#include "hedro34/xml/entity_graph.h"

#include <algorithm>
#include <array>
#include <deque>
#include <utility>

namespace hedro34 {
namespace {

// Where comments, CDATA sections and processing instructions begin and end: no reference counts in them.
constexpr std::array<std::pair<std::string_view, std::string_view>, 3> sections = {
    {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}}};

constexpr std::array<std::string_view, 5> predefined = {"amp", "apos", "gt", "lt", "quot"};

// Gives the name in each reference to an entity that has to be declared, up to where the markup is malformed, until
// `visit` answers False.
template <class Visit>
void each_reference(std::string_view markup, Visit visit) {
  std::size_t at = 0;
  while ((at = markup.find_first_of("&<", at)) != std::string_view::npos) {
    if (markup[at] == '<') {
      const auto section = std::find_if(sections.begin(), sections.end(),
                                        [&](const auto& each) { return markup.substr(at).starts_with(each.first); });
      if (section == sections.end()) {
        ++at;
        continue;
      }
      at = markup.find(section->second, at + section->first.size());
      if (at == std::string_view::npos) return;
      at += section->second.size();
      continue;
    }
    const std::size_t start = at + 1;
    at = markup.find_first_of(";&< \t\n\r", start);
    if (at == std::string_view::npos || markup[at] != ';' || at == start) return;
    const std::string_view name = markup.substr(start, at - start);
    if (name[0] == '#' || std::find(predefined.begin(), predefined.end(), name) != predefined.end()) continue;
    if (!visit(name)) return;
  }
}

}  // namespace

EntityGraph::Problem EntityGraph::declare(std::string_view name, std::string_view replacement, Effort& effort) {
  const Id id = id_of(name);
  std::uint16_t below = 0;
  each_reference(replacement, [&](std::string_view used_name) {
    const Id used = id_of(used_name);
    Entity& entity = entities_[used];
    if (!entity.used_by.empty() && entity.used_by.back() == id) return true;  // once more
    entity.used_by.push_back(id);
    entities_[id].uses.push_back(used);
    levels_[used].used = true;
    if (!entity.whole) ++entities_[id].gaps;
    below = std::max(below, levels_[used].nesting);
    return true;
  });
  levels_[id].nesting = static_cast<std::uint16_t>(below + 1);
  if (entities_[id].gaps == 0) close_gaps(id);
  return raise(id, effort);
}

void EntityGraph::declare_without_text(std::string_view name) {
  const Id id = id_of(name);
  levels_[id].nesting = 1;
  entities_[id].has_text = false;
  close_gaps(id);
}

std::string_view EntityGraph::undeclared_in(std::string_view markup) const {
  std::string_view found;
  each_reference(markup, [&](std::string_view name) {
    const auto entry = ids_.find(name);
    if (entry == ids_.end()) {
      found = name;
      return false;
    }
    Id id = entry->second;
    if (entities_[id].whole) return true;
    while (levels_[id].nesting != 0) {
      const std::vector<Id>& uses = entities_[id].uses;
      id = *std::find_if(uses.begin(), uses.end(), [&](Id each) { return !entities_[each].whole; });
    }
    found = entities_[id].name;
    return false;
  });
  return found;
}

std::string_view EntityGraph::without_text_in(std::string_view markup) const {
  std::string_view found;
  std::vector<bool> seen(entities_.size());
  std::vector<Id> open;
  each_reference(markup, [&](std::string_view name) {
    const auto entry = ids_.find(name);
    if (entry != ids_.end()) open.push_back(entry->second);
    while (!open.empty()) {
      const Id id = open.back();
      open.pop_back();
      if (seen[id]) continue;
      seen[id] = true;
      const Entity& entity = entities_[id];
      if (!entity.has_text) {
        found = entity.name;
        return false;
      }
      open.insert(open.end(), entity.uses.rbegin(), entity.uses.rend());  // the first one on top
    }
    return true;
  });
  return found;
}

EntityGraph::Id EntityGraph::id_of(std::string_view name) {
  const auto found = ids_.find(name);
  if (found != ids_.end()) return found->second;
  const auto entry = ids_.emplace(name, static_cast<Id>(entities_.size())).first;
  entities_.push_back({.name = entry->first});
  levels_.push_back({});
  return entry->second;
}

// Carries the nesting of an entity up to those that use it. Each can rise `most_nested` times at the most, and a way
// round comes back to the entity itself.
EntityGraph::Problem EntityGraph::raise(Id entity, Effort& effort) {
  if (levels_[entity].nesting > most_nested) return Problem::NestedTooDeep;
  std::deque<Id> raised = {entity};
  while (!raised.empty()) {
    const Id below = raised.front();
    raised.pop_front();
    levels_[below].waits = false;
    const auto least = static_cast<std::uint16_t>(levels_[below].nesting + 1);
    const std::vector<Id>& used_by = entities_[below].used_by;
    if (!effort.spend(used_by.size())) return Problem::TooMuchEffort;
    for (const Id id : used_by) {
      Level& above = levels_[id];
      if (above.nesting >= least) continue;
      if (id == entity) return Problem::RefersToItself;
      if (least > most_nested) return Problem::NestedTooDeep;
      above.nesting = least;
      if (above.used && !std::exchange(above.waits, true)) raised.push_back(id);
    }
  }
  return Problem::None;
}

void EntityGraph::close_gaps(Id entity) {
  entities_[entity].whole = true;
  std::vector<Id> closed = {entity};
  while (!closed.empty()) {
    const Id below = closed.back();
    closed.pop_back();
    for (const Id id : entities_[below].used_by) {
      Entity& above = entities_[id];
      if (--above.gaps > 0) continue;
      above.whole = true;
      closed.push_back(id);
    }
  }
}

}  // namespace hedro34
