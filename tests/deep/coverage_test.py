#!/usr/bin/env python3
"""Lines and branches of hedro34/ that the tests run, room by room, with the scripts that run the program and the seeds of the fuzzers.

A branch that only an exception takes does not count, nor does the way past it, nor a line of brackets alone, where gcov has what goes
on behind an exception. --missing lists what did not run."""

import collections
import concurrent.futures
import functools
import json
import os
import re
import subprocess
import sys
import tempfile

from support import SOURCES, build, figure, run

TARGETS = ["hedro34_tests", "hedro34", "hedro34_component", *(f"fuzz_{path.stem}" for path in SOURCES.glob("fuzz/*.cpp"))]
# Tests of documents, of lists, of what is installed, and faults that would meet gcov's own calls.
LEFT_OUT = "case_table|completions|cpp_reference|exports|idl|installed|interface|readme|rooms|tables|torture"
LEAST = {"lines": 96.5, "branches": 88}  # what holds; the aim is 98 and 90


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
                entries = collections.Counter(line["line_number"] for line in file["lines"])
                copies = instances(file["functions"])
                for line in file["lines"]:
                    number = line["line_number"]
                    if number in with_words(name):
                        branches = without_exceptions(line["branches"])
                        lines.append((name, number, line["count"], branches if entries[number] > 1 else folded(branches, copies(number))))
    return lines


def instances(functions):
    """Gives, for a line, how many instances there are of the innermost function that has it."""
    places = collections.Counter(tuple(function[f"{end}_{of}"] for end in ("start", "end") for of in ("line", "column"))
                                 for function in functions)
    return lambda number: places[max((place for place in places if place[0] <= number <= place[2]), default=None)]


def folded(branches, copies):
    """The counts of a line's branches where those of several instances stand one behind the other."""
    if copies < 2 or len(branches) % copies:
        return branches
    size = len(branches) // copies
    return [sum(branches[nth::size]) for nth in range(size)]


@functools.cache
def with_words(name):
    """The numbers of a source's lines that are more than brackets."""
    return {number for number, text in enumerate((SOURCES / name).read_text(encoding="utf-8").splitlines(), 1) if re.search(r"\w", text)}


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
    run("ctest", "--preset", "coverage", "-j", os.cpu_count(), "-E", f"^(({LEFT_OUT})_test|example_merge)$",
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
        cells = [f"{row[kind]} | {100 * row[f'run {kind}'] / max(row[kind], 1):.1f}" for kind in LEAST]
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
    failed = [kind for kind, least in LEAST.items() if not of_all[kind] or 100 * of_all[f"run {kind}"] < least * of_all[kind]]
    for kind in failed:
        print(f"fewer than {LEAST[kind]}% of the {kind} of hedro34/ ran; tests/deep/coverage_test.py --missing names them")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
