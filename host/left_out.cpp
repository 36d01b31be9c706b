#include "host/left_out.h"

#include <algorithm>
#include <string_view>

#include "host/input.h"
#include "host/stop.h"
#include "host/terminal_text.h"

namespace host {
namespace {

using namespace hedro34;

// A question and what is said of it: its type when it was removed, else the parts that are not carried.
struct Lost {
  std::int32_t number;
  std::string text;
};

std::string said_of(const String& id, StringView what) {
  return (id.empty() ? "no ID" : "ID " + plain_line(id)) + ", " + plain_line(what);
}

// All of one kind, one entry for each question.
std::vector<Lost> all_of(const clsHEDROTest& test, LeftOut::What what) {
  std::vector<Lost> result;
  const LeftOut* last = nullptr;
  for (const LeftOut& each : test.left_out()) {
    if (each.what != what) continue;
    if (last != nullptr && !last->part.empty() && last->number == each.number) {
      result.back().text += ", " + plain_line(each.part);
    } else {
      const bool removed = what == LeftOut::What::Removed;
      result.push_back({each.number, said_of(each.id, removed ? question_type_name(each.type) : each.part)});
    }
    last = &each;
  }
  return result;
}

std::string section(std::string_view name, const std::vector<Lost>& all) {
  if (all.empty()) return {};
  std::string result = "\n" + std::string(name) + '\n';
  std::size_t width = 0;
  for (const Lost& lost : all) width = std::max(width, std::to_string(lost.number).size());
  for (const Lost& lost : all) {
    const std::string number = std::to_string(lost.number);
    result += std::string(2 + width - number.size(), ' ') + number + "  " + lost.text + '\n';
  }
  return result;
}

std::string line(std::string_view name, const std::string& file, const std::vector<Lost>& all) {
  std::string result;
  for (const Lost& lost : all) {
    result += result.empty() ? std::string(name) + file : ", ";
    result += std::to_string(lost.number) + " (" + lost.text + ')';
  }
  return result.empty() ? result : result + '\n';
}

}  // namespace

void keep_notes(Messages& messages, const clsHEDROTest& test, std::size_t from, const String* file) {
  for (std::size_t i = from; i < test.left_out().size(); ++i) messages.note(test.left_out()[i], file);
}

std::string left_out_sections(const clsHEDROTest& test) {
  std::vector<Lost> removed = all_of(test, LeftOut::What::Removed);
  for (std::int32_t i = 1; i <= test.Questions->Count(); ++i) {
    const auto question = test.Questions->Item(i);
    if (is_supported(question->QuestionType)) continue;
    removed.push_back({question->number_in_file, said_of(question->ID, question_type_name(question->QuestionType))});
  }
  std::sort(removed.begin(), removed.end(), [](const Lost& a, const Lost& b) { return a.number < b.number; });
  return section("Not merged", removed) + section("Not carried", all_of(test, LeftOut::What::NotCarried));
}

std::string left_out_lines(const std::vector<Ref<clsHEDROTest>>& tests, const std::vector<String>& files) {
  std::string removed;
  std::string not_carried;
  for (std::size_t i = 0; i < tests.size(); ++i) {
    const std::string file = tests.size() > 1 ? one_line(to_utf8(input_name(files[i]))) + ": " : "";
    removed += line("Questions removed         ", file, all_of(*tests[i], LeftOut::What::Removed));
    not_carried += line("Not carried               ", file, all_of(*tests[i], LeftOut::What::NotCarried));
  }
  return removed + not_carried;
}

}  // namespace host
