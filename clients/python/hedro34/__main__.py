"""Registers libraries: `python3 -m hedro34 register|unregister /path/libhedro34-component.so`, `python3 -m hedro34 list`."""

from __future__ import annotations

import argparse
import sys

from . import Error, load, registered, registry_path


def main() -> int:
    parser = argparse.ArgumentParser(prog="python3 -m hedro34", description="Registers the HEDRO34 component library.")
    commands = parser.add_subparsers(dest="command", required=True)
    commands.add_parser("register", help="enter the classes of a library").add_argument("library")
    commands.add_parser("unregister", help="take the classes of a library out").add_argument("library")
    commands.add_parser("list", help="print the registered classes")
    arguments = parser.parse_args()
    try:
        if arguments.command == "register":
            load(arguments.library).register()
            print(f"registered in {registry_path()}")
        elif arguments.command == "unregister":
            load(arguments.library).unregister()
        else:
            for name, (class_id, library) in registered().items():
                print(name, class_id, library)
    except Error as error:
        print(f"hedro34: {error}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
