"""Objects as a person sees them: one line for a prompt, a table for a notebook.

Only members that cannot report a failure or show a box are read. Texts are cut, and lists too: a table says what it leaves
out. Whatever goes wrong on the way, an object is still shown by its class.
"""

from __future__ import annotations

import html
import unicodedata
from collections.abc import Callable, Iterable
from itertools import islice
from typing import Any

LINE, CELL, ROWS, COLUMNS = 40, 1000, 100, 20  # most characters in a line's text and in a cell, rows, versions
PAGE = 2_000_000  # most characters of the library's own page
DIRECTIONS = "\u061c\u200e\u200f\u202a\u202b\u202c\u202d\u202e\u2066\u2067\u2068\u2069"


# --- one line --------------------------------------------------------------------------------------------------------


def text(value: object) -> str:
    """In double quotes and on one line, with what cannot be printed as its escape."""
    shown = cut(str(value), LINE)
    return '"' + "".join(c if c.isprintable() and c not in '\\"' else _escape(c) for c in shown) + '"'


def _escape(c: str) -> str:
    return "\\" + c if c in '\\"' else c.encode("unicode_escape").decode()


def cut(value: str, most: int) -> str:
    return value if len(value) <= most else value[: most - 1] + "\u2026"


def counted(count: int, what: str) -> str:
    many = what[:-1] + "ies" if what.endswith("y") else what + "s"
    return f"{int(count)} {what if count == 1 else many}"


def _size(what: str) -> Callable[[Any], str]:
    return lambda items: counted(items.Count, what)


def _size_of(items: Any, what: str) -> str:
    return f"no {what}s" if items is None else counted(items.Count, what)


def _test(test: Any) -> str:
    return f"{text(test.Title)} {_size_of(test.Questions, 'question')}"


def _merge(merge: Any) -> str:
    return f"{_size_of(merge.Tests, 'test')}, {'no' if merge.WENKTD is None else 'with a'} document"


def _question(question: Any) -> str:
    return f"{text(question.ID)} {_type_name(question.QuestionType)} {text(question.QuestionText)}"


def _form(form: Any) -> str:
    return f"{counted(form.PageCount, 'page')}, {counted(form.QuestionCount, 'field')}"


def _document(document: Any) -> str:
    return f"{counted(document.Questions.Count, 'question')}, {counted(document.Versions.Orders.Count, 'version')}"


def _data_question(question: Any) -> str:
    return f"{text(question.Name)} key {text(_first(question.AnswerKey))}"


LINES: dict[str, Callable[[Any], str]] = {
    "clsHEDRO": _merge,
    "clsHEDROTest": _test,
    "clsHEDROTestQuestion": _question,
    "clsHEDROTestStrings": _size("text"),
    "clsHEDROTestCorrect": _size("answer"),
    "clsHEDROTestSequence": lambda sequence: f"{text(sequence.Answer)} {_size_of(sequence.Order, 'question')}",
    "clsHEDROTests": _size("test"),
    "clsHEDROTestQuestions": _size("question"),
    "clsHEDROTestSequences": _size("version"),
    "clsHEDROTestSequenceOrder": _size("question"),
    "FormTemplate": _form,
    "FormPages": _size("page"),
    "FormPage": lambda page: counted(page.Regions.Count, "region"),
    "FormRegions": _size("region"),
    "FormRegion": lambda region: f"{text(region.Name)} {counted(region.Questions.Count, 'field')}",
    "FormQuestions": _size("field"),
    "FormQuestion": lambda field: text(field.Name),
    "FormChoiceList": _size("choice"),
    "DataDocument": _document,
    "DataQuestions": _size("question"),
    "DataQuestion": _data_question,
    "DataStrings": _size("text"),
    "DataObjectives": _size("objective"),
    "DataObjective": lambda objective: text(objective.Name),
    "DataObjectiveFlag": lambda flag: str(flag.Value),
    "DataVersions": lambda versions: counted(versions.Orders.Count, "version"),
    "DataOrders": _size("order"),
    "DataOrder": _size("entry"),
    "Report": lambda report: f"{text(report.Title)} {'no' if report.Document is None else 'with a'} document",
}


def line(target: Any) -> str:
    """What `repr` says of an object behind its class; "" where that is all."""
    said = LINES.get(type(target).__name__)
    try:
        return said(target) if said else ""
    except Exception:  # a repr never fails
        return ""


# --- tables ----------------------------------------------------------------------------------------------------------


def cell(value: object) -> str:
    """Text on a page: never markup, with controls and direction marks as their numbers."""
    shown = cut(str(value), CELL).replace("\r\n", "\n").replace("\r", "\n")
    marked = html.escape("".join(c if _harmless(c) else f"[U+{ord(c):04X}]" for c in shown)).replace("\n", "<br>")
    return f"<span>{marked}</span>" if len(shown) > 15 else marked  # a short one stays in one piece


def _harmless(c: str) -> bool:
    return c in "\n\t" or (c not in DIRECTIONS and unicodedata.category(c) not in ("Cc", "Cs", "Zl", "Zp"))


_STYLE = (
    "<style>.hedro34 th, .hedro34 td { text-align: left !important; vertical-align: top }"
    " .hedro34 span { white-space: pre-wrap; overflow-wrap: anywhere }</style>"
)


def _table(title: str, heads: Iterable[str], rows: Iterable[Iterable[str]], left: str = "") -> str:
    """A table of cells that are markup already; `left` says what it does not show."""
    head = "".join(f'<th scope="col" dir="auto">{one}</th>' for one in heads)
    body = "\n".join("<tr>" + "".join(f'<td dir="auto">{one}</td>' for one in row) + "</tr>" for row in rows)
    table = f"<table><thead><tr>{head}</tr></thead>\n<tbody>\n{body}\n</tbody></table>"
    note = f"<p>{left}</p>" if left else ""
    return f'{_STYLE}<div class="hedro34"><p dir="auto">{title}</p>\n{table}{note}</div>'


def _more(count: int, shown: int, what: str) -> str:
    return f"\u2026 and {count - shown} more {what}s" if count > shown else ""


def _first(items: Any) -> str:
    return str(items.Item(1)) if items.Count else ""


def _type_name(kind: Any) -> str:
    return str(getattr(kind, "name", kind))


def _points(value: float) -> str:
    return f"{value:g}"


def _can_have_labels(test: Any, question: Any) -> bool:
    scales = (test.MultipleChoiceOddScale, test.MultipleChoiceEvenScale, test.TrueFalseScale, test.YesNoScale)
    return None not in (*scales, question.Answers, question.CorrectAnswers)


def _key(test: Any, position: int, question: Any) -> str:
    return str(test.CorrectAnswersAsString(position)) if _can_have_labels(test, question) else ""


def _choices(test: Any, position: int, question: Any) -> str:
    """A line for each choice: its label, its text, the correct ones ticked."""
    if not _can_have_labels(test, question):
        return ""
    labels, answers, correct = test.QuestionScale(position), question.Answers, question.CorrectAnswers
    count, keys = max(labels.Count, answers.Count), set(islice(correct, ROWS))
    lines = []
    for n in range(1, min(count, ROWS) + 1):
        label, answer = cell(labels.Item(n)), cell(answers.Item(n))
        words = f"{label} {answer}".strip()
        lines.append(f"<b>&#10003; {words}</b>" if n in keys else words)
    return "<br>".join(filter(None, (*lines, _more(count, ROWS, "choice"))))


def _test_page(test: Any) -> str:
    questions = test.Questions
    count = 0 if questions is None else questions.Count
    version = f" (version {cell(test.Version)})" if test.Version else ""
    rows = []
    for position in range(1, min(count, ROWS) + 1):
        question = questions.Item(position)
        name = _type_name(question.QuestionType)
        words, choices = cell(question.QuestionText), _choices(test, position, question)
        key, points = cell(_key(test, position, question)), _points(question.CorrectPoints)
        rows.append((str(position), cell(question.ID), cell(name), words, choices, key, points))
    title = f"<b>{cell(test.Title)}</b>{version}: {counted(count, 'question')}"
    heads = ("", "ID", "Type", "Question", "Choices", "Key", "Points")
    return _table(title, heads, rows, _more(count, ROWS, "question"))


def _merge_page(merge: Any) -> str:
    tests = merge.Tests
    count = 0 if tests is None else tests.Count
    shown = [tests.Item(n) for n in range(1, min(count, COLUMNS) + 1)]
    lists = [None if test is None else test.Questions for test in shown]
    sizes = [0 if questions is None else questions.Count for questions in lists]
    longest = max(sizes, default=0)
    rows = []
    for position in range(1, min(longest, ROWS) + 1):
        row = [str(position)]
        for test, questions, size in zip(shown, lists, sizes):
            question = questions.Item(position) if questions is not None and position <= size else None
            row.append("" if question is None else cell(_key(test, position, question)))
        rows.append(row)
    parts = {"form": merge.TemplateIn, "changed form": merge.TemplateOut, "document": merge.WENKTD}
    title = f"<b>Merge</b>: {counted(count, 'test')}"
    title += "".join(f"; {name}: {_whose(part)}" for name, part in parts.items())
    title += ". The key of each test by itself, in its own order and labels."
    heads = ["", *(cell(_version(test, n)) for n, test in enumerate(shown, 1))]
    left = "; ".join(filter(None, (_more(longest, ROWS, "question"), _more(count, COLUMNS, "version"))))
    return _table(title, heads, rows, left) + _report(merge, count, shown)


def _report(merge: Any, count: int, tests: list[Any]) -> str:
    """The library's page of a merge, folded; nothing where it is not the library's own throughout."""
    from ._library import loaded

    try:
        if not_run := _not_run(merge, count):
            return f"<p>{not_run}</p>"
        with loaded().create("HEDRO34.Report") as report:
            report.Document, report.Form = merge.WENKTD, merge.TemplateOut
            for test in tests:
                report.AddTest(test)
            frame = _report_page(report)
    except Exception:
        return ""
    return f"<details><summary>The sheet, the keys of the versions on it, the questions</summary>{frame}</details>"


def _not_run(merge: Any, count: int) -> str:
    """Why a merge has no page, as far as its document tells; a merge that ends early has recorded fewer orders than tests."""
    from ._object import Object

    document = merge.WENKTD
    if document is None or not isinstance(document, Object):
        return ""
    if not document.Questions.Count:
        return "The merge has not run."
    if document.Versions.Orders.Count != count:
        return "No page: the merge did not run to its end, or has other tests since."
    return ""


def _report_page(report: Any) -> str:
    from ._object import Object

    document, form = report.Document, report.Form
    if not isinstance(document, Object) or not (form is None or isinstance(form, Object)):
        raise TypeError("an object of the host's own, which is not asked")
    if not 0 < document.Questions.Count <= 10 * ROWS or len(page := report.Page) > PAGE:
        raise ValueError("nothing to show, or more than a notebook takes")
    return f'<iframe sandbox title="The page" srcdoc="{html.escape(page)}" style="width:100%;height:40em"></iframe>'


def _version(test: Any, number: int) -> str:
    return f"Version {test.Version}" if test is not None and test.Version else f"Test {number}"


def _whose(part: Any) -> str:
    if part is None:
        return "none"
    from ._object import Object  # which imports this module

    said = line(part) if isinstance(part, Object) else ""  # an object of Python is only named
    return cell(said or type(part).__name__)


def _form_page(form: Any) -> str:
    rows: list[tuple[str, ...]] = []
    left = ""
    for number in range(1, form.Pages.Count + 1):
        regions = form.Pages.Item(number).Regions
        room = ROWS - len(rows)
        if regions.Count > room:
            left = "\u2026 and more regions"
        rows += (_region(number, regions.Item(n)) for n in range(1, min(regions.Count, room) + 1))
        if left:
            break
    title = f"<b>Form</b>: {cell(_form(form))}, {form.GradedQuestionCount} graded"
    return _table(title, ("Page", "Region", "Fields", "Graded", "Choices"), rows, left)


def _region(page: int, region: Any) -> tuple[str, ...]:
    """The fields of a region are alike as a rule: the first one stands for them."""
    fields = region.Questions
    if not fields.Count:
        return str(page), cell(region.Name), "0", "", ""
    first = fields.Item(1)
    labels = " ".join(cell(label) for label in islice(first.ChoiceLabels.AsArray(1), ROWS))
    return str(page), cell(region.Name), str(fields.Count), "yes" if first.Graded else "no", labels


def _document_page(document: Any) -> str:
    questions, orders, versions = document.Questions, document.Versions.Orders, document.Versions.VersionAnswers
    rows = []
    for position in range(1, min(questions.Count, ROWS) + 1):
        question = questions.Item(position)
        kind = "subjective" if question.Subjective else "graded" if question.Graded else "not graded"
        points = _points(question.SubjectivePoints if question.Subjective else question.CorrectPoints)
        points = "" if kind == "not graded" else points
        words, key = cell(question.QuestionText), cell(_first(question.AnswerKey))
        rows.append((str(position), cell(question.Name), words, kind, key, points))
    named = ", ".join(cell(versions.Item(n)) for n in range(1, min(versions.Count, COLUMNS) + 1))
    title = f"<b>{cell(document.Description) or 'Document'}</b>: {counted(questions.Count, 'question')}, "
    title += counted(orders.Count, "version") + (f" ({named})" if named else "")
    of_version = f" ({cell(versions.Item(1))})" if versions.Count > 1 else ""
    heads = ("", "Name", "Question", "Kind", f"Key{of_version}", "Points")
    return _table(title, heads, rows, _more(questions.Count, ROWS, "question"))


PAGES: dict[str, Callable[[Any], str]] = {
    "clsHEDRO": _merge_page,
    "clsHEDROTest": _test_page,
    "FormTemplate": _form_page,
    "DataDocument": _document_page,
    "Report": _report_page,
}


def page(target: Any) -> str | None:
    """What a notebook shows; None, so that it takes the line, where that cannot be made."""
    try:
        return PAGES[type(target).__name__](target)
    except Exception:
        return None
