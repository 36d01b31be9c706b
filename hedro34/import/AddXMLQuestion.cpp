// Reading of one `question` element: attributes, text, choices, answer and the metadata of `info`.
#include <algorithm>
#include <cmath>
#include <iterator>

#include "hedro34/import/leading_number.h"
#include "hedro34/import/not_carried.h"
#include "hedro34/model/clsHEDROTest.h"
#include "hedro34/runtime/basError.h"
#include "hedro34/xml/xml_document.h"

namespace hedro34 {
namespace {

// Calls `visit(child)` for each child node, in document order.
template <class Visit>
void each_child(const Ref<IXMLDOMNode>& node, Visit visit) {
  const Ref<IXMLDOMNodeList> children = node->childNodes();
  const std::int32_t count = children ? children->length() : 0;
  for (std::int32_t i = 0; i < count; ++i) visit(children->item(i));
}

template <class Visit>
void each_part(StringView text, char16_t delimiter, Visit visit) {
  while (!text.empty()) {
    const std::size_t end = text.find(delimiter);
    visit(text.substr(0, end));
    if (end == StringView::npos) return;
    text.remove_prefix(end + 1);
    if (text.empty()) visit(text);
  }
}

Ref<IXMLDOMNode> named(const Ref<IXMLDOMNamedNodeMap>& attributes, StringView name) {
  return attributes ? attributes->getNamedItem(name) : Ref<IXMLDOMNode>();
}

Ref<IXMLDOMNode> attribute(const Ref<IXMLDOMNode>& node, StringView name) { return named(node->attributes(), name); }

String element_text(const Ref<IXMLDOMNode>& node) { return to_text(node->nodeTypedValue()); }

// T or F, Y or N: the very first character, in either case, decides between answers 1 and 2; any other gives no answer.
void read_either(clsHEDROTestQuestion& question, StringView text, char16_t first, char16_t second) {
  const char16_t letter = text.empty() ? u'\0' : upper(text.front());
  if (letter == first) question.CorrectAnswers->Add(1);
  if (letter == second) question.CorrectAnswers->Add(2);
}

void read_letters(clsHEDROTestQuestion& question, StringView text) {
  each_part(text, u',', [&](StringView item) {
    item = trim(item);
    if (item.empty()) return;
    question.CorrectAnswers->Add(static_cast<std::int16_t>(upper(item.front()) - 64));  // A is 1
  });
}

// By the type that is known when the element comes: one that `bi-display-mode` names later does not read it again.
void read_answer(clsHEDROTestQuestion& question, const Ref<IXMLDOMNode>& node) {
  const String text = element_text(node);
  switch (question.QuestionType) {
    case HEDROTestQuestionTypeTrueFalse: return read_either(question, text, u'T', u'F');
    case HEDROTestQuestionTypeYesNo: return read_either(question, text, u'Y', u'N');
    default: return read_letters(question, text);
  }
}

void read_points(clsHEDROTestQuestion& question, const Ref<IXMLDOMNode>& node, bool& partial_credit) {
  question.CorrectAnd = true;
  const double points = leading_number(element_text(node));
  if (std::isinf(points)) fail(FailureNumber::Overflow);
  question.CorrectPoints = to_float32(points);
  const Ref<IXMLDOMNode> method = attribute(node, u"scoring-method");
  if (method && equal_ignoring_case(to_text(method->nodeValue()), u"RightLessWrong")) partial_credit = true;
}

void read_objectives(clsHEDROTestQuestion& question, const Ref<IXMLDOMNode>& node, NotCarried& not_carried) {
  const String text = element_text(node);
  const char16_t delimiter = text.find(u'|') == String::npos ? u',' : u'|';
  each_part(text, delimiter, [&](StringView item) {
    item = trim(item);
    const Variant key = item;
    if (question.LearningObjectives->Exists(key)) return;
    const bool added = question.LearningObjectives->Add(item, key);
    if (added && item.size() > clsHEDROTestStrings::added_limit) not_carried.cut_objective();
  });
}

// A list that names its states counts for those only; one without attributes counts for every state.
void read_state_objectives(clsHEDROTestQuestion& question, const Ref<IXMLDOMNode>& node, StringView state,
                           NotCarried& not_carried) {
  const Ref<IXMLDOMNamedNodeMap> attributes = node->attributes();
  const std::int32_t count = attributes ? attributes->length() : 0;
  if (count == 0) return read_objectives(question, node, not_carried);
  for (std::int32_t i = 0; i < count; ++i) {
    const Ref<IXMLDOMNode> found = attributes->item(i);
    if (equal_ignoring_case(found->nodeName(), u"state") && equal_ignoring_case(to_text(found->nodeValue()), state)) {
      read_objectives(question, node, not_carried);
    }
  }
}

void read_info(clsHEDROTest& test, clsHEDROTestQuestion& question, const Ref<IXMLDOMNode>& info, bool& partial_credit,
               NotCarried& not_carried) {
  const auto imports = [&](HEDROTestImportObjectives kind) { return (test.ImportObjectives & kind) != 0; };
  each_child(info, [&](const Ref<IXMLDOMNode>& child) {
    const StringView name = child->nodeName();
    const auto is = [&](const char16_t* expected) { return lower_equals(name, expected); };
    const auto set = [&](auto& field, const char16_t* field_name) {
      String text = element_text(child);
      if (text.size() > field.limit) not_carried.cut(field_name, field.limit);
      field = std::move(text);
    };
    if (is(u"difficulty")) {
      set(question.Difficulty, u"difficulty");
    } else if (is(u"keywords")) {
      set(question.Keywords, u"keywords");
    } else if (is(u"miscellaneous")) {
      set(question.Miscellaneous, u"miscellaneous");
    } else if (is(u"notes")) {
      question.Notes = element_text(child);
    } else if (is(u"reference")) {
      question.Reference = element_text(child);
    } else if (is(u"topic")) {
      set(question.Topic, u"topic");
    } else if (is(u"points")) {
      read_points(question, child, partial_credit);
    } else if (is(u"text-objective") && imports(HEDROTestImportObjectivesLearning)) {
      read_objectives(question, child, not_carried);
    } else if (is(u"local-standard") && imports(HEDROTestImportObjectivesLocal)) {
      read_objectives(question, child, not_carried);
    } else if (is(u"state-objective") && imports(HEDROTestImportObjectivesState)) {
      read_state_objectives(question, child, test.StateAbbreviation, not_carried);
    } else if (is(u"national-standard") && imports(HEDROTestImportObjectivesNational)) {
      read_objectives(question, child, not_carried);
    }
  });
}

}  // namespace

bool clsHEDROTest::AddXMLQuestion(const Ref<IXMLDOMNode>& oNode, bool& bPartialCredit, std::int32_t number_in_file) {
  LeftOut lost;  // the question as far as it is read
  lost.number = number_in_file;
  bool is_kept = false;
  const std::size_t noted_before = left_out_.size();
  const bool comes_to_its_end = trap<bool>({u"clsHEDROTest", u"AddXMLQuestion"}, [&](auto& result) {
    const auto question = make<clsHEDROTestQuestion>();
    question->number_in_file = number_in_file;
    NotCarried not_carried;
    const Ref<IXMLDOMNamedNodeMap> attributes = oNode->attributes();
    const auto set_type = [&](const Ref<IXMLDOMNode>& type) {
      lost.type = question->QuestionType = QuestionType(to_text(type->nodeValue()));
    };
    if (const auto type = named(attributes, u"type")) set_type(type);
    if (question->QuestionType == HEDROTestQuestionTypeTrueFalse) {
      question->Answers->AddDelimitedString(u"True\tFalse", tab);
    } else if (question->QuestionType == HEDROTestQuestionTypeYesNo) {
      question->Answers->AddDelimitedString(u"Yes\tNo", tab);
    }
    bool id_is_cut = false;
    const auto set_id = [&](String id) {
      lost.id = std::move(id);
      question->ID = StringView(lost.id);
      id_is_cut |= lost.id.size() > question->ID.str().size();
    };
    if (const auto id = named(attributes, u"question-id")) set_id(to_text(id->nodeValue()));
    if (const auto bank = named(attributes, u"bank-id")) set_id(question->ID.str() + to_text(bank->nodeValue()));
    if (id_is_cut) not_carried.cut(u"ID", QuestionId::limit);
    each_child(oNode, [&](const Ref<IXMLDOMNode>& child) {
      const StringView name = child->nodeName();
      if (lower_equals(name, u"text")) {
        question->QuestionText = trim(NodeText(child, not_carried));
      } else if (lower_equals(name, u"choices")) {
        each_child(child, [&](const Ref<IXMLDOMNode>& choice) {
          const String text = NodeText(choice, not_carried);
          const StringView answer = trim(text);
          const bool added = question->Answers->Add(answer);
          if (added && answer.size() > clsHEDROTestStrings::added_limit)
            not_carried.cut_answer(question->Answers->Count());
        });
      } else if (lower_equals(name, u"answer")) {
        read_answer(*question, child);
      } else if (lower_equals(name, u"bi-display-mode")) {
        if (const auto mode = attribute(child, u"value")) set_type(mode);
      } else if (lower_equals(name, u"info")) {
        read_info(*this, *question, child, bPartialCredit, not_carried);
      } else {
        not_carried.unknown_in_question(*child, name);
      }
    });
    std::vector<LeftOut> notes = not_carried.notes(*question);
    left_out_.insert(left_out_.end(), std::make_move_iterator(notes.begin()), std::make_move_iterator(notes.end()));
    is_kept = Questions->Add(question);
    result = true;
  });
  if (is_kept) return comes_to_its_end;
  if (left_out_.size() > noted_before) left_out_.resize(noted_before);
  quietly([&] {
    lost.id.resize(std::min(lost.id.size(), QuestionId::limit));
    left_out_.push_back(std::move(lost));
  });
  return comes_to_its_end;
}

}  // namespace hedro34
