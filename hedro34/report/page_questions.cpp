// Every question with all that the document and the test say of it, and the objectives with the questions that test them.
#include <algorithm>

#include "hedro34/report/page.h"

namespace hedro34 {
namespace {

// The field of a question in a version, by the version's position.
struct Place {
  std::size_t version;
  std::int32_t field;
};

// Where each graded question stands, by version.
std::vector<std::vector<Place>> places_of(const ReportData& data) {
  std::vector<std::vector<Place>> result(data.questions.size());
  for (std::size_t v = 0; v < data.versions.size(); ++v) {
    for (const KeyPlace& place : data.versions[v].places) {
      if (place.question == 0 || !data.question(place.question).graded) continue;
      result[static_cast<std::size_t>(place.question - 1)].push_back({v, place.field});
    }
  }
  return result;
}

// What is known of a question's choices: their labels, their texts, which are correct.
class Choices {
 public:
  explicit Choices(const ReportQuestion& question, const std::vector<std::int32_t>& answers) : question_(question) {
    if (question.asked) texts_ = question.asked->Answers->AsArray().elements();
    correct_.resize(std::max(question.labels.size(), texts_.size()));
    for (const std::int32_t answer : answers) {
      if (static_cast<std::size_t>(answer) <= correct_.size()) correct_[static_cast<std::size_t>(answer - 1)] = true;
    }
  }

  void write(HtmlText& html) const {
    if (texts_.empty()) return;
    html.raw("<ul class=\"choices\">\n");
    for (std::size_t i = 0; i < texts_.size(); ++i) {
      const bool labelled = i < question_.labels.size() && !question_.labels[i].empty();
      html.raw(correct_[i] ? "<li class=\"correct\"><bdi class=\"filled\">" : "<li><bdi>");
      if (labelled) {
        html.text(question_.labels[i]);
      } else {
        html.raw("[").number(static_cast<std::int64_t>(i + 1)).raw("]");
      }
      html.raw("</bdi> <span dir=\"auto\">").text(texts_[i]).raw("</span>");
      if (correct_[i]) html.raw(" <span class=\"tag\">correct</span>");
      html.raw("</li>\n");
    }
    html.raw("</ul>\n");
  }

  bool have_texts() const noexcept { return !texts_.empty(); }

 private:
  const ReportQuestion& question_;
  std::vector<String> texts_;
  std::vector<bool> correct_;
};

class Questions {
 public:
  Questions(HtmlText& html, const ReportData& data) : html_(html), data_(data), places_(places_of(data)) {}

  void write(std::int32_t number) {
    const ReportQuestion& question = data_.question(number);
    const KeyPlace& key = data_.own_key(number);
    html_.raw("<section class=\"question\" data-question=\"").number(number).raw("\" id=\"question-").number(number);
    html_.raw("\">\n<h3><bdi>").text(question.name).raw("</bdi></h3>\n");
    if (!question.text.empty()) html_.raw("<p class=\"text\" dir=\"auto\">").text(question.text).raw("</p>\n");
    if (question.graded) {
      const Choices choices(question, key.answers);
      choices.write(html_);
      if (!choices.have_texts() && !question.labels.empty()) {
        html_.raw("<p>");
        write_bubbles(html_, question.labels, key.answers);
        html_.raw("</p>\n");
      }
    }
    html_.raw("<dl>\n");
    write_facts(number, question, key);
    html_.raw("</dl>\n</section>\n");
  }

 private:
  void begin(std::string_view name, bool takes_whole_line = false) {
    html_.raw(takes_whole_line ? "<div class=\"whole\"><dt>" : "<div><dt>").raw(name).raw("</dt><dd>");
  }
  void end() { html_.raw("</dd></div>\n"); }

  void write_facts(std::int32_t number, const ReportQuestion& question, const KeyPlace& key) {
    if (question.graded) {
      begin("Key");
      html_.raw("<bdi>").text(key.key).raw("</bdi>");
      if (!key.on_sheet()) {
        html_.raw(" <span class=\"fault\">").text(words_of(key.fault)).raw("</span>");
      } else if (key.key.empty()) {
        html_.raw("<span class=\"fault\">no answer is correct</span>");
      }
      end();
    }
    begin("Points");
    if (question.graded) {
      html_.real(question.correct_points).raw(" correct, ");
      html_.real(question.incorrect_points).raw(" incorrect, ");
      html_.real(question.no_response_points).raw(" without a response");
    } else {
      html_.real(question.subjective_points).raw(" at most, given by hand");
    }
    end();
    if (question.asked) write_asked(*question.asked);
    for (const auto& [name, value] : question.details) {
      begin(name);
      html_.raw("<span dir=\"auto\">").text(value).raw("</span>");
      end();
    }
    write_objectives_of(question);
    if (question.graded && data_.versions.size() > 1) write_places(number);
  }

  void write_asked(const clsHEDROTestQuestion& asked) {
    if (!asked.ID.str().empty()) {
      begin("ID");
      html_.raw("<bdi>").text(asked.ID.str()).raw("</bdi>");
      end();
    }
    begin("Type");
    html_.text(question_type_name(asked.QuestionType));
    end();
  }

  void write_objectives_of(const ReportQuestion& question) {
    if (question.objectives.empty()) return;
    begin("Objectives", true);
    html_.raw("<ul>");
    for (const std::int32_t position : question.objectives) {
      html_.raw("<li dir=\"auto\">").text(data_.objectives[static_cast<std::size_t>(position - 1)]).raw("</li>");
    }
    html_.raw("</ul>");
    end();
  }

  void write_places(std::int32_t number) {
    begin("Place", true);
    std::size_t without = data_.versions.size();
    const Place* before = nullptr;
    for (const Place& place : places_[static_cast<std::size_t>(number - 1)]) {
      html_.raw(before == nullptr ? "<bdi>" : ", <bdi>").text(data_.versions[place.version].label).raw("</bdi>: <bdi>");
      html_.text(data_.question(place.field).name).raw("</bdi>");
      if (before == nullptr || before->version != place.version) --without;
      before = &place;
    }
    if (without > 0) {
      html_.raw(before == nullptr ? "none in " : ", none in ");
      write_count(html_, static_cast<std::int64_t>(without), "version", "versions");
    }
    end();
  }

  HtmlText& html_;
  const ReportData& data_;
  std::vector<std::vector<Place>> places_;
};

}  // namespace

void write_questions(HtmlText& html, const ReportData& data) {
  html.raw("<section id=\"questions\">\n<h2>Questions</h2>\n");
  if (data.graded + data.subjective == 0) html.raw("<p>The document has no questions.</p>\n");
  Questions questions(html, data);
  for (std::size_t i = 0; i < data.questions.size(); ++i) {
    if (data.questions[i].graded || data.questions[i].subjective) questions.write(static_cast<std::int32_t>(i + 1));
  }
  html.raw("</section>\n");
}

void write_objectives(HtmlText& html, const ReportData& data) {
  html.raw("<section id=\"objectives\">\n<h2>Objectives</h2>\n");
  std::vector<std::vector<std::int32_t>> questions(data.objectives.size());
  for (std::size_t i = 0; i < data.questions.size(); ++i) {
    for (const std::int32_t position : data.questions[i].objectives) {
      questions[static_cast<std::size_t>(position - 1)].push_back(static_cast<std::int32_t>(i + 1));
    }
  }
  // The default objective is shown only where it says something.
  std::vector<std::size_t> shown;
  for (std::size_t i = 0; i < data.objectives.size(); ++i) {
    if (i > 0 || !data.objectives[i].empty() || !questions[i].empty()) shown.push_back(i);
  }
  if (shown.empty()) {
    html.raw("<p>The document has no objectives.</p>\n</section>\n");
    return;
  }
  html.raw(
      "<table class=\"wide\">\n<caption>Objectives and the questions that test them</caption>\n<thead><tr>"
      "<th scope=\"col\">Objective</th><th scope=\"col\">Questions</th></tr></thead>\n<tbody>\n");
  for (const std::size_t i : shown) {
    html.raw("<tr><th scope=\"row\" dir=\"auto\">").text(data.objectives[i]);
    if (data.objectives[i].empty()) html.raw("(without a name)");
    html.raw("</th><td>");
    if (questions[i].empty()) html.raw("none");
    for (std::size_t k = 0; k < questions[i].size(); ++k) {
      html.raw(k == 0 ? "<a href=\"#question-" : ", <a href=\"#question-").number(questions[i][k]).raw("\"><bdi>");
      html.text(data.question(questions[i][k]).name).raw("</bdi></a>");
    }
    html.raw("</td></tr>\n");
  }
  html.raw("</tbody>\n</table>\n</section>\n");
}

}  // namespace hedro34
