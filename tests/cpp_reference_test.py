#!/usr/bin/env python3
"""docs/cpp.md is what the public headers say today; it has what a program uses and nothing else."""

import shutil
import subprocess
import sys
import unittest

from program import SOURCES

MADE_WITH = "1.9.4"  # others write some declarations differently


class CppReference(unittest.TestCase):
    def setUp(self):
        self.page = (SOURCES / "docs/cpp.md").read_text(encoding="utf-8")

    def test_page_is_current(self):
        done = subprocess.run([SOURCES / "scripts/cpp-reference"], capture_output=True, encoding="utf-8", check=False,
                              timeout=300)
        self.assertEqual((done.returncode, done.stderr), (0, ""))  # where something has no comment, that says where
        self.assertTrue(done.stdout == self.page, "docs/cpp.md is out of date: scripts/cpp-reference >docs/cpp.md")

    def test_nothing_of_the_inside(self):
        for hidden in ("AddXMLQuestion", "upper_from_table", "items_", "HEDRO34_API", "~", "///", "verbatim"):
            self.assertNotIn(hidden, self.page)


if __name__ == "__main__":
    there = shutil.which("doxygen")
    found = there and subprocess.run([there, "--version"], capture_output=True, text=True, check=True).stdout.split()[0]
    if found != MADE_WITH:
        print(f"doxygen {MADE_WITH} is not here, but {found or 'none'}")
        sys.exit(77)
    unittest.main()
