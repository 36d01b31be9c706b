#!/usr/bin/env python3
"""The instructions that loading and merging 1,000 questions take, to those of the bare parser on the same bytes, counted by
callgrind. They are the same on a busy machine as on a quiet one; what caches and the system add is not in them.

usage: bench/instructions.py [BUILD]     the folder with hedro34_bench, build/bench unless named
"""
import pathlib
import re
import subprocess
import sys
import tempfile

LOAD, MERGE, PARSE = "hedro34::clsHEDROTest::LoadXML*", "hedro34::clsHEDRO::Merge*", "XML_Parse"
ROWS = [  # what, the benchmark, the function that is counted, at most
    ("LoadXML", "load/1000", LOAD, 1.7),
    ("Merge", "merge/1000", MERGE, 0.35),
    ("Merge behind forwarding objects", "forwarded/1000", MERGE, 0.42),
    ("LoadXML, with objectives", "load/1000/objectives", LOAD, 1.7),
    ("Merge, with objectives", "merge/1000/objectives", MERGE, 0.42),
    ("Merge behind forwarding objects, with objectives", "forwarded/1000/objectives", MERGE, 0.5),
]


def instructions(bench, name, function):
    """How many instructions one call of the function takes in that benchmark."""
    with tempfile.NamedTemporaryFile() as out:
        run = subprocess.run(
            ["valgrind", "--tool=callgrind", f"--callgrind-out-file={out.name}", "--collect-atstart=no",
             f"--toggle-collect={function}", bench, f"--benchmark_filter=^{name}$", "--benchmark_repetitions=1",
             "--benchmark_min_time=0"], check=True, capture_output=True, text=True)
    rounds = int(re.search(rf"^{name} .* (\d+)\s*$", run.stdout, re.MULTILINE).group(1))
    return int(re.search(r"Collected : (\d+)", run.stderr).group(1)) / rounds


def main():
    root = pathlib.Path(__file__).resolve().parent.parent
    bench = f"{sys.argv[1] if len(sys.argv) > 1 else root / 'build/bench'}/hedro34_bench"
    held = True
    floors = {}
    for what, name, function, limit in ROWS:
        suffix = name[name.index("/"):]
        if suffix not in floors:
            floors[suffix] = instructions(bench, f"expat{suffix}", PARSE)
        ratio = instructions(bench, name, function) / floors[suffix]
        held &= ratio <= limit
        print(f"{what + ', to bare expat':<66} {ratio:6.2f}  at most {limit:.2f}{'' if ratio <= limit else '  EXCEEDED'}",
              flush=True)
    return 0 if held else 1


if __name__ == "__main__":
    sys.exit(main())
