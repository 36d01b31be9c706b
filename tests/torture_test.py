#!/usr/bin/env python3
"""A sample of the faults of torture/torture.py, with the build that is tested."""

import os
import pathlib
import sys

sys.path.append(str(pathlib.Path(__file__).resolve().parent / "torture"))
from torture import torture  # noqa: E402

if __name__ == "__main__":
    sys.exit(torture(pathlib.Path(os.environ.get("HEDRO34_BUILD", "the folder named by HEDRO34_BUILD")), sample=120))
