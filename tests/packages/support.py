"""What the tests of packages share: the tree, a folder for what they build, and commands that fail loudly."""

import os
import pathlib
import re
import shutil
import subprocess
import sys

SOURCES = pathlib.Path(__file__).resolve().parent.parent.parent
OUT = SOURCES / "build" / "packages"  # kept from run to run, so that only what changed is built again
VERSION = re.search(r"^project\(HEDRO34 VERSION (\S+)", (SOURCES / "CMakeLists.txt").read_text(), re.MULTILINE)[1]
INTERFACE = VERSION.rpartition(".")[0]  # as file names have it
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


def fresh(name):
    """An empty folder below OUT."""
    folder = OUT / name
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    return folder


def configure(build, *options):
    """Configures the sources into a folder below OUT, as a release; the folder."""
    folder = OUT / build
    run("cmake", "-S", SOURCES, "-B", folder, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release", "-DHEDRO34_BUILD_TESTS=OFF",
        *options)
    return folder


def make(folder, *targets):
    """Builds targets, all when none is named."""
    names = ["--target", *targets] if targets else []
    run("cmake", "--build", folder, "-j", os.cpu_count(), *names, timeout=1800)
