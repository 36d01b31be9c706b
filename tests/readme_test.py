#!/usr/bin/env python3
"""The C++ block of README.md is the whole of examples/merge.cpp, which saves nothing after a reported failure."""

import os
import pathlib
import re
import unittest

from program import SOURCES, ProgramTest, run

EXAMPLE = pathlib.Path(os.environ.get("HEDRO34_BUILD", "the folder named by HEDRO34_BUILD")) / "example_merge"


class Readme(ProgramTest):
    def test_block_is_the_example(self):
        readme, source = ((SOURCES / name).read_text(encoding="utf-8") for name in ("README.md", "examples/merge.cpp"))
        self.assertEqual(re.findall(r"^```cpp\n(.*?)^```$", readme, re.MULTILINE | re.DOTALL), [source])

    def test_example(self):
        samples = SOURCES / "examples"
        biology = (samples / "biology.xml").read_text(encoding="utf-8")
        self.file("examples/biology.form.json", (samples / "biology.form.json").read_text(encoding="utf-8"))
        for content, code, said in [
            (biology.replace("question-id='7'", "question-id='3'"), 1, "(?s)^failure 457: .*\nnothing is saved: "),
            (biology, 0, "^$"),
        ]:
            self.file("examples/biology.xml", content)
            before = self.files()
            outcome = run(cwd=self.folder, program=str(EXAMPLE))
            self.assertRegex(outcome.err, said)
            written = sorted(self.files().keys() - before.keys())
            expected = [] if code else ["biology-merged.form.json", "biology.ktd"]
            self.assertEqual((outcome.code, written), (code, expected))


if __name__ == "__main__":
    unittest.main()
