#!/usr/bin/env python3
"""The program's commands `form` and `merge`: the files they write, what they leave when something fails, and the examples."""

import fcntl
import json
import os
import re
import shutil
import subprocess
import unittest

from program import PARTIAL, PROGRAM, SOURCES, THREE, ProgramTest, examview, question, run


class Form(ProgramTest):
    def test_form(self):
        for options, sizes, first, last in [
            ("--questions=51 --versions=X,Y --choices=26", [51, 1], ("Version", "XY", False),
             ("Q51", "ABCDEFGHIJKLMNOPQRSTUVWXYZ", True)),
            ("--questions=32767 --per-page=16384", [16384, 16383], ("Q1", "ABCDE", True), ("Q32767", "ABCDE", True)),
        ]:
            with self.subTest(options):
                self.run_program("form", "--out", "f", *options.split())
                pages = [page["regions"] for page in self.json_of("f")["pages"]]
                self.assertEqual([len(page) for page in pages], sizes)
                for region, expected in [(pages[0][0], first), (pages[-1][-1], last)]:
                    (field,) = region["questions"]
                    found = field["name"], "".join(field["choiceLabels"]), field["graded"]
                    self.assertEqual((region["name"], found), (expected[0], expected))
        before = self.files()
        self.assertIn("gone/f", self.run_program("form", "--questions", "1", "--out", "gone/f", code=4).line)
        self.assertEqual(self.files(), before)


class Merge(ProgramTest):
    """A form with a version field and four graded fields of three choices, and a test of four questions in three versions."""

    def setUp(self):
        super().setUp()
        self.run_program("form", "--questions", "4", "--choices", "3", "--versions", "A,B,C", "--out", "f")
        for name, version, order in [("a.xml", "A", "wxyz"), ("b.xml", "B", "zyxw"), ("[c,c]", "C", "wyxz")]:
            self.file(name, examview(*[question(identity, "mc", "B", THREE) for identity in order], version=version))

    def merge(self, arguments, files=(), **how):
        named = {"--form": "f", "--form-out": "out.form", "--document-out": "out.ktd", "--messages": "m"} | dict(files)
        return self.run_program("merge", *(word for pair in named.items() for word in pair), *arguments.split(), **how)

    def test_one_test(self):
        outcome = self.merge("--max-questions 3 --sequence-question=2147483647 a.xml")
        self.assertEqual(
            outcome.out,
            "Questions merged          3\nFields no longer graded   1\nSubjective regions added  0\n"
            "Objectives                0\nVersions                  1\n"
            "Form                      out.form\nDocument                  out.ktd\n"
            "Questions removed         4 (ID z, multiple choice)\n",
        )
        document = self.json_of("out.ktd")
        self.assertEqual([question["answerKey"] for question in document["questions"]], [[], ["B"], ["B"], ["B"], []])
        self.assertEqual(document["versions"], {"sequenceQuestion": 0, "versionAnswers": [], "orders": [[1, 2, 3, 4, 5]]})
        graded = [r["questions"][0]["graded"] for p in self.json_of("out.form")["pages"] for r in p["regions"]]
        self.assertEqual(graded, [False, True, True, True, False])
        self.assertEqual(self.said(), [("Maximum Number of Questions", 1)])
        self.assertRegex(outcome.err, r"^Maximum Number of Questions\nWarning: .*\.\n\nNumber of Supported Questions: 3\n")

    def test_what_is_left_out(self):
        """Said under `--quiet` too, on standard error where an output takes standard output, by each test where there are two."""
        table = "<para>Look:</para><table><row>1</row></table><img/>"
        lossy = [question("w", "mc", "B", THREE, text=table), question("e", "es", text=table), question("", "ma"),
                 *[question(identity, "mc", "B", THREE) for identity in "xyz"]]
        self.file("d.xml", examview(*lossy, version="B"))
        self.file("s.ktd", {"format": "hedro34-ktd", "version": 1, "questions": [
            {}, {"subjective": True}, {"graded": True, "choiceLabels": ["T", "F"]}, {"subjective": True}]})
        parts = 'element "table", picture'
        said = [("Questions removed         {}2 (ID e, essay), 3 (no ID, matching)\n"
                 f"Not carried               {{}}1 (ID w, {parts}), 2 (ID e, {parts})\n").format(*[file] * 2)
                for file in ("", "d.xml: ")]
        notes = [f"{place} not carried {part}" for place in ("1 w", "2 e") for part in parts.split(", ")]
        notes += ["2 e removed essay", "3  removed matching"]
        self.assertEqual(self.merge("--quiet d.xml").out.partition("Document                  out.ktd\n")[2], said[0])
        self.assertEqual(self.said("note"), notes)
        outcome = self.merge("--quiet d.xml", {"--document-out": "-"})
        self.assertEqual((json.loads(outcome.out)["format"], outcome.err), ("hedro34-ktd", said[0]))
        outcome = self.merge("--quiet --sequence-question=1 a.xml d.xml")
        self.assertEqual((outcome.out.partition("out.ktd\n")[2], self.said("note")), (said[1], [note + " d.xml" for note in notes]))
        self.file("e.xml", examview(lossy[1]))
        self.merge("--quiet e.xml", code=1)
        self.assertEqual(self.said("note"), [f"1 e not carried {part}" for part in parts.split(", ")] + ["1 e removed essay"])
        self.merge("s.ktd")
        self.assertEqual(self.said("note"), ["2 2 removed subjective"])
        self.file("twice.xml", examview(*lossy[3:], question("Y", "tf", "T", text=table), lossy[1]))
        outcome = self.merge("--keep-going twice.xml", {"--report": "r"}, code=5)
        self.assertTrue(outcome.out.endswith("Questions removed         4 (ID Y, true/false), 5 (ID e, essay)\n"
                                             f"Not carried               5 (ID e, {parts})\n"), outcome.out)
        self.assertEqual(self.said("note")[0], "4 Y removed true/false")
        self.assertRegex((self.folder / "r").read_text("utf-8"), "(?s)Questions removed.*>Y</bdi>")
        for name, end in [("d.xml", "\n\nNot merged\n  2  ID e, essay\n  3  no ID, matching\n\n"
                                    f"Not carried\n  1  ID w, {parts}\n  2  ID e, {parts}\n"),
                          ("s.ktd", "\n\nNot merged\n  2  ID 2, subjective\n")]:
            self.assertTrue(self.run_program("show", name).out.endswith(end), name)
        self.run_program("show", "--messages", "m", "d.xml", "s.ktd", "a.xml")
        self.assertEqual(self.said("note"), [note + " d.xml" for note in notes[:4]] + ["2 2 removed subjective s.ktd"])
        self.assertNotIn("picture", self.run_program("show", "--json", "d.xml").out)

    def test_versions(self):
        outcome = self.merge("--max-questions=-2147483648 --sequence-question 1 a.xml b.xml [c,c]")
        self.assertIn("Versions                  3\n", outcome.out)
        orders = [[1, 2, 3, 4, 5], [1, 5, 4, 3, 2], [1, 2, 4, 3, 5]]
        expected = {"sequenceQuestion": 1, "versionAnswers": ["A", "B", "C"], "orders": orders}
        self.assertEqual(self.json_of("out.ktd")["versions"], expected)

        # The document as a test has these sequences already, and no version label: the empty one is accepted by the
        # sequences but not by the form.
        (self.folder / "out.ktd").rename(self.folder / "unit.ktd")
        self.merge("unit.ktd")
        merged = self.json_of("out.ktd")["questions"]
        self.assertEqual([question["questionText"] for question in merged[1:]], [f"Question {i}" for i in "wxyz"])
        self.assertIn("Merge answered", self.merge("--sequence-question 1 unit.ktd unit.ktd", code=1).line)
        self.assertEqual(self.said(), [("Invalid Version Identifier", 1)])

    def test_what_is_kept(self):
        """The first fault on the road is named, nothing is written but the messages, nothing is left beside the outputs."""
        self.file("essay.xml", examview(question("e", "es")))
        self.file("five.xml", examview(*[question(str(i), "tf", "T") for i in range(5)]))
        self.file("key.xml", examview(*[question(i, "mc", "C", THREE) for i in "wxyz"], version="B"))
        self.file("credit.xml", examview(question("1", "mc", "A", THREE, info=PARTIAL)))
        self.file("broken.xml", "<examview>\n<a")
        self.file("folder/inside", "")
        self.file("out.form", "old form")
        self.file("out.ktd", "old document")
        versions, credit, no = ("Invalid Test Versions", 1), ("Partial Credit", 2), " answered False: "
        for files, arguments, code, fragments, said in [
            ({"--form": "/dev/null"}, "a.xml", 3, ["cannot read the form: /dev/null: it is not a regular file"], []),
            ({"--form": "gone"}, "gone.xml", 3, ["cannot read the form: gone: No such file"], []),
            ({}, "essay.xml broken.xml", 3, ["broken.xml: line 2, column "], []),
            ({}, "--quiet essay.xml credit.xml", 1, [f"LoadXML{no}credit.xml", "--partial-credit ok"], [credit]),
            ({}, "essay.xml", 1, [f"RemoveInvalid{no}essay.xml", "above"], [("No Supported Questions", 1)]),
            ({}, "--quiet a.xml a.xml key.xml", 1, [f"ValidTestVersions{no}the versions of a.xml", "above"], [versions]),
            ({}, "a.xml b.xml a.xml", 1, [f"AddSequence{no}a.xml as a version of a.xml"], [("Version Exists", 1)]),
            ({"--form-out": "gone/x"}, "--quiet five.xml", 1, [f"Merge{no}five.xml with f", "without --quiet"], []),
            ({"--form-out": "gone/x"}, "a.xml", 4, ["cannot write the form: gone/x"], []),
            ({"--document-out": "folder"}, "a.xml", 4, ["cannot write the document: folder"], []),
            ({"--report": "folder"}, "a.xml", 4, ["cannot write the report: folder"], []),
            ({"--report": "./f"}, "a.xml", 2, ["--report and --form name the same file"], []),
            ({"--document-out": "./out.form"}, "a.xml", 2, ["same file"], []),
            ({"--messages": "out.form"}, "a.xml", 2, ["same file"], []),
            ({"--form-out": "./a.xml"}, "b.xml a.xml", 2, ["same file"], []),
        ]:
            with self.subTest(files=files, arguments=arguments):
                self.file("m", "")
                before = self.files()
                outcome = self.merge(arguments, files, code=code)
                self.assertEqual([part for part in fragments if part not in outcome.line], [], outcome)
                self.assertEqual((outcome.out, self.said()), ("", said))
                self.assertEqual(self.files() | {"m": b""}, before)


    def test_ways_out(self):
        """A line ends with what to do, where the files tell what was meant."""
        self.run_program("form", "--questions", "6", "--choices", "3", "--out", "g")
        self.run_program("form", "--questions", "4", "--choices", "3", "--versions", "X,Y,Z", "--out", "h")
        self.file("d.ktd", {"format": "hedro34-ktd", "version": 1})
        self.file("n.xml", examview(question("w", "mc", "B", THREE)))
        self.file("w.xml", examview(*[question(i, "mc", "B", THREE) for i in "wxyz"]))
        form, sequence = "hedro34 form --questions N --out FORM makes one", "; {}give --sequence-question {}, the field with the version "
        first, no_field = "identifier A, B", "identifier, on a form that has one for A, B: hedro34 form --versions makes such a form"
        for form_in, arguments, code, end in [
            ("a.xml", "a.xml", 3, "; it looks like an XML file: a form template is a JSON file, and " + form),
            ("d.ktd", "a.xml", 3, '/format: must be "hedro34-form"; it is a data document: a form template is a JSON file, and ' + form),
            ("f", "f", 3, "a KTD document, and this is a form template: it belongs behind merge --form"),
            ("f", "a.xml b.xml", 1, sequence.format("", 1) + first),
            ("f", "--sequence-question 5 a.xml b.xml", 1, sequence.format("field 5 is graded: ", 1) + first),
            ("h", "--sequence-question 1 a.xml b.xml", 1, sequence.format("field 1 offers X, Y, Z and not A: ", "N") + no_field),
            ("g", "--sequence-question 9 a.xml b.xml", 1,
             sequence.format("field 7 (9 less the fields no longer graded) is not there, the form has 6: ", "N") + no_field),
            ("f", "a.xml w.xml", 1, "; w.xml has no version label, by which its sheets would be known"),
        ]:
            with self.subTest(form=form_in, arguments=arguments):
                line = self.merge("--quiet " + arguments, {"--form": form_in}, code=code).line
                self.assertTrue(line.endswith(end), line)
        for command, end in [("report --out r f", "; it is a form template: a data document is what merge --document-out writes"),
                             ("report --out r a.xml", "; it looks like an XML file: a data document is what merge --document-out writes"),
                             ("report --out r --form d.ktd d.ktd", form)]:
            self.assertTrue(self.run_program(*command.split(), code=3).line.endswith(end), command)

    def test_encodings(self):
        """Bytes that are no UTF-8 are told from other malformed ones, and the way out is one."""
        hint = 'it is not UTF-8 there: save the file as UTF-8, or begin it with <?xml version="1.0" encoding="windows-1252"?>'
        whole = examview(question("1", "tf", "T", text="\r\ncafé na\u00efve"), title="ü")
        latin = whole.encode("latin-1")
        for content, hinted in [
            (latin, True), (latin.replace(b"UTF-8", b"us-ascii"), True), (latin.partition(b"\n")[2], True),
            (whole.encode().replace(b"\xc3\xbc", b"u").replace(b"\xc3\xa9", b"\xc3\xa9 \xe9"), True),
            (latin.replace(b"\xfc", b"\x01"), False),  # malformed before it is Latin-1
            (whole.encode().partition(b"\xaf")[0], False),  # cut in a character
            (b"\xef\xbb\xbf" + latin, False), (whole.encode("utf-16")[:-1], False),
        ]:
            with self.subTest(content[:60]):
                (self.folder / "t.xml").write_bytes(content)
                self.assertEqual(hint in self.run_program("show", "t.xml", code=3).line, hinted)
        (self.folder / "t.xml").write_bytes(latin.replace(b"UTF-8", b"windows-1252"))
        self.assertIn("café naïve", self.run_program("show", "t.xml").out)
        (self.folder / "t.ktd").write_bytes('{\n"format":"hedro34-ktd","notes":"ü"}'.encode("latin-1"))
        self.assertTrue(self.run_program("show", "t.ktd", code=3).line.endswith("; save the file as UTF-8"))

    def test_failures_on_the_way(self):
        """With a reported failure nothing is written and what is there stays, unless the program is to keep going."""
        self.file("twice.xml", examview(*[question(i, "mc", "B", THREE) for i in "wwx"]))
        self.file("out.ktd", "old document")
        before = self.files()
        outcome = self.merge("--quiet twice.xml", code=5)
        self.assertIn("a question may be missing, and the keys behind it have moved up; nothing is written: ", outcome.line)
        self.assertEqual((outcome.out, self.said(), self.files() | {"m": b""}), ("", [457], before | {"m": b""}))
        outcome = self.merge("--quiet --keep-going twice.xml", code=5)
        self.assertIn("a question may be missing, and the keys behind it have moved up", outcome.line)
        self.assertIn("Questions merged          2\n", outcome.out)
        keys = [question["answerKey"] for question in self.json_of("out.ktd")["questions"]]
        self.assertEqual((keys, "out.form" in self.files()), ([[], ["B"], ["B"], [], []], True))

    def test_standard_streams(self):
        """One input and one output may be `-`; nothing else goes to standard output then."""
        self.merge("a.xml", {"--report": "page"})
        expected = self.files()
        for files, tests, given, written in [
            ({"--form-out": "-"}, "-", "a.xml", "out.form"),
            ({"--document-out": "-"}, "-", "a.xml", "out.ktd"),
            ({"--messages": "-", "--form": "-"}, "a.xml", "f", "m"),
            ({"--report": "-"}, "-", "a.xml", "page"),
        ]:
            with self.subTest(written), open(self.folder / given, "rb") as stdin:
                (self.folder / written).write_text("old")
                outcome = self.merge(tests, files, stdin=stdin)
                self.assertEqual(outcome.out.encode(), expected[written])
                self.assertEqual(self.files(), expected | {written: b"old"})
        self.assertEqual(self.run_program("form", "--questions=4", "--choices=3", "--versions=A,B,C", "--out=-").out.encode(),
                         expected["f"])
        with open("/dev/full", "wb") as full:
            self.file("out.ktd", "old")
            outcome = self.merge("a.xml", {"--form-out": "-"}, stdout=full, code=4)
        self.assertIn("cannot write the form to standard output: No space left", outcome.line)
        self.assertEqual(self.json_of("f")["format"], "hedro34-form")
        self.assertEqual((self.folder / "out.ktd").read_text(), "old")

    def test_pairs(self):
        """Programs that merge to one place at once leave the form and the document of one of them."""
        for fields in "4567":
            self.run_program("form", "--questions", fields, "--out", "f" + fields)
        (self.folder / "there").mkdir()
        for _ in range(6):
            running = []
            for fields in "4567" * 2:
                files = ["--form", "f" + fields, "--form-out", "out.form", "--document-out", "there/out.ktd", "--quiet"]
                running.append(subprocess.Popen([PROGRAM, "merge", *files, "a.xml"], cwd=self.folder, stdout=subprocess.DEVNULL))
            self.assertEqual([process.wait() for process in running], [0] * 8)
            fields = len(self.json_of("out.form")["pages"][0]["regions"])
            self.assertEqual(len(self.json_of("there/out.ktd")["questions"]), fields)

    def test_what_a_killed_program_left(self):
        """The next run into a folder removes it; what a living process writes, and what is not ours, stays."""
        gone = subprocess.Popen(["true"])
        gone.wait()
        names = {f".hedro34-{gone.pid}-1.tmp": False, f".hedro34-{os.getpid()}-1.tmp": True, ".hedro34-1-1.tmp": True,
                 f".hedro34-{gone.pid}-2.tmp": True, f".hedro34-{gone.pid}.tmp": True, f"hedro34-{gone.pid}-1.tmp": True}
        for name in names:
            self.file(name, "")
        with open(self.folder / f".hedro34-{gone.pid}-2.tmp", "rb") as held:  # a writer in another name space
            fcntl.flock(held, fcntl.LOCK_EX)
            self.merge("a.xml")
        self.assertEqual({name: name in self.files() for name in names}, names)

    def test_a_locked_folder(self):
        self.file("out.form", "old")
        folder = os.open(self.folder, os.O_RDONLY)
        self.addCleanup(os.close, folder)
        fcntl.flock(folder, fcntl.LOCK_EX)
        outcome = self.merge("a.xml", code=4)
        self.assertIn("cannot write the form: out.form: another program keeps the folder locked", outcome.line)
        self.assertEqual((self.files()["out.form"], "out.ktd" in self.files()), (b"old", False))


class Report(ProgramTest):
    """The page of a merge, with the merge and from its files."""

    def setUp(self):
        super().setUp()
        for name in ("biology.xml", "biology.form.json", "mixed.xml", "mixed.form.json"):
            shutil.copy(SOURCES / "examples" / name, self.folder)

    def merge(self, sample, *options):
        outcome = self.run_program("merge", *options, "--form", sample + ".form.json", "--form-out", "form", "--document-out",
                                   "ktd", "--report", "page", sample + ".xml")
        self.assertRegex(outcome.out, "\nDocument                  ktd\nReport                    page\n")
        return (self.folder / "page").read_text(encoding="utf-8")

    def test_with_the_merge(self):
        """What the boxes said stands on the page, the choices have their texts, and the title is the test's."""
        page = self.merge("mixed", "--partial-credit", "ok")
        for part in ["<h1><bdi>Chemistry Review</bdi></h1>", "Invalid Question Type(s)\nWarning: The file contains one or more",
                     '<li class="correct"><bdi class="filled">I</bdi> <span dir="auto">2+</span>']:
            self.assertIn(part, page)
        self.assertNotIn("Invalid Question Type(s)", self.merge("mixed", "--partial-credit", "ok", "--quiet"))

    def test_from_files(self):
        self.merge("biology")
        self.file("not.ktd", "{")
        before = self.files()
        for arguments, code, said in [
            (["ktd"], 0, ""),
            (["--form", "form", "ktd"], 0, ""),
            (["--form", "-", "ktd"], 0, ""),
            (["gone"], 3, "cannot read the document: gone: No such file"),
            (["not.ktd"], 3, "cannot read the document: not.ktd: line 1, column "),
            (["biology.xml"], 3, "cannot read the document: biology.xml: line 1"),
            (["--form", "ktd", "ktd"], 3, "cannot read the form: ktd: /format: "),
            (["--form", "biology.form.json", "ktd"], 3, "biology.form.json: field 6 has other labels in the document; give the"),
            (["--form", "mixed.form.json", "ktd"], 3, "mixed.form.json: the form has 14 fields and the document 29; give the"),
            (["--form", "-", "-"], 2, "are both standard input"),
        ]:
            with self.subTest(arguments), open(self.folder / "form", "rb") as stdin:
                outcome = self.run_program("report", "--out", "-", *arguments, stdin=stdin, code=code)
                self.assertIn(said, outcome.line)
                self.assertEqual((outcome.out.count('class="filled"') > 0, "<h3>Page 2</h3>" in outcome.out),
                                 (code == 0, code == 0 and "--form" in arguments))
        for out, code, said in [("gone/page", 4, "cannot write the report: gone/page: the folder does not exist"), ("ktd", 2, "same file")]:
            self.assertIn(said, self.run_program("report", "--out", out, "ktd", code=code).line)
        self.assertEqual(self.files(), before)
        # Without a description the page bears the name of the file.
        self.file("sub.1/my.quiz.ktd", json.dumps(json.loads((self.folder / "ktd").read_bytes()) | {"description": ""}))
        for given, title in (("sub.1/my.quiz.ktd", "my.quiz"), ("-", "Test")):
            with open(self.folder / "sub.1/my.quiz.ktd", "rb") as stdin:
                self.assertIn(f"<h1><bdi>{title}</bdi></h1>", self.run_program("report", "--out", "-", given, stdin=stdin).out)


class Compare(ProgramTest):
    """A test of three questions and an essay, and further versions of it."""

    def setUp(self):
        super().setUp()
        self.questions = [question("e", "es"), *[question(identity, "mc", "B", THREE) for identity in "xyz"]]
        self.file("a.xml", examview(*self.questions, version="A"))

    def version(self, name, *questions, version="B"):
        self.file(name, examview(*questions, version=version))
        return name

    def test_differences(self):
        e, x, y, z = self.questions
        same = self.version("b.xml", z, x, y)
        self.assertEqual(self.run_program("compare", "a.xml", same).out,
                         "No differences: merge takes b.xml as a version of a.xml\n")
        other = self.version("c.xml", e, question("y", "mc", "", THREE), question("X", "mc", "A", THREE[:2]),
                             question("w", "tf", "T"), version="b")
        outcome = self.run_program("compare", "a.xml", same, other, code=1)
        self.assertEqual(outcome.out, "c.xml: question 3 (ID x): 2 choices, in a.xml 3\n"
                         "c.xml: question 3 (ID x): key is A, in a.xml B\n"
                         "c.xml: question 2 (ID y): key is none, in a.xml B\n"
                         "c.xml: question 4 (ID z) of a.xml is missing\n"
                         "c.xml: question 4 (ID w) is not in a.xml\n"
                         'c.xml: version label "b" is used already: b.xml has "B"\n')
        self.assertEqual(outcome.line, "hedro34: merge would not take c.xml as a version of a.xml")
        members = [["answers", "x", "3", "2"], ["key", "x", "B", "A"], ["key", "y", "B", ""], ["missing", "z", "4", ""],
                   ["new", "w", "", "4"], ["label", "", "B", "b"]]
        differences = [dict(zip(["kind", "id", "first", "here"], each)) for each in members]
        expected = {"tests": [{"file": same, "version": "B", "same": True, "differences": []},
                              {"file": other, "version": "b", "same": False, "differences": differences}]}
        found = json.loads(self.run_program("compare", "--json", "a.xml", same, other, code=1).out)
        self.assertEqual(json.dumps(found), json.dumps(expected))  # as text, so that the order of the members counts

        # `merge` names the first difference at which it stops.
        files = ["--form", "f", "--form-out", "g", "--document-out", "d", "--quiet"]
        self.run_program("form", "--questions", "3", "--choices", "3", "--out", "f")
        label = self.version("d.xml", x, y, z, version="a")
        for tests, end in [
            (["a.xml", label, same, other], "; c.xml: question 3 (ID x): 2 choices, in a.xml 3 (and 6 more: hedro34 compare lists them)"),
            (["a.xml", same, "--max-questions", "2"], "; b.xml: question 3 (ID y) of a.xml is missing (and 1 more); "
                                                      "--max-questions 2 kept only the first 2 of each TEST"),
            (["a.xml", same, label], '; d.xml: version label "a" is used already: a.xml has "A"'),
        ]:
            self.assertTrue(self.run_program("merge", *files, *tests, code=1).line.endswith(end))

    def test_exit_codes(self):
        with open(self.folder / "a.xml", "rb") as stdin:
            self.assertIn("version of standard input\n", self.run_program("compare", "-", self.version("b.xml", *self.questions),
                                                                          stdin=stdin).out)
        twice = self.version("twice.xml", *self.questions, self.questions[1])
        self.file("sub.ktd", {"format": "hedro34-ktd", "version": 1, "questions": [{"graded": True}]})
        essay = self.version("essay.xml", self.questions[0])
        for code, name, line in [
            (3, "gone.xml", "cannot read the test: gone.xml: No such file"),
            (1, essay, "RemoveInvalid answered False: essay.xml: no question is true/false"),
            (1, "sub.ktd", "RemoveInvalid answered False: sub.ktd: no question is true/false"),
            (5, twice, "done, but the failures above were reported"),
        ]:
            with self.subTest(name):
                outcome = self.run_program("compare", "a.xml", name, code=code)
                self.assertIn("hedro34: " + line, outcome.line)
        # A key that cannot be held against another is reported, as it is in a merge.
        for name, label in [("p.xml", "P"), ("q.xml", "Q")]:
            self.version(name, question("x", "mc", "~", THREE), version=label)
        outcome = self.run_program("compare", "p.xml", "q.xml", code=5)
        self.assertIn("Error# 6: Overflow, Location: HEDRO34 - clsHEDROTestCorrect.GetBitWiseRepresentation", outcome.err)


class Examples(ProgramTest):
    """What the README of the examples promises."""

    FILES = ["--form-out", "out.form", "--document-out", "out.ktd", "--messages", "m"]

    def setUp(self):
        super().setUp()
        shutil.copytree(SOURCES / "examples", self.folder, dirs_exist_ok=True)

    def test_tests(self):
        mixed = "--partial-credit ok --form mixed.form.json mixed.xml"
        credit, invalid = ("Partial Credit", 1), ("Invalid Question Type(s)", 1)
        removed = "2 4 6 7 9 10 12 13 15 17 19 20 21".split()
        rationales = [f'{number} not carried element "rationale"' for number in ("1 341", "14 3241")]
        for arguments, keys, questions, objectives, said in [
            ("--objectives all --state CA --form biology.form.json biology.xml",
             "B B C C C B B B B (A,C,E) (C,A) (A,C,E) T F F T Y N B T", 29, 47,
             [rationales[0], "5 1341 not carried equation", rationales[1]]),
            (mixed, "C T (A,C,D) I N H F G A (F,H,J)", 14, 0,
             [credit, "22 1227 not carried choice 1 after 50 characters", invalid, *removed]),
        ]:
            with self.subTest(arguments):
                self.run_program("merge", *arguments.split(), *self.FILES)
                document = self.json_of("out.ktd")
                found = [key for question in document["questions"] for key in question["answerKey"]]
                all_said = [text if " not " in text or len(text) == 2 else text.partition(" ")[0]
                            for text in self.said("box", "failure", "note")]
                self.assertEqual((" ".join(found), all_said), (keys, said))
                self.assertEqual((len(document["questions"]), len(document["objectives"]) - 1), (questions, objectives))

    def test_versions(self):
        readme = (self.folder / "README.md").read_text(encoding="utf-8")
        options = ["--form", "versions/unit.form.json", "--sequence-question", "1"]
        self.run_program("merge", *options, *self.FILES, *(f"versions/unit-{name}.xml" for name in "abcd"))
        table = re.findall(r"^\| [B-D] \| ([\d, ]+) \|$", readme, re.MULTILINE)
        orders = [list(range(1, 18))] + [[int(place) for place in order.split(",")] for order in table]
        expected = {"sequenceQuestion": 1, "versionAnswers": list("ABCD"), "orders": orders}
        self.assertEqual(self.json_of("out.ktd")["versions"], expected)
        refused = re.findall(r"^\| `(refused-.*?)` \|.*\| `(.*?)` \| \"(.*?)\"", readme, re.MULTILINE)
        self.assertEqual(len(refused), 7)
        for name, operation, title in refused:
            with self.subTest(name):
                outcome = run("merge", *options, *self.FILES, "versions/unit-a.xml", f"versions/{name}", cwd=self.folder)
                self.assertEqual((outcome.code, self.said()), (1, [(title, 1)]), outcome)
                self.assertIn(f"hedro34: {operation} answered False", outcome.line)
                said = run("compare", "unit-a.xml", name, cwd=self.folder / "versions").out
                self.assertEqual(said, "".join(re.findall(rf"^{name}: .*\n", readme, re.MULTILINE)) or
                                 f"No differences: merge takes {name} as a version of unit-a.xml\n")


if __name__ == "__main__":
    unittest.main()
