#!/usr/bin/env python3
"""The whole merges of tests/whole: runs the commands of its README and compares what is written with the expected files."""

import json
import pathlib
import re
import shlex
import tempfile
import unittest

from program import SOURCES, run

WHOLE = SOURCES / "tests" / "whole"
README = (WHOLE / "README.md").read_text(encoding="utf-8")


def content(path):
    """The JSON values of a file as text in which 1 and 1.0 are the same, 1 and true are not."""
    text = path.read_text(encoding="utf-8-sig")
    values = [json.loads(part, parse_int=float) for part in (text.splitlines() if path.suffix == ".jsonl" else [text])]
    return json.dumps(values, indent=1, sort_keys=True)


class WholeMerges(unittest.TestCase):
    maxDiff = None

    def test_commands_of_the_readme(self):
        block = re.search(r"^```\n(.*?)^```", README, re.MULTILINE | re.DOTALL)[1]
        commands = [shlex.split(command)[1:] for command in block.split("\n\n")]
        self.assertEqual(len(commands), 2)
        for command in commands:
            written = [word.removeprefix("OUT/") for word in command if word.startswith("OUT/")]
            case = written[0].partition(".")[0]
            with self.subTest(case), tempfile.TemporaryDirectory() as out:
                outcome = run(*[word.replace("OUT/", out + "/") for word in command], cwd=WHOLE)
                code = re.search(rf"^\| {case} \|.*exit code (\d)", README, re.MULTILINE)[1]
                self.assertEqual((outcome.code, len(written)), (int(code), 3), outcome)
                for name in written:
                    self.assertEqual(content(pathlib.Path(out) / name), content(WHOLE / name), name)


if __name__ == "__main__":
    unittest.main()
