"""The whole road of a merge, with the library's own objects and with Python's in every place that a host can fill."""

from __future__ import annotations

import contextlib
import io
import json
import os
import re
import signal
import tempfile
import unittest
from collections.abc import Callable
from pathlib import Path
from typing import Any

import host_files
from support import BIOLOGY, FORM, KEYS, LIBRARY, MIXED, MIXED_FORM, ROOT, Boxes, Errors, LibraryTest, run_python

import hedro34


class Road(LibraryTest):
    def setUp(self) -> None:
        super().setUp()
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def merged(self, test: Any, form: Any, out: Any, document: Any) -> bool:
        self.engine.TemplateIn, self.engine.TemplateOut, self.engine.WENKTD = form, out, document
        self.engine.Tests.RemoveAll()
        self.engine.Tests.Add(test)
        return bool(self.engine.RemoveInvalid() and self.engine.ValidTestVersions() and self.engine.Merge())

    def default_result(self, test: Any, form_file: Path) -> tuple[Any, Any]:
        form, document = hedro34.create("HEDRO34.FormTemplate"), hedro34.create("HEDRO34.DataDocument")
        self.assertTrue(form.Load(form_file))
        self.assertTrue(self.merged(test, form, hedro34.create("HEDRO34.FormTemplate"), document))
        form_out, document_out = self.folder / "form.json", self.folder / "a.ktd"
        self.assertTrue(self.engine.TemplateOut.Save(form_out) and document.Save(document_out))
        self.assertEqual(self.engine.WENKTD, document)
        return json.loads(form_out.read_text())["pages"], json.loads(document_out.read_text())

    def page(self, test: Any) -> str:
        """The page of the merge: without its objects it is a failure, and the file has the same text."""
        report, file = hedro34.create("HEDRO34.Report"), self.folder / "page.html"
        file.unlink(missing_ok=True)
        with self.assertRaises(hedro34.Error) as caught:
            report.Save(file)
        self.assertEqual((caught.exception.number, file.exists()), (91, False))
        report.Document, report.Form, report.Title = self.engine.WENKTD, self.engine.TemplateOut, "<Title> \N{SNOWMAN}"
        report.AddTest(test)
        report.AddMessage("said & done")
        self.assertTrue(report.Document is self.engine.WENKTD or report.Document == self.engine.WENKTD)
        self.assertTrue(report.Save(file))
        self.assertFalse(report.Save(self.folder / "gone" / "page.html"))
        self.assertIn("the folder does not exist", hedro34.last_file_error())
        page = str(report.Page)
        self.assertEqual(file.read_text(encoding="utf-8"), page)
        for part in ("<h1><bdi>&lt;Title&gt; \N{SNOWMAN}</bdi></h1>", "said &amp; done"):
            self.assertIn(part, page)
        return page

    def test_with_the_defaults_and_with_objects_of_python(self) -> None:
        for name, make in host_files.CLASSES.items():
            hedro34.register_class(name, make)
            self.addCleanup(hedro34.revoke_class, name)
        for test_file, form_file in ((BIOLOGY, FORM), (MIXED, MIXED_FORM)):
            test = hedro34.create("HEDRO34.clsHEDROTest")
            test.ImportObjectives, test.StateAbbreviation = 15, "CA"
            self.assertTrue(test.LoadXML(test_file))
            pages, document = self.default_result(test, form_file)
            page = self.page(test)
            if test_file == BIOLOGY:
                graded = [question for question in document["questions"] if question["graded"]]
                self.assertEqual([key for question in graded for key in question["answerKey"]], KEYS)
                self.assertEqual((len(document["questions"]), len(document["objectives"])), (29, 48))
                fields = [field for page in pages for region in page["regions"] for field in region["questions"]]
                ungraded = [field["name"] for field in fields if not field["graded"]]
                self.assertEqual(ungraded[-4:], ["Q21", "Q22", "Q23", "Q24"])
                self.assertEqual(self.boxes.shown, [])
            form, hosts_document = host_files.Template.read(form_file), host_files.Document()
            before = form.as_json()
            self.assertTrue(self.merged(test, form, host_files.Template(), hosts_document))
            self.assertTrue(self.engine.TemplateIn is form and self.engine.WENKTD is hosts_document)
            self.assertEqual(form.as_json(), before)
            self.assertEqual(self.engine.TemplateOut.as_json(), pages)
            self.assertEqual(hosts_document.as_json(), document)
            self.assertEqual(self.page(test), page)
        self.assertEqual(self.errors.told, [])

    def test_example(self) -> None:
        script = ROOT / "clients" / "python" / "examples" / "merge.py"
        done = run_python(script, "--library", LIBRARY, "--out", self.folder)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertEqual([line.split()[1] for line in done.stdout.splitlines()], KEYS)
        self.assertEqual(sorted(os.listdir(self.folder)), ["biology.form.json", "biology.ktd"])
        biology, out = BIOLOGY.read_text(), self.folder / "out"
        out.mkdir()
        for content, said in (
            ("<examview/>", "^{}: no question was loaded\n$"),
            ("<examview>\n<a", "^{}: line 2, column "),
            (biology.replace("question-id='7'", "question-id='3'"), "(?s)^failure 457: .*\nnothing is saved: "),
        ):
            test = self.folder / "test.xml"
            test.write_text(content)
            done = run_python(script, "--library", LIBRARY, "--out", out, test)
            self.assertRegex(done.stderr, said.format(re.escape(str(test))))
            self.assertEqual((done.returncode, done.stdout, os.listdir(out)), (1, "", []))


class Leaving(Boxes, Errors):
    """Does something in the middle of a call, such as taking itself away."""

    def __init__(self, leave: Callable[[], object]) -> None:
        super().__init__()
        self.leave = leave

    def Show(self, text: str, flags: int, title: str) -> int:
        self.leave()
        return 1

    def RaiseError(self, *arguments: Any) -> None:
        self.leave()


FAULT = """
import ctypes, faulthandler, sys, hedro34
faulthandler.enable()
hedro34.load(sys.argv[1])
class Host:
    def Show(self, *arguments):
        strings.AddDelimitedString("a,b")  # an operation within
        ctypes.string_at(0)
    RaiseError = Show
    QuestionCount = property(Show)
test, engine, strings = map(hedro34.create, ("clsHEDROTest", "clsHEDRO", "clsHEDROTestStrings"))
test.LoadXML(sys.argv[2])
engine.Tests.Add(test)
engine.TemplateIn, engine.TemplateOut, engine.WENKTD = Host(), Host(), hedro34.create("DataDocument")
"""
FAULTS = [
    "hedro34.create('Platform').MessageBox = Host(); strings.AddArray([])",
    "engine.Merge()",
]


class Hosts(LibraryTest):
    """Objects of Python that fail, lack what they need, or go away in the middle."""

    def fail_once(self) -> None:
        self.assertFalse(hedro34.create("HEDRO34.clsHEDROTestStrings").AddArray([]))

    def test_that_goes_away_during_the_call(self) -> None:
        platform, engine = self.platform, self.engine
        platform.MessageBox = Leaving(lambda: setattr(platform, "MessageBox", None))
        self.assertTrue(hedro34.create("HEDRO34.clsHEDROTest").LoadXML(MIXED))
        self.assertEqual(hedro34.exposed_objects(), [self.errors])
        platform.MessageBox = self.boxes
        engine.SetError(Leaving(lambda: engine.SetError(None)))
        self.fail_once()
        self.assertEqual(hedro34.exposed_objects(), [self.boxes])
        strings = hedro34.create("HEDRO34.clsHEDROTestStrings")
        engine.SetError(Leaving(lambda: strings.release()))
        self.assertFalse(strings.AddArray([]))
        with self.assertRaisesRegex(hedro34.Error, "released"):
            strings.Count

    def test_templates_that_fail(self) -> None:
        class Broken(host_files.Template):
            @property
            def QuestionCount(self) -> Any:  # type: ignore[override]
                raise ValueError("torn")

        class Wrong(host_files.Template):
            def Copy(self, option: bool) -> Any:
                return "a copy"

        for form, number in ((Broken.read(FORM), 440), (Wrong.read(FORM), 13), (Errors(), 438)):
            with self.subTest(form=form), contextlib.redirect_stderr(io.StringIO()):
                engine = hedro34.create("HEDRO34.clsHEDRO")
                engine.TemplateIn, engine.TemplateOut = form, host_files.Template()
                self.assertIs(engine.TemplateIn, form)
                engine.Tests.Add(self.load())
                self.assertFalse(engine.Merge())
                told = self.errors.told[-1]
                self.assertEqual((told[0], told[3]), (number, "HEDRO34 - clsHEDRO.Merge"))

    def test_native_faults_end_the_process_as_python_does(self) -> None:
        for fault in FAULTS:
            with self.subTest(fault=fault):
                done = run_python("-c", FAULT + fault, LIBRARY, BIOLOGY)
                self.assertRegex(done.stderr, "(?s)^Fatal Python error: Segmentation fault.* in Show\n")
                if "Sanitizer" not in done.stderr:
                    self.assertEqual((done.returncode, done.stdout), (-signal.SIGSEGV, ""))


if __name__ == "__main__":
    unittest.main()
