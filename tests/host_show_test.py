#!/usr/bin/env python3
"""What `show` prints of tests, documents and forms, one or several, for a person or a spreadsheet: columns, characters that a
terminal is not given, tables."""

import csv
import io
import json
import unittest

from program import SOURCES, ProgramTest, examview, question

FORM = {
    "format": "hedro34-form", "version": 1,
    "pages": [
        {"regions": [
            {"name": "Name", "regionKind": 2, "responseKind": 3, "valueKind": 4, "questions": [{}]},
            {"name": "Q\u202e1", "questions": [
                {"name": "一", "questionText": "What?\nWhy?", "graded": True, "correctPoints": 2.5, "incorrectPoints": -0.25,
                 "noResponsePoints": 0.1, "choiceLabels": ["A", "", "C"], "choiceValues": ["1", "2", "3"]}]},
            {"groupNumber": 7, "questions": [{"name": "a"}, {"name": "b", "graded": True}]},
        ]},
        {"regions": []},
        {"regions": [
            {"groupNumber": 7, "questions": [{"name": "again"}]},
            {"name": "Essay", "subjectiveRegion": True, "questions": [{"correctPoints": 10.0}]},
        ]},
    ],
}

FORM_AS_TEXT = """\
Form template
=============

Pages        3
Regions      5
Fields       5
Graded       2
Subjective   1

Page 1
  Region Name, kind 2, response 3, value 4
    1.    Name   not graded
  Region Q\ufffd1, kind 1
    2.    一     graded, 2.5 points, -0.25 if wrong, 0.1 if blank  A - C
          What?
          Why?
  Region without a name, kind 1, group 7
    3.    a      not graded
    4.    b      graded, 1 point

Page 2

Page 3
  Region without a name, kind 1, group 7, continued
    3.    again  not graded
  Region Essay, kind 1
    5.    Essay  subjective, 10 points
"""


def document(*questions, **members):
    return {"format": "hedro34-ktd", "version": 1, "questions": list(questions), **members}


class Terminal(ProgramTest):
    def test_columns(self):
        """Wide characters take two columns, those that combine none, joined emoji as many as their parts."""
        family = "\U0001f469\u200d\U0001f467"
        labels = ["A", "中", "e\u0301", family, "\u1100\u1161\u11a8", "x\u200e\ufe0f\u200b", "a\nb"]
        self.file("w.ktd", document({"graded": True, "choiceLabels": labels, "questionText": "一\n二"},
                                    description="1\u0301\n2\u2028\u06f3\u0085four", notes="ｎ"))
        out = self.run_program("show", "w.ktd").out
        choices = [f"        {label}{' ' * blanks}  {label}" for label, blanks in
                   zip(labels, [3, 2, 3, 0, 2, 3])] + ["        a b   a", " " * 14 + "b"]
        self.assertIn("\n".join(["1.    ID 1, multiple choice", "      一", "      二", *choices, "      Key: none"]), out)
        self.assertIn("Description  1\u0301\n" + "".join(f"{' ' * 13}{line}\n" for line in ("2", "\u06f3", "four")), out)
        self.file("t.xml", examview(question("1", "tf", "T"), title="中文 e\u0301"))
        self.assertTrue(self.run_program("show", "t.xml").out.startswith("中文 e\u0301\n======\n\n"))

    def test_nothing_turns_the_terminal_around(self):
        turns = [chr(code) for code in [*range(0x202A, 0x202F), *range(0x2066, 0x206A)]]
        marks = "\u200e\u200f\u061c"
        for name in ["".join(turns), "\u009b\u2028\u0085"]:
            line = self.run_program("show", name, code=3).line
            self.assertIn("".join(f"\\u{ord(character):04x}" for character in name) + ": No such file", line)
        text = "a".join(turns) + marks + "\u009b1m"
        self.file("t.xml", examview(question(turns[0], "tf", "T", text=text), question(turns[0], "tf", "T"), title=text))
        outcome = self.run_program("show", "t.xml", code=5)
        self.assertEqual(outcome.out.count("a".join("\ufffd" * len(turns)) + marks + " 1m\n"), 2, outcome)
        self.assertFalse(set(turns) & set(outcome.out + outcome.err))
        self.assertIn("ID \ufffd, true/false", outcome.out)


class Kinds(ProgramTest):
    def test_form(self):
        for name, content in [("f.ktd", FORM), ("behind", dict(reversed(FORM.items())))]:
            self.file(name, content)
            self.assertEqual(self.run_program("show", name).out, FORM_AS_TEXT)
            found = json.loads(self.run_program("show", "--json", name).out)
        self.assertEqual((list(found), list(found["pages"][0]["regions"][0])[:2]),
                         (["format", "version", "pages"], ["name", "regionKind"]))
        self.assertEqual(found["pages"][0]["regions"][1]["questions"][0]["incorrectPoints"], -0.25)
        with open(self.folder / "f.ktd", "rb") as given:
            self.assertEqual(self.run_program("show", "-", stdin=given).out, FORM_AS_TEXT)
        for content, expected in [
            (FORM | {"version": 2}, "form: f: /version: must be 1"),
            ({"pages": [{"page": 1}]} | FORM | {"pages": 1}, "form: f: /pages: must be a list"),
            ({"format": "hedro34-ktd", "version": 1, "notes": "hedro34-form", "pages": []}, "test: f: /pages: unknown member"),
            ({"format": "other", "version": 1}, "test: f: /format: "),
            ({"pages": []}, "test: f: /pages: unknown member"),
        ]:
            with self.subTest(expected):
                self.file("f", content)
                self.assertIn("cannot read the " + expected, self.run_program("show", "f", code=3).line)

    def test_several_files(self):
        """All of them or none; each as it is shown alone."""
        self.file("a\n.xml", examview(question("1", "tf", "T"), title='Say "\\ {a: 1,\t2}"'))
        self.file("b.ktd", document({"graded": True, "choiceLabels": ["A", "B"], "answerKey": ["B"]}))
        self.file("c.json", FORM)
        names = ["a\n.xml", "b.ktd", "c.json"]
        alone = [self.run_program("show", name).out for name in names]
        headings = ["==> a\\n.xml <==\n", "==> b.ktd <==\n", "==> c.json <==\n"]
        self.assertEqual(self.run_program("show", *names).out, "\n".join(map("".join, zip(headings, alone))))
        alone = [json.loads(self.run_program("show", "--json", name).out) for name in names]
        lines = self.run_program("show", "--json", *names).out.splitlines()
        self.assertEqual(list(map(json.loads, lines)), alone)
        self.assertTrue(lines[0].startswith('{"title":"Say \\"\\\\ {a: 1,\\t2}\\"","version":""'), lines[0])
        self.file("none.xml", examview())
        self.file("twice.xml", examview(question("1", "tf", "T"), question("1", "tf", "T")))
        for others, code in [(["none.xml", "gone"], 1), (["gone", "none.xml"], 3)]:
            self.assertEqual(self.run_program("show", *names, *others, code=code).out, "")
        self.assertIn("==> c.json <==", self.run_program("show", "twice.xml", "c.json", code=5).out)

    def test_grid_of_a_version(self):
        """A row takes no more than 80 columns; the fields keep their places where the order of a version ends too early."""
        fields = [{"graded": True, "choiceLabels": list("ABCDE"), "answerKey": [key], "numericAnswerKey": [number]}
                  for key, number in [("B", "2"), ("(A,C,D,E)", "(1,3,4,5)")] * 20]
        order = [*range(2, 41), 1]
        self.file("v.ktd", document(*fields, versions={"versionAnswers": ["X\u2067", "Y"], "orders": [order, order[::-1]]}))
        grid = self.run_program("show", "v.ktd").out.partition("Version X\ufffd\n\n")[2].partition("\nVersion Y")[0]
        self.assertLessEqual(max(map(len, grid.splitlines())), 80)
        rows = [[line.split()[1:] for line in grid.splitlines() if line.startswith("  " + name)] for name in ("Field", "ID", "Key")]
        rows = [sum(row, []) for row in rows]
        self.assertEqual(rows, [list(map(str, range(1, 41))), list(map(str, order)), ["(A,C,D,E)", "B"] * 20])
        self.file("v.ktd", document(*fields, versions={"versionAnswers": ["X"], "orders": [order, order[::-1]]}))
        fault = "2 orders of versions and 1 version identifier: its versions are not read, and the key is that of the first one."
        self.assertIn(fault + "\n\nKeys by field\n", self.run_program("show", "v.ktd").out)


class Table(ProgramTest):
    HEADER = ("number,id,type,text,choices,key,numericKey,correctPoints,incorrectPoints,noResponsePoints,subjectivePoints,"
              "difficulty,reference,topic,keywords,objectives").split(",")

    def expected(self, test):
        rows = [[*self.HEADER, *("place " + version["answer"] for version in test["sequences"])]]
        types = {1: "true/false", 2: "yes/no", 3: "multiple choice", 10: "essay", 12: "subjective"}
        for number, asked in enumerate(test["questions"], 1):
            rows.append([str(number), asked["id"], types[asked["questionType"]], asked["questionText"],
                         "\n".join(asked["answers"]), asked["key"], asked["numericKey"],
                         *(repr(asked[name]).removesuffix(".0") for name in self.HEADER[7:11]),
                         *(asked[name] for name in self.HEADER[11:15]), "\n".join(asked["learningObjectives"]),
                         *(str(version["places"].get(asked["id"], "")) for version in test["sequences"])])
        return rows

    def test_reads_back(self):
        hostile = ['"', '""', ",", "a,b", "\r", "\n", "\r\n", " lead", "trail ", "\ttab", "=1+1", "\ufeff", "\u202e", "中", "", "'", ";"]
        both = {"graded": True, "choiceLabels": hostile, "answerKey": ['"'], "objectiveFlags": [False, True, True]}
        texts = [both | {"questionText": text, "topic": text, "difficulty": text, "reference": text, "keywords": text}
                 for text in hostile]
        self.file("h.ktd", document(
            *texts, {"subjective": True, "subjectivePoints": 0.1, "correctPoints": 1e30}, {"graded": True, "choiceLabels": [""]},
            objectives=["", 'a "quoted", one', "b\nc"],
            versions={"versionAnswers": ['"A",', "", "C"], "orders": [[2, 1], list(range(1, len(texts) + 3)), []]}))
        self.file("s.xml", examview(question("&#xfffd;\x85", "mc", "A", ("", "&#13;", '"'), text="a&#13;&#10;b"),
                                    question("2", "mc", "A", ["x" * 49 + "\U0001f600"]), title="x"))
        samples = ["examples/biology.xml", "examples/versions/unit-a.xml"]
        for name in ["h.ktd", "s.xml", *(str(SOURCES / sample) for sample in samples)]:
            with self.subTest(name):
                options = ["--objectives", "all", name]
                found = self.run_program("show", "--csv", *options).out
                rows = list(csv.reader(io.StringIO(found, newline=""), strict=True))
                self.assertEqual(rows, self.expected(json.loads(self.run_program("show", "--json", *options).out)))
                self.assertTrue(found.startswith("number,") and found.endswith("\r\n"))
                self.assertEqual({len(row) for row in rows}, {len(rows[0])})

    def test_bytes(self):
        self.file("t.xml", examview(question("7", "mc", "B", ('say "no"', " x", "é"), text="1, 2")))
        with open(self.folder / "out", "wb") as out:
            self.run_program("show", "--csv", "t.xml", stdout=out)
        header = ",".join(self.HEADER).encode()
        self.assertEqual((self.folder / "out").read_bytes(), header + b'\r\n1,7,multiple choice,"1, 2","say ""no""\nx\n\xc3\xa9",'
                         b"B,2,1,0,0,0,,,,,\r\n")

    def test_a_form_is_no_table(self):
        self.file("f", FORM)
        self.assertIn("f: it has no questions", self.run_program("show", "--csv", "f", code=3).line)


if __name__ == "__main__":
    unittest.main()
