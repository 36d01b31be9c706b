#!/usr/bin/env python3
"""The include lines of the library agree with the order of its rooms, no folder reaches back, and with what is installed."""

import pathlib
import re
import sys
import tempfile

ROOMS = ["base", "platform", "xml", "json", "documents", "runtime", "model", "import", "merge", "report", "component"]
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.MULTILINE)
SYSTEM = re.compile(
    r"(sys/.*|(unistd|fcntl|signal|dlfcn|windows|poll|pthread|termios|ucontext)\.h|csignal)$", re.IGNORECASE
)


def target_of(file, quote, name, root):
    """The file that an include line names, relative to the root, or None for one from elsewhere."""
    beside = (file.parent / name).resolve()
    if quote == '"' and beside.is_file() and beside.is_relative_to(root):
        return beside.relative_to(root).as_posix()
    ours = ("hedro34/", "host/", "tests/", "bench/", "fuzz/")
    return name if name.startswith(ours) else None


def error_of(file, quote, name, root):
    """What is wrong with one include line, or None."""
    path = file.relative_to(root / "hedro34")
    room = path.parts[0]
    if SYSTEM.match(name):
        at_home = room in ("platform", "component") or (room == "runtime" and path.name.startswith("fault"))
        return None if at_home else "header of the operating system"
    target = target_of(file, quote, name, root)
    if target is None or target == "hedro34/version.h" or path.as_posix() in ("hedro34.h", "component.h"):
        return None
    parts = target.split("/")
    if parts[0] != "hedro34" or parts[1] not in ROOMS:
        return "leaves the rooms"
    return "reaches back" if ROOMS.index(parts[1]) > ROOMS.index(room) else None


def check(root):
    """All errors of the tree, in the order of the files, and the number of include lines read."""
    root = root.resolve()
    errors, lines = [], 0
    for file in sorted((root / "hedro34").rglob("*")):
        if file.suffix not in (".h", ".cpp", ".inc", ".in"):
            continue
        path = file.relative_to(root)
        if path.parts[1] not in ROOMS and path.parts[1:] not in (("hedro34.h",), ("component.h",), ("version.h.in",)):
            errors.append(f"{path}: stands in no room")
            continue
        for match in INCLUDE.finditer(file.read_text(encoding="utf-8")):
            lines += 1
            error = error_of(file, match[1], match[2], root)
            if error:
                number = file.read_text(encoding="utf-8").count("\n", 0, match.start(2)) + 1
                errors.append(f"{path}:{number}: {match[2]}: {error}")
    return errors, lines


def reached(root, umbrellas):
    """The headers of the library that these headers include, themselves included."""
    found, left = set(), list(umbrellas)
    while left:
        name = left.pop()
        if name in found or name == "hedro34/version.h":
            continue
        found.add(name)
        file = root / name
        for match in INCLUDE.finditer(file.read_text(encoding="utf-8")):
            target = target_of(file, match[1], match[2], root.resolve())
            if target is not None and target.startswith("hedro34/"):
                left.append(target)
    return found


def check_public_headers(root):
    """What differs between the headers that are installed and those that a program's include lines need."""
    listed = set(re.findall(r"^  (hedro34/\S+\.h)$", (root / "cmake/public_headers.cmake").read_text(), re.MULTILINE))
    needed = reached(root, ("hedro34/hedro34.h", "hedro34/component.h"))
    return [f"{name}: is reached by a public header and not in cmake/public_headers.cmake" for name in sorted(needed - listed)] + [
        f"{name}: stands in cmake/public_headers.cmake and no public header reaches it" for name in sorted(listed - needed)
    ]


MADE_UP = {
    "hedro34/hedro34.h": "#include <hedro34/base/text.h>\n#include <hedro34/component/exports.h>\n",
    "hedro34/component.h": "#include <hedro34/component/exports.h>\n",
    "hedro34/stray.h": "#include <string>\n",
    "hedro34/attic/old.h": "#include <string>\n",
    "hedro34/base/text.h": "#pragma once\n#include <string>\n#include <hedro34/version.h>\n",
    "hedro34/base/text.cpp": '#include "text.h"\n\n#  include <hedro34/model/test.h>\n// #include <hedro34/merge/merge.h>\n',
    "hedro34/base/all.h": "#include <hedro34/hedro34.h>\n",
    "hedro34/platform/files.cpp": "#include <fcntl.h>\n#include <sys/stat.h>\n#include <hedro34/base/text.h>\n",
    "hedro34/runtime/fault.cpp": "#include <signal.h>\n",
    "hedro34/runtime/trap.cpp": "#include <string>\n#include <signal.h>\n",
    "hedro34/model/test.h": '#include "hedro34/platform/xml.h"\n#include "../merge/merge.h"\n',
    "hedro34/import/load.cpp": "#include <hedro34/model/test.h>\n#include <hedro34/import/load.h>\n#include <sys/mman.h>\n",
    "hedro34/merge/merge.h": "#include <Windows.h>\n",
    "hedro34/component/exports.h": "#include <hedro34/merge/merge.h>\n#include <host/main.h>\n",
    "host/main.cpp": "#include <hedro34/component/exports.h>\n#include <unistd.h>\n",
}

EXPECTED = [
    "hedro34/attic/old.h: stands in no room",
    "hedro34/base/all.h:1: hedro34/hedro34.h: leaves the rooms",
    "hedro34/base/text.cpp:3: hedro34/model/test.h: reaches back",
    "hedro34/component/exports.h:2: host/main.h: leaves the rooms",
    "hedro34/import/load.cpp:3: sys/mman.h: header of the operating system",
    "hedro34/merge/merge.h:1: Windows.h: header of the operating system",
    "hedro34/model/test.h:2: ../merge/merge.h: reaches back",
    "hedro34/runtime/trap.cpp:2: signal.h: header of the operating system",
    "hedro34/stray.h: stands in no room",
]


PUBLIC_EXPECTED = [
    "hedro34/component/exports.h: is reached by a public header and not in cmake/public_headers.cmake",
    "hedro34/merge/merge.h: is reached by a public header and not in cmake/public_headers.cmake",
    "hedro34/stray.h: stands in cmake/public_headers.cmake and no public header reaches it",
]


def check_the_check():
    with tempfile.TemporaryDirectory() as folder:
        root = pathlib.Path(folder)
        for name, text in MADE_UP.items():
            (root / name).parent.mkdir(parents=True, exist_ok=True)
            (root / name).write_text(text, encoding="utf-8")
        errors, _ = check(root)
        (root / "cmake").mkdir()
        (root / "cmake/public_headers.cmake").write_text(
            "set(public_headers\n  hedro34/hedro34.h\n  hedro34/component.h\n  hedro34/base/text.h\n  hedro34/stray.h\n)\n"
        )
        assert check_public_headers(root) == PUBLIC_EXPECTED, check_public_headers(root)
    assert errors == EXPECTED, "the check itself is wrong; it found\n  " + "\n  ".join(errors)


def main():
    check_the_check()
    root = pathlib.Path(__file__).resolve().parent.parent
    errors, lines = check(root)
    errors += check_public_headers(root)
    assert lines > 0, "no include line found in hedro34/"
    for error in errors:
        print(error)
    print(f"{lines} include lines, {len(errors)} errors")
    return 1 if errors else 0


if __name__ == "__main__":
    sys.exit(main())
