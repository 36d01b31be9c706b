// The general entities that a document type declares, and which of them stand in the text of which: how deep they are
// nested, and whether a reference leads to an entity that is not declared. Knows both at every declaration, before a
// parser expands anything, in time and memory that grow with what is declared; nothing here recurses.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace hedro34 {

// What reading a document may cost beyond its bytes: steps that a few bytes can ask for many times over.
class Effort {
 public:
  constexpr Effort(std::uint64_t steps, std::uint64_t steps_a_byte) noexcept
      : allowed_(steps), steps_a_byte_(steps_a_byte) {}

  // What there may be when so many bytes of the document count.
  Effort& at(std::uint64_t bytes) noexcept {
    if (bytes > bytes_) allowed_ += (bytes - bytes_) * steps_a_byte_;
    bytes_ = std::max(bytes, bytes_);
    return *this;
  }
  bool spend(std::uint64_t steps) noexcept {  // False when that is more than there may be
    if (steps > allowed_) return false;
    allowed_ -= steps;
    return true;
  }

 private:
  std::uint64_t allowed_;
  std::uint64_t steps_a_byte_;
  std::uint64_t bytes_ = 0;
};

class EntityGraph {
 public:
  static constexpr std::uint32_t most_nested = 1000;  // entities inside each other, the outermost included

  enum class Problem { None, NestedTooDeep, RefersToItself, TooMuchEffort };

  // Takes the declaration of an entity with its replacement text, or of one that has none. Each name comes once, and
  // nothing comes after a problem.
  Problem declare(std::string_view name, std::string_view replacement, Effort& effort);
  void declare_without_text(std::string_view name);

  // The name of the first entity that is not declared and to which a reference in this piece of markup leads, directly
  // or through others; empty when there is none. Valid as long as this object and the markup.
  std::string_view undeclared_in(std::string_view markup) const;

  // As `undeclared_in`, but for the first entity without text. Goes through each entity once.
  std::string_view without_text_in(std::string_view markup) const;

 private:
  using Id = std::uint32_t;
  struct Entity {
    std::string_view name{};  // as in `ids_`
    std::vector<Id> uses{};
    std::vector<Id> used_by{};
    std::uint32_t gaps = 0;  // those in `uses` that do not lead to declared entities only
    bool whole = false;      // declared, and without gaps
    bool has_text = true;
  };
  // Of an entity, what `raise` goes through many times.
  struct Level {
    std::uint16_t nesting = 0;  // the entities on the longest way down, itself included; 0 while it is not declared
    bool used = false;          // by another
    bool waits = false;         // its nesting has risen, and those that use it have not been looked at yet
  };

  Id id_of(std::string_view name);
  Problem raise(Id entity, Effort& effort);
  void close_gaps(Id entity);

  std::map<std::string, Id, std::less<>> ids_;
  std::vector<Entity> entities_;
  std::vector<Level> levels_;  // of each of them
};

}  // namespace hedro34
