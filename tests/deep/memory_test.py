#!/usr/bin/env python3
"""Memory that does not grow: over merges in C++ and from Python, with failing ones and pages among them, and over loading and
unloading the component."""

import pathlib
import sys

from support import SHORT, SOURCES, build, figure, run

# Nothing may stay from merge to merge, so the bytes in use differ by how long the texts of the last one are, and not with the number
# of merges: even a block of the least size lost in every hundredth one would take 28 KiB. What the allocator keeps between blocks
# comes and goes with pages. The interpreter has caches of its own.
IN_USE = 8 << 10
RESIDENT = 1 << 20
BLOCKS = 100


def check(what, count, *command):
    """Shows how far memory has grown from a tenth of the runs to the end, and ends the test where it is too much."""
    states = [[int(word) for word in line.split()] for line in run(*command, cwd=SOURCES, timeout=1800).splitlines()]
    if len(states) != 2:
        sys.exit(f"{what}: {len(states)} states instead of 2")
    growth = [end - start for start, end in zip(*states)]
    figure(f"{count} {what}: {growth[0]:+} bytes in use of {states[1][0]}, {growth[1] // 1024:+} KiB resident of "
           f"{states[1][1] // 1024}" + "".join(f", {blocks:+} blocks of the interpreter" for blocks in growth[2:]))
    if any(grown > most for grown, most in zip(growth, (IN_USE, RESIDENT, BLOCKS))):
        sys.exit(f"{what}: memory grows; again by: {' '.join(map(str, command))}")


def main():
    folder = build("optimised", "hedro34_deep_memory", "hedro34_component")
    program = folder / "hedro34_deep_memory"
    component = folder / "libhedro34-component.so"
    merges, calls, loads = (10_000, 1_000, 1_000) if SHORT else (100_000, 10_000, 1_000)
    check("merges in C++", merges, program, "merges", merges)
    check("merges from Python", calls, sys.executable, pathlib.Path(__file__).with_name("memory_client.py"), component, calls)
    check("times loaded, used and unloaded", loads, program, "loads", loads, component)


main()
