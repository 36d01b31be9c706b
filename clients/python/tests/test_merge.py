"""The whole road of a merge, with the library's own objects and with Python's in every place that a host can fill."""

from __future__ import annotations

import contextlib
import io
import json
import os
import subprocess
import sys
import tempfile
import threading
import unittest
from collections.abc import Callable
from pathlib import Path
from typing import Any

import host_files
from support import BIOLOGY, FORM, KEYS, LIBRARY, ROOT, Boxes, Errors, LibraryTest

import hedro34

MIXED, MIXED_FORM = ROOT / "examples" / "mixed.xml", ROOT / "examples" / "mixed.form.json"


class Road(LibraryTest):
    def setUp(self) -> None:
        super().setUp()
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def merged(self, tests: list[Any], form: Any, out: Any, document: Any) -> bool:
        self.engine.TemplateIn, self.engine.TemplateOut, self.engine.WENKTD = form, out, document
        self.engine.Tests.RemoveAll()
        for test in tests:
            self.engine.Tests.Add(test)
        return bool(self.engine.RemoveInvalid() and self.engine.ValidTestVersions() and self.engine.Merge())

    def default_result(self, test: Any, form_file: Path) -> tuple[Any, Any]:
        form = hedro34.create("HEDRO34.FormTemplate")
        self.assertTrue(form.Load(form_file))
        document = hedro34.create("HEDRO34.DataDocument")
        self.assertTrue(self.merged([test], form, hedro34.create("HEDRO34.FormTemplate"), document))
        form_out, document_out = self.folder / "form.json", self.folder / "a.ktd"
        self.assertTrue(self.engine.TemplateOut.Save(form_out) and document.Save(document_out))
        self.assertEqual(self.engine.WENKTD, document)
        return json.loads(form_out.read_text())["pages"], json.loads(document_out.read_text())

    def test_with_the_defaults(self) -> None:
        test = hedro34.create("HEDRO34.clsHEDROTest")
        test.ImportObjectives, test.StateAbbreviation = 15, "CA"
        self.assertTrue(test.LoadXML(BIOLOGY))
        pages, document = self.default_result(test, FORM)
        self.assertEqual((len(test.Questions), test.NumObjectives), (20, 58))
        graded = [question for question in document["questions"] if question["graded"]]
        self.assertEqual(len(document["questions"]), 29)
        self.assertEqual([key for question in graded for key in question["answerKey"]], KEYS)
        self.assertEqual(len(document["objectives"]), 48)  # 47 of the test behind the default one
        fields = [field for page in pages for region in page["regions"] for field in region["questions"]]
        self.assertEqual([f["name"] for f in fields if not f["graded"]][-4:], ["Q21", "Q22", "Q23", "Q24"])
        self.assertEqual((self.errors.told, self.boxes.shown), ([], []))

    def test_with_objects_of_python(self) -> None:
        for name, make in host_files.CLASSES.items():
            hedro34.register_class(name, make)
            self.addCleanup(hedro34.revoke_class, name)
        for test_file, form_file in ((BIOLOGY, FORM), (MIXED, MIXED_FORM)):
            with self.subTest(test=test_file.name):
                test = hedro34.create("HEDRO34.clsHEDROTest")
                test.ImportObjectives, test.StateAbbreviation = 15, "CA"
                self.assertTrue(test.LoadXML(test_file))
                pages, document = self.default_result(test, form_file)
                form, hosts_document = host_files.Template.read(form_file), host_files.Document()
                before = form.as_json()
                self.assertTrue(self.merged([test], form, host_files.Template(), hosts_document))
                self.assertIs(self.engine.TemplateIn, form)
                self.assertIs(self.engine.WENKTD, hosts_document)
                self.assertEqual(form.as_json(), before)
                self.assertEqual(self.engine.TemplateOut.as_json(), pages)
                self.assertEqual(hosts_document.as_json(), document)
        self.assertEqual(self.errors.told, [])

    def test_versions(self) -> None:
        samples = ROOT / "examples" / "versions"
        form = hedro34.create("HEDRO34.FormTemplate")
        self.assertTrue(form.Load(samples / "unit.form.json"))
        tests = [self.load(samples / f"unit-{letter}.xml") for letter in "abcd"]
        self.assertTrue(tests[0].Sequences.AddDefault(tests[0].Questions, tests[0].Version))
        for version in tests[1:]:
            self.assertTrue(tests[0].AddSequence(version))
        self.engine.SequenceQuestion = 1
        document = hedro34.create("HEDRO34.DataDocument")
        self.assertTrue(self.merged(tests, form, hedro34.create("HEDRO34.FormTemplate"), document))
        self.assertEqual([sequence.Answer for sequence in tests[0].Sequences], list("ABCD"))
        order = document.Versions.Orders.Item(3)
        expected = [1, 2, 9, 8, 7, 6, 5, 4, 3, 14, 13, 12, 11, 10, 15, 16, 17]
        self.assertEqual([order.Item(n) for n in range(1, order.Count + 1)], expected)

    def test_example(self) -> None:
        script = ROOT / "clients" / "python" / "examples" / "merge.py"
        command = [sys.executable, script, "--library", LIBRARY, "--out", self.folder]
        done = subprocess.run(command, capture_output=True, text=True, timeout=120)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertEqual([line.split()[1] for line in done.stdout.splitlines()], KEYS)
        self.assertEqual(sorted(os.listdir(self.folder)), ["biology.form.json", "biology.ktd"])


class LeavingBox(Boxes):
    def __init__(self, platform: Any) -> None:
        super().__init__()
        self.platform = platform

    def Show(self, text: str, flags: int, title: str) -> int:
        self.platform.MessageBox = None
        return 1


class LeavingErrors:
    def __init__(self, leave: Callable[[Any], object], argument: Any) -> None:
        self.leave, self.argument = leave, argument

    def RaiseError(self, *arguments: Any) -> None:
        self.leave(self.argument)


def on_another_thread(work: Callable[[], object]) -> None:
    thread = threading.Thread(target=work)
    thread.start()
    thread.join()


class Hosts(LibraryTest):
    """Objects of Python that fail, lack what they need, or go away in the middle."""

    def fail_once(self) -> None:
        self.assertFalse(hedro34.create("HEDRO34.clsHEDROTestStrings").AddArray([]))

    def test_error_objects(self) -> None:
        class Raises:
            def RaiseError(self, *arguments: Any) -> None:
                raise RuntimeError("no log")

        class Text:
            def RaiseError(self, *arguments: Any) -> str:
                return "no number"

        cases = {Errors: None, object: "(#438) Object doesn't support", Raises: "(#440) ", Text: "(#13) Type mismatch"}
        cases[type("Lacks", (), {"Other": 1})] = cases.pop(object)
        for kind, begin in cases.items():
            with self.subTest(kind=kind.__name__), contextlib.redirect_stderr(io.StringIO()) as printed:
                self.boxes.shown.clear()
                self.assertTrue(self.engine.SetError(kind()))
                self.fail_once()
                self.assertEqual(len(self.boxes.shown), 0 if begin is None else 1)
                if begin is not None:
                    text, flags, title = self.boxes.shown[0]
                    self.assertEqual((flags, title), (48, "Application Error"))
                    self.assertTrue(text.startswith("Application error: " + begin), text)
                    self.assertIn("occurred while trying to display:\r\n\r\nError# 9: Subscript out of range", text)
                    self.assertTrue(text.endswith(", Location: HEDRO34 - clsHEDROTestStrings.AddArray"), text)
                self.assertEqual("RuntimeError: no log" in printed.getvalue(), kind is Raises)
        self.assertFalse(self.engine.SetError(None))
        self.fail_once()
        self.assertTrue(self.boxes.shown[-1][0].startswith("Error# 9: Subscript out of range, Location: "))

    def test_message_boxes(self) -> None:
        self.assertIs(self.platform.MessageBox, self.boxes)
        test = hedro34.create("HEDRO34.clsHEDROTest")
        for answer, loaded in ((1, True), (2, False), ("1", True)):
            self.boxes.answer = answer
            self.assertIs(test.LoadXML(MIXED), loaded)
        for answer in (None, "neither", [1], b"1"):
            self.boxes.answer = answer
            with self.subTest(answer=answer), contextlib.redirect_stderr(io.StringIO()):
                test.LoadXML(MIXED)
                self.assertIn(test.LoadXML(BIOLOGY), (True, False))  # and the library goes on

    def test_that_goes_away_during_the_call(self) -> None:
        self.platform.MessageBox = LeavingBox(self.platform)
        self.assertTrue(hedro34.create("HEDRO34.clsHEDROTest").LoadXML(MIXED))
        self.assertEqual(hedro34.exposed_objects(), [self.errors])
        self.platform.MessageBox = self.boxes
        self.engine.SetError(LeavingErrors(lambda engine: engine.SetError(None), self.engine))
        self.fail_once()
        self.assertEqual(hedro34.exposed_objects(), [self.boxes])
        for release in (lambda strings: strings.release(), lambda strings: on_another_thread(strings.release)):
            strings = hedro34.create("HEDRO34.clsHEDROTestStrings")
            self.engine.SetError(LeavingErrors(release, strings))
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

        for kind, number in ((Broken, 440), (Wrong, 13), (Errors, 438)):
            with self.subTest(kind=kind.__name__), contextlib.redirect_stderr(io.StringIO()):
                engine = hedro34.create("HEDRO34.clsHEDRO")
                engine.TemplateIn = kind.read(FORM) if kind is not Errors else kind()
                engine.TemplateOut = host_files.Template()
                engine.Tests.Add(self.load())
                self.assertFalse(engine.Merge())
                told = self.errors.told[-1]
                self.assertEqual((told[0], told[3]), (number, "HEDRO34 - clsHEDRO.Merge"))

    def test_an_interrupt_is_raised_when_the_call_is_over(self) -> None:
        class Stops(Boxes):
            def Show(self, text: str, flags: int, title: str) -> int:
                raise KeyboardInterrupt

        self.platform.MessageBox = Stops()
        test = hedro34.create("HEDRO34.clsHEDROTest")
        with self.assertRaises(KeyboardInterrupt):
            test.LoadXML(MIXED)
        self.assertTrue(test.LoadXML(BIOLOGY))


if __name__ == "__main__":
    unittest.main()
