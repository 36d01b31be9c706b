#!/usr/bin/env python3
"""A merge whose memory runs out: never a wrong key with exit code 0, never half a result, never an end without a line.

Every STEP-th allocation of the program fails in turn, alone or with all behind it. HEDRO34_STEP=1 tries all."""

import os
import unittest
from concurrent.futures import ThreadPoolExecutor

from program import THREE, ProgramTest, examview, question, run

FAILING = os.environ.get("HEDRO34_FAILING", "the program named by HEDRO34_FAILING")
STEP = int(os.environ.get("HEDRO34_STEP", "23"))


class Memory(ProgramTest):
    def setUp(self):
        super().setUp()
        self.run_program("form", "--questions", "4", "--choices", "3", "--versions", "A,B", "--out", "f")
        for version, order in [("A", "wxyz"), ("B", "zyxw")]:
            keys = {"w": "A", "x": "B", "y": "C", "z": "A"}
            self.file(version, examview(*[question(i, "mc", keys[i], THREE) for i in order], version=version))

    def merge(self, place, at, *options):
        out = self.folder / place
        out.mkdir(exist_ok=True)
        (out / "form").write_text("old form")
        files = ["--form", "f", "--form-out", f"{place}/form", "--document-out", f"{place}/document"]
        outcome = run("merge", *files, "--sequence-question", "1", *options, "A", "B", cwd=self.folder, program=FAILING,
                      HEDRO34_FAIL_AT=at, HEDRO34_ALLOCATIONS=str(self.folder / "count"))
        return outcome, {path.name: path.read_bytes() for path in out.iterdir()}

    def test_all_or_nothing(self):
        right = self.merge("right", "0")
        self.assertEqual((right[0].code, sorted(right[1])), (0, ["document", "form"]), right[0])
        count = int((self.folder / "count").read_text())
        self.assertGreater(count, 1000)
        old = {"form": b"old form"}
        codes = set()

        def check(at):
            for options in ([], ["--keep-going"]):
                outcome, files = self.merge("at" + at, at, *options)
                for name in files:
                    (self.folder / ("at" + at) / name).unlink()
                where = f"{at} {options}\n{outcome}"
                self.assertIn(outcome.code, (0, 1, 3, 4, 5), where)
                self.assertEqual(outcome.err == "", outcome.code == 0, where)
                if outcome.code == 0:
                    self.assertEqual(files, right[1], where)
                elif outcome.code != 5 or not options:
                    # Standard output, which is written last, may be what failed.
                    self.assertIn(files, (old, right[1]) if outcome.code in (1, 4) else (old,), where)
                codes.add(outcome.code)

        with ThreadPoolExecutor(2) as pool:
            list(pool.map(check, [str(n) + good for n in range(1, count, STEP) for good in ("", "-")]))
        self.assertGreaterEqual(codes, {1, 5})


if __name__ == "__main__":
    unittest.main()
