"""What a person sees: help, one line for a prompt, tables for a notebook, the kinds of error."""

from __future__ import annotations

import html.parser
import inspect
import pydoc
import re
import threading
import tomllib
import unittest
from typing import Any

from support import CLIENT, FORM, KEYS, ROOT, LibraryTest

import hedro34
from hedro34 import _host, _object, types


def in_one_line(text: str) -> str:
    return " ".join(text.replace("|", " ").split())


def helped(target: object) -> str:
    return in_one_line(pydoc.render_doc(target, renderer=pydoc.plaintext))


class Help(unittest.TestCase):
    def test_of_each_member_says_what_it_does(self) -> None:
        page = (ROOT / "docs" / "interfaces.md").read_text(encoding="utf-8")
        count = 0
        for text in page.split("\n### ")[1:]:
            if "| What it does |" not in text:
                continue
            cls = _object.class_named(text.split("\n")[0])
            whole = helped(cls)
            for name, line in re.findall(r"^\| `(\w+)` \| [^|]* \| [^|]* \| ([^|]*) \|", text, re.M):
                with self.subTest(cls=cls.__name__, member=name):
                    self.assertIn(line.replace("`", ""), helped(getattr(cls, name)).replace("`", ""))
                    self.assertIn(line.replace("`", ""), whole.replace("`", ""))
                    count += 1
        self.assertGreater(count, 220)

    def test_by_hand(self) -> None:
        test = _object.class_named("clsHEDROTest")
        for target, said in (
            (getattr(test, "LoadXML"), "LoadXML(self, sExamViewXMLFile: str PathLike[str], bOddDistractorsOnly: bool = False, "
             "bUserCancelled: ByRef[bool] = MISSING, bVerbose: bool = True) -> bool Fills the test from an ExamView XML file; "
             "True when there is a question in it. bOddDistractorsOnly: even questions take the letters of odd ones"),
            (getattr(test, "Title"), "str: The title; the first 255 characters are kept."),
            (types.clsHEDROTest, "str: The title; the first 255 characters are kept."),
            (test, "Readonly properties defined here: NumObjectives int: The number of learning objectives of all questions"),
            (types.HEDROTestQuestionType, "MultipleChoice: Multiple choice; code mc, mr, 2 or 3."),
            (hedro34.create, "create(name: 'str', library: "),
            (hedro34, "help(test.LoadXML)"),
        ):  # fmt: skip
            self.assertIn(said, helped(target))

    def test_properties_that_can_be_written_look_like_it(self) -> None:
        for name, written in (("Title", True), ("Questions", True), ("NumObjectives", False)):
            for cls in (_object.class_named("clsHEDROTest"), types.clsHEDROTest):
                member = inspect.getattr_static(cls, name)
                self.assertEqual((isinstance(member, property), member.fset is not None), (True, written))


    def test_one_version(self) -> None:
        stated = re.search(r"^project\(HEDRO34 VERSION (\S+) ", (ROOT / "CMakeLists.txt").read_text(), re.M)
        project = tomllib.loads((CLIENT / "pyproject.toml").read_text())
        module, _, name = project["tool"]["setuptools"]["dynamic"]["version"]["attr"].rpartition(".")
        self.assertEqual((module, project["project"]["dynamic"]), (types.__name__, ["version"]))
        self.assertEqual({hedro34.__version__, getattr(types, name)}, {stated and stated[1]})

    def test_a_class_is_not_called(self) -> None:
        with self.assertRaisesRegex(AttributeError, r'hedro34.create\("clsHEDROTest"\) makes one$'):
            getattr(hedro34, "clsHEDROTest")
        self.assertFalse(hasattr(hedro34, "__path") or hasattr(hedro34, "clsHEDROTests"))


HOSTILE = '<script>alert("1")</script> & \'\u202e\x1b[31m\ud83d\n' + "x" * 3000


class Page(html.parser.HTMLParser):
    """Tags, cells by row, and text."""

    def __init__(self, page: str) -> None:
        super().__init__()
        self.tags: set[str] = set()
        self.rows: list[list[str]] = []
        self.frames: list[dict[str, str | None]] = []
        self.words, self.in_cell = "", False
        self.feed(page)
        self.close()

    def handle_starttag(self, tag: str, attributes: list[tuple[str, str | None]]) -> None:
        self.tags.add(tag)
        self.frames += [dict(attributes)] if tag == "iframe" else []
        if tag == "tr":
            self.rows.append([])
        elif tag in ("td", "th"):
            self.rows[-1].append("")
            self.in_cell = True
        elif tag == "br":
            self.handle_data("\n")

    def handle_endtag(self, tag: str) -> None:
        self.in_cell = self.in_cell and tag not in ("td", "th")

    def handle_data(self, data: str) -> None:
        self.words += data
        if self.in_cell:
            self.rows[-1][-1] += data


class Shown(LibraryTest):
    def merge(self) -> Any:
        merge = hedro34.create("clsHEDRO")
        merge.TemplateIn, merge.TemplateOut = hedro34.create("FormTemplate"), hedro34.create("FormTemplate")
        self.assertTrue(merge.TemplateIn.Load(FORM))
        merge.Tests.Add(self.load())
        self.assertTrue(merge.Merge())
        return merge

    def test_in_one_line(self) -> None:
        merge = self.merge()
        test, document = merge.Tests[1], merge.WENKTD
        region = merge.TemplateIn.Pages[1].Regions[2]
        for target, said in (
            (test, '<clsHEDROTest "Biology 1 Midterm" 20 questions>'),
            (merge, "<clsHEDRO 1 test, with a document>"),
            (merge.Tests, "<clsHEDROTests 1 test>"),
            (test.Questions, "<clsHEDROTestQuestions 20 questions>"),
            (test.Questions[13], '<clsHEDROTestQuestion "3141" TrueFalse "All living things are made of one or mo\u2026">'),
            (test.Questions[10].CorrectAnswers, "<clsHEDROTestCorrect 3 answers>"),
            (test.Sequences, "<clsHEDROTestSequences 0 versions>"),
            (merge.TemplateIn, "<FormTemplate 2 pages, 29 fields>"),
            (region, '<FormRegion "ID" 4 fields>'),
            (region.Questions[1].ChoiceLabels, "<FormChoiceList 10 choices>"),
            (document, "<DataDocument 29 questions, 1 version>"),
            (document.Versions.Orders[1], "<DataOrder 29 entries>"),
            (document.Questions[6], '<DataQuestion "Q1" key "B">'),
        ):
            self.assertEqual(repr(target), said)
        self.assertRegex(repr(self.platform), "^<Platform at 0x[0-9a-f]+>$")
        for title, said in (("", '""'), ("a\\", '"a\\\\"'), ("\u05d0 \U0001f600", '"\u05d0 \U0001f600"')):
            test.Title = title
            self.assertEqual(repr(test), f"<clsHEDROTest {said} 20 questions>")
        test.Title = HOSTILE
        said = '"<script>alert(\\"1\\")</script> & \'\\u202e\\x1b[31m\\ud83d\\n\u2026"'
        self.assertEqual(repr(test), f"<clsHEDROTest {said} 20 questions>")

    def test_whatever_happens(self) -> None:
        merge, test = hedro34.create("clsHEDRO"), self.load()
        test.Questions[1].Answers = test.Questions[2].CorrectAnswers = test.YesNoScale = None
        self.assertIn("20 questions", test._repr_html_())
        test.Questions = merge.Tests = merge.WENKTD = None
        self.assertEqual(repr(test), '<clsHEDROTest "Biology 1 Midterm" no questions>')
        self.assertEqual(repr(merge), "<clsHEDRO no tests, no document>")
        self.assertIn("0 questions", test._repr_html_())
        self.assertIn("document: none", merge._repr_html_())
        elsewhere: list[object] = []
        thread = threading.Thread(target=lambda: elsewhere.extend((repr(test), test._repr_html_())))
        thread.start()
        thread.join()
        self.assertEqual(elsewhere, ['<clsHEDROTest of thread "MainThread">', None])
        test.release()
        self.assertEqual((repr(test), test._repr_html_()), ("<clsHEDROTest released>", None))

        class FormTemplate:
            asked: list[str] = []

            def __getattr__(self, name: str) -> Any:
                self.asked.append(name)
                raise hedro34.Error("jam")

        merge.TemplateIn = own = FormTemplate()  # one of the host's is named only
        self.assertIn("form: FormTemplate;", merge._repr_html_())
        self.assertEqual(own.asked, [])
        as_librarys = _object.class_named("FormTemplate")
        failing = as_librarys(_host.expose(own))
        self.assertRegex(repr(failing), "^<FormTemplate at 0x[0-9a-f]+>$")
        self.assertIsNone(getattr(failing, "_repr_html_")())
        with self.assertRaises(AttributeError):
            getattr(failing, "PageCount")
        self.assertFalse(hasattr(merge.TemplateOut, "_repr_html_"))
        self.assertEqual((self.errors.told, self.boxes.shown), ([], []))

    def test_pages(self) -> None:
        merge = self.merge()
        test = Page(merge.Tests[1]._repr_html_())
        self.assertEqual(test.rows[0], ["", "ID", "Type", "Question", "Choices", "Key", "Points"])
        self.assertEqual([row[5] for row in test.rows[1:]], KEYS)
        choices = ["\u2713 A glucose", "B carbon dioxide", "\u2713 C oxygen", "D nitrogen"]
        self.assertEqual(test.rows[11][4].split("\n"), choices)
        self.assertEqual(test.rows[14][4].split("\n"), ["T True", "\u2713 F False"])
        self.assertIn("Biology 1 Midterm (version A): 20 questions", test.words)
        self.assertEqual(Page(merge._repr_html_()).rows[1:], [[str(n), key] for n, key in enumerate(KEYS, 1)])
        report = hedro34.create("Report")
        report.Document, report.Form = merge.WENKTD, merge.TemplateOut
        self.assertEqual(Page(report._repr_html_()).frames[0]["srcdoc"], report.Page)
        self.assertEqual(repr(report), '<Report "" with a document>')
        report.AddTest(merge.Tests[1])
        [frame] = Page(merge._repr_html_()).frames
        self.assertEqual((frame["srcdoc"], "sandbox" in frame, "(A,C,E)" in report.Page), (report.Page, True, True))
        merge.WENKTD.Clear()
        self.assertEqual((Page(merge._repr_html_()).frames, report._repr_html_()), ([], None))
        self.assertTrue(merge.Merge())
        merge.Tests.RemoveAll()
        for name in ("unit-a.xml", "unit-b.xml"):
            merge.Tests.Add(self.load(ROOT / "examples" / "versions" / name))
        keys = zip("B A C D B A (A,B,D) T F T F T".split(), "D (A,B,D) B A A B C T T T F F".split())
        expected = [["", "Version A", "Version B"], *([str(n), *both] for n, both in enumerate(keys, 1))]
        self.assertEqual(Page(merge._repr_html_()).rows, expected)
        self.assertIn("did not run to its end", Page(merge._repr_html_()).words)  # two tests, and an order of one
        document = Page(merge.WENKTD._repr_html_())
        self.assertEqual([row[4] for row in document.rows[1:] if row[3] == "graded"], KEYS)
        form = Page(merge.TemplateIn._repr_html_())
        self.assertEqual(form.rows[2:4], [["1", "ID", "4", "no", "0 1 2 3 4 5 6 7 8 9"], ["1", "Q1", "1", "yes", "A B C D E"]])
        self.assertFalse(merge.Merge())  # two versions, and no field for them
        shown = Page(merge._repr_html_())
        self.assertEqual((shown.frames, "did not run to its end" in shown.words), ([], True))
        merge.WENKTD.Clear()
        self.assertIn("The merge has not run.", Page(merge._repr_html_()).words)

    def test_hostile_texts_and_many_rows(self) -> None:
        merge = self.merge()
        test, document = merge.Tests[1], merge.WENKTD
        expected = '<script>alert("1")</script> & \'[U+202E][U+001B][31m[U+D83D]\nxxx'
        question = test.Questions[1]
        test.Title = test.Version = question.ID = question.QuestionText = question.Answers[1] = HOSTILE
        test.MultipleChoiceOddScale[2] = HOSTILE  # the key of question 1
        field = merge.TemplateIn.Pages[1].Regions[2].Questions[1]
        merge.TemplateIn.Pages[1].Regions[2].Name = field.ChoiceLabels[1] = HOSTILE
        document.Questions[1].Name = document.Questions[1].QuestionText = document.Description = HOSTILE
        document.Questions[1].AnswerKey.Add(HOSTILE)
        document.Versions.VersionAnswers.Add(HOSTILE)
        known = set("style div p b span br table thead tbody tr th td details summary iframe".split())
        for target in (test, merge, merge.TemplateIn, document):
            page = target._repr_html_()
            page.encode("utf-8")
            shown = Page(page)
            self.assertEqual(shown.tags - known, set())
            self.assertIn(expected if target is not merge else expected[:20], shown.words)
            self.assertFalse({"\u202e", "\x1b"} & set(page))
        words = Page(test._repr_html_()).rows[1][3]
        self.assertEqual((words[:5], len(words) < 1100), ("<scri", True))
        for n in range(300):
            extra = hedro34.create("clsHEDROTestQuestion")
            extra.ID = f"extra {n}"
            self.assertTrue(test.Questions.Add(extra))
        shown = Page(test._repr_html_())
        self.assertEqual((len(shown.rows), shown.words.endswith("\u2026 and 220 more questions")), (101, True))
        self.assertEqual((self.errors.told, self.boxes.shown), ([], []))


if __name__ == "__main__":
    unittest.main()
