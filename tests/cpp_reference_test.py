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

    def test_each_kind_of_entry(self):
        for entry in (
            # an operation with its comment; a comment behind a declaration; one comment for two; a derived class
            "```cpp\nbool Merge();\n```\n\nMerges the first test with `TemplateIn`: the n-th graded field takes the n-th question.",
            "\nbool RemoveAll();  // each from the last one down; gives whether nothing is left\n",
            "```cpp\nString upper(StringView text);\nString lower(StringView text);\n```\n\nSimple mappings of each unit",
            "#### FormTemplate\n\nDerived from [`TIBTemplate`](#tibtemplate), with all that stands there.\n",
            # a field, a constant, the value of an enumeration
            "| `Ref<clsHEDROTests> Tests` | the test at position 1, its further versions behind it |\n",
            "| `Text<> QuestionText` |", "| `std::int32_t box_stop = 16` | stop icon |\n",
            "| `HEDROTestSourceTypeNGT` | 2 | nothing inside the library sets it |\n",
            # an example in the comment of a header
            "```cpp\nMyMessageBox box;\nhedro34::platform().message_box = &box;\n```\n",
        ):
            self.assertIn(entry, self.page)
        for hidden in ("AddXMLQuestion", "upper_from_table", "items_", "HEDRO34_API", "~", "///", "verbatim"):
            self.assertNotIn(hidden, self.page)


if __name__ == "__main__":
    there = shutil.which("doxygen")
    found = there and subprocess.run([there, "--version"], capture_output=True, text=True, check=True).stdout.split()[0]
    if found != MADE_WITH:
        print(f"doxygen {MADE_WITH} is not here, but {found or 'none'}")
        sys.exit(77)
    unittest.main()
