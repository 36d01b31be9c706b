#!/usr/bin/env python3
"""The interface definition compiles and says what docs/interfaces.md says."""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

SOURCES = pathlib.Path(os.environ["HEDRO34_SOURCE_DIR"])
COMPILER = shutil.which("x86_64-w64-mingw32-widl") or shutil.which("widl")
TYPES = pathlib.Path("/usr/include/wine/wine/windows/oaidl.idl")  # the standard types, as text and as a library
LIBRARY = next(iter(pathlib.Path("/usr/lib").glob("*/wine/x86_64-windows/stdole2.tlb")), None)
NOT_INSTALLED = 77


def defined(idl):
    """Each class of the definition: whether it can be created, its two identifiers, and numbers and names of its members. The two
    sides of a property have one of each."""
    classes = re.findall(r"\[uuid\(([0-9A-F-]{36})\)\]\n  dispinterface _(\w+)\n(.*?)\n  };\n\n"
                         r"  \[uuid\(([0-9A-F-]{36})\)(, noncreatable)?, [^\n]*\]\n  coclass (\w+)\n"
                         r"  {\n    \[default\] dispinterface _(\w+);\n  };\n", idl, re.S)
    for interface_id, interface, methods, class_id, noncreatable, name, default in classes:
        assert interface == name == default, (interface, name, default)
        members = re.findall(r"^ +\[id\((\d+)\).*?\] [^ ]+ (\w+)\(", methods, re.M)
        yield (name, not noncreatable, f"{{{class_id}}}", f"{{{interface_id}}}",
               list(dict.fromkeys((int(number), member) for number, member in members)))


def documented():
    """The classes of the type library as the reference page has them."""
    page = (SOURCES / "docs/interfaces.md").read_text(encoding="utf-8").split("\n## Enumerations\n")[0]
    for text in page.split("\n### ")[1:]:
        default = re.search(r"Default member: `(\w+)`", text)
        members = [(0 if default and name == default[1] else position, name)
                   for position, name in enumerate(re.findall(r"^\| `(\w+)` \|", text, re.M), 1)]
        yield (text.split("\n")[0], "Created as" in text, *re.findall(r"\{[0-9A-F-]{36}\}", text), members)


class Definition(unittest.TestCase):
    IDL = (SOURCES / "hedro34/component/HEDRO34.idl").read_text(encoding="utf-8")

    def test_says_what_is_documented(self):
        self.assertIn("[uuid(6AAE3623-6B45-492C-AAEE-413365FB2060), version(15.0), lcid(1033)]\nlibrary HEDRO34\n", self.IDL)
        expected = list(documented())
        self.assertEqual(len(expected), 10)
        for found, row in zip(defined(self.IDL), expected, strict=True):
            self.assertEqual(found, row)

    def test_compiles(self):
        with tempfile.TemporaryDirectory() as folder:
            idl, compiled = pathlib.Path(folder, "HEDRO34.idl"), pathlib.Path(folder, "HEDRO34.tlb")
            idl.write_text(self.IDL, encoding="utf-8")
            command = [COMPILER, "-t", f"-I{TYPES.parent}", f"-L{LIBRARY.parent}", "-o", compiled, idl]
            done = subprocess.run(command, capture_output=True, text=True)
            self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))
            self.assertTrue(compiled.stat().st_size)


if __name__ == "__main__":
    if COMPILER is None or LIBRARY is None or not TYPES.exists():
        print("not installed: the compiler (mingw-w64-tools) or the standard types (libwine-dev)")
        sys.exit(NOT_INSTALLED)
    unittest.main()
