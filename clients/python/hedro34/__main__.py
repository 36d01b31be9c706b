"""Registers libraries: `python3 -m hedro34 register|unregister [PATH]`, `python3 -m hedro34 list`. Without a PATH it is the
library in this package; `python3 -m hedro34 library` prints where that is."""

from __future__ import annotations

import argparse
import sys
from pathlib import Path

from . import Error, load, registered, registry_path
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
            load(arguments.library or _packaged()).unregister()
        elif arguments.command == "library":
            print(_packaged())
        else:
            for name, (class_id, library) in registered().items():
                print(name, class_id, library)
    except Error as error:
        print(f"hedro34: {error}", file=sys.stderr)
        return 1
    return 0


def _packaged() -> Path:
    path = packaged()
    if path is None:
        raise Error("this package was installed without a library: give the path of one, or install the wheel")
    return path


if __name__ == "__main__":
    sys.exit(main())
