// What one question of an ExamView file has that no text of a test can carry, gathered while the question is read: equations,
// pictures, elements that nobody knows, and the ends of long choices, objectives, IDs and texts of `info`. Children of `info`
// that nobody knows are no content and not noted. Only names and the numbers of children are asked of the
// nodes of a host's own document, which the import asks anyway; below a node of ours, which has a place, it looks for itself.
#pragma once

#include <map>
#include <optional>
#include <vector>

#include "hedro34/model/clsHEDROTestQuestion.h"
#include "hedro34/model/left_out.h"
#include "hedro34/xml/xml_nodes.h"

namespace hedro34 {

class NotCarried {
 public:
  void equation() { add(u"equation"); }

  // An element of rich text under a name, without its prefix, that rich text does not know; the outermost one.
  void unknown_in_text(std::optional<XmlPlace> element, StringView base_name, bool has_children);

  // A child of `question` under a name, with its prefix, that the import does not know.
  void unknown_in_question(std::optional<XmlPlace> child, StringView name);

  // The answer at this position was longer than answers are.
  void cut_answer(std::int32_t position);

  // An objective was; each counts.
  void cut_objective();

  // The text of this name was longer than so many units; that counts once.
  void cut(StringView name, std::size_t limit);

  // A note for each part, in the order in which each came first: "picture", "2 elements \"table\"".
  std::vector<LeftOut> notes(const clsHEDROTestQuestion& question) const;

 private:
  using Parts = std::map<String, std::int32_t, std::less<>>;  // how often each was found

  void look_below(XmlPlace element, StringView base_name);
  void element(StringView base_name);
  void add(StringView part);

  Parts parts_;
  std::vector<const Parts::value_type*> in_order_;
};

}  // namespace hedro34
