"""The library called from Python: members, arguments, collections, errors, and the registry."""

from __future__ import annotations

import os
import pwd
import re
import shutil
import tempfile
import threading
import time
import unittest
from pathlib import Path
from typing import Any
from unittest import mock

from support import BIOLOGY, CLIENT, KEYS, LIBRARY, MIXED, Errors, LibraryTest, needs_library, run_python

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
        for number in (-1, 16, 5):
            test.ImportObjectives = number
            self.assertEqual(test.ImportObjectives, number)
        self.assertIs(test.QuestionType("mc"), hedro34.HEDROTestQuestionType.MultipleChoice)
        self.assertIn("CorrectAnswersAsString", dir(test))

    def test_collections(self) -> None:
        strings = hedro34.create("HEDRO34.clsHEDROTestStrings")
        self.assertTrue(strings.AddArray(hedro34.Array(["a", "b"], 5)))
        self.assertTrue(strings.Add("c", "Key", Before=1))
        self.assertEqual((list(strings), len(strings), "b" in strings), (["c", "a", "b"], 3, True))
        self.assertEqual(list(reversed(strings)), ["b", "a", "c"])
        self.assertEqual((strings[1], strings["KEY"], strings(2), strings.Item(9), strings(9)), ("c", "c", "a", "", ""))
        strings[2] = "x"
        for index, kind in ((0, IndexError), (4, IndexError), (-1, IndexError), ("none", KeyError), (1.5, TypeError)):
            with self.subTest(index=index), self.assertRaises(kind):
                strings[index]
        correct = hedro34.create("HEDRO34.clsHEDROTestCorrect")
        for number in (5, 3, 1):
            correct.Add(number)
        self.assertEqual((correct["3"], correct[3], correct(3)), (3, 1, 1))  # a key is the answer's number
        for key in ("2", "03", ""):
            self.assertRaises(KeyError, correct.__getitem__, key)
        bounds = [(a, a.lower_bound) for a in (strings.AsArray(), strings.AsArray(-3))]
        self.assertEqual(bounds, [(["c", "x", "b"], 1), (["c", "x", "b"], -3)])
        self.assertTrue(strings.RemoveAll() and not strings)
        self.assertEqual((strings.AsArray(), strings.AsArray().lower_bound), ([], None))
        self.assertFalse(strings.AddArray([]))  # without bounds: a failure, told to the error object
        self.assertEqual([(len(told), told[3]) for told in self.errors.told],
                         [(13, "HEDRO34 - clsHEDROTestStrings.AddArray")])  # fmt: skip

    def test_arguments_by_name_and_by_reference(self) -> None:
        test = self.load()
        self.assertEqual([test.CorrectAnswersAsString(n + 1) for n in range(len(test.Questions))], KEYS)
        self.assertEqual(test.CorrectAnswersAsString(10, bNumeric=True, sDelimiter=" "), "(1 3 5)")
        self.assertEqual((test.Questions(10).ID, test.TrueFalseScale(2)), (test.Questions[10].ID, "F"))
        self.assertTrue(test.Sequences.AddDefault(test.Questions))
        sequence = test.Sequences[1]
        self.assertEqual((sequence(2), sequence().Count), (2, len(test.Questions)))
        form = hedro34.create("FormTemplate")
        form.Pages.Add()
        self.assertEqual(type(form(1)).__name__, "FormPage")  # by `Pages`
        self.assertEqual(test.CorrectAnswersAsString(vQuestionIndex=10, bEnclosedByParens=False), "A,C,E")
        self.assertEqual(test.CorrectAnswersAsArray(10, True), ["A", "C", "E"])
        self.boxes.answer = 2
        for initial in (False, hedro34.EMPTY):  # a Boolean, and a variant
            cancelled: hedro34.ByRef[Any] = hedro34.ByRef(initial)
            self.assertFalse(test.LoadXML(MIXED, bUserCancelled=cancelled))
            self.assertIs(cancelled.value, True)
        self.assertEqual(self.boxes.shown[0][1:], (49, "Partial Credit"))
        self.load().Questions[1].ID  # of a test that is gone


class Limits(LibraryTest):
    def test_in_plain_words(self) -> None:
        test, engine = self.load(), self.engine
        strings = test.TrueFalseScale
        document, form = hedro34.create("DataDocument"), hedro34.create("FormTemplate")
        takes = r"; it takes \(sExamViewXMLFile, \[bOddDistractorsOnly\], \[bUserCancelled\], \[bVerbose\]\)$"
        cases: list[tuple[type[Exception], Any, str]] = [
            (AttributeError, lambda: test.Titel, 'clsHEDROTest has no member "Titel" .did you mean "Title"'),
            (AttributeError, lambda: setattr(strings, "Count", 1), "Count: an int cannot be assigned: it is read only$"),
            (AttributeError, lambda: setattr(strings, "Add", 1), "Add: is a method and cannot be assigned"),
            (TypeError, lambda: test.LoadXML([1]), '1 "sExamViewXMLFile" has the wrong type: a list, .1., not str'),
            (TypeError, lambda: test.LoadXML("a", bVerbos=True), f'has no argument "bVerbos" .did you.*"bVerbose"..{takes}'),
            (TypeError, lambda: test.LoadXML("a", x=1), f'LoadXML has no argument "x"{takes}'),
            (TypeError, lambda: test.LoadXML("a", bVerbose="maybe"), 'argument "bVerbose" has the wrong type: .* not bool$'),
            (TypeError, lambda: test.LoadXML(), f"LoadXML: an argument is missing{takes}"),
            (TypeError, lambda: test.LoadXML("a", False, False, True, 5), f"LoadXML: 5 arguments given{takes}"),
            (TypeError, lambda: test.LoadXML("a", sEXAMViewXMLFile="a"), f'"sExamViewXMLFile" is given twice{takes}'),
            (TypeError, lambda: test.Clear(1), "Clear: 1 argument given; it takes none$"),
            (TypeError, lambda: test.AddSequence(strings), "wrong type: <clsHEDROTestStrings 2 texts>, not clsHEDROTest$"),
            (TypeError, lambda: engine.SetError(3), 'argument 1 "oErr" has the wrong type: an int, 3, not an object$'),
            (TypeError, lambda: engine.SetError(hedro34.EMPTY), "has the wrong type: EMPTY, not an object$"),
            (TypeError, lambda: strings.Item(b"a"), "has the wrong type: a bytes, b'a', which cannot be passed on$"),
            (TypeError, lambda: strings.AddArray(None), r'argument 1 "Value" has the wrong type: None, not list\[str\] '),
            (TypeError, lambda: setattr(test, "Title", None), "Title: None cannot be assigned: it is str$"),
            (TypeError, lambda: setattr(test, "Title", hedro34.NULL), "Title: the value has the wrong type: NULL, not str$"),
            (TypeError, lambda: setattr(test, "Questions", "text"), "a str cannot be assigned: it is clsHEDROTestQuestions$"),
            (TypeError, lambda: form.Pages.Item("a"), r"FormPages.Item: Type mismatch \(error 13\)$"),
            (TypeError, lambda: hedro34.create(5), "a class is named by a str, not an int"),  # type: ignore[call-overload]
            (ValueError, lambda: strings.AsArray(2**40), 'argument 1 "lLowerBound" is too large: 1099511627776$'),
            (ValueError, lambda: strings.AsArray(2**70), 'argument 1 "lLowerBound" is too large'),
            (ValueError, lambda: setattr(test, "Source", 2**31), "Source: the value is too large"),
            (ValueError, lambda: document.Versions.Orders.AddDefault(-1), r"AddDefault: Invalid procedure call .*\(error 5\)$"),
            (ValueError, lambda: document.Versions.Orders.AddDefault(2**30), r"AddDefault: Overflow \(error 6\)$"),
            (ValueError, lambda: hedro34.create("clsHEDROTst"), 'no class "clsHEDROTst" .* "HEDRO34.clsHEDROTest".*DataOrder,'),
            (hedro34.Error, lambda: hedro34.load("/nowhere.so"), "/nowhere.so cannot be loaded"),
        ]
        for kind, call, message in cases:
            with self.subTest(message=message):
                found: tuple[type[Exception], str] = (Exception, "nothing is wrong")
                try:
                    call()
                except hedro34.Error as error:
                    found = type(error), str(error)
                self.assertRegex(found[1], message)
                kinds = {k for k in (AttributeError, TypeError, ValueError) if issubclass(found[0], k)}
                self.assertEqual(kinds, {kind} - {hedro34.Error})
        self.assertEqual((test.Title, self.errors.told, self.boxes.shown), ("Biology 1 Midterm", [], []))

    def test_empty_references_everywhere(self) -> None:
        test = self.load()
        question = test.Questions[1]
        question.Answers = question.CorrectAnswers = None
        self.assertEqual((question.Answers, test.CorrectAnswersAsString(1)), (None, ""))
        for name in ("Questions", "Sequences", "MultipleChoiceOddScale", "TrueFalseScale"):
            setattr(test, name, None)
        self.assertFalse(test.LoadXML(BIOLOGY) or test.AddSequence(None) or test.NumObjectives or test.Copy())
        self.engine.Tests.Add(None)
        for name in ("Tests", "WENKTD", "TemplateIn", "TemplateOut"):
            setattr(self.engine, name, None)
            self.assertIsNone(getattr(self.engine, name))
        for operation in ("RemoveInvalid", "Merge", "ValidTestVersions"):
            self.assertFalse(getattr(self.engine, operation)())
        self.assertEqual({told[0] for told in self.errors.told}, {91})

    def test_the_end_of_a_thread(self) -> None:
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

    def test_the_end_of_the_process_with_everything_held(self) -> None:
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
        done = run_python("-c", program, LIBRARY)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "end\n", ""))


class Packaged(unittest.TestCase):
    @needs_library
    def test_comes_behind_what_the_program_names_and_before_the_registry(self) -> None:
        program = """
import sys, hedro34
from hedro34._library import _libraries, loaded
for path in sys.argv[1:]:
    hedro34.load(path)
assert not hedro34.create("FormTemplate").Load("/no form")
hedro34.create("Other.Test")
print(*_libraries, loaded().path, hedro34.last_file_error(), sep="|")
"""
        with tempfile.TemporaryDirectory() as name:
            folder = Path(name).resolve()
            packaged = shutil.copytree(CLIENT / "hedro34", folder / "hedro34") / Path(LIBRARY).resolve().name
            shutil.copy(LIBRARY, packaged)
            other = Path(shutil.copy(LIBRARY, folder / "other.so"))

            def run(*arguments: str | Path) -> str:
                done = run_python(*arguments, PYTHONPATH=name, XDG_DATA_HOME=name)
                return done.stdout + done.stderr

            # It is registered under the names of the library too, and under one more.
            self.assertIn("registered in ", run("-m", "hedro34", "register", other))
            entries = folder / "hedro34" / "classes.json"
            entries.write_text(entries.read_text().replace("HEDRO34.Report", "Other.Test"))
            failed = "/no form: No such file or directory"
            self.assertEqual(run("-c", program), f"{packaged}|{other}|{packaged}|{failed}\n")
            self.assertIn(f'{LIBRARY} makes no class "Other.Test"', run("-c", program, LIBRARY))
            misspelt = run("-c", "import hedro34; hedro34.create('clsHEDROTets')")
            self.assertRegex(misspelt, r'there is no class "clsHEDROTets" \(did you mean "[^"]*clsHEDROTest"\?\); none of that name')
            other.unlink()
            gone = f"{other} is gone, and {entries} has it as the library of Other.Test: run `python3 -m hedro34 register PATH`"
            self.assertIn(gone, run("-c", program))
            shutil.copy(LIBRARY, other)

            self.assertEqual(run("-m", "hedro34", "library"), f"{packaged}\n")
            self.assertIn("registered in ", run("-m", "hedro34", "register"))
            self.assertIn(f"HEDRO34.clsHEDRO {{1A11377D-4B0A-4D1C-958B-625FA5F427D6}} {packaged}\n", run("-m", "hedro34", "list"))
            stays = f"hedro34: {other} is not registered; {packaged} is and stays so: `python3 -m hedro34 unregister {packaged}`"
            self.assertIn(stays, run("-m", "hedro34", "unregister", other))
            entries.write_text(entries.read_text().replace(f"{packaged}", f"{folder}/gone.so", 1))
            said = [f" classes of {file} taken out of {entries}\n" for file in (f"{folder}/gone.so", packaged)]
            self.assertRegex(run("-m", "hedro34", "unregister"), f"^1{said[0]}[0-9]+{said[1]}$")
            self.assertEqual(run("-m", "hedro34", "list"), "")

    @needs_library
    def test_beside_another_library(self) -> None:
        program = """
import sys, hedro34
from hedro34._library import packaged
def failing(path, *library):
    hedro34.create("FormTemplate", *library).Load(path)
    return hedro34.last_file_error().partition(":")[0]
def documents():
    return [hedro34.create("clsHEDRO", *library).WENKTD is document for library in ((), sys.argv[1:2], sys.argv[2:])]
class Document: pass
document = Document()
print(failing("/no a", sys.argv[1]))
hedro34.register_class("WENKtd81.WENKtdDocument", lambda: document)
print(failing("/no b"), failing("/no c", sys.argv[1]), documents())
print(hedro34.revoke_class("wenktd81.WENKtdDocument"), hedro34.revoke_class("WENKtd81.WENKtdDocument"), documents())
"""
        with tempfile.TemporaryDirectory() as name:
            folder = Path(name)
            shutil.copytree(CLIENT / "hedro34", folder / "hedro34")
            for file in ("a.so", "b.so", f"hedro34/{Path(LIBRARY).resolve().name}"):
                shutil.copy(LIBRARY, folder / file)
            done = run_python("-c", program, folder / "a.so", folder / "b.so", PYTHONPATH=name, XDG_DATA_HOME=name)
            said = "/no a\n/no b /no b [True, True, True]\nTrue False [False, False, False]\n"
            self.assertEqual((done.stdout, done.stderr), (said, ""))


class Versions(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.copy = Path(folder.name, "a copy.so")
        self.data = Path(LIBRARY).read_bytes() if LIBRARY else b""

    def said_of(self, data: bytes) -> str:
        """What is said of a library with these bytes, in a process that has seen no other."""
        self.copy.write_bytes(data)
        done = run_python("-m", "hedro34", "register", self.copy, XDG_DATA_HOME=str(self.copy.parent))
        self.assertEqual((done.returncode, done.stdout), (1, ""))
        return done.stderr

    @needs_library
    def test_of_another_version(self) -> None:
        number, patch = hedro34.__version__.rsplit(".", 1)
        for version in (f"{number}7.{patch}", f"7{number}.{patch}"):
            with self.subTest(version), mock.patch.object(hedro34.types, "VERSION", version):
                wanted = version.rpartition(".")[0]
                said = f"{LIBRARY} is HEDRO34 {hedro34.__version__}, and this client is for {wanted}: give or register "
                with self.assertRaisesRegex(hedro34.Error, f"^{said}.*, or install the client of version {number}$"):
                    hedro34.Library(Path(LIBRARY))
        for version in (f"{number}.99", f"{number}.0-rc.1"):
            with mock.patch.object(hedro34.types, "VERSION", version):
                hedro34.Library(Path(LIBRARY))
        named = "Version\0".encode("utf-16-le")
        said = self.said_of(self.data.replace(named, named.replace(b"V", b"W")))
        self.assertIn(f"{self.copy} is an older HEDRO34, which tells no version, and this client is for {number}: ", said)
        done = run_python("-m", "hedro34", "unregister", self.copy, XDG_DATA_HOME=str(self.copy.parent))
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))

    @needs_library
    def test_that_the_system_is_too_old_for(self) -> None:
        newest = max(re.findall(rb"\0GLIBC_2\.\d\d(?=\0)", self.data))
        said = self.said_of(self.data.replace(newest + b"\0", b"\0GLIBC_2.99\0"))
        words = ": it needs glibc 2.99 or later, and this system has 2.[0-9]+; build the library here from its source\n$"
        self.assertRegex(said, f"^hedro34: {self.copy} cannot be loaded as a component library{words}")

    def test_that_the_system_is_too_old_for_and_names_as_no_file(self) -> None:
        lacking = OSError("/libc.so.6: version `GLIBC_2.98' not found (required by none.so)")
        with mock.patch("ctypes.CDLL", side_effect=lacking), self.assertRaisesRegex(hedro34.Error, ": it needs glibc 2.98 or later"):
            hedro34.Library(self.copy)


def registry(*entries: str, head: str = '"format": "hedro34-classes", "version": 1') -> str:
    return f'{{{head}, "classes": [{", ".join(entries)}]}}'


def entry(name: str = "A", digit: str = "A", library: str = "/a.so", more: str = "") -> str:
    class_id = f"{{0000000{digit}-0000-0000-0000-000000000000}}"
    return f'{{"name": "{name}", "class": "{class_id}", "library": "{library}"{more}}}'


class Registry(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.data = folder.name
        self.path = Path(self.data, "hedro34", "classes.json")

    @needs_library
    def test_road(self) -> None:
        create = "import hedro34; print(hedro34.create('Hedro34.CLSHedroTest').Source)"
        library = str(Path(LIBRARY).resolve())
        named = "import hedro34, sys; hedro34.create('FormTemplate', sys.argv[1]).Load('/no'); print(hedro34.last_file_error())"
        steps = [
            (("-c", create), "python3 -m hedro34 register"),
            (("-m", "hedro34", "register"), "hedro34: this package was installed without a library: give the path of one"),
            (("-c", named, library), "/no: No such file or directory\n"),
            (("-m", "hedro34", "register", library), f"registered in {self.path}\n"),
            (("-c", create), "0\n"),
            (("-m", "hedro34", "list"), f"HEDRO34.clsHEDRO {{1A11377D-4B0A-4D1C-958B-625FA5F427D6}} {library}\n"),
            (("-m", "hedro34", "unregister", library), f" classes of {library} taken out of {self.path}\n"),
        ]
        for arguments, expected in steps:
            done = run_python(*arguments, XDG_DATA_HOME=self.data)
            self.assertIn(expected, done.stdout + done.stderr)
        self.assertEqual(run_python("-m", "hedro34", "list", XDG_DATA_HOME=self.data).stdout, "")

    @needs_library
    def test_damaged_or_not_as_the_library_says(self) -> None:
        fine = {
            registry(): {},
            '\ufeff{"version": 1, "format": "hedro34-classes"}': {},
            registry(entry("ß", "a"), entry("ẞ", "B")): {"ß": "A", "ẞ": "B"},
        }
        damaged = [
            "", "[]", "{}", "[" * 100_000, "\udcff", registry() + "\0", "".join(c + "\0" for c in registry()),
            registry(head='"format": "hedro34-form", "version": 1'), registry(head='"format": "hedro34-classes"'),
            *(registry(head=f'"format": "hedro34-classes", "version": {v}') for v in ("2", "1.0", "true", '"1"')),
            registry(head='"format": "hedro34-classes", "version": 1, "more": 0'), registry("7"),
            registry(head='"format": "hedro34-classes", "version": 1, "version": 1'),
            registry()[:-3] + "null}", registry(entry(more=', "more": 0')), registry(entry(more=', "name": "A"')),
            registry('{"name": "A"}'), registry(entry(name="")), registry(entry(name="\\ud800")),
            registry(entry(digit="G")), registry(entry(digit="A0")), registry(entry().replace("{0", "0")),
            registry(entry(library="a.so")), registry(entry(library="/a\\u0000.so")),
            registry(entry("é", "A"), entry("É", "B")), registry(entry("A", "a"), entry("B", "A")),
        ]  # fmt: skip
        library = hedro34.load(LIBRARY)
        self.path.parent.mkdir()
        with mock.patch.dict(os.environ, XDG_DATA_HOME=self.data):
            for text in (*fine, *damaged):
                with self.subTest(text=text[:150]):
                    self.path.write_text(text, errors="surrogateescape")
                    if text in fine:
                        library.unregister()
                        found = {name: class_id[8] for name, (class_id, _) in hedro34.registered().items()}
                        self.assertEqual(found, fine[text])
                    else:
                        with self.assertRaisesRegex(hedro34.Error, f"{self.path} is damaged .*remove it and register"):
                            hedro34.registered()
                        unreadable = f"DllRegisterServer .* cannot be read: {self.path}: ."
                        with self.assertRaisesRegex(hedro34.Error, unreadable):
                            library.register()
                    self.assertEqual(self.path.read_text(errors="surrogateescape"), text)

    @needs_library
    def test_a_damaged_one_hides_no_class_of_the_host(self) -> None:
        self.path.parent.mkdir()
        script = """import sys, hedro34
hedro34.load(sys.argv[1])
document = hedro34.create("clsHEDRO").WENKTD
print(document and document.Questions.Count, hedro34.last_file_error())"""
        name = '{"classes": [{"name": "wenktd81.WENKTDdocument"'
        hidden = (name, name.encode("utf-16-le").decode(), name.replace("w", "\\u0057"))
        for text in ("{", registry()[:-1] + "]", *hidden):
            with self.subTest(text=text):
                self.path.write_text(text)
                done = run_python("-c", script, LIBRARY, XDG_DATA_HOME=self.data)
                if text not in hidden:  # the class was never there
                    self.assertEqual((done.stdout, done.stderr), ("0 \n", ""))
                    continue
                fault = f"{self.path}: line 1, column [^\n]*"
                self.assertRegex(done.stdout, f"^None {fault}\n$")
                report = f"Error# 429: Component can't create object: WENKtd81.WENKtdDocument, {fault}, Location: HEDRO34"
                self.assertRegex(done.stderr, f"{report} - clsHEDRO.Class_Initialize\n$")

    def test_place(self) -> None:
        account = pwd.getpwuid(os.geteuid()).pw_dir
        for data, home, base in (
            ("/data", "/home/a", "/data"),
            ("data", "/home/a", "/home/a/.local/share"),
            ("", "", f"{account}/.local/share"),
            ("", "home/a", f"{account}/.local/share"),
        ):
            with self.subTest(data=data, home=home), mock.patch.dict(os.environ, XDG_DATA_HOME=data, HOME=home):
                self.assertEqual(hedro34.registry_path(), Path(base, "hedro34", "classes.json"))


if __name__ == "__main__":
    unittest.main()
