#!/usr/bin/env python3
"""The committed table of case mappings is what its script makes of Unicode's data."""

import pathlib
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
COMMITTED = ROOT / "hedro34/base/case_table.inc"

with tempfile.TemporaryDirectory() as folder:
    made = pathlib.Path(folder) / "case_table.inc"
    subprocess.run([sys.executable, ROOT / "scripts/make-case-table", "--output", made], check=True)
    fresh, committed = made.read_text().splitlines(), COMMITTED.read_text().splitlines()

differing = [n for n, pair in enumerate(zip(fresh, committed), 1) if pair[0] != pair[1]]
assert fresh == committed, (
    f"{COMMITTED.name} differs from the Unicode data at line "
    f"{differing[0] if differing else min(len(fresh), len(committed)) + 1}: run scripts/make-case-table"
)
