#!/usr/bin/env python3
"""What is written from the member tables is what stands in the repository, and the interface definition is whole."""

import os
import pathlib
import re
import shutil
import subprocess
import unittest

SOURCES = pathlib.Path(os.environ["HEDRO34_SOURCE_DIR"])
TABLES = os.environ["HEDRO34_TABLES"]


def printed(what):
    return subprocess.run([TABLES, what], check=True, capture_output=True, timeout=60).stdout.decode()


class Tables(unittest.TestCase):
    def test_written_files_are_current(self):
        for what, name in (("reference", "docs/interfaces.md"), ("python", "clients/python/hedro34/_classes.py"),
                           ("idl", "hedro34/component/HEDRO34.idl")):
            with self.subTest(name):
                current = (SOURCES / name).read_text(encoding="utf-8")
                self.assertTrue(printed(what) == current, f"{name} is out of date: hedro34_tables {what} > {name}")

    def test_identifiers_are_different(self):
        named = re.findall(r"\{([0-9A-F-]{36})\}", printed("reference"))
        self.assertEqual((len(named), len(set(named))), (1 + 2 * 32, 1 + 2 * 32))  # the library's; class and interface

    def test_each_member_says_what_it_does(self):
        page = printed("reference")
        rows = re.findall(r"^\| `(\w+)` \| (read|read, write|read, assign object|method) \| ([^|]*) \| ([^|]*) \|.*\|$", page, re.M)
        self.assertEqual(len(rows), len(re.findall(r"^\| `\w+` \| [a-z]", page, re.M)))
        for name, _, _, line in rows:
            self.assertRegex(line, r"^(?!.*\. )[A-Z0-9].{10,115}\.$", name)
        self.assertIn(
            "| `CorrectAnswersAsArray` | method | array of strings | The correct answers of a question as an array from 0; "
            "without bounds when there are none. | `vQuestionIndex` variant (a position or an ID); optional `bAsString` Boolean "
            "= False (labels in place of numbers) |\n", page)
        self.assertIn("| `HEDROTestQuestionTypeMultipleChoice` | 3 | Multiple choice; code mc, mr, 2 or 3. |\n", page)

    @unittest.skipUnless(shutil.which("man"), "not installed: man-db")
    def test_manual_page(self):
        environment = os.environ | {"LC_ALL": "C.UTF-8", "MANWIDTH": "130", "MANOPT": "--nh --nj"}
        done = subprocess.run(["man", "--warnings", "-l", "-"], input=printed("man").encode(), capture_output=True, timeout=60,
                              env=environment, check=True)
        self.assertEqual(done.stderr, b"")
        page = done.stdout.decode()
        self.assertIn("""
       CorrectAnswersAsArray(vQuestionIndex, bAsString)  — method, array of strings
              The correct answers of a question as an array from 0; without bounds when there are none.

              vQuestionIndex
                     variant: a position or an ID

              bAsString
                     optional Boolean, False when left out: labels in place of numbers
""", page)
        self.assertIn('\n                     optional string, "\\t" when left out: an empty one splits nothing\n', page)
        shown = re.findall(r"^       (\w+)(?:\(.*\))?(?:  — (?:read|method)| = -?\d)", page, re.M)
        self.assertEqual(shown, re.findall(r"^\| `(\w+)` \|", printed("reference"), re.M))

    def test_interface_definition(self):
        idl = printed("idl")
        self.assertIn("[uuid(6AAE3623-6B45-492C-AAEE-413365FB2060), version(15.0), lcid(1033)]\nlibrary HEDRO34\n", idl)
        creatable = [name for noncreatable, name in re.findall(r"(, noncreatable)?, helpstring.*\]\n  coclass (\w+)", idl)
                     if not noncreatable]
        self.assertEqual(creatable, ["clsHEDRO", "clsHEDROTest", "clsHEDROTestQuestion", "clsHEDROTestStrings",
                                     "clsHEDROTestCorrect", "clsHEDROTestSequence"])
        self.assertEqual(len(re.findall(r"dispinterface _\w+\n", idl)), 10)
        for line in (
            "[id(17)] VARIANT_BOOL LoadXML([in] BSTR sExamViewXMLFile, [in, optional, defaultvalue(0)] VARIANT_BOOL "
            "bOddDistractorsOnly, [in, out, optional, defaultvalue(0)] VARIANT_BOOL* bUserCancelled, [in, optional, "
            "defaultvalue(-1)] VARIANT_BOOL bVerbose);",
            "[id(0), propget] BSTR Item([in] VARIANT Index);",
            "[id(0), propput] void Item([in] VARIANT Index, [in] BSTR sValue);",
            "[id(0), propget] _clsHEDROTestSequenceOrder* Order();",
            "[id(3)] VARIANT_BOOL AddArray([in, out] SAFEARRAY(BSTR)* Value);",
            '[id(4)] VARIANT_BOOL AddDelimitedString([in] BSTR Items, [in, optional, defaultvalue("\\t")] BSTR sDelimiter);',
        ):
            self.assertIn(line, idl)


if __name__ == "__main__":
    unittest.main()
