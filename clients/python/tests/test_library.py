"""The library called from Python: members, arguments, collections, errors, speed."""

from __future__ import annotations

import os
import pickle
import subprocess
import sys
import tempfile
import threading
import time
import unittest
from pathlib import Path
from typing import Any

from support import BIOLOGY, KEYS, LIBRARY, ROOT, Errors, LibraryTest

import hedro34


class Members(LibraryTest):
    def test_properties_in_any_case(self) -> None:
        test = hedro34.create("hedro34.CLShedrotest")
        test.Title = "Maß \U0001f600 \ud800\0end"
        self.assertEqual((test.title, test.TITLE), (test.Title, "Maß \U0001f600 \ud800\0end"))
        test.stateabbreviation = "CAX"
        self.assertEqual(test.StateAbbreviation, "CA")
        self.assertIs(test.Source, hedro34.HEDROTestSourceType.ExamView)
        test.Source = 77  # any number is stored
        self.assertEqual(test.Source, 77)
        self.assertIs(test.QuestionType("mc"), hedro34.HEDROTestQuestionType.MultipleChoice)
        test.ImportObjectives = hedro34.HEDROTestImportObjectives.Learning | hedro34.HEDROTestImportObjectives.State
        self.assertEqual(test.ImportObjectives, 5)
        self.assertIn("CorrectAnswersAsString", dir(test))
        question = hedro34.create("clsHEDROTestQuestion")
        question.CorrectPoints = 2.5
        self.assertEqual((question.CorrectPoints, question.CorrectAnd), (2.5, True))

    def test_collections(self) -> None:
        strings = hedro34.create("HEDRO34.clsHEDROTestStrings")
        self.assertTrue(strings.AddArray(hedro34.Array(["a", "b"], 5)))
        self.assertTrue(strings.Add("c", "Key", Before=1))
        self.assertEqual((list(strings), len(strings), "b" in strings), (["c", "a", "b"], 3, True))
        self.assertEqual(list(reversed(strings)), ["b", "a", "c"])
        self.assertEqual((strings[1], strings["KEY"], strings(2), strings.Item(9), strings(9)), ("c", "c", "a", "", ""))
        strings[2] = "x" * 300
        self.assertEqual(strings[2], "x" * 255)
        for index, kind in ((0, IndexError), (4, IndexError), (-1, IndexError), ("none", KeyError), (1.5, TypeError)):
            with self.subTest(index=index), self.assertRaises(kind):
                strings[index]
        bounds = [(a, a.lower_bound) for a in (strings.AsArray(), strings.AsArray(-3))]
        self.assertEqual(bounds, [(["c", "x" * 255, "b"], 1), (["c", "x" * 255, "b"], -3)])
        self.assertTrue(strings.RemoveAll() and not strings)
        self.assertEqual((strings.AsArray(), strings.AsArray().lower_bound), ([], None))
        self.assertFalse(strings.AddArray([]))  # without bounds: a failure, told to the error object
        self.assertEqual(len(self.errors.told), 1)
        self.assertEqual(self.errors.told[0][3], "HEDRO34 - clsHEDROTestStrings.AddArray")
        self.assertEqual(len(self.errors.told[0]), 13)

    def test_identity(self) -> None:
        test = self.load()
        self.assertEqual(test.Questions, test.Questions)
        self.assertEqual(len({test.Questions(1), test.Questions[1], test.Questions[2]}), 2)
        self.assertIn(test.Questions[3], list(test.Questions))
        with self.assertRaises(TypeError):
            pickle.dumps(test)
        kept = test.Questions[1]
        test.release()
        self.assertTrue(kept.ID)

    def test_keys_by_name(self) -> None:
        test = self.load()
        self.assertEqual([test.CorrectAnswersAsString(n + 1) for n in range(len(test.Questions))], KEYS)
        self.assertEqual(test.CorrectAnswersAsString(10, bNumeric=True, sDelimiter=" "), "(1 3 5)")
        self.assertEqual(test.CorrectAnswersAsString(vQuestionIndex=10, bEnclosedByParens=False), "A,C,E")
        self.assertEqual(test.CorrectAnswersAsArray(10, True), ["A", "C", "E"])
        self.assertEqual(test.CorrectAnswersAsArray(10).lower_bound, 0)

    def test_by_reference(self) -> None:
        mixed = ROOT / "examples" / "mixed.xml"
        test = hedro34.create("HEDRO34.clsHEDROTest")
        for initial in (False, hedro34.EMPTY):  # a Boolean, and a variant
            cancelled: hedro34.ByRef[Any] = hedro34.ByRef(initial)
            self.boxes.answer = 2
            self.assertFalse(test.LoadXML(mixed, bUserCancelled=cancelled))
            self.assertIs(cancelled.value, True)
        self.assertEqual((self.boxes.shown[0][1:], len(test.Questions)), ((49, "Partial Credit"), 0))


class Refusals(LibraryTest):
    def test_in_plain_words(self) -> None:
        test = self.load()
        strings = test.TrueFalseScale
        cases = [
            (lambda: test.Titel, 'clsHEDROTest has no member "Titel" .did you mean "Title"'),
            (lambda: setattr(test, "Titel", "x"), 'no member "Titel"'),
            (lambda: test.LoadXML([1]), 'LoadXML: argument 1 "sExamViewXMLFile" has the wrong type: a list, .1., not '),
            (lambda: test.LoadXML("a", bVerbos=True), 'LoadXML has no argument "bVerbos" .did you mean "bVerbose"'),
            (lambda: test.LoadXML("a", bVerbose="maybe"), 'argument "bVerbose" has the wrong type'),
            (lambda: test.LoadXML(), "LoadXML: an argument is missing; it takes .sExamViewXMLFile, .bOdd"),
            (lambda: test.LoadXML("a", False, False, True, 5), "5 arguments given"),
            (lambda: test.AddSequence(strings), 'argument 1 "oTestVersion" has the wrong type'),
            (lambda: test.AddSequence("text"), 'argument 1 "oTestVersion" has the wrong type'),
            (lambda: strings.AsArray(2**40), 'argument 1 "lLowerBound" is too large'),
            (lambda: strings.AddArray("text"), 'argument 1 "Value" has the wrong type'),
            (lambda: strings.AddArray([self]), 'argument 1 "Value" has the wrong type'),
            (lambda: setattr(strings, "Count", 1), "Count: an int cannot be assigned: it is read only"),
            (lambda: setattr(strings, "Add", 1), "Add: is a method and cannot be assigned"),
            (lambda: setattr(test, "Title", None), "Title: None cannot be assigned: it is str"),
            (lambda: setattr(test, "Title", hedro34.NULL), "Title: the value has the wrong type"),
            (lambda: setattr(test, "Questions", strings), "Questions: the value has the wrong type"),
            (lambda: setattr(test, "Questions", "text"), "Questions: .*cannot be assigned"),
            (lambda: setattr(test, "Source", 2**31), "Source: the value is too large"),
            (lambda: hedro34.create("HEDRO34.clsHEDROTst"), 'no class ".*Tst" .did you mean "HEDRO34.clsHEDROTest"'),
            (lambda: hedro34.create("HEDRO34.clsHEDROTests"), "no class"),
            (lambda: hedro34.load("/nowhere.so"), "/nowhere.so cannot be loaded"),
        ]
        for call, message in cases:
            with self.subTest(message=message), self.assertRaisesRegex(hedro34.Error, message):
                call()
        self.assertEqual((test.Title, self.errors.told, self.boxes.shown), ("Biology 1 Midterm", [], []))

    def test_empty_references_everywhere(self) -> None:
        test = self.load()
        question = test.Questions[1]
        question.Answers = question.CorrectAnswers = None
        self.assertEqual((question.Answers, question.MultiplesPermitted), (None, False))
        self.assertEqual(test.CorrectAnswersAsString(1), "")
        for name in ("Questions", "Sequences", "MultipleChoiceOddScale", "TrueFalseScale"):
            setattr(test, name, None)
        self.assertFalse(test.LoadXML(BIOLOGY))
        self.assertEqual((test.NumObjectives, test.Copy()), (0, None))
        self.assertFalse(test.AddSequence(None))
        self.engine.Tests.Add(None)
        for name in ("Tests", "WENKTD", "TemplateIn", "TemplateOut"):
            setattr(self.engine, name, None)
            self.assertIsNone(getattr(self.engine, name))
        for operation in ("RemoveInvalid", "Merge", "ValidTestVersions"):
            self.assertFalse(getattr(self.engine, operation)())
        self.assertGreater(len(self.errors.told), 5)
        self.assertEqual({told[0] for told in self.errors.told}, {91})

    def test_refused_files(self) -> None:
        form = hedro34.create("HEDRO34.FormTemplate")
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder, "bad.form.json")
            path.write_text("{\n  oops")
            self.assertFalse(form.Load(path))
            self.assertIn("bad.form.json: line 2", hedro34.last_refusal())


class Ends(LibraryTest):
    def test_of_a_thread(self) -> None:
        def work() -> None:
            engine = hedro34.create("HEDRO34.clsHEDRO")
            engine.SetError(Errors())  # the library holds it as long as the thread runs
            left.append(hedro34.create("HEDRO34.clsHEDROTest"))

        left: list[Any] = []
        thread = threading.Thread(target=work)
        thread.start()
        thread.join()
        left.clear()
        patience = 3000  # the system's thread ends a little later than Python's
        while len(hedro34.exposed_objects()) > 2 and patience:
            time.sleep(0.01)
            patience -= 1

    def test_of_the_process_with_everything_held(self) -> None:
        program = """
import hedro34, sys
class Host:
    def Show(self, text, flags, title): return 1
    def RaiseError(self, *arguments): pass
hedro34.load(sys.argv[1])
hedro34.register_class("WENKtd81.WENKtdOrder", Host)
platform, engine = hedro34.create("HEDRO34.Platform"), hedro34.create("HEDRO34.clsHEDRO")
platform.MessageBox = engine.TemplateIn = host = Host()
engine.SetError(host)
host.circle = [engine, host]
print("end")
"""
        command = [sys.executable, "-c", program, LIBRARY]
        environment = os.environ | {"PYTHONPATH": str(ROOT / "clients" / "python")}
        done = subprocess.run(command, env=environment, capture_output=True, text=True, timeout=120)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "end\n", ""))


class Registry(unittest.TestCase):
    """Each step is a process of its own, with a registry of its own."""

    def run_python(self, *arguments: str, data: str) -> subprocess.CompletedProcess[str]:
        environment = os.environ | {"XDG_DATA_HOME": data, "PYTHONPATH": str(ROOT / "clients" / "python")}
        command = [sys.executable, *arguments]
        return subprocess.run(command, env=environment, capture_output=True, text=True, timeout=120)

    @unittest.skipUnless(LIBRARY, "HEDRO34_LIBRARY names no library")
    def test_road(self) -> None:
        create = "import hedro34; print(hedro34.create('Hedro34.CLSHedroTest').Source)"
        library = str(Path(LIBRARY).resolve())
        with tempfile.TemporaryDirectory() as data:
            refused = self.run_python("-c", create, data=data)
            self.assertIn("python3 -m hedro34 register", refused.stderr)
            self.assertIn("registered in", self.run_python("-m", "hedro34", "register", library, data=data).stdout)
            self.assertEqual(self.run_python("-c", create, data=data).stdout, "0\n")
            listed = self.run_python("-m", "hedro34", "list", data=data).stdout
            self.assertIn(f"HEDRO34.clsHEDRO {{1A11377D-4B0A-4D1C-958B-625FA5F427D6}} {library}", listed)
            self.assertEqual(self.run_python("-m", "hedro34", "unregister", library, data=data).returncode, 0)
            self.assertEqual(self.run_python("-m", "hedro34", "list", data=data).stdout, "")

    def test_damaged(self) -> None:
        entry = '{"name": "A", "class": "{1A11377D-4B0A-4D1C-958B-625FA5F427D6}", "library": "relative.so"}'
        head = '{"format": "hedro34-classes", "version": 1, "classes": ['
        for text in ("", "[]", "{}", head, head + entry + "]}", head.replace("1", "2") + "]}", "\udcff", "[" * 100_000):
            with self.subTest(text=text[:80]), tempfile.TemporaryDirectory() as data:
                path = Path(data, "hedro34", "classes.json")
                path.parent.mkdir()
                path.write_text(text, errors="surrogateescape")
                refused = self.run_python("-m", "hedro34", "list", data=data)
                self.assertEqual((refused.returncode, refused.stdout), (1, ""))
                self.assertIn(f"{path} is damaged", refused.stderr)
                self.assertIn("remove it and register the library again", refused.stderr)


class Speed(LibraryTest):
    def read_all(self, count: int) -> float:
        test = hedro34.create("HEDRO34.clsHEDROTest")
        for number in range(count):
            question = hedro34.create("HEDRO34.clsHEDROTestQuestion")
            question.ID, question.QuestionText = f"q{number}", f"Question {number}"
            test.Questions.Add(question)
        start = time.process_time()
        texts = [question.QuestionText for question in test.Questions]
        elapsed = time.process_time() - start
        self.assertEqual((len(texts), texts[-1]), (count, f"Question {count - 1}"))
        return elapsed

    def test_reading_is_linear(self) -> None:
        few = min(self.read_all(2_000) for _ in range(3))
        many = min(self.read_all(10_000) for _ in range(2))
        self.assertLess(many / few, 12, "five times the questions")


if __name__ == "__main__":
    unittest.main()
