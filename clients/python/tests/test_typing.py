"""A strict type checker takes the right uses of `typing_rows.py` and refuses the wrong ones."""

from __future__ import annotations

import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

from support import CLIENT

ROWS = Path(__file__).with_name("typing_rows.py")


class Typing(unittest.TestCase):
    @unittest.skipUnless(shutil.which("mypy"), "not installed: mypy")
    def test_rows(self) -> None:
        lines = ROWS.read_text().splitlines()
        expected = {n: found[1] for n, line in enumerate(lines, 1) if (found := re.search("# error: ([a-z-]+)$", line))}
        with tempfile.TemporaryDirectory() as cache:
            command = ["mypy", "--strict", "--show-error-codes", "--cache-dir", cache, ROWS]
            environment = {"MYPYPATH": str(CLIENT), "PATH": "/usr/local/bin:/usr/bin:/bin"}  # without a sanitizer
            done = subprocess.run(command, cwd=CLIENT, env=environment, capture_output=True, text=True, timeout=60)
        found = re.findall(rf"{ROWS.name}:(\d+): error: .*\[([a-z-]+)\]$", done.stdout, re.M)
        self.assertEqual({int(n): code for n, code in found}, expected, done.stdout + done.stderr)


if __name__ == "__main__":
    unittest.main()
