#!/usr/bin/env python3
"""What is written from the member tables is what stands in the repository."""

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


if __name__ == "__main__":
    unittest.main()
