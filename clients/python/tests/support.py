"""What the tests share. HEDRO34_LIBRARY names the library's file; without it the tests that need it are skipped."""

from __future__ import annotations

import gc
import os
import subprocess
import sys
import unittest
from pathlib import Path
from typing import Any

CLIENT, ROOT = Path(__file__).resolve().parents[1], Path(__file__).resolve().parents[3]
sys.path.insert(0, str(CLIENT))

import hedro34  # noqa: E402

LIBRARY = os.environ.get("HEDRO34_LIBRARY", "")
needs_library = unittest.skipUnless(LIBRARY, "HEDRO34_LIBRARY names no library")
BIOLOGY, FORM = ROOT / "examples" / "biology.xml", ROOT / "examples" / "biology.form.json"
MIXED, MIXED_FORM = ROOT / "examples" / "mixed.xml", ROOT / "examples" / "mixed.form.json"
KEYS = "B B C C C B B B B (A,C,E) (C,A) (A,C,E) T F F T Y N B T".split()


def run_python(*arguments: str | Path, **environment: str) -> subprocess.CompletedProcess[str]:
    environment = os.environ | {"PYTHONPATH": str(CLIENT)} | environment
    return subprocess.run([sys.executable, *arguments], env=environment, capture_output=True, text=True, timeout=60)


class Boxes:
    """A message box that keeps what it was shown."""

    def __init__(self, answer: Any = 1) -> None:
        self.answer = answer
        self.shown: list[tuple[str, int, str]] = []

    def Show(self, text: str, flags: int, title: str) -> Any:
        self.shown.append((text, flags, title))
        return self.answer


class Errors:
    """An error object that keeps what it was told."""

    def __init__(self) -> None:
        self.told: list[tuple[Any, ...]] = []

    def RaiseError(self, *arguments: Any) -> None:
        self.told.append(arguments)


@needs_library
class LibraryTest(unittest.TestCase):
    """Every test has a message box and an error object, and leaves nothing alive behind it."""

    def setUp(self) -> None:
        hedro34.load(LIBRARY)
        self.platform = hedro34.create("HEDRO34.Platform")
        self.boxes, self.errors = Boxes(), Errors()
        self.platform.MessageBox = self.boxes
        self.engine = hedro34.create("HEDRO34.clsHEDRO")
        self.engine.SetError(self.errors)
        self.addCleanup(self.nothing_left)

    def nothing_left(self) -> None:
        self.engine.SetError(None)
        self.platform.MessageBox = None
        del self.platform, self.engine
        gc.disable()  # counting alone must be enough
        try:
            self.assertEqual(hedro34.exposed_objects(), [])
            self.assertTrue(hedro34.can_unload())
        finally:
            gc.enable()

    def load(self, path: Path = BIOLOGY) -> hedro34.types.clsHEDROTest:
        test = hedro34.create("HEDRO34.clsHEDROTest")
        self.assertTrue(test.LoadXML(path), hedro34.last_file_error())
        return test
