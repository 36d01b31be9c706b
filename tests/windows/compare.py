#!/usr/bin/env python3
"""Runs commands with the program of this system and with the one for Windows, and compares all that comes out, byte for byte:
compare.py NATIVE_PROGRAM WINDOWS_COMMAND..."""

import os
import pathlib
import subprocess
import sys
import tempfile

SOURCES = pathlib.Path(__file__).resolve().parent.parent.parent
NATIVE, WINDOWS = [os.path.abspath(sys.argv[1])], sys.argv[2:]
OUTPUTS = ("--form-out", "merged.form.json", "--document-out", "merged.ktd", "--messages", "messages.jsonl",
           "--report", "report.html")


def merges():
    """Every test of the samples with every form that stands beside it, the good ones and the refused ones."""
    for form in sorted(SOURCES.glob("examples/**/*.form.json")) + sorted(SOURCES.glob("tests/whole/*[!t].form.json")):
        tests = [path for path in sorted(form.parent.glob("*.xml")) + sorted(form.parent.glob("*.ktd"))]
        for test in tests:
            for options in ((), ("--objectives", "all", "--state", "CA"), ("--partial-credit", "ok", "--keep-going"),
                            ("--partial-credit", "ok", "--quiet", "--max-questions", "8")):
                yield ["merge", *options, "--form", form, *OUTPUTS, test]
    versions = SOURCES / "examples/versions"
    good = [versions / f"unit-{letter}.xml" for letter in "abcd"]
    together = ["merge", "--form", versions / "unit.form.json", "--sequence-question", "1", *OUTPUTS]
    yield [*together, *good]
    yield ["compare", *good]
    yield ["compare", *sorted(versions.glob("*.xml"))]
    for refused in sorted(versions.glob("refused-*.xml")):
        yield ["compare", "--json", good[0], refused]
        yield [*together, good[0], refused]


def commands():
    for path in sorted(SOURCES.glob("examples/**/*.*")) + sorted(SOURCES.glob("tests/whole/*.*")):
        if path.suffix in (".xml", ".json", ".ktd"):
            yield ["show", "--partial-credit", "ok", path]
            yield ["show", "--json", "--partial-credit", "ok", "--objectives", "all", path]
    yield from merges()
    yield ["form", "--questions", "50", "--versions", "A,B", "--out", "blank.form.json"]
    yield ["form", "--questions", "3", "--out", "-"]
    yield ["form"]
    versions = SOURCES / "examples/versions"
    yield ["show", *sorted(versions.glob("*.*"))]
    yield ["show", "--json", *sorted(versions.glob("*.*"))]
    for test in [*sorted(versions.glob("*.xml")), *sorted(SOURCES.glob("tests/whole/*.ktd")), versions / "unit.form.json"]:
        yield ["show", "--csv", test]
    for document in sorted(SOURCES.glob("tests/whole/*.ktd")):
        form = document.with_suffix(".form-out.json")
        yield ["report", "--form", form, "--out", "report.html", document]
        yield ["report", "--form", SOURCES / "examples/biology.form.json", "--out", "report.html", document]
        yield ["report", "--out", "-", document]
    yield ["show", "missing.xml"]
    yield ["show", "miss\u202eing\u0085.xml"]
    yield ["show", SOURCES]
    yield ["show", "/version"]
    yield ["merge", "--form", "missing.json", *OUTPUTS, "missing.xml"]
    yield ["merge", "--form", SOURCES / "examples/biology.form.json", "--form-out", "missing/folder.json", "--document-out",
           "merged.ktd", SOURCES / "examples/biology.xml"]
    yield ["--version"]
    yield ["--help"]
    yield ["merge", "--help"]


def outcome(program, command):
    # Not through pipes, whose end would be that of the services that Wine starts.
    with tempfile.TemporaryDirectory() as folder, tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as err:
        done = subprocess.run([*program, *map(str, command)], cwd=folder, stdin=subprocess.DEVNULL, stdout=out, stderr=err,
                              timeout=60, check=False)
        files = {path.name: path.read_bytes() for path in pathlib.Path(folder).rglob("*") if path.is_file()}
        streams = []
        for stream in (out, err):
            stream.seek(0)
            streams.append(stream.read())
    return {"exit code": done.returncode, "standard output": streams[0], "standard error": streams[1], **files}


def main():
    count, different, written = 0, 0, 0
    for command in commands():
        expected, found = outcome(NATIVE, command), outcome(WINDOWS, command)
        count += 1
        written += len(expected) - 3
        if expected == found:
            continue
        different += 1
        print("DIFFERENT: hedro34", *command)
        for name in expected | found:
            if expected.get(name) != found.get(name):
                print(f"  {name}:\n    here    {str(expected.get(name))[:600]}\n    Windows {str(found.get(name))[:600]}")
    print(f"{count} commands, {written} files, {different} different")
    sys.exit(1 if different or written < 100 else 0)


if __name__ == "__main__":
    main()
