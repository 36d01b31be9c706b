#!/usr/bin/env python3
"""What programs are compiled against stays as tests/interface/headers.txt has it; --update enters what is new on purpose."""

import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

SOURCES = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(SOURCES / "tests/interface"))
from frozen import compare  # noqa: E402
from headers import Headers  # noqa: E402

READS_AS = "clang version 14."  # others write some types differently

said = subprocess.run(["castxml", "--version"], capture_output=True, text=True).stdout if shutil.which("castxml") else ""
if READS_AS not in said:
    print(f"castxml with {READS_AS} is not here, but {said or 'none'}")
    sys.exit(77)
with tempfile.TemporaryDirectory() as name:
    version = pathlib.Path(name, "hedro34/version.h")
    version.parent.mkdir()
    version.write_text(re.sub("@.*?@", "0", (SOURCES / "hedro34/version.h.in").read_text(encoding="utf-8")), encoding="utf-8")
    explained = re.findall(r"^### \[(.*?)\]", (SOURCES / "docs/cpp.md").read_text(encoding="utf-8"), re.MULTILINE)
    compare(SOURCES / "tests/interface/headers.txt", Headers(SOURCES, name).lines(explained))
