"""What tests that build and run things share: the tree, and commands that fail loudly."""

import os
import pathlib
import subprocess
import sys

SOURCES = pathlib.Path(__file__).resolve().parent.parent
NOT_HERE = 77  # the exit code of a test that left out a part, for want of what it needs


def attempt(*command, cwd=None, env=None, timeout=900):
    """The exit code of a command and what it printed, standard output and error together."""
    # What another folder of the same depth has built serves here.
    environment = {**os.environ, "CCACHE_NOHASHDIR": "1", "CCACHE_BASEDIR": str(SOURCES), **(env or {})}
    done = subprocess.run([str(word) for word in command], cwd=cwd, env=environment, stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, timeout=timeout, check=False)
    return done.returncode, done.stdout


def run(*command, cwd=None, env=None, timeout=900):
    """What a command printed; where it fails, that is shown and the test ends."""
    code, printed = attempt(*command, cwd=cwd, env=env, timeout=timeout)
    if code != 0:
        sys.exit(f"{' '.join(map(str, command))}\n{printed}exit code {code}")
    return printed
