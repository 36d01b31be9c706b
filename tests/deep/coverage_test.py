#!/usr/bin/env python3
"""Lines and branches of hedro34/ that the tests run, room by room, with the scripts that run the program and the seeds of the fuzzers.

A branch that only an exception takes does not count, nor does the way past it, nor a line of brackets alone, where gcov has what goes
on behind an exception. --missing lists what did not run."""

import collections
import concurrent.futures
import functools
import itertools
import json
import os
import re
import subprocess
import sys

from support import SHORT, OUT, SOURCES, build, figure, run

TARGETS = ["hedro34_tests", "hedro34", "hedro34_component", *(f"fuzz_{path.stem}" for path in SOURCES.glob("fuzz/*.cpp"))]
# Tests of documents, of lists, of what is installed, and faults that would meet gcov's own calls.
LEFT_OUT = "case_table|completions|cpp_reference|exports|idl|installed|interface|readme|rooms|tables|torture"
# Their lines are those of a build where native faults are failures. Its branches are of nearly every instruction.
OF_FAULTS = re.compile("hedro34/runtime/(fault_|modvbCodeShieldSupport)")
LEAST = {"lines": 97.5, "branches": 90}  # the aim is 98 and 90; how threads meet makes some lines run or not


def gcov(notes, build_folder, *options):
    return subprocess.run(["gcov", *options, "--branch-probabilities", "--stdout", notes], cwd=build_folder, check=True,
                          capture_output=True, text=True).stdout


def counts(notes, build_folder):
    """What gcov says of one object: for each line of hedro34/ how often it ran, and each of its branches."""
    lines = []
    behind = behind_exceptions(notes, build_folder)
    for text in gcov(notes, build_folder, "--json-format").splitlines():
        for file in json.loads(text)["files"]:
            name = from_sources(file["file"], build_folder)
            if name.startswith("hedro34/"):
                entries = collections.Counter(line["line_number"] for line in file["lines"])
                copies = instances(file["functions"])
                for line in file["lines"]:
                    number = line["line_number"]
                    if number in with_words(name):
                        alone = entries[number] == 1
                        branches = folded(line["branches"], copies(number) if alone else 1, behind[name, number] if alone else 0)
                        lines.append((name, number, line["count"], branches))
    return lines


def from_sources(name, build_folder):
    return os.path.relpath(os.path.join(build_folder, name), SOURCES)


def behind_exceptions(notes, build_folder):
    """For each line how many branches never ran that only an exception reaches, which gcov tells in its text alone."""
    found = collections.Counter()
    name, number, marked = "", 0, False
    for text in gcov(notes, build_folder, "--all-blocks").splitlines():
        if text.startswith("branch"):
            found[name, number] += marked
        elif text.startswith("        -:    0:Source:"):
            name = from_sources(text.partition("Source:")[2], build_folder)
        elif block := re.match(r" *([^ :]+): *(\d+)(-block|:)", text):
            number, marked = int(block[2]), block[1] == "$$$$$"
    return found


def instances(functions):
    """Gives, for a line, how many instances there are of the innermost function that has it."""
    places = collections.Counter(tuple(function[f"{end}_{of}"] for end in ("start", "end") for of in ("line", "column"))
                                 for function in functions)
    return lambda number: max(1, places[max((place for place in places if place[0] <= number <= place[2]), default=None)])


def folded(branches, copies, behind):
    """The counts of a line's branches. Those of several instances stand one behind the other, each with what is behind exceptions
    at its end."""
    size, left = len(branches) // copies, len(branches) % copies
    kept = size - behind // copies
    if left or behind % copies or any(branch["count"] for nth, branch in enumerate(branches) if nth % size >= kept):
        return without_exceptions(branches)
    of_each = [without_exceptions(branches[start:start + kept]) for start in range(0, len(branches), size)] if size else []
    return [sum(counts) for counts in itertools.zip_longest(*of_each, fillvalue=0)]


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
    if SHORT:
        figure("left out: two builds for what changes with the code alone")
        return 0
    folder, of_faults = build("coverage", *TARGETS), OUT / "coverage-faults"
    build(of_faults.name, "hedro34_fault_tests")
    for old in [*folder.rglob("*.gcda"), *of_faults.rglob("*.gcda")]:
        old.unlink()
    run("ctest", "--preset", "coverage", "-j", os.cpu_count(), "-E", f"^(({LEFT_OUT})_test|example_merge)$",
        cwd=SOURCES, timeout=1800)
    run(of_faults / "hedro34_fault_tests")
    objects = [(notes, folder) for notes in sorted(folder.rglob("*.gcno"))]
    objects += [(notes, of_faults) for notes in sorted(of_faults.glob("CMakeFiles/hedro34_library.dir/hedro34/runtime/*.gcno"))]
    lines = collections.Counter()
    branches = collections.Counter()
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for (_, build_folder), of_object in zip(objects, pool.map(lambda each: counts(*each), objects)):
            for name, line, count, taken in of_object:
                if bool(OF_FAULTS.match(name)) != (build_folder == of_faults):
                    continue
                lines[name, line] += count
                for nth, count_taken in enumerate([] if build_folder == of_faults else taken):
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
