#!/usr/bin/env python3
"""What compare.py cannot see: standard streams, letters beyond every code page, and no rights.
streams.py NATIVE_PROGRAM WINDOWS_COMMAND..."""

import json
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

SOURCES = pathlib.Path(__file__).resolve().parent.parent.parent
NATIVE, WINDOWS = [os.path.abspath(sys.argv[1])], sys.argv[2:]
SAMPLE = (SOURCES / "examples/biology.xml").read_bytes()
FORM = SOURCES / "examples/biology.form.json"


class Streams(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name)

    def run_on(self, program, command, content=b"", stdout=None):
        # Not through pipes, whose end would be that of the services that Wine starts.
        with tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as err:
            done = subprocess.run([*program, *map(str, command)], cwd=self.folder, input=content, stdout=stdout or out,
                                  stderr=err, timeout=120, check=False)
            streams = []
            for stream in (out, err):
                stream.seek(0)
                streams.append(stream.read())
        return done.returncode, streams[0], streams[1].decode()

    def same(self, *command, **how):
        expected, found = self.run_on(NATIVE, command, **how), self.run_on(WINDOWS, command, **how)
        self.assertEqual(found, expected, command)
        return expected

    def test_standard_input(self):
        self.assertEqual(self.same("show", "-", content=SAMPLE)[0], 0)
        self.assertEqual(self.same("show", "-", content=SAMPLE.replace(b"\n", b"\r\n"))[0], 0)
        self.assertEqual(self.same("show", "-", content=b"\x1a")[0], 3)
        merge = ["merge", "--quiet", "--form", FORM, "--form-out", "f", "--document-out", "-", "-"]
        code, document, _ = self.same(*merge, content=SAMPLE)
        self.assertEqual(code, 0)
        self.assertIn(b"Test without a title", self.same("show", "-", content=document)[1])

    def test_standard_output(self):
        for command, code in [(["show", FORM.with_name("biology.xml")], 0), (["--help"], 0),
                              (["form", "--questions", "9", "--out", "-"], 4)]:
            reading, writing = os.pipe()
            os.close(reading)
            with open(writing, "wb") as nobody_reads:
                self.assertEqual(self.same(*command, stdout=nobody_reads)[0], code)
        with open("/dev/full", "wb") as full:
            self.assertEqual(self.same("--help", stdout=full)[0], 4)

    def test_letters(self):
        (self.folder / "[ж漢 ☃]").write_bytes(SAMPLE)
        code = self.same("merge", "--form", FORM, "--form-out", "prüfung.json", "--document-out", "Ω😀.ktd", "[ж漢 ☃]")[0]
        self.assertEqual((code, (self.folder / "Ω😀.ktd").exists()), (0, True))
        self.assertEqual(json.loads(self.same("show", "--json", "Ω😀.ktd")[1])["title"], "Ω😀")

    def test_folder_without_rights(self):
        # Nobody makes a file there, not even root.
        outcome = self.run_on(WINDOWS, ["form", "--questions", "1", "--out", "/sys/form"])
        self.assertEqual(outcome, (4, b"", "hedro34: cannot write the form: /sys/form: Permission denied\n"))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
