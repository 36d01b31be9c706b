#!/usr/bin/env python3
"""The program's command line, its reading of tests, its messages and its exit codes. Merges stand in host_merge_test.py."""

import json
import os
import pty
import unittest

from program import PARTIAL, THREE, ProgramTest, examview, question

SMALL = examview(question("1", "mc", "E", "vwxyz", "Pick the last"), title="Small Test", version="B")
TWICE = examview(question("1", "tf", "T"), question("1", "tf", "F"), title="Twice")
FAILURE = (
    '{"kind":"failure","number":457,"description":"This key is already associated with an element of this collection",'
    '"location":"HEDRO34 - clsHEDROTestQuestions.Add"}\n'
)

# A name field, then true/false, multiple choice and an essay, in two versions of which the second leaves one out.
UNIT = {
    "format": "hedro34-ktd", "version": 1, "description": "What it is", "notes": "Line 1\r\nLine 2",
    "objectives": ["", "Adding", "Counting"],
    "questions": [
        {"name": "Name"},
        {"graded": True, "questionText": "Up\r\nDown\u001b[1m", "choiceLabels": ["T", "F"], "answerKey": ["T"],
         "correctPoints": 2.5, "incorrectPoints": -0.1, "noResponsePoints": 0.25, "difficulty": "Easy", "reference": "R",
         "topic": "T", "keywords": "K", "miscellaneous": "M", "notes": "N", "objectiveFlags": [False, True, True]},
        {"graded": True, "questionText": "Two", "choiceLabels": ["F", "G", "H"], "answerKey": ["(F,H)"]},
        {"subjective": True, "questionText": "Essay", "subjectivePoints": 0.1},
    ],
    "versions": {"versionAnswers": ["A", "B"], "orders": [[1, 2, 3, 4], [1, 4, 2]]},
}

UNIT_AS_TEXT = (
    "unit\n====\n\nDescription  What it is\nNotes        Line 1\n             Line 2\nSource       KTD document\n"
    "Questions    3\nObjectives   2\n\nScales\n"
    "  multiple choice, odd questions   A B C\n  multiple choice, even questions  F G H\n"
    "  true/false                       T F\n  yes/no                           Y N\n\n"
    "1.    ID 2, true/false\n      Up\n      Down [1m\n        T  T\n        F  F\n      Key: T\n"
    "      Objectives: Adding; Counting\n\n"
    "2.    ID 3, multiple choice\n      Two\n        F  F\n        G  G\n        H  H\n      Key: (F,H)\n\n"
    "3.    ID 4, subjective\n      Essay\n      Key: none\n\n"
    "Version A\n\n  Field     1  2  3      4\n  ID        1  2  3      4\n  Key       -  T  (F,H)  none\n\n"
    "Version B\n\n  Field     1  2      3\n  ID        1  4      2\n  Key       -  none!  F\n"
)

PLAIN = {
    "id": "", "questionType": -1, "questionText": "", "answers": [], "correctAnswers": [], "correctAnd": True,
    "multiplesPermitted": False, "correctPoints": 1, "incorrectPoints": 0, "noResponsePoints": 0, "subjectivePoints": 0,
    "difficulty": "", "reference": "", "topic": "", "keywords": "", "miscellaneous": "", "notes": "",
    "learningObjectives": [], "scale": [], "key": "", "numericKey": "",
}

UNIT_AS_JSON = {
    "title": "unit", "version": "", "id": "", "description": "What it is", "notes": "Line 1\r\nLine 2", "createdBy": "",
    "teacherID": "", "source": 1, "userDefined": True, "importObjectives": 0, "stateAbbreviation": "", "numObjectives": 2,
    "multipleChoiceOddScale": ["A", "B", "C"], "multipleChoiceEvenScale": ["F", "G", "H"],
    "trueFalseScale": ["T", "F"], "yesNoScale": ["Y", "N"],
    "questions": [
        PLAIN | {"id": "2", "questionType": 1, "questionText": "Up\r\nDown\u001b[1m", "answers": ["T", "F"],
                 "correctAnswers": [1], "correctPoints": 2.5, "incorrectPoints": -0.1, "noResponsePoints": 0.25,
                 "difficulty": "Easy", "reference": "R", "topic": "T", "keywords": "K", "miscellaneous": "M", "notes": "N",
                 "learningObjectives": ["Adding", "Counting"], "scale": ["T", "F"], "key": "T", "numericKey": "1"},
        PLAIN | {"id": "3", "questionType": 3, "questionText": "Two", "answers": ["F", "G", "H"], "correctAnswers": [1, 3],
                 "multiplesPermitted": True, "scale": ["F", "G", "H"], "key": "(F,H)", "numericKey": "(1,3)"},
        PLAIN | {"id": "4", "questionType": 12, "questionText": "Essay", "subjectivePoints": 0.1},
    ],
    "sequences": [
        {"answer": "A", "order": [1, 2, 3], "places": {"2": 1, "3": 2, "4": 3}},
        {"answer": "B", "order": [1, 2], "places": {"2": 2, "4": 1}},
    ],
}


class CommandLine(ProgramTest):
    def test_wrong_usage(self):
        self.file("t.xml", SMALL)
        self.file("m", "old\n")
        before = self.files()
        form, merge = "form --out f --questions ", "merge t.xml --form f --form-out g --document-out d "
        for fragment, rows in {
            "subcommand": [""], "unknown command: print; see hedro34 --help": ["print t.xml"],
            "did you mean show?": ["shwo t.xml", "SHOW", "--show t.xml", "hsow -"], "did you mean --help?": ["help"],
            "did you mean hedro34 show t.xml?": ["t.xml"], "did you mean --form-out?": [merge.replace("form-out", "form-ot")],
            "unknown option: --partial-crdit=ok; did you mean --partial-credit?": ["show --partial-crdit=ok t.xml"],
            "unknown option: --form; see hedro34 show --help": ["show --form f t.xml"],
            "--json is one of show; give it behind": ["--json show t.xml"],
            "TEST": ["compare", "compare t.xml", "merge --form f --form-out g --document-out d"],
            "FILE": ["show"], "DOCUMENT": ["report --out r"], "one FILE": ["show --csv t.xml t.xml"],
            "u.xml": ["report --out r t.ktd u.xml"], "did you mean --json?": ["show --jsn t.xml", "show -json t.xml", "show t.xml --JSON"], "json": ["show --json=1 t.xml"],
            "every": ["show --messages m --objectives all,every t.xml"],
            "--partial-credit": ["show --partial-credit yes t.xml"],
            "--messages": ["show --messages ./t.xml t.xml"],
            "--form": ["merge t.xml --form-out g --document-out d"],
            "--form-out": ["merge t.xml --form f --document-out d"],
            "--document-out": ["merge t.xml --form f --form-out g"],
            "--sequence-question": [merge + "--sequence-question -2147483649", merge + "--sequence-question="],
            "--out": ["form --questions 3"], "--questions": ["form --out f", form + "0", form + "32767 --versions A"],
            "--choices": [form + "3 --choices 27", form + "3 --choices 0"],
            '"a" stands there twice': [form + "3 --versions A,B,a"],
            "both standard output": ["merge t.xml --form f --form-out - --document-out -", merge.replace("d ", "- --messages -")],
            "both standard input": ["merge - - --form f --form-out g --document-out d", merge.replace("f ", "- ", 1) + "-"],
            "goes to standard output": ["show --messages - t.xml"],
        }.items():
            for row in rows:
                with self.subTest(row):
                    outcome = self.run_program(*row.split(), code=2)
                    self.assertIn(fragment, outcome.line)
                    self.assertEqual((outcome.out, outcome.err.count("\n"), self.files()), ("", 1, before))

    def test_help_and_version(self):
        self.assertRegex(self.run_program("--help").out, r"(?s)show.*merge.*form")
        self.assertRegex(self.run_program("--version").out, r"^hedro34 \d+\.\d+\.\d+\n$")


class Show(ProgramTest):
    def test_whole_document(self):
        self.file("sub/unit.ktd", UNIT)
        # Behind the grid of version B stands what is wrong with it.
        out, faults = self.run_program("show", "sub/unit.ktd").out.split("  Field 2: ")
        self.assertEqual(out, UNIT_AS_TEXT)
        self.assertEqual(faults, "the order of the version has this question at a wrong place\n")
        found = json.loads(self.run_program("show", "--json", "sub\\unit.ktd").out)
        # As text, so that the order of the members counts and the form of the numbers.
        self.assertEqual(json.dumps(found, indent=1), json.dumps(UNIT_AS_JSON, indent=1))

    def test_import_options(self):
        info = (
            "<text-objective>L</text-objective><local-standard>C</local-standard><national-standard>N</national-standard>"
            "<state-objective state='WI'>W</state-objective><state-objective state='TX'>X</state-objective>"
        )
        both = question("1", "mc", "A", THREE, info=info), question("2", "mc", "A", THREE)
        self.file("t.xml", examview(*both, letters="abcde_fghij", version="B"))
        for options, flags, state, objectives, scale in [
            ("", 0, "", "", "FGH"),
            ("--objectives local,none --odd-distractors-only", 2, "", "C", "ABC"),
            ("--objectives national,learning,national --state=", 9, "", "LN", "FGH"),
            ("--objectives all --state WI", 15, "WI", "LCNW", "FGH"),
        ]:
            with self.subTest(options):
                test = json.loads(self.run_program("show", "--json", *options.split(), "t.xml").out)
                found = [test[name] for name in ("version", "importObjectives", "stateAbbreviation")]
                found += ["".join(test["questions"][0]["learningObjectives"]), "".join(test["questions"][1]["scale"])]
                self.assertEqual(found, ["B", flags, state, objectives, scale])

    def test_inputs_and_exit_codes(self):
        unit = json.dumps(UNIT)
        cannot_read, said_no = "hedro34: cannot read the test: ", "hedro34: {} answered False: {}: "
        os.mkfifo(self.folder / "pipe")
        with open("/dev/full", "wb") as full:
            for code, name, content, expected, said, *how in [
                (0, "show", SMALL, "Small Test\n==========\n\nVersion      B\nSource       ExamView file\n", ""),
                (0, "prüfung ☃", SMALL, "        D  y\n        -  z\n      Key: -\n", ""),
                (0, "-t.ktd", "\ufeff" + SMALL.partition("\n")[2], "Small Test\n", ""),
                (1, "none.xml", examview(title="None"), said_no.format("LoadXML", "none.xml"), ""),
                (1, "./period", unit, said_no.format("LoadKTD", "./period"), '{"kind":"failure","number":5,'),
                (3, "gone\n\x1b.xml", None, cannot_read + "gone\\n\\x1b.xml: No such file", ""),
                (3, "pipe", None, cannot_read + "pipe: it is not a regular file; save it as one", ""),
                (3, "/dev/null", None, cannot_read + "/dev/null: it is not a regular file", ""),
                (3, "a.xml", "<examview>\n <question>\n</examview>", cannot_read + "a.xml: line 3, column ", ""),
                (3, "b.ktd", '{\n  "format": "hedro34-ktd",,\n', cannot_read + "b.ktd: line 2, column ", ""),
                (3, "c.ktd", UNIT | {"questions": [{"graded": 1}]}, cannot_read + "c.ktd: /questions/0/graded: ", ""),
                (4, "twice.xml", TWICE, "cannot write standard output: No space left", FAILURE, ("stdout", full)),
                (5, "twice.xml", TWICE, "Twice\n", FAILURE),
            ]:
                if content is not None:
                    self.file(name, content)
                self.file("m", "old\n")
                with self.subTest(name=name, code=code):
                    outcome = self.run_program("show", "--messages", "m", "--", name, code=code, **dict(how))
                    self.assertIn(expected, outcome.out if code in (0, 5) else outcome.line)
                    self.assertEqual((self.folder / "m").read_text()[: len(said) or None], said)
                    self.assertEqual(outcome.out != "", code in (0, 5))
                    self.assertEqual(outcome.err.count("\n"), (code != 0) + (said != ""))
            self.run_program("--help", code=4, stdout=full)
        self.assertIn("a question may be missing, and the keys behind it have moved up", outcome.line)
        report = "Error# 457: {description}, Location: {location}\nhedro34: ".format(**json.loads(FAILURE))
        self.assertTrue(outcome.err.startswith(report), outcome)

    def test_standard_streams(self):
        """`-` is standard input; a reader of what is shown that goes away has seen enough."""
        long = examview(question("1", "tf", "T", text="long " * 50_000), title="Long")
        self.run_program("form", "--questions", "1", "--out", "f")
        merge = "merge --quiet --form f --form-out g --document-out d -"
        cannot_read, said_no = "hedro34: cannot read the test: standard input: ", "hedro34: {} answered False: standard input: "
        for command, content, code, expected in [
            ("show -", long, 0, "Long\n"),
            ("show -", json.dumps(UNIT), 0, "Test without a title\n"),
            ("show -", "<a/>", 3, cannot_read),
            ("show -", "", 3, cannot_read),
            ("show -", "<examview/>", 1, said_no.format("LoadXML") + "there is no question in it"),
            (merge, examview(question("e", "es")), 1, said_no.format("RemoveInvalid")),
        ]:
            with self.subTest(command, expected=expected):
                self.file("in", content)
                with open(self.folder / "in", "rb") as given:
                    outcome = self.run_program(*command.split(), code=code, stdin=given)
                self.assertTrue((outcome.line or outcome.out).startswith(expected), outcome)
        self.file("t.xml", TWICE)
        for command, code in [(["show", "t.xml"], 5), (["--help"], 0), (["form", "--questions", "9", "--out", "-"], 4)]:
            reading, writing = os.pipe()
            os.close(reading)
            with self.subTest(command), open(writing, "wb") as nobody_reads:
                self.assertEqual("Broken pipe" in self.run_program(*command, code=code, stdout=nobody_reads).err, code == 4)

    def test_partial_credit(self):
        self.file("t.xml", examview(question("1", "mc", "A", THREE, info=PARTIAL)))
        self.run_program("form", "--questions", "1", "--out", "f")
        show, merge = "show t.xml --messages m ", "merge t.xml --messages m --quiet --form f --form-out g --document-out d"
        for keys, arguments, answer, asked in [
            (None, show + "--partial-credit ok", 1, False),
            (None, show + "--partial-credit ask", 2, False),
            (b"o\n", show, 1, True),
            (b"\x04", merge, 2, True),
            (b"o\n", show + "--partial-credit cancel", 2, False),
        ]:
            near, far = pty.openpty()
            with self.subTest(keys=keys, arguments=arguments), open(near, "wb", 0) as keyboard, open(far, "rb") as terminal:
                keyboard.write(keys or b"")
                outcome = self.run_program(*arguments.split(), code=answer - 1, **{"stdin": terminal} if keys else {})
                self.assertEqual((self.said(), "Cancel?" in outcome.err), ([("Partial Credit", answer)], asked))
                self.assertEqual(outcome.out == "", answer == 2)


if __name__ == "__main__":
    unittest.main()
