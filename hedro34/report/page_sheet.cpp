// The answer sheet as a picture, with the key of the first version filled in.
#include "hedro34/report/page.h"

namespace hedro34 {
namespace {

constexpr int most_in_list = 60;  // fields in one block of columns: a longer one cannot be read downwards on a screen

class Sheet {
 public:
  Sheet(HtmlText& html, const ReportData& data) : html_(html), data_(data) {}

  void write_page(const ReportPage& page, std::size_t number) {
    html_.raw("<section class=\"page\">\n<h3>Page ").number(static_cast<std::int64_t>(number)).raw("</h3>\n");
    for (const ReportRegion& region : page.regions) {
      if (region.fields.size() == 1 && !region.continues) {
        write_field(region.fields.front().number, region.fields.front().labels);
      } else {
        write_region(region);
      }
    }
    end_list();
    if (page.regions.empty()) html_.raw("<p>This page has no fields.</p>\n");
    html_.raw("</section>\n");
  }

  // Without a form: the fields of the document, one after the other.
  void write_fields() {
    for (std::size_t i = 0; i < data_.questions.size(); ++i) {
      write_field(static_cast<std::int32_t>(i + 1), data_.questions[i].labels);
    }
    end_list();
  }

 private:
  void begin_item() {
    if (in_list_ == most_in_list) end_list();
    if (in_list_++ == 0) html_.raw("<ul class=\"fields\">\n");
  }
  void end_list() {
    if (in_list_ > 0) html_.raw("</ul>\n");
    in_list_ = 0;
  }

  void write_region(const ReportRegion& region) {
    begin_item();
    html_.raw("<li class=\"region\"><p class=\"name\"><bdi>").text(region.name).raw("</bdi>");
    if (region.continues) html_.raw(" <span class=\"tag\">goes on here</span>");
    html_.raw("</p>\n<ul>\n");
    for (const ReportField& field : region.fields) {
      if (region.continues) {
        html_.raw("<li class=\"field continued\">");
        write_bubbles(html_, field.labels, {});
        html_.raw("</li>\n");
      } else {
        write_item(field.number, field.labels);
      }
    }
    html_.raw("</ul>\n</li>\n");
  }

  void write_field(std::int32_t number, const std::vector<String>& labels) {
    begin_item();
    write_item(number, labels);
  }

  void write_item(std::int32_t number, const std::vector<String>& labels) {
    const ReportQuestion& question = data_.question(number);
    const KeyPlace* const place = data_.versions.front().at(number);
    const KeyFault fault = place != nullptr ? place->fault : question.graded ? KeyFault::NoQuestion : KeyFault::None;
    const bool subjective = question.subjective && !question.graded;
    html_.raw("<li class=\"field").raw(subjective ? " subjective" : question.graded ? "" : " ungraded");
    html_.raw("\" data-field=\"").number(number).raw("\"><bdi class=\"name\">").text(question.name).raw("</bdi> ");
    if (subjective) {
      html_.raw("<span class=\"tag\">").real(question.subjective_points).raw(" points</span>");
    } else {
      write_bubbles(html_, labels, place != nullptr ? place->answers : std::vector<std::int32_t>());
      if (!question.graded) html_.raw(" <span class=\"tag\">not graded</span>");
      if (fault != KeyFault::None) html_.raw(" <span class=\"fault\">").text(words_of(fault)).raw("</span>");
    }
    html_.raw("</li>\n");
  }

  HtmlText& html_;
  const ReportData& data_;
  int in_list_ = 0;
};

}  // namespace

void write_sheet(HtmlText& html, const ReportData& data) {
  html.raw("<section id=\"sheet\">\n<h2>Answer sheet</h2>\n");
  const String& label = data.versions.front().label;
  if (data.questions.empty()) {
    html.raw("<p>The document has no fields.</p>\n");
  } else {
    html.raw("<p class=\"legend\">Filled bubbles are the key");
    if (!label.empty()) html.raw(" of version <bdi>").text(label).raw("</bdi>");
    html.raw(". Fields with a broken line are not graded.");
    if (data.pages.empty()) html.raw(" The form is not known: these are the fields of the document in order.");
    html.raw("</p>\n");
  }
  Sheet sheet(html, data);
  for (std::size_t p = 0; p < data.pages.size(); ++p) sheet.write_page(data.pages[p], p + 1);
  if (data.pages.empty()) sheet.write_fields();
  html.raw("</section>\n");
}

void write_bubbles(HtmlText& html, const std::vector<String>& labels, const std::vector<std::int32_t>& answers) {
  std::vector<bool> filled(labels.size());
  for (const std::int32_t answer : answers) {
    if (static_cast<std::size_t>(answer) <= filled.size()) filled[static_cast<std::size_t>(answer - 1)] = true;
  }
  bool any = false;
  for (std::size_t i = 0; i < labels.size(); ++i) {
    if (labels[i].empty()) continue;
    html.raw(any ? ", " : "<span class=\"bubbles\" role=\"img\" aria-label=\"").attribute(labels[i]);
    if (filled[i]) html.raw(" filled");
    any = true;
  }
  if (!any) {
    html.raw("<span class=\"tag\">no choices</span>");
    return;
  }
  html.raw("\">");
  for (std::size_t i = 0; i < labels.size(); ++i) {
    if (labels[i].empty()) continue;
    html.raw(filled[i] ? "<bdi class=\"filled\">" : "<bdi>").text(labels[i]).raw("</bdi>");
  }
  html.raw("</span>");
}

}  // namespace hedro34
