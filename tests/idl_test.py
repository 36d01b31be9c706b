#!/usr/bin/env python3
"""The interface definition compiles, and the type library that it makes says what docs/interfaces.md says."""

import os
import pathlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
import uuid

SOURCES = pathlib.Path(os.environ["HEDRO34_SOURCE_DIR"])
COMPILER = shutil.which("x86_64-w64-mingw32-widl") or shutil.which("widl")
TYPES = pathlib.Path("/usr/include/wine/wine/windows/oaidl.idl")  # the standard types, as text and as a library
LIBRARY = next(iter(pathlib.Path("/usr/lib").glob("*/wine/x86_64-windows/stdole2.tlb")), None)
NOT_INSTALLED = 77


class TypeLibrary:
    """The file that the compiler writes, as far as it is compared: classes and their default interfaces, in order."""

    TYPE_SIZE, DISPATCH, COCLASS, CAN_CREATE, DEFAULT = 0x64, 4, 5, 2, 1

    def __init__(self, data):
        self.data = data
        magic, _, library, self.locale, _, flags, self.version = struct.unpack_from("<4sIi3iI", data)
        assert magic == b"MSFT"
        count = self.number(0x20)
        directory = 0x54 + (4 if flags & 0x100 else 0) + 4 * count
        self.segments = [self.number(directory + 16 * i) for i in range(15)]
        self.id = self.guid(library)
        self.types = [self.segments[0] + i * self.TYPE_SIZE for i in range(count)]

    def number(self, at):
        return struct.unpack_from("<i", self.data, at)[0]

    def guid(self, offset):
        at = self.segments[5] + offset
        return "{%s}" % str(uuid.UUID(bytes_le=self.data[at : at + 16])).upper()

    def name(self, offset):
        at = self.segments[7] + offset
        return self.data[at + 12 : at + 12 + self.data[at + 8]].decode("ascii")

    def classes(self):
        for at in self.types:
            if self.number(at) & 15 == self.COCLASS:
                reference = self.segments[3] + self.number(at + 0x54)
                assert self.number(reference + 4) & self.DEFAULT
                interface = self.segments[0] + self.number(reference)
                assert self.number(interface) & 15 == self.DISPATCH
                assert self.name(self.number(interface + 0x34)) == "_" + self.name(self.number(at + 0x34))
                yield (self.name(self.number(at + 0x34)), bool(self.number(at + 0x30) & self.CAN_CREATE),
                       self.guid(self.number(at + 0x2C)), self.guid(self.number(interface + 0x2C)),
                       self.members(interface))

    def members(self, interface):
        """Numbers and names; the two sides of a property have one of each."""
        functions = self.number(interface + 0x18) & 0xFFFF
        at = self.number(interface + 0x04)
        numbers = at + 4 + self.number(at)
        names = numbers + 4 * functions
        found = [(self.number(numbers + 4 * i), self.name(self.number(names + 4 * i))) for i in range(functions)]
        return list(dict.fromkeys(found))


def documented():
    """The classes of the type library as the reference page has them."""
    page = (SOURCES / "docs/interfaces.md").read_text(encoding="utf-8").split("\n## Enumerations\n")[0]
    for text in page.split("\n### ")[1:]:
        default = re.search(r"Default member: `(\w+)`", text)
        members = [(0 if default and name == default[1] else position, name)
                   for position, name in enumerate(re.findall(r"^\| `(\w+)` \|", text, re.M), 1)]
        yield (text.split("\n")[0], "Created as" in text, *re.findall(r"\{[0-9A-F-]{36}\}", text), members)


class Definition(unittest.TestCase):
    def test_compiles_to_the_library_that_is_documented(self):
        with tempfile.TemporaryDirectory() as folder:
            idl, compiled = pathlib.Path(folder, "HEDRO34.idl"), pathlib.Path(folder, "HEDRO34.tlb")
            idl.write_bytes(subprocess.run([os.environ["HEDRO34_TABLES"], "idl"], check=True, capture_output=True).stdout)
            command = [COMPILER, "-t", f"-I{TYPES.parent}", f"-L{LIBRARY.parent}", "-o", compiled, idl]
            done = subprocess.run(command, capture_output=True, text=True)
            self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))
            library = TypeLibrary(compiled.read_bytes())
        self.assertEqual((library.id, library.version, library.locale),
                         ("{6AAE3623-6B45-492C-AAEE-413365FB2060}", 15, 1033))
        expected = list(documented())
        self.assertEqual(len(expected), 10)
        for found, row in zip(library.classes(), expected, strict=True):
            self.assertEqual(found, row)


if __name__ == "__main__":
    if COMPILER is None or LIBRARY is None or not TYPES.exists():
        print("not installed: the compiler (mingw-w64-tools) or the standard types (libwine-dev)")
        sys.exit(NOT_INSTALLED)
    unittest.main()
