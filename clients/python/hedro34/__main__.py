"""Registers libraries: `python3 -m hedro34 register|unregister [PATH]`, `python3 -m hedro34 list`. Without a PATH it is the
library in this package; `python3 -m hedro34 library` prints where that is."""

from __future__ import annotations

import argparse
import os
import shlex
import sys
from collections import Counter
from pathlib import Path
from uuid import UUID

from . import Error, Library, load, registered, registry_path, types
from ._library import packaged


def main() -> int:
    parser = argparse.ArgumentParser(prog="python3 -m hedro34", description="Registers the HEDRO34 component library.")
    commands = parser.add_subparsers(dest="command", required=True)
    for command, does in (("register", "enter the classes of a library"), ("unregister", "take them out again")):
        of_library = commands.add_parser(command, help=does)
        of_library.add_argument("library", nargs="?", type=Path, help="its file; the one in this package when left out")
    commands.add_parser("list", help="print the registered classes")
    commands.add_parser("library", help="print the path of the library in this package")
    arguments = parser.parse_args()
    try:
        if arguments.command == "register":
            load(arguments.library or _packaged()).register()
            print(f"registered in {registry_path()}")
        elif arguments.command == "unregister":
            _unregister((arguments.library or _packaged()).absolute())
        elif arguments.command == "library":
            print(_packaged())
        else:
            for name, (class_id, library) in registered().items():
                print(name, class_id, library)
    except Error as error:
        print(f"hedro34: {error}", file=sys.stderr)
        return 1
    return 0


def _unregister(path: Path) -> None:
    """The library takes classes out by their identifiers, so one that is not registered would take out those of another."""
    library = Library(path, any_version=True)
    before = registered()
    ours = {UUID(class_id) for class_id in types.CLASSES.values()}
    if os.path.realpath(path) not in {os.path.realpath(file) for _, file in before.values()}:
        others = (str(file) for class_id, file in before.values() if UUID(class_id) in ours and os.path.exists(file))
        if other := next(others, None):
            command = f"python3 -m hedro34 unregister {shlex.quote(other)}"
            raise Error(f"{path} is not registered; {other} is and stays so: `{command}` takes it out")
    library.unregister()
    after = registered()
    for file, count in Counter(row[1] for name, row in before.items() if name not in after).items():
        print(f"{count} classes of {file} taken out of {registry_path()}")


def _packaged() -> Path:
    path = packaged()
    if path is None:
        raise Error("this package was installed without a library: give the path of one, or install the wheel")
    return path


if __name__ == "__main__":
    sys.exit(main())
