"""What the deep tests share: how long they may take, and the builds that they run."""

import os
import pathlib
import sys

sys.path.append(str(pathlib.Path(__file__).resolve().parent.parent))
from tree import NOT_HERE, SOURCES, attempt, run  # noqa: E402

__all__ = ["NOT_HERE", "OUT", "SHORT", "SOURCES", "attempt", "build", "figure", "run"]

SHORT = bool(os.environ.get("HEDRO34_SHORT"))  # a sample, as scripts/test-deep --short asks for
OUT = SOURCES / "build" / "deep"  # kept from run to run


def build(preset, *targets):
    """Configures a preset and builds targets of it; its folder."""
    run("cmake", "--preset", preset, cwd=SOURCES)
    run("cmake", "--build", "--preset", preset, "-j", os.cpu_count(), *(["--target", *targets] if targets else []),
        cwd=SOURCES, timeout=1800)
    return SOURCES / "build" / preset


def figure(text):
    """Shows one line of what was measured, for docs/testing.md."""
    print(f"  {text}", flush=True)
