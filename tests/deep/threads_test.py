#!/usr/bin/env python3
"""Eight threads with a test each under the thread sanitizer: no data race, and each has what one alone has."""

import sys

from support import attempt, build, figure


def main():
    program = build("threads", "hedro34_deep_threads") / "hedro34_deep_threads"
    # Addresses that are drawn anew may lie where the sanitizer does not expect them; a container may not let them stay.
    steady = ["setarch", "-R"] if attempt("setarch", "-R", "true")[0] == 0 else []
    code, printed = attempt(*steady, program, env={"TSAN_OPTIONS": "halt_on_error=0"})
    if code != 0 or "[  PASSED  ] 3 tests" not in printed:
        sys.exit(f"{printed}{program}: exit code {code}")
    figure("8 threads, 4 times each: the whole road, the same by name, the class registry: no data race, equal results")


main()
