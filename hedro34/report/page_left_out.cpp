// What each test lost on its way from its file to the sheet.
#include "hedro34/report/page.h"

namespace hedro34 {
namespace {

void write_table(HtmlText& html, const std::vector<LeftOut>& lost, LeftOut::What what) {
  bool any = false;
  for (const LeftOut& one : lost) {
    if (one.what != what) continue;
    const bool removed = what == LeftOut::What::Removed;
    if (!any) {
      html.raw("<table class=\"wide\">\n<caption>").raw(removed ? "Questions removed" : "Not carried");
      html.raw(
          "</caption>\n<thead><tr><th scope=\"col\">Number in the file</th><th scope=\"col\">ID</th><th scope=\"col\">");
      html.raw(removed ? "Type" : "What").raw("</th></tr></thead>\n<tbody>\n");
    }
    any = true;
    html.raw("<tr><th scope=\"row\">");
    if (one.number == 0) {
      html.raw("–");
    } else {
      html.number(one.number);
    }
    html.raw("</th><td><bdi>").text(one.id).raw("</bdi></td><td><bdi>");
    html.text(removed ? question_type_name(one.type) : StringView(one.part)).raw("</bdi></td></tr>\n");
  }
  if (any) html.raw("</tbody>\n</table>\n");
}

void write_name(HtmlText& html, const clsHEDROTest& test, std::size_t number) {
  if (!test.Title.empty()) {
    html.raw("<bdi>").text(test.Title.str()).raw("</bdi>");
  } else {
    html.raw("Test ").number(static_cast<std::int64_t>(number));
  }
  if (!test.Version.empty()) html.raw(", version <bdi>").text(test.Version.str()).raw("</bdi>");
}

}  // namespace

void write_left_out(HtmlText& html, const ReportData& data) {
  html.raw("<section id=\"left-out\">\n<h2>Left out</h2>\n");
  if (data.tests.empty()) {
    html.raw(
        "<p>Not known: this page was made from a document alone. What a test lost is said when it is merged.</p>\n");
  }
  for (std::size_t i = 0; i < data.tests.size(); ++i) {
    const clsHEDROTest& test = *data.tests[i];
    if (data.tests.size() > 1) {
      html.raw("<h3>");
      write_name(html, test, i + 1);
      html.raw("</h3>\n");
    }
    if (test.left_out().empty()) {
      html.raw("<p>Nothing is known to be left out.</p>\n");
    } else {
      write_table(html, test.left_out(), LeftOut::What::Removed);
      write_table(html, test.left_out(), LeftOut::What::NotCarried);
    }
  }
  html.raw("</section>\n");
}

}  // namespace hedro34
