#!/usr/bin/env python3
"""A program whose memory runs out: never a wrong key with exit code 0, never half a result, never an end without a line.

Allocations fail in turn, alone or, each fourth time, with all behind them. HEDRO34_STEP=1 tries twice as many."""

import json
import os
import unittest
from concurrent.futures import ThreadPoolExecutor

from program import THREE, ProgramTest, examview, question, run

FAILING = os.environ.get("HEDRO34_FAILING", "the program named by HEDRO34_FAILING")
STEP = int(os.environ.get("HEDRO34_STEP", "2"))


class Memory(ProgramTest):
    def setUp(self):
        super().setUp()
        self.run_program("form", "--questions", "4", "--choices", "3", "--versions", "A,B", "--out", "f")
        for version, order in [("A", "wxyz"), ("B", "zyxw")]:
            keys = {"w": "A", "x": "B", "y": "C", "z": "A"}
            self.file(version, examview(*[question(i, "mc", keys[i], THREE) for i in order], version=version))
        self.run_failing("0", "--version")
        self.start = self.allocations()  # up to here the command line is read

    def run_failing(self, at, *arguments):
        outcome = run(*arguments, cwd=self.folder, program=FAILING, HEDRO34_FAIL_AT=at,
                      HEDRO34_ALLOCATIONS=str(self.folder / "count"))
        where = f"{at} {arguments}\n{outcome}"
        self.assertIn(outcome.code, (0, 1, 3, 4, 5), where)
        self.assertEqual((outcome.err == "", len(outcome.lines)), (outcome.code == 0, int(outcome.code != 0)), where)
        if outcome.code == 5 and not at.endswith("-"):
            self.assertRegex(outcome.err, "^(Error# |Application Error\n)", where)
        return outcome, where

    def allocations(self):
        return int((self.folder / "count").read_text())

    def merge(self, place, at, *options):
        out = self.folder / place
        out.mkdir(exist_ok=True)
        (out / "form").write_text("old form")
        files = ["--form", "f", "--form-out", f"{place}/form", "--document-out", f"{place}/document", "--report", f"{place}/page"]
        found = self.run_failing(at, "merge", *files, "--sequence-question", "1", *options, "A", "B")
        return *found, {path.name: path.read_bytes() for path in out.iterdir()}

    def at_each(self, numbers, check):
        """The exit codes that came up."""
        with ThreadPoolExecutor(2) as pool:
            return set(pool.map(check, [f"{n}{'' if i % 4 else '-'}" for i, n in enumerate(numbers)]))

    def test_show(self):
        right, _ = self.run_failing("0", "show", "--json", "A")
        self.assertEqual([question["key"] for question in json.loads(right.out)["questions"]], [*"ABCA"])

        def check(at):
            outcome, where = self.run_failing(at, "show", "--json", "A")
            if outcome.code == 0:
                self.assertEqual(outcome.out, right.out, where)
            elif outcome.code == 5:
                self.assertIn("questions", json.loads(outcome.out), where)
            return outcome.code

        numbers = sorted({*range(1, self.start, 20 * STEP), *range(self.start, self.allocations(), STEP)})
        self.assertGreaterEqual(self.at_each(numbers, check), {1, 5})

    def test_merge_is_all_or_nothing(self):
        right, where, right_files = self.merge("right", "0")
        self.assertEqual((right.code, sorted(right_files)), (0, ["document", "form", "page"]), where)
        end = self.allocations()
        old = {"form": b"old form"}
        formats = {"form": "hedro34-form", "document": "hedro34-ktd"}

        def check(at, *options):
            outcome, where, files = self.merge("at" + at, at, *options)
            if outcome.code == 0:
                self.assertEqual(files, right_files, where)
            elif outcome.code == 5 and options:
                self.assertTrue(files.pop("page").endswith(b"</html>\n"), where)
                self.assertEqual({name: json.loads(file)["format"] for name, file in files.items()}, formats, where)
            else:
                # Standard output, which is written last, may be what failed.
                self.assertIn(files, (old, right_files) if outcome.code in (1, 4) else (old,), where)
            return outcome.code

        self.assertGreaterEqual(self.at_each(range(self.start, end, 8 * STEP), check), {1, 5})
        keeping_going = range(self.start + 4 * STEP, end, 8 * STEP)
        self.assertGreaterEqual(self.at_each(keeping_going, lambda at: check(at, "--keep-going")), {1, 5})


if __name__ == "__main__":
    unittest.main()
