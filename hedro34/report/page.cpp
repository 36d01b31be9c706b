#include "hedro34/report/page.h"

namespace hedro34 {
namespace {

constexpr std::string_view head =
    R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; style-src 'unsafe-inline'; base-uri 'none'; form-action 'none'">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="referrer" content="no-referrer">
<meta name="color-scheme" content="light dark">
<meta name="format-detection" content="telephone=no">
<title>)";

// Whether a browser is to lay out only what is looked at.
bool is_long(const ReportData& data) { return data.questions.size() * (data.versions.size() + 1) > 1'000; }

void write_counts(HtmlText& html, const ReportData& data) {
  const auto item = [&](std::int64_t count, std::string_view one, std::string_view many) {
    html.raw("<li>");
    write_count(html, count, one, many);
    html.raw("</li>\n");
  };
  html.raw("<ul class=\"counts\">\n");
  item(data.graded, "graded question", "graded questions");
  if (data.subjective > 0) item(data.subjective, "subjective question", "subjective questions");
  const auto fields = static_cast<std::int64_t>(data.questions.size());
  item(fields - data.graded - data.subjective, "field not graded", "fields not graded");
  item(static_cast<std::int64_t>(data.versions.size()), "version", "versions");
  // The default objective, which has no name, is none of the test's.
  const auto objectives = static_cast<std::int64_t>(data.objectives.size());
  item(objectives > 0 ? objectives - 1 : 0, "objective", "objectives");
  if (!data.pages.empty()) item(static_cast<std::int64_t>(data.pages.size()), "page", "pages");
  html.raw("</ul>\n");
}

void write_navigation(HtmlText& html, const ReportData& data) {
  const auto link = [&](std::string_view id, std::string_view words) {
    html.raw("<li><a href=\"#").raw(id).raw("\">").raw(words).raw("</a></li>\n");
  };
  html.raw("<nav aria-label=\"On this page\">\n<ul>\n");
  link("look-first", "To look at first");
  link("sheet", "Answer sheet");
  for (std::size_t v = 0; v < data.versions.size(); ++v) {
    html.raw("<li><a href=\"#key-").number(static_cast<std::int64_t>(v + 1)).raw("\">Key");
    if (!data.versions[v].label.empty()) html.raw(" <bdi>").text(data.versions[v].label).raw("</bdi>");
    html.raw("</a></li>\n");
  }
  link("questions", "Questions");
  link("objectives", "Objectives");
  link("left-out", "Left out");
  html.raw("</ul>\n</nav>\n");
}

void write_first(HtmlText& html, const ReportData& data, const std::vector<String>& messages) {
  html.raw("<section id=\"look-first\">\n<h2>To look at first</h2>\n");
  if (data.notices.empty() && messages.empty()) html.raw("<p>Nothing: every key can be marked as it stands.</p>\n");
  if (!data.notices.empty()) {
    html.raw("<ul class=\"notices\">\n");
    for (const Notice& notice : data.notices) {
      html.raw("<li>");
      for (const Notice::Piece& piece : notice.pieces()) {
        html.raw(piece.from_file ? "<bdi>" : "").text(piece.text).raw(piece.from_file ? "</bdi>" : "");
      }
      html.raw("</li>\n");
    }
    html.raw("</ul>\n");
  }
  if (!messages.empty()) {
    html.raw("<h3>Messages</h3>\n<ul class=\"messages\">\n");
    for (const String& text : messages) html.raw("<li dir=\"auto\">").text(text).raw("</li>\n");
    html.raw("</ul>\n");
  }
  html.raw("</section>\n");
}

}  // namespace

std::string page_of(const ReportData& data, StringView title, const std::vector<String>& messages) {
  HtmlText html;
  html.raw(head).attribute(title).raw(" – answer sheet and keys</title>\n<style>\n").raw(page_style());
  html.raw("</style>\n</head>\n")
      .raw(is_long(data) ? "<body class=\"many\">\n" : "<body>\n")
      .raw("<header>\n<h1><bdi>")
      .text(title)
      .raw("</bdi></h1>\n");
  html.raw("<p class=\"what\">Answer sheet and keys</p>\n");
  write_counts(html, data);
  html.raw("</header>\n");
  write_navigation(html, data);
  html.raw("<main>\n");
  write_first(html, data, messages);
  write_sheet(html, data);
  write_keys(html, data, title);
  write_questions(html, data);
  write_objectives(html, data);
  write_left_out(html, data);
  html.raw("</main>\n</body>\n</html>\n");
  return std::move(html).str();
}

void write_count(HtmlText& html, std::int64_t count, std::string_view one, std::string_view many) {
  html.number(count).raw(" ").raw(count == 1 ? one : many);
}

}  // namespace hedro34
