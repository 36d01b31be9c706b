// The looks of the page: on a screen of any width in light and dark, in the colours of the system where it asks for them, and on
// paper. A filled bubble differs from others in its line and weight as well as in its colour, so that a printer without
// backgrounds and an eye without colours tell them apart.
#include "hedro34/report/page.h"

namespace hedro34 {
namespace {

constexpr std::string_view style = R"(:root {
  color-scheme: light dark;
  --paper: #fff; --ink: #16181d; --soft: #5a606b; --line: #c9cdd4; --card: #f5f6f8; --mark: #16181d; --on-mark: #fff;
  --link: #0b4fb3; --warn: #8a1c00; --warn-paper: #fff1ec;
}
@media screen and (prefers-color-scheme: dark) {
  :root {
    --paper: #14161a; --ink: #e8eaee; --soft: #a4abb7; --line: #3c424d; --card: #1d2026; --mark: #f2f4f8; --on-mark: #14161a;
    --link: #8ab8ff; --warn: #ffb59e; --warn-paper: #3a1d14;
  }
}
@media (prefers-contrast: more) {
  :root { --soft: var(--ink); --line: var(--ink); }
}
* { box-sizing: border-box; }
html { -webkit-text-size-adjust: 100%; text-size-adjust: 100%; }
body {
  margin: 0 auto; padding: 1.5rem clamp(0.75rem, 3vw, 2rem); max-width: 76rem; background: var(--paper); color: var(--ink);
  font: 1rem/1.45 system-ui, -apple-system, "Segoe UI", Roboto, "Noto Sans", sans-serif; overflow-wrap: anywhere;
}
h1 { margin: 0; font-size: 1.8rem; line-height: 1.2; white-space: pre-wrap; }
h2 { margin: 2.5rem 0 0.75rem; padding-bottom: 0.25rem; border-bottom: 2px solid var(--ink); font-size: 1.35rem; }
h3 { margin: 1.25rem 0 0.5rem; font-size: 1.05rem; white-space: pre-wrap; }
h2, h3 { break-after: avoid; }
p { margin: 0.4rem 0; }
a { color: var(--link); }
small { font-size: 0.75em; color: var(--warn); }
ul { margin: 0; padding: 0; list-style: none; }
.what, .legend, caption, .tag, dt { color: var(--soft); }
.what { font-size: 1.1rem; }
.tag { font-size: 0.85em; }
.fault { color: var(--warn); font-weight: 600; font-size: 0.9em; }
.fault::before { content: "\26A0\FE0E\00A0"; content: "\26A0\FE0E\00A0" / ""; }
.counts, nav ul { display: flex; flex-wrap: wrap; gap: 0.3rem 1.25rem; }
.counts { margin-top: 0.5rem; }
nav { margin-top: 1rem; padding: 0.6rem 0.9rem; border: 1px solid var(--line); border-radius: 0.5rem; background: var(--card); }
nav a { display: inline-block; padding: 0.15rem 0; }
.notices li, .messages li { margin: 0.4rem 0; padding: 0.5rem 0.75rem; border-inline-start: 0.3rem solid var(--line); }
.notices li { border-color: var(--warn); background: var(--warn-paper); }
.messages li { background: var(--card); white-space: pre-wrap; }

.bubbles { display: inline-flex; flex-wrap: wrap; gap: 0.2rem; max-width: 100%; vertical-align: middle; }
.fields .bubbles bdi { max-height: 8rem; overflow: hidden; }
.bubbles bdi, .choices bdi {
  display: inline-block; min-width: 1.75em; max-width: 100%; padding: 0 0.4em; border: 1px solid var(--ink);
  border-radius: 0.9em; font-size: 0.85rem; line-height: 1.6; text-align: center; white-space: pre-wrap;
}
bdi.filled {
  border-width: 0.2em; padding: 0 calc(0.4em - 0.1em); line-height: 1.35; background: var(--mark); border-color: var(--mark);
  color: var(--on-mark); font-weight: 700; -webkit-print-color-adjust: exact; print-color-adjust: exact;
}
.page { margin: 1rem 0; padding: 0 1rem 1rem; border: 1px solid var(--line); border-radius: 0.5rem; }
.fields { columns: 17rem; column-gap: 1.5rem; }
.fields + .fields { margin-top: 0.75rem; padding-top: 0.75rem; border-top: 1px dotted var(--line); }
.fields li { break-inside: avoid; }
.field { display: flex; flex-wrap: wrap; align-items: center; gap: 0.1rem 0.6rem; padding: 0.2rem 0; }
.field .name { min-width: 3.2em; max-width: 100%; font-weight: 600; white-space: pre-wrap; }
.field.ungraded .name { color: var(--soft); font-weight: 400; }
.field.ungraded .bubbles bdi, .field.continued .bubbles bdi { border-style: dashed; font-weight: 400; }
.region { margin: 0.4rem 0; padding-inline-start: 0.6rem; border-inline-start: 2px solid var(--line); }
.region > .name { margin: 0; font-weight: 600; }

table { border-collapse: collapse; }
caption { padding: 0.2rem 0; text-align: start; }
th { text-align: start; font-weight: 600; }
th bdi, td bdi { white-space: pre-wrap; }
.wide { width: 100%; margin: 0.5rem 0; }
.wide th, .wide td { padding: 0.3rem 0.6rem 0.3rem 0; border-bottom: 1px solid var(--line); vertical-align: top; }
.wide tr { break-inside: avoid; }
.wide tbody th { font-weight: 400; white-space: pre-wrap; }
.keys { columns: 13rem; column-gap: 2rem; }
.keys table { width: 100%; table-layout: fixed; }
.keys tr { border-bottom: 1px solid var(--line); }
.keys tr, .keys thead { break-inside: avoid; }
.keys th, .keys td { padding: 0.15rem 0.3rem 0.15rem 0; vertical-align: top; }
.keys thead th { color: var(--soft); font-weight: 400; font-size: 0.85em; }
.keys tbody th { font-weight: 400; }
.keys .key { font-weight: 700; }
.of { display: none; }
.keys .fault { display: block; font-weight: 400; }
.keys .remarked { background: var(--warn-paper); }

.question { padding-bottom: 1rem; border-bottom: 1px solid var(--line); break-inside: avoid; }
.question .text { white-space: pre-wrap; }
.choices li { display: flex; flex-wrap: wrap; align-items: baseline; gap: 0.1rem 0.5rem; margin: 0.2rem 0; }
.choices span[dir] { min-width: 0; white-space: pre-wrap; }
.choices .correct span[dir] { font-weight: 600; }
dl { margin: 0.4rem 0 0; }
dl div { display: grid; grid-template-columns: 7.5em minmax(0, 1fr); gap: 0 0.5rem; padding: 0.05rem 0; }
dd { margin: 0; }
dd span[dir], dd li { display: block; white-space: pre-wrap; }

@media print, (min-width: 50rem) {
  .question { display: grid; grid-template: auto auto auto 1fr / minmax(0, 1fr) minmax(0, 21rem); column-gap: 2rem; }
  .question h3 { grid-column: 1 / -1; }
  .question > * { grid-column: 1; }
  .question dl { grid-area: 2 / 2 / 5; margin: 0.4rem 0; font-size: 0.9em; }
}
@media screen {
  .many .fields, .many .question { content-visibility: auto; contain-intrinsic-size: auto 14rem; }
  .many .keys { content-visibility: auto; contain-intrinsic-size: auto 30rem; }
}
@media (forced-colors: active) {
  bdi.filled { forced-color-adjust: none; background: CanvasText; border-color: CanvasText; color: Canvas; }
}
@page { margin: 12mm; }
@media print {
  :root { color-scheme: light; }
  body { padding: 0; max-width: none; font-size: 10pt; }
  nav { display: none; }
  a { color: inherit; text-decoration: none; }
  h2 { margin-top: 1rem; }
  .page { padding: 0 0.5rem 0.5rem; break-inside: avoid; }
  .fields { columns: 3; column-gap: 4mm; }
  .field { gap: 0 0.4rem; }
  .field .name { min-width: 2.8em; }
  .bubbles { gap: 0.15rem; }
  .bubbles bdi, .choices bdi { font-size: 7.5pt; }
  .region { padding-inline-start: 0.4rem; }
  .key { break-before: page; }
  .key:not(.long) { break-inside: avoid; }
  .keys {
    columns: var(--columns); column-gap: 3mm; max-width: calc(var(--columns) * max(58mm, var(--widest) * 0.8em));
    font: var(--print) Arial, "Liberation Sans", Helvetica, sans-serif;
  }
  .keys th, .keys td { padding: 0 0.3em 0 0; }
  .of { display: block; font-size: 10pt; color: var(--soft); }
  .of + h2 { margin-top: 0; }
  .question { grid-template-columns: minmax(0, 1fr) 72mm; column-gap: 5mm; padding-bottom: 0.4rem; }
  .question h3 { margin: 0.5rem 0 0; }
  .question dl { margin: 0; font-size: 8.5pt; line-height: 1.3; }
  .choices li { margin: 0.1rem 0; }
  #questions { break-before: page; }
}
)";

}  // namespace

std::string_view page_style() noexcept { return style; }

}  // namespace hedro34
