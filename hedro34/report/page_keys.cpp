// The key of each version in its own order, as a table that prints on one page.
#include "hedro34/report/key_layout.h"
#include "hedro34/report/page.h"

namespace hedro34 {
namespace {

StringView origin_of(const ReportData& data, const KeyPlace& place) {
  return place.question == 0 ? StringView() : StringView(data.question(place.question).name);
}

// The remark on a key that needs one; empty else.
StringView remark_on(const KeyPlace& place) {
  if (!place.on_sheet()) return words_of(place.fault);
  return place.key.empty() ? StringView(u"no answer is correct") : StringView();
}

bool is_shown(const KeyPlace& place) { return place.graded || !place.on_sheet(); }

KeyLayout layout_of(const ReportData& data, const VersionKey& version, bool with_origin) {
  std::vector<KeyRow> rows;
  for (const KeyPlace& place : version.places) {
    if (!is_shown(place)) continue;
    rows.push_back({text_width(data.question(place.field).name), text_width(place.key),
                    with_origin ? text_width(origin_of(data, place)) : 0, text_width(remark_on(place))});
  }
  return key_layout(rows);
}

void write_row(HtmlText& html, const ReportData& data, const KeyPlace& place, bool with_origin) {
  const StringView remark = remark_on(place);
  html.raw(remark.empty() ? "<tr data-field=\"" : "<tr class=\"remarked\" data-field=\"");
  html.number(place.field).raw("\"><th scope=\"row\"><bdi>");
  html.text(data.question(place.field).name).raw("</bdi></th><td class=\"key\"><bdi>");
  html.text(place.key).raw("</bdi>");
  if (!remark.empty()) html.raw(" <span class=\"fault\">").text(remark).raw("</span>");
  html.raw("</td>");
  if (with_origin) html.raw("<td><bdi>").text(origin_of(data, place)).raw("</bdi></td>");
  html.raw("</tr>\n");
}

// How the width of a row is shared among its cells, in percent.
void write_widths(HtmlText& html, const KeyLayout& layout, std::size_t cells) {
  std::size_t all = 0;
  for (std::size_t i = 0; i < cells; ++i) all += layout.parts[i];
  html.raw("<colgroup>");
  for (std::size_t i = 0; i < cells; ++i) {
    html.raw("<col style=\"width:")
        .number(static_cast<std::int64_t>((200 * layout.parts[i] + all) / (2 * all)))
        .raw("%\">");
  }
  html.raw("</colgroup>\n");
}

void write_key(HtmlText& html, const ReportData& data, StringView title, std::size_t v) {
  const VersionKey& version = data.versions[v];
  const bool with_origin = v > 0;
  const KeyLayout layout = layout_of(data, version, with_origin);
  const auto number = static_cast<std::int64_t>(v + 1);
  html.raw(layout.fits ? "<section class=\"key\" id=\"key-" : "<section class=\"key long\" id=\"key-").number(number);
  html.raw("\">\n<p class=\"of\"><bdi>")
      .text(title)
      .raw("</bdi></p>\n<h2 id=\"name-of-key-")
      .number(number)
      .raw("\">Key");
  if (!version.label.empty()) html.raw(" of version <bdi>").text(version.label).raw("</bdi>");
  html.raw("</h2>\n");
  std::int64_t rows = 0;
  for (const KeyPlace& place : version.places) rows += is_shown(place) ? 1 : 0;
  if (version.missing > 0) {
    html.raw("<p class=\"fault\">").text(words_on_missing(version.missing)).raw("</p>\n");
  }
  if (rows == 0) {
    html.raw(version.missing > 0 ? "</section>\n" : "<p>No field is graded.</p>\n</section>\n");
    return;
  }
  html.raw("<p class=\"legend\" id=\"about-key-").number(number).raw("\">Key of ");
  write_count(html, rows, "graded field", "graded fields");
  if (with_origin) html.raw(", with the question of the first version that stands at each");
  html.raw("</p>\n<div class=\"keys\" style=\"--columns:").number(layout.columns);
  html.raw(";--widest:").number(static_cast<std::int64_t>(layout.parts[0] + layout.parts[1] + layout.parts[2]));
  html.raw(";--print:")
      .real(layout.points)
      .raw("pt/")
      .real(layout.line)
      .raw("\">\n<table aria-labelledby=\"name-of-key-")
      .number(number);
  html.raw("\" aria-describedby=\"about-key-").number(number);
  html.raw("\" data-version=\"").attribute(version.label).raw("\">\n");
  write_widths(html, layout, with_origin ? 3 : 2);
  html.raw("<thead><tr><th scope=\"col\">Field</th><th scope=\"col\">Key</th>");
  if (with_origin) {
    html.raw("<th scope=\"col\">");
    const String& first = data.versions.front().label;
    if (first.empty()) {
      html.raw("First version");
    } else {
      html.raw("In <bdi>").text(first).raw("</bdi>");
    }
    html.raw("</th>");
  }
  html.raw("</tr></thead>\n<tbody>\n");
  for (const KeyPlace& place : version.places) {
    if (is_shown(place)) write_row(html, data, place, with_origin);
  }
  html.raw("</tbody>\n</table>\n</div>\n</section>\n");
}

}  // namespace

void write_keys(HtmlText& html, const ReportData& data, StringView title) {
  for (std::size_t v = 0; v < data.versions.size(); ++v) write_key(html, data, title, v);
}

}  // namespace hedro34
