#!/usr/bin/env python3
"""Lines and branches of hedro34/ that the tests run, room by room, with those of the scripts that run the program.

A branch that only an exception takes does not count, nor does the way past it. --missing lists what did not run."""

import collections
import concurrent.futures
import json
import os
import pathlib
import subprocess
import sys
import tempfile

from support import SOURCES, build, figure, run

TARGETS = ["hedro34_tests", "hedro34", "hedro34_failing", "hedro34_component"]
# Tests of documents, of lists and of what is installed.
DOCUMENTS = "case_table|completions|cpp_reference|exports|idl|installed|interface|readme|rooms|tables"
GOAL = {"lines": 98, "branches": 90}


def counts(notes):
    """What gcov says of one object: for each line of hedro34/ how often it ran, and each of its branches."""
    with tempfile.TemporaryDirectory() as folder:
        done = subprocess.run(["gcov", "--json-format", "--branch-probabilities", "--stdout", notes], cwd=folder, check=True,
                              capture_output=True, text=True)
    lines = []
    for text in done.stdout.splitlines():
        document = json.loads(text)
        for file in document["files"]:
            name = os.path.relpath(os.path.join(document["current_working_directory"], file["file"]), SOURCES)
            if name.startswith("hedro34/"):
                lines += [(name, line["line_number"], line["count"], without_exceptions(line["branches"]))
                          for line in file["lines"]]
    return lines


def without_exceptions(branches):
    """The counts of a line's branches. That of an exception comes behind the one that goes on where there is none."""
    kept = []
    for branch in branches:
        if branch["throw"]:
            if kept and kept[-1][0]:
                kept.pop()
        else:
            kept.append((branch["fallthrough"], branch["count"]))
    return [count for _, count in kept]


def main():
    folder = build("coverage", *TARGETS)
    for old in folder.rglob("*.gcda"):
        old.unlink()
    run("ctest", "--preset", "coverage", "-j", os.cpu_count(), "-E", f"^(({DOCUMENTS})_test|example_merge|fuzz_.*)$",
        cwd=SOURCES, timeout=1800)
    lines = collections.Counter()
    branches = collections.Counter()
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for of_object in pool.map(counts, sorted(folder.rglob("*.gcno"))):
            for name, line, count, taken in of_object:
                lines[name, line] += count
                for nth, count_taken in enumerate(taken):
                    branches[name, line, nth] += count_taken
    rows = collections.defaultdict(collections.Counter)
    for kind, counted in (("lines", lines), ("branches", branches)):
        for (name, *_), count in counted.items():
            for room in (name.split("/")[1], "all"):
                rows[room][kind] += 1
                rows[room][f"run {kind}"] += count > 0
    figure("| Room | lines | % | branches | % |")
    for room in sorted(rows, key=lambda room: (room == "all", room)):
        row = rows[room]
        cells = [f"{row[kind]} | {100 * row[f'run {kind}'] / max(row[kind], 1):.1f}" for kind in GOAL]
        figure(f"| `{room}` | {' | '.join(cells)} |")
    if "--missing" in sys.argv:
        missing = collections.defaultdict(list)
        for (name, line), count in lines.items():
            if count == 0:
                missing[name].append(str(line))
        for (name, line, _), count in branches.items():
            if count == 0 and lines[name, line] and f"{line}b" not in missing[name]:
                missing[name].append(f"{line}b")
        for name in sorted(missing):
            print(name, *sorted(missing[name], key=lambda word: int(word.strip("b"))))
    of_all = rows["all"]
    failed = [kind for kind, goal in GOAL.items() if not of_all[kind] or 100 * of_all[f"run {kind}"] < goal * of_all[kind]]
    for kind in failed:
        print(f"fewer than {GOAL[kind]}% of the {kind} of hedro34/ ran; tests/deep/coverage_test.py --missing names them")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
