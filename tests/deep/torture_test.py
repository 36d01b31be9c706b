#!/usr/bin/env python3
"""Faults on purpose, on all roads: torture/torture.py."""

import sys

import support

sys.path.append(str(support.SOURCES / "tests" / "torture"))
from torture import torture  # noqa: E402

if __name__ == "__main__":
    build = support.build("optimised", "hedro34", "hedro34_component", "hedro34_preloaded")
    sys.exit(torture(build, sample=2500 if support.SHORT else None, say=support.figure))
