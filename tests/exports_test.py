#!/usr/bin/env python3
"""The component library shows its four functions and nothing else, and loads with everything that it needs."""

import os
import subprocess
import sys
import unittest

LIBRARY = os.environ["HEDRO34_COMPONENT"]
EXPORTS = ["DllCanUnloadNow", "DllGetClassObject", "DllRegisterServer", "DllUnregisterServer"]


class Exports(unittest.TestCase):
    def test_the_symbol_table_has_the_four_functions_only(self):
        command = ["nm", "--dynamic", "--defined-only", "--format=posix", LIBRARY]
        lines = subprocess.run(command, check=True, capture_output=True, text=True).stdout.splitlines()
        self.assertEqual(sorted(tuple(line.split()[:2]) for line in lines), [(name, "T") for name in EXPORTS])

    def test_it_loads_at_once_with_all_symbols_bound(self):
        # In a process of its own, which a library built with a sanitizer must enter before Python's own libraries do.
        script = "import ctypes, os, sys; library = ctypes.CDLL(sys.argv[1], mode=os.RTLD_NOW)\n"
        script += "assert all(hasattr(library, name) for name in sys.argv[2:]); print(library.DllCanUnloadNow())"
        environment = dict(os.environ, LD_PRELOAD=sanitizer(), ASAN_OPTIONS="detect_leaks=0")
        found = subprocess.run([sys.executable, "-c", script, LIBRARY, *EXPORTS],
                               env=environment, capture_output=True, text=True)
        self.assertEqual((found.stdout, found.returncode), ("0\n", 0), found.stderr)


def sanitizer():
    """The sanitizer's own library where the component is built with it, else nothing."""
    needed = subprocess.run(["ldd", LIBRARY], check=True, capture_output=True, text=True).stdout
    return " ".join(line.split()[2] for line in needed.splitlines() if "libasan" in line)


if __name__ == "__main__":
    unittest.main()
